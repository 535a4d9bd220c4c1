// FolderWindow: the folder view as a pane of a dialog, over the shell's own view of a folder.
//
//   if (FolderWindow* pView = FolderWindow::Create(hDialog, events)) ...
//
// The look-in list, the toolbar and the list of files are controls like others, by their ids; each
// folder and each mode is a new view of the shell inside the list's control.
//
// Selections are reported once the message at hand has been dealt with, so that a user's step
// from one file to another is one event; what the program selects is no event.
//
// It owns itself: it goes with its window, after OnClose. Used on the window's thread, after
// OleInitialize.
#pragma once

#include <memory>

#include "interfaces/IFolderView.h"
#include "src/UIComponents/windows/Controls.h"
#include "src/UIComponents/windows/shell/FolderButtons.h"
#include "src/UIComponents/windows/shell/LookInList.h"
#include "src/UIComponents/windows/shell/ShellView.h"

namespace Hesperon::specifics::UILayer {

class FolderWindow final : public ControlsOf<IQRL_TabulexConverter::IFolderView>,
                           private IShellViewEvents
{
public:
    using FolderMode = IQRL_TabulexConverter::FolderMode;
    using IFolderEvents = IQRL_TabulexConverter::IFolderEvents;
    using ViewMenu = IQRL_TabulexConverter::ViewMenu;

    // Null if it can't be made; no event is told then. The events outlive the window.
    static FolderWindow* Create(HWND hParent, IFolderEvents& events);

    HWND Window() const { return m_controls.Window(); }

    // ---- IFolderView

    bool Select(LONG nControl, LONG nRow) override;
    LONG Focus() override;
    bool ShowFolder(const OLECHAR* pszFolder, FolderMode mode) override;
    void SelectEntry(const OLECHAR* pszPath) override;
    void Freeze(bool bFrozen) override;
    LONG TrackMenu(ViewMenu menu) override;

private:
    explicit FolderWindow(IFolderEvents& events) : m_events(events) {}
    ~FolderWindow() = default;

    // ---- IShellViewEvents
    bool Includes(const ItemIds& item, const string_t& sPath) override;
    void OnSelectionChange() override;

    static INT_PTR CALLBACK OnMessage(HWND hWnd, UINT nMessage, WPARAM wParam, LPARAM lParam);
    static LRESULT CALLBACK OnListMessage(HWND hWnd, UINT nMessage, WPARAM wParam, LPARAM lParam,
                                          UINT_PTR nId, DWORD_PTR nThis);
    void SetUp(HWND hWnd);
    void SetUpList();
    bool Handle(UINT nMessage, WPARAM wParam, LPARAM lParam);
    bool HandleCommand(WORD nControl, WORD nNotice, LPARAM lParam);
    void OpenChosenRow();
    void ReportSelection();
    void Close();
    HWND List() const { return m_controls.At(IQRL_TabulexConverter::FolderList); }
    static bool HasFocus(HWND hWnd); // it or a window inside it

    IFolderEvents& m_events;
    bool m_bOpen = false; // created, and not closed
    bool m_bFrozen = false;
    bool m_bReportPosted = false;
    bool m_bAwaited = false; // the shell hasn't listed yet what the program has selected
    LONG m_nShownRow = IQRL_TabulexConverter::kNoRow; // of the look-in list, as the program chose
    string_t m_sSelection;                            // last one reported, or made by the program
    ItemIds m_way; // the folder that is shown, or one below it that the user came from
    FolderButtons m_toolbar;
    LookInList m_lookIn;
    std::unique_ptr<ShellView> m_pView; // null before the first folder
};

} // namespace Hesperon::specifics::UILayer
