// CConvertDummyDialog: the import dialog, which is modal.
//
// It owns the control and the panes, passes the control's IUIControls on to the pane that has
// the control in question, and keeps five choices when it closes, confirmed or not. Everything
// else has been changed at the parsers by then.
//
// It lives as long as the modal call, on the thread of that.
#pragma once

#include "src/UIComponents/ConvertDialog/ConvertDialogLayout.h"
#include "src/UIComponents/ConvertDialog/DataDecodeAdapter.h"
#include "src/UIComponents/ConvertDialog/DataSettingAdapter.h"
#include "src/UIComponents/ConvertDialog/FileContentAdapter.h"
#include "src/UIComponents/Windowless/ConverterCtrl.h"

namespace Hesperon::specifics::UILayer {

class CConvertDummyDialog final : public IDialogEvents, public IUIControls
{
public:
    // The parameters outlive the dialog.
    explicit CConvertDummyDialog(const SConvertDialogParams& params);

    // Runs the dialog over a window, 0 for none: 1 where the user has confirmed and the settings
    // are good, 2 where the user has cancelled, -1 if it can't be set up.
    LONG DoModal(LONG_PTR hwndParent);

    // ---- the choices, as they stood when the dialog closed

    string_t m_sResolution, m_sField, m_sTimeZone;
    LONG m_nResolutionSize = 0; // 0 for none
    string_t m_sFolder;

    // ---- IDialogEvents

    void OnOpen(IDialogView& view) override;
    void OnDefaultCommand() override;
    void OnDestroy() override;
    void OnText(LONG) override {}
    void OnSelect(LONG) override {}
    void OnClick(LONG nControl) override;
    void OnDate(LONG) override {}
    void OnResize() override;

    // ---- IUIControls

    HRESULT GetDateFirst(VARIANT* pDate) override;
    HRESULT GetDateLast(VARIANT* pDate) override;
    HRESULT GetStartRow(ULONG* pnRow) override;
    HRESULT SetFileLanguage(ULONG nCodePage) override;
    HRESULT SetControlsState(LONG nState) override;
    HRESULT SetDateFirst(const VARIANT& vDate) override;
    HRESULT SetDateFormat(LONG nMode) override;
    HRESULT SetDateLast(const VARIANT& vDate) override;
    HRESULT SetUseBarsEndTime(bool bChecked) override;
    HRESULT SetStartRow(ULONG nRow) override;
    HRESULT SetMultiPrice(const OLECHAR* pszName) override;
    HRESULT SetMultiVolume(const OLECHAR* pszName) override;
    HRESULT SetResolution(ULONG nSize, ULONG nIndex) override;
    HRESULT ShowUseBarsEndTime(bool bShow) override;
    HRESULT ResetStartRow() override;

private:
    void MakePanes();
    HRESULT CheckSettings();
    void ReadChoices();

    const SConvertDialogParams& m_params;
    Layout::CConvertDummyDialogLayout m_layout;
    DataFlow::CConvertCtrl m_convertCtrl;
    CFilePickerAdapter m_filePicker;
    CFileContentViewAdapter::CPane m_fileContentPane;
    CDataSettingAdapter::CPane m_dataSettingPane;
    CDataDecodeAdapter::CPane m_dataDecodePane;
    IDialogView* m_pView = nullptr; // while the dialog is open
};

} // namespace Hesperon::specifics::UILayer
