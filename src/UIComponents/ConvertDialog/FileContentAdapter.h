// The upper two strips of the import dialog: CFilePickerAdapter, in which the user picks a file,
// and CFileContentViewAdapter::CPane, which shows the file's lines and the code page.
//
// Both live as long as the dialog's views call them, that is longer than IDialogViews::Run; after
// Close they call their views no more. Used on the dialog's thread.
#pragma once

#include "src/UIComponents/ConvertDialog/CallBack.h"
#include "src/UIComponents/ConvertDialog/ConvertDialogParams.h"
#include "src/UIComponents/Windowless/EventSinks.h"
#include "src/UIComponents/controls/FolderView.h"
#include "src/UIComponents/controls/QRLDataGridViewCtrl.h"
#include "src/UIComponents/views/DialogViews.h"

namespace Hesperon::specifics::UILayer {

class CFilePickerAdapter final
{
public:
    using IFolderView = IQRL_TabulexConverter::IFolderView;
    using ControlPlace = IQRL_TabulexConverter::ControlPlace;

    // A parser that has a file keeps it: the picker shows that file, and is disabled. The sink,
    // which may be null, is told of another file than the last one, names compared without case;
    // of an empty name too, when the user selects no file.
    CFilePickerAdapter(const SConvertDialogParams& params, notify::IFileEventSink* pSink);
    ~CFilePickerAdapter() { Close(); }
    CFilePickerAdapter(const CFilePickerAdapter&) = delete;
    CFilePickerAdapter& operator=(const CFilePickerAdapter&) = delete;

    // E_FAIL if the dialog makes no folder view. A file or folder that can't be shown is no
    // failure: the view shows the system's own choice then.
    HRESULT Create(IDialogView& parent);
    void Move(const ControlPlace& place);
    // As Enter in the folder list; nothing without a view.
    void OpenSelection();
    void Close();
    // Null before Create and after Close.
    IFolderView* View() { return m_wndHost; }

private:
    HRESULT Connect();
    void OnFolderViewChange();

    IFolderView* m_wndHost = nullptr;
    com_ptr<CFolderViewCtrl> m_pFolderView; // kept after Close: the view may still call it
    const string_t m_sFolder;               // last used
    notify::IFileEventSink* const m_pSink;
    string_t m_sFileName; // last one reported
    com_ptr<CCallBack> m_pCallBack;
};

struct CFileContentViewAdapter
{
    class CPane;
};

class CFileContentViewAdapter::CPane final : private IQRL_TabulexConverter::IControlEvents
{
public:
    // The sink, which may be null, is told when the user chooses a code page.
    explicit CPane(notify::IDataSettingEventSink* pSink) : m_pSink(pSink) {}
    CPane(const CPane&) = delete;
    CPane& operator=(const CPane&) = delete;

    // E_FAIL if the dialog makes no such pane. A pane whose grid can't be made goes without.
    HRESULT Create(IDialogView& parent);
    // Null without one; also after Close.
    com_ptr<CQRLDataGridViewCtrl> GetGrid() { return m_pGrid; }
    // TYPE_E_ELEMENTNOTFOUND, and the selection as it was, for a page that isn't offered.
    HRESULT SetFileLanguage(ULONG nCodePage);
    void EnableLanguage(bool bEnabled);
    // Null before Create and after Close.
    IPaneView* View() { return m_pView; }
    void Close() { m_pView = nullptr; }

private:
    void OnText(LONG) override {}
    void OnSelect(LONG nControl) override;
    void OnClick(LONG) override {}
    void OnDate(LONG) override {}
    void OnResize() override;

    IPaneView* m_pView = nullptr;
    com_ptr<CQRLDataGridViewCtrl> m_pGrid; // kept after Close: its view may still call it
    notify::IDataSettingEventSink* const m_pSink;
};

} // namespace Hesperon::specifics::UILayer
