// CFolderViewCtrl: the file picker of the import dialog. IFolderViewCtrl.h documents the members.
//
// It holds the folder, the way to it and the selection; the view shows them and reports what the
// user does. Without a view it keeps what is put, and shows it once it gets one.
//
// While it is disabled neither the user nor a put changes the folder or the selection, and the
// mode stays; such a put gives S_FALSE.
//
// Used by one thread.
#pragma once

#include <memory>

#include "interfaces/IFolderView.h"
#include "interfaces/IFolderViewCtrl.h"
#include "module/ComObject.h"
#include "src/UIComponents/controls/FolderList.h"

namespace Hesperon::specifics {

class CFolderViewCtrl
    : public ComObject<CFolderViewCtrl, Dual<IQRL_TabulexConverter::IFolderViewCtrl>>,
      private IQRL_TabulexConverter::IFolderEvents
{
public:
    using IFolderView = IQRL_TabulexConverter::IFolderView;
    using ControlPlace = IQRL_TabulexConverter::ControlPlace;
    using FolderMode = IQRL_TabulexConverter::FolderMode;
    using FolderCommand = IQRL_TabulexConverter::FolderCommand;

    // For the maker of its view. The view calls OnClose before this object goes.
    IQRL_TabulexConverter::IFolderEvents& Events() { return *this; }
    // Shows the folder that was put, else the system's own choice, else the root, in this view
    // until its OnClose; null takes it away.
    void Attach(IFolderView* pView);
    // As Enter does: opens a folder. A file that is selected stays so; no program is started.
    void OpenSelection();
    void Move(const ControlPlace& place); // the view, in the dialog

    // ---- IFolderViewCtrl

    HRESULT STDMETHODCALLTYPE get_FileName(BSTR* pVal) override;
    HRESULT STDMETHODCALLTYPE put_FileName(BSTR newVal) override;
    HRESULT STDMETHODCALLTYPE put_onchange(VARIANT newVal) override;
    HRESULT STDMETHODCALLTYPE get_Folder(BSTR* pVal) override;
    HRESULT STDMETHODCALLTYPE put_Folder(BSTR newVal) override;
    HRESULT STDMETHODCALLTYPE get_Title(BSTR* pVal) override;
    HRESULT STDMETHODCALLTYPE put_Title(BSTR newVal) override;
    HRESULT STDMETHODCALLTYPE get_disabled(BOOL* pVal) override;
    HRESULT STDMETHODCALLTYPE put_disabled(BOOL newVal) override;

private:
    // ---- IFolderEvents
    bool Shows(const OLECHAR* pszPath) override;
    LONG EntryCount() override;
    IQRL_TabulexConverter::FolderEntry Entry(LONG nEntry) override;
    void OnSelection(const OLECHAR* pszPath) override;
    void OnCommand(FolderCommand command) override;
    void OnClose() override { m_pView = nullptr; }
    void OnText(LONG) override {}
    void OnSelect(LONG) override {}
    void OnClick(LONG nControl) override;
    void OnDate(LONG) override {}
    void OnResize() override;

    // Reads a folder and shows it, with nothing selected; after a failure all is as it was.
    HRESULT InternalOpenFolder(string_view_t sFolder);
    HRESULT OpenFirstFolder();
    bool CreateViewImpl();
    void FillLookInList();
    void OpenLookInRow();
    HRESULT InternalShellViewUp();
    HRESULT InternalSetViewStyle(FolderMode mode);
    void ChooseMode();
    void CallOnChange();

    std::unique_ptr<CFolderList> m_pShellFolder; // the one that is shown; null before the first
    string_t m_sSelection;                       // path as the view told it; empty for nothing
    string_t m_sTitle;
    bool m_bDisabled = false;
    bool m_bQuiet = false; // a put is under way
    FolderMode m_mode = IQRL_TabulexConverter::ModeNames;
    com_ptr<IDispatch> m_pOnChange;
    IFolderView* m_pView = nullptr;
};

} // namespace Hesperon::specifics
