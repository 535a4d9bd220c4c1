// Messages reach the grid by three roads. Its own window gets what the list reports, and what any
// window gets. The list's messages pass ListProcedure first, which draws lines without headings
// and takes what the header asks of its parent. The header's pass GridHeader.
//
// Each of them may end the window: whoever calls the events keeps the object meanwhile, and looks
// at m_pEvents, which OnClose has cleared, before the next call.

#include "src/UIComponents/windows/grid/GridWindow.h"

#include <windowsx.h>

#include "module/MenuLibrary_win32.h"
#include "src/UIComponents/views/GuardedEvent.h"
#include "src/UIComponents/windows/ActivationContext.h"
#include "src/UIComponents/windows/PopupMenu.h"
#include "src/UIComponents/windows/WindowClass.h"
#include "src/UIComponents/windows/WindowProcedure.h"

namespace Hesperon::specifics::UILayer {

using namespace IQRL_TabulexConverter;

// ---- creation

GridWindow::GridWindow()
    : m_painter(m_list), m_header([this](LONG nColumn) { OnHeaderPress(nColumn); })
{}

GridWindow* GridWindow::Create(HWND hParent, IGridEvents& events)
{
    static const WindowClass windowClass(kGridClassName, &Procedure);
    if (!windowClass)
        return nullptr;
    const ActivationContext version6;
    const std::shared_ptr<GridWindow> pSelf(new GridWindow);
    if (!pSelf->MakeWindows(hParent, pSelf)) {
        if (pSelf->m_hWnd)
            DestroyWindow(pSelf->m_hWnd);
        return nullptr;
    }
    pSelf->m_pEvents = &events;
    return pSelf.get();
}

bool GridWindow::MakeWindows(HWND hParent, const std::shared_ptr<GridWindow>& pSelf)
{
    m_hWnd = CreateWindowExW(WS_EX_CONTROLPARENT, kGridClassName, L"",
                             WS_CHILD | WS_VISIBLE | WS_CLIPCHILDREN, 0, 0, 0, 0, hParent, nullptr,
                             ThisModule(), nullptr);
    if (!m_hWnd)
        return false;
    MenuLibrary::SetFlatMenu(m_hWnd);
    m_pSelf = pSelf;
    SetWindowLongPtrW(m_hWnd, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
    if (!m_list.Create(m_hWnd))
        return false;
    m_pfnList = ReplaceProcedure(m_list.Window(), &ListProcedure, this);
    return m_pfnList != nullptr;
}

// ---- the view

void GridWindow::Move(const ControlPlace& place)
{
    SetWindowPos(m_hWnd, nullptr, place.nLeft, place.nTop, place.nRight - place.nLeft,
                 place.nBottom - place.nTop, SWP_NOZORDER | SWP_NOACTIVATE);
}

bool GridWindow::ShowHeader(bool bShow)
{
    m_bHeadings = bShow;
    m_list.ShowHeader(bShow);
    return bShow ? m_header.Attach(m_list.Header()) : m_header.Detach();
}

// A second menu can't open over the first: its messages belong to that one.
LONG GridWindow::TrackMenu(ViewMenu menu, LONG nColumn)
{
    RECT place{};
    if (m_bInMenu || !HeadingPlace(m_list.Header(), nColumn, place))
        return 0;
    const auto pKeep = m_pSelf;
    m_bInMenu = true;
    const LONG nId = TrackMenuBelow(menu, m_hWnd, place, MenuEdge::Right);
    m_bInMenu = false;
    return nId;
}

// ---- messages of the window itself

LRESULT CALLBACK GridWindow::Procedure(HWND hWnd, UINT nMessage, WPARAM wParam, LPARAM lParam)
{
    auto* const pWindow = reinterpret_cast<GridWindow*>(GetWindowLongPtrW(hWnd, GWLP_USERDATA));
    if (!pWindow)
        return DefWindowProcW(hWnd, nMessage, wParam, lParam);
    const auto pKeep = pWindow->m_pSelf;
    LRESULT nResult = 0;
    GuardedEvent([&] { nResult = pWindow->OnMessage(nMessage, wParam, lParam); });
    return nResult;
}

LRESULT GridWindow::OnMessage(UINT nMessage, WPARAM wParam, LPARAM lParam)
{
    switch (nMessage) {
    case WM_SIZE:
        SetWindowPos(m_list.Window(), nullptr, 0, 0, GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam),
                     SWP_NOZORDER | SWP_NOACTIVATE);
        return 0;
    case WM_SETFOCUS:
        OnFocus();
        return 0;
    case WM_NOTIFY:
        return OnNotify(*reinterpret_cast<NMHDR*>(lParam));
    case WM_SETFONT:
    case WM_GETFONT:
        return SendMessageW(m_list.Window(), nMessage, wParam, lParam);
    case WM_THEMECHANGED:
    case WM_SYSCOLORCHANGE:
        OnLooksChange(nMessage, wParam, lParam);
        return 0;
    case WM_DESTROY:
        OnDestroy();
        return 0;
    case WM_NCDESTROY:
        SetWindowLongPtrW(m_hWnd, GWLP_USERDATA, 0);
        m_pSelf.reset();
        break;
    }
    return DefWindowProcW(m_hWnd, nMessage, wParam, lParam);
}

// A letter that is typed has the list search for a row; zero would be the first one.
LRESULT GridWindow::OnNotify(NMHDR& header)
{
    if (!m_pEvents || header.hwndFrom != m_list.Window())
        return 0;
    switch (header.code) {
    case LVN_ODCACHEHINT: {
        const auto& hint = reinterpret_cast<const NMLVCACHEHINT&>(header);
        if (hint.iFrom >= 0 && hint.iFrom <= hint.iTo)
            m_pEvents->OnRange(hint.iFrom, hint.iTo);
        return 0;
    }
    case LVN_GETDISPINFOW:
        OnDisplayInfo(reinterpret_cast<NMLVDISPINFOW&>(header).item);
        return 0;
    case NM_CUSTOMDRAW:
        return m_painter.OnCustomDraw(reinterpret_cast<const NMLVCUSTOMDRAW&>(header), *m_pEvents,
                                      m_bHeadings);
    case LVN_ITEMCHANGED:
    case LVN_ODSTATECHANGED:
        OnStateChange();
        return 0;
    case LVN_ODFINDITEMW:
        return -1;
    }
    return 0;
}

void GridWindow::OnDisplayInfo(LVITEMW& item)
{
    if ((item.mask & LVIF_TEXT) && item.pszText && item.cchTextMax > 0)
        m_pEvents->CellText(item.iItem, item.iSubItem, item.pszText, item.cchTextMax);
}

// A row without headings is wider than what the list draws anew by itself.
void GridWindow::OnStateChange()
{
    if (!m_bHeadings)
        m_list.Invalidate(true);
}

void GridWindow::OnLooksChange(UINT nMessage, WPARAM wParam, LPARAM lParam)
{
    if (nMessage == WM_SYSCOLORCHANGE)
        SendMessageW(m_list.Window(), nMessage, wParam, lParam);
    if (m_bHeadings)
        m_header.OpenTheme(m_list.Header());
    RedrawWindow(m_hWnd, nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_ALLCHILDREN);
}

// The focus may lie in the list already, when a dialog gives it to the grid once more.
void GridWindow::OnFocus()
{
    if (!IsChild(m_hWnd, GetFocus()))
        SetFocus(m_list.Window());
}

// The list forgets its rows one by one when it goes: a long one would take a minute.
void GridWindow::OnDestroy()
{
    m_list.SetRowCount(0);
    if (m_bInMenu)
        EndMenu();
    if (IGridEvents* const pEvents = std::exchange(m_pEvents, nullptr))
        pEvents->OnClose();
}

// ---- messages of the list

LRESULT CALLBACK GridWindow::ListProcedure(HWND hWnd, UINT nMessage, WPARAM wParam, LPARAM lParam)
{
    auto* const pWindow = OwnerOfProcedure<GridWindow>(hWnd);
    const auto pKeep = pWindow->m_pSelf;
    std::optional<LRESULT> nAnswer;
    GuardedEvent([&] { nAnswer = pWindow->OnListMessage(nMessage, wParam, lParam); });
    return nAnswer ? *nAnswer : CallWindowProcW(pWindow->m_pfnList, hWnd, nMessage, wParam, lParam);
}

std::optional<LRESULT> GridWindow::OnListMessage(UINT nMessage, WPARAM wParam, LPARAM lParam)
{
    switch (nMessage) {
    case WM_SETFOCUS:
    case WM_KILLFOCUS:
        OnListFocus(nMessage == WM_SETFOCUS);
        return {};
    case WM_PAINT:
        return OnPaint();
    case WM_PRINTCLIENT:
        return m_list.CanDraw() ? std::nullopt : std::optional<LRESULT>(0);
    case LVM_SETITEMCOUNT:
        return OnRowCount(wParam, lParam);
    case WM_DRAWITEM: {
        const auto& item = *reinterpret_cast<const DRAWITEMSTRUCT*>(lParam);
        if (item.hwndItem != m_list.Header())
            return {};
        m_header.DrawCell(item);
        return TRUE;
    }
    default:
        return m_bHeadings ? std::nullopt : OnLineMessage(nMessage, wParam, lParam);
    }
}

// Some systems refuse more rows than this; others take any number.
LRESULT GridWindow::OnRowCount(WPARAM nRows, LPARAM nFlags)
{
    constexpr WPARAM kSafeCount = 100'000'000;
    const auto set = [this, nFlags](WPARAM n) {
        return CallWindowProcW(m_pfnList, m_list.Window(), LVM_SETITEMCOUNT, n, nFlags);
    };
    const LRESULT nDone = set(nRows);
    return nDone || nRows <= kSafeCount ? nDone : set(kSafeCount);
}

// With headings the list paints by itself, and has its own bitmap.
std::optional<LRESULT> GridWindow::OnPaint()
{
    if (!m_list.CanDraw())
        m_painter.PaintEmpty();
    else if (!m_bHeadings)
        m_painter.PaintBuffered();
    else
        return {};
    return 0;
}

// Without headings: rows are drawn into a bitmap, which has a background, and are chosen across
// the whole list.
std::optional<LRESULT> GridWindow::OnLineMessage(UINT nMessage, WPARAM wParam, LPARAM lParam)
{
    switch (nMessage) {
    case WM_ERASEBKGND:
        if (WindowFromDC(reinterpret_cast<HDC>(wParam)) == m_list.Window())
            return TRUE;
        return {};
    case WM_LBUTTONDOWN:
    case WM_RBUTTONDOWN:
        SetFocus(m_list.Window());
        [[fallthrough]];
    case WM_LBUTTONUP:
    case WM_RBUTTONUP:
        if (ChooseRowAt(GET_Y_LPARAM(lParam)))
            return 0;
        return {};
    default:
        return {};
    }
}

bool GridWindow::ChooseRowAt(LONG nTop)
{
    const LONG nRow = m_list.RowAt(nTop);
    if (nRow >= 0)
        m_list.ChooseRow(nRow);
    return nRow >= 0;
}

// The selected row has another colour then.
void GridWindow::OnListFocus(bool bFocused)
{
    m_painter.SetFocused(bFocused);
    m_list.Invalidate(true);
}

// The menu that is opened meanwhile dispatches messages, and one of them may end the window.
void GridWindow::OnHeaderPress(LONG nColumn)
{
    const auto pKeep = m_pSelf;
    if (m_pEvents)
        m_pEvents->OnHeaderPress(nColumn);
    m_header.Release();
}

} // namespace Hesperon::specifics::UILayer
