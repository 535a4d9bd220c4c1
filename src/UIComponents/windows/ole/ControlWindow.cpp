#include "src/UIComponents/windows/ole/ControlWindow.h"

#include <commctrl.h>

namespace Hesperon::specifics::UILayer {

namespace {

constexpr UINT_PTR kWatch = 1;

// The windows watched have numbers of their own below this.
UINT CloseMessage()
{
    static const UINT nMessage = RegisterWindowMessageW(L"TabulexCloseControl");
    return nMessage;
}

// The part of a window that is seen, from its own corner; null for all of it. Containers that
// don't clip give a rectangle that is larger, or empty.
HRGN RegionOf(const RECT& rect, const RECT& clip)
{
    RECT visible{};
    if (!IntersectRect(&visible, &rect, &clip) || EqualRect(&visible, &rect))
        return nullptr;
    OffsetRect(&visible, -rect.left, -rect.top);
    return CreateRectRgnIndirect(&visible);
}

} // namespace

// Not every version of the subclassing refuses a window that has gone while it was made.
bool ControlWindow::Watch(HWND hWnd)
{
    if (!IsWindow(hWnd) || !SetWindowSubclass(hWnd, &ControlWindow::OnMessage, kWatch,
                                              reinterpret_cast<DWORD_PTR>(this))) {
        DestroyWindow(hWnd);
        return false;
    }
    m_hWnd = hWnd;
    m_bClipped = false;
    m_control.HoldControl();
    return true;
}

void ControlWindow::Destroy()
{
    if (const HWND hWnd = m_hWnd)
        DestroyWindow(hWnd);
}

void ControlWindow::Move(const RECT& rect, const RECT& clip)
{
    const HWND hWnd = m_hWnd;
    if (!hWnd)
        return;
    SetWindowPos(hWnd, nullptr, rect.left, rect.top, rect.right - rect.left, rect.bottom - rect.top,
                 SWP_NOZORDER | SWP_NOACTIVATE);
    if (const HRGN hRegion = RegionOf(rect, clip); hRegion || m_bClipped) {
        m_bClipped = hRegion != nullptr;
        SetWindowRgn(hWnd, hRegion, TRUE); // the system's from now on
    }
}

void ControlWindow::TakeFocus()
{
    const HWND hWnd = m_hWnd;
    const HWND hFocus = GetFocus();
    if (hWnd && hFocus != hWnd && !IsChild(hWnd, hFocus))
        SetFocus(hWnd);
}

void ControlWindow::CloseSoon(HWND hWnd)
{
    PostMessageW(hWnd, CloseMessage(), 0, 0);
}

LRESULT CALLBACK ControlWindow::OnMessage(HWND hWnd, UINT nMessage, WPARAM wParam, LPARAM lParam,
                                          UINT_PTR nWatch, DWORD_PTR pThis)
{
    auto* pWindow = reinterpret_cast<ControlWindow*>(pThis);
    if (nMessage == CloseMessage()) {
        DestroyWindow(hWnd);
        return 0;
    }
    if (nMessage == WM_MOUSEACTIVATE)
        pWindow->m_control.OnMousePress();
    if (nMessage != WM_NCDESTROY)
        return DefSubclassProc(hWnd, nMessage, wParam, lParam);
    RemoveWindowSubclass(hWnd, &ControlWindow::OnMessage, nWatch);
    const LRESULT nResult = DefSubclassProc(hWnd, nMessage, wParam, lParam);
    pWindow->OnDestroyed();
    return nResult;
}

// This object goes with the control.
void ControlWindow::OnDestroyed()
{
    m_hWnd = nullptr;
    m_control.OnWindowGone();
    m_control.ReleaseControl();
}

} // namespace Hesperon::specifics::UILayer
