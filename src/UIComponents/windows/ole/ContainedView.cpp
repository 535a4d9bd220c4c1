#include "src/UIComponents/windows/ole/ContainedView.h"

#include <utility>

#include "src/UIComponents/windows/WindowClass.h"
#include "src/UIComponents/windows/ole/ControlWindows.h"

namespace Hesperon::specifics::UILayer {

namespace {

constexpr wchar_t kContainedViewClass[] = L"TabulexContainedControl";

} // namespace

// The window takes the view over with its first message, and ends it with its last.
ContainedView* ContainedView::Create(const InPlace& place, CQRLCommonCtrlContained& control)
{
    static const WindowClass windowClass(kContainedViewClass, &Procedure);
    if (!windowClass)
        return nullptr;
    std::unique_ptr<ContainedView> pOwner(new ContainedView(control));
    ContainedView* const pView = pOwner.get();
    const RECT& rect = place.rect;
    const HWND hWnd =
        CreateWindowExW(WS_EX_CONTROLPARENT, kContainedViewClass, nullptr,
                        WS_CHILD | WS_VISIBLE | WS_CLIPCHILDREN | WS_CLIPSIBLINGS, rect.left,
                        rect.top, rect.right - rect.left, rect.bottom - rect.top, place.hParent,
                        nullptr, ThisModule(), &pOwner);
    return hWnd ? pView : nullptr;
}

// ---- IContainedView

// What calls back while the window is made may have made another one, which goes; last, since its
// end may end this view.
HRESULT ContainedView::Make(const ContainedWindowArguments& arguments)
{
    std::shared_ptr<ContainedWindow> pContained;
    const HRESULT hr = ContainedWindow::Make(m_hWnd, arguments, pContained);
    if (FAILED(hr))
        return hr;
    if (const auto pOther = std::exchange(m_pContained, pContained))
        pOther->Destroy();
    return S_OK;
}

// It may be in the middle of a message, which holds it.
void ContainedView::Destroy()
{
    if (const std::shared_ptr<ContainedWindow> pContained = std::exchange(m_pContained, {}))
        pContained->Destroy();
}

ULONGLONG ContainedView::Contained()
{
    return m_pContained ? reinterpret_cast<std::uintptr_t>(m_pContained->Window()) : 0;
}

LONG_PTR ContainedView::PassCurrent()
{
    const std::shared_ptr<ContainedWindow> pContained = m_pContained;
    const MSG message = pContained->Current();
    return pContained->Pass(message);
}

LONG_PTR ContainedView::Pass(ULONGLONG pMessage)
{
    const std::shared_ptr<ContainedWindow> pContained = m_pContained;
    return pContained->Pass(*reinterpret_cast<const MSG*>(static_cast<std::uintptr_t>(pMessage)));
}

// ---- messages

void ContainedView::Fill(LONG nWidth, LONG nHeight)
{
    if (m_pContained && m_pContained->Window())
        SetWindowPos(m_pContained->Window(), nullptr, 0, 0, nWidth, nHeight,
                     SWP_NOZORDER | SWP_NOACTIVATE);
}

LRESULT ContainedView::OnMessage(UINT nMessage, WPARAM wParam, LPARAM lParam)
{
    switch (nMessage) {
    case WM_SIZE:
        Fill(LOWORD(lParam), HIWORD(lParam));
        return 0;
    case WM_SETFOCUS:
        if (m_pContained && m_pContained->Window())
            SetFocus(m_pContained->Window());
        return 0;
    case WM_ERASEBKGND: {
        RECT area{};
        GetClientRect(m_hWnd, &area);
        FillRect(reinterpret_cast<HDC>(wParam), &area, GetSysColorBrush(COLOR_BTNFACE));
        return 1;
    }
    case WM_DESTROY: // the contained window still takes part in its own end
        Destroy();
        m_control.Attach(nullptr);
        return 0;
    }
    return DefWindowProcW(m_hWnd, nMessage, wParam, lParam);
}

LRESULT CALLBACK ContainedView::Procedure(HWND hWnd, UINT nMessage, WPARAM wParam, LPARAM lParam)
{
    if (nMessage == WM_NCCREATE) {
        auto* pView = static_cast<std::unique_ptr<ContainedView>*>(
                          reinterpret_cast<const CREATESTRUCTW*>(lParam)->lpCreateParams)
                          ->release();
        pView->m_hWnd = hWnd;
        SetWindowLongPtrW(hWnd, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(pView));
    }
    auto* pView = reinterpret_cast<ContainedView*>(GetWindowLongPtrW(hWnd, GWLP_USERDATA));
    if (!pView)
        return DefWindowProcW(hWnd, nMessage, wParam, lParam);
    const LRESULT nResult = pView->OnMessage(nMessage, wParam, lParam);
    if (nMessage == WM_NCDESTROY) {
        SetWindowLongPtrW(hWnd, GWLP_USERDATA, 0);
        delete pView;
    }
    return nResult;
}

// The contained window may end this one while it is made, and the view with it.
HWND MakeControlWindow(CQRLCommonCtrlContained& control, const InPlace& place)
{
    ContainedView* pView = ContainedView::Create(place, control);
    if (!pView)
        return nullptr;
    const HWND hWnd = pView->Window();
    control.Attach(pView);
    return hWnd;
}

} // namespace Hesperon::specifics::UILayer
