// The shell reports every change of its selection, by whomever, some late and some in two parts.
// So a report only brings about a look at the selection, which counts if it isn't the known one.

#include "src/UIComponents/windows/FolderWindow.h"

#include <utility>

#include "module/MenuLibrary_win32.h"
#include "src/UIComponents/views/GuardedEvent.h"
#include "src/UIComponents/windows/DialogResources.h"
#include "src/UIComponents/windows/PopupMenu.h"
#include "src/values/CaseFold.h"

namespace Hesperon::specifics::UILayer {

using namespace IQRL_TabulexConverter;

namespace {

// Of the dialog's own, posted to it.
enum OwnMessage : UINT
{
    kReportSelection = WM_APP + 1,
    kOpenChosenRow,
};

bool IsFolderCommand(LONG nCommand)
{
    return nCommand >= FolderUp && nCommand <= FolderOpenSelection;
}

} // namespace

// ---- coming and going

FolderWindow* FolderWindow::Create(HWND hParent, IFolderEvents& events)
{
    auto* pThis = new FolderWindow(events);
    const HWND hWnd = MakeDialogWindow(DialogFolder, hParent, &OnMessage, pThis);
    if (!hWnd) {
        delete pThis; // no window has it
        return nullptr;
    }
    if (!pThis->m_bOpen) {
        DestroyWindow(hWnd);
        return nullptr;
    }
    return pThis;
}

INT_PTR CALLBACK FolderWindow::OnMessage(HWND hWnd, UINT nMessage, WPARAM wParam, LPARAM lParam)
{
    if (nMessage == WM_INITDIALOG) {
        SetWindowLongPtrW(hWnd, DWLP_USER, lParam);
        GuardedEvent([&] { reinterpret_cast<FolderWindow*>(lParam)->SetUp(hWnd); });
        return FALSE; // the focus stays where it is
    }
    auto* pThis = reinterpret_cast<FolderWindow*>(GetWindowLongPtrW(hWnd, DWLP_USER));
    if (!pThis)
        return FALSE;
    if (nMessage == WM_NCDESTROY) {
        SetWindowLongPtrW(hWnd, DWLP_USER, 0);
        delete pThis;
        return FALSE;
    }
    bool bHandled = false;
    GuardedEvent([&] { bHandled = pThis->Handle(nMessage, wParam, lParam); });
    return bHandled;
}

void FolderWindow::SetUp(HWND hWnd)
{
    m_controls.SetWindow(hWnd);
    MenuLibrary::SetFlatMenu(hWnd);
    m_lookIn.Attach(m_controls.At(FolderLookIn), hWnd, FolderOpenSelection);
    SetUpList();
    m_bOpen = m_toolbar.Replace(m_controls.At(FolderToolbar));
}

// The control of the list stays empty itself: it holds the shell's view, which has a border of its
// own, and its keyboard is that of the view.
void FolderWindow::SetUpList()
{
    const HWND hList = List();
    SetWindowLongW(hList, GWL_STYLE,
                   GetWindowLongW(hList, GWL_STYLE) | WS_TABSTOP | WS_CLIPCHILDREN);
    SetWindowPos(hList, nullptr, 0, 0, 0, 0,
                 SWP_NOMOVE | SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE | SWP_FRAMECHANGED |
                     SWP_SHOWWINDOW);
    SetWindowSubclass(hList, &OnListMessage, 0, reinterpret_cast<DWORD_PTR>(this));
}

// The shell's window goes first, while its host still is one.
void FolderWindow::Close()
{
    m_pView.reset();
    if (std::exchange(m_bOpen, false))
        m_events.OnClose();
}

// ---- messages; an event may end the window, and this object with it

bool FolderWindow::Handle(UINT nMessage, WPARAM wParam, LPARAM lParam)
{
    switch (nMessage) {
    case WM_COMMAND:
        return HandleCommand(LOWORD(wParam), HIWORD(wParam), lParam);
    case WM_NOTIFY:
        return FolderButtons::AnswerTip(*reinterpret_cast<NMHDR*>(lParam));
    case WM_DRAWITEM:
        m_lookIn.Draw(*reinterpret_cast<const DRAWITEMSTRUCT*>(lParam));
        return true;
    case WM_SIZE:
        if (m_bOpen)
            m_events.OnResize();
        return true;
    case WM_DESTROY:
        Close();
        return true;
    case kReportSelection:
        ReportSelection();
        return true;
    case kOpenChosenRow:
        OpenChosenRow();
        return true;
    }
    return false;
}

bool FolderWindow::HandleCommand(WORD nControl, WORD nNotice, LPARAM lParam)
{
    if (!m_bOpen)
        return false; // a control on its way out
    if (IsFolderCommand(nControl)) {
        m_events.OnCommand(static_cast<FolderCommand>(nControl));
        return true;
    }
    // Later: the list is still closing, and would be filled anew.
    if (nControl == FolderLookIn && m_lookIn.IsChosenBy(nNotice))
        PostMessageW(Window(), kOpenChosenRow, 0, 0);
    return m_controls.OnMessage(WM_COMMAND, MAKEWPARAM(nControl, nNotice), lParam, m_events);
}

LRESULT CALLBACK FolderWindow::OnListMessage(HWND hWnd, UINT nMessage, WPARAM wParam, LPARAM lParam,
                                             UINT_PTR nId, DWORD_PTR nThis)
{
    const auto* pThis = reinterpret_cast<FolderWindow*>(nThis);
    switch (nMessage) {
    case WM_SIZE:
        if (pThis->m_pView)
            pThis->m_pView->Fill();
        break;
    case WM_SETFOCUS:
        if (pThis->m_pView)
            pThis->m_pView->TakeFocus();
        return 0;
    case WM_NCDESTROY:
        RemoveWindowSubclass(hWnd, &OnListMessage, nId);
        break;
    }
    return DefSubclassProc(hWnd, nMessage, wParam, lParam);
}

// ---- folders

bool FolderWindow::ShowFolder(const OLECHAR* pszFolder, FolderMode mode)
{
    const ItemIds folder = ItemOfPath(pszFolder);
    if (!folder)
        return false;
    ItemIds wayBefore = std::exchange(m_way, (folder.LeadsTo(m_way) ? m_way : folder).Clone());
    auto pView = ShellView::Show({List(), Window(), *this}, folder.Clone(), mode);
    if (!pView) {
        m_way = std::move(wayBefore);
        return false;
    }
    if (HasFocus(List()))
        pView->TakeFocus();
    std::swap(m_pView, pView);
    m_lookIn.SetFolder(folder);
    m_sSelection.clear();
    m_bAwaited = false;
    return true;
}

// The folders of the way to the folder that is shown are listed, whatever they are. When the user
// goes up, the way that was left counts still, so that it can be gone back.
bool FolderWindow::Includes(const ItemIds& item, const string_t& sPath)
{
    return item.LeadsTo(m_way) || m_events.Shows(sPath.c_str());
}

bool FolderWindow::Select(LONG nControl, LONG nRow)
{
    const bool bThere = ControlsOf::Select(nControl, nRow);
    if (nControl == FolderLookIn)
        m_nShownRow = m_controls.Selected(FolderLookIn);
    return bThere;
}

void FolderWindow::OpenChosenRow()
{
    if (m_controls.Selected(FolderLookIn) != m_nShownRow)
        m_events.OnClick(FolderLookIn);
}

LONG FolderWindow::TrackMenu(ViewMenu menu)
{
    return TrackMenuBelow(menu, Window(), m_toolbar.PlaceOf(FolderModes), MenuEdge::Left);
}

// ---- the selection

// Kept in the spelling that the shell reports: a path may hold short names of files, and another
// spelling would pass for another selection.
void FolderWindow::SelectEntry(const OLECHAR* pszPath)
{
    const string_t sReported = PathOfItem(ItemOfPath(pszPath));
    m_sSelection = sReported.empty() ? string_t(pszPath) : sReported;
    if (!m_pView)
        return;
    m_pView->Select(m_sSelection);
    m_bAwaited = !m_sSelection.empty() && m_pView->Selected().empty();
}

void FolderWindow::OnSelectionChange()
{
    if (!m_bReportPosted)
        m_bReportPosted = PostMessageW(Window(), kReportSelection, 0, 0);
}

void FolderWindow::ReportSelection()
{
    m_bReportPosted = false;
    if (!m_pView)
        return;
    const string_t sSelection = m_pView->Selected();
    if (EqualIgnoringCase(sSelection, m_sSelection) || (m_bAwaited && sSelection.empty()))
        return;
    m_bAwaited = false;
    if (m_bFrozen) {
        m_pView->Select(m_sSelection);
        return;
    }
    m_sSelection = sSelection;
    m_events.OnSelection(sSelection.c_str());
}

// ---- the keyboard, and being frozen

bool FolderWindow::HasFocus(HWND hWnd)
{
    const HWND hFocus = GetFocus();
    return hFocus && (hFocus == hWnd || IsChild(hWnd, hFocus));
}

LONG FolderWindow::Focus()
{
    return HasFocus(List()) ? LONG{FolderList} : ControlsOf::Focus();
}

// A window that is off must not keep the keyboard: the dialog would be deaf.
void FolderWindow::Freeze(bool bFrozen)
{
    const bool bHadFocus = bFrozen && HasFocus(Window());
    m_bFrozen = bFrozen;
    if (bFrozen)
        SendMessageW(m_controls.At(FolderLookIn), CB_SHOWDROPDOWN, FALSE, 0);
    for (const LONG nControl : {LONG{FolderLookIn}, LONG{FolderList}})
        m_controls.SetEnabled(nControl, !bFrozen);
    m_toolbar.SetEnabled(!bFrozen);
    const HWND hDialog = GetAncestor(Window(), GA_ROOT);
    if (bHadFocus)
        SendMessageW(hDialog, WM_NEXTDLGCTL,
                     reinterpret_cast<WPARAM>(GetNextDlgTabItem(hDialog, Window(), FALSE)), TRUE);
}

} // namespace Hesperon::specifics::UILayer
