#include "src/UIComponents/windows/ole/ContainedWindow.h"

#include <utility>

namespace Hesperon::specifics::UILayer {

namespace {

// A window's user data is its class's, so the object is kept beside it.
constexpr wchar_t kObject[] = L"TabulexContainedWindow";

HRESULT LastError()
{
    const DWORD nError = GetLastError();
    return nError ? HRESULT_FROM_WIN32(nError) : E_FAIL;
}

WNDPROC AsProcedure(ULONGLONG pfn)
{
    return reinterpret_cast<WNDPROC>(static_cast<std::uintptr_t>(pfn));
}

} // namespace

ContainedWindow::ContainedWindow(const ContainedWindowArguments& arguments)
    : m_pfnSuper(AsProcedure(arguments.pfnSuper))
{}

HRESULT ContainedWindow::Make(HWND hParent, const ContainedWindowArguments& arguments,
                              std::shared_ptr<ContainedWindow>& result)
{
    const std::shared_ptr<ContainedWindow> pWindow(new ContainedWindow(arguments));
    HRESULT hr = pWindow->MakeWindow(hParent, arguments);
    if (SUCCEEDED(hr))
        hr = pWindow->Subclass();
    if (SUCCEEDED(hr))
        result = pWindow;
    return hr;
}

// The controls' version is the host's: a procedure of one version doesn't fit a window of
// another.
HRESULT ContainedWindow::MakeWindow(HWND hParent, const ContainedWindowArguments& arguments)
{
    const DWORD nStyle = (arguments.nStyle & ~static_cast<DWORD>(WS_POPUP)) | WS_CHILD;
    RECT area{};
    GetClientRect(hParent, &area);
    SetLastError(0);
    m_hWnd = CreateWindowExW(
        arguments.nExStyle, arguments.sClassName.c_str(), arguments.sWindowName.c_str(), nStyle, 0,
        0, area.right, area.bottom, hParent, nullptr, GetModuleHandleW(nullptr),
        reinterpret_cast<void*>(static_cast<std::uintptr_t>(arguments.lParam)));
    return m_hWnd ? S_OK : LastError();
}

HRESULT ContainedWindow::Subclass()
{
    SetLastError(0);
    if (SetPropW(m_hWnd, kObject, this) &&
        SetWindowLongPtrW(m_hWnd, GWLP_WNDPROC,
                          reinterpret_cast<LONG_PTR>(&ContainedWindow::Procedure)))
        return S_OK;
    const HRESULT hr = LastError();
    RemovePropW(m_hWnd, kObject);
    DestroyWindow(std::exchange(m_hWnd, nullptr));
    return hr;
}

void ContainedWindow::Destroy()
{
    if (m_hWnd)
        DestroyWindow(m_hWnd);
}

LRESULT ContainedWindow::Pass(const MSG& message) const
{
    return CallWindowProcW(m_pfnSuper, m_hWnd, message.message, message.wParam, message.lParam);
}

const MSG& ContainedWindow::Current() const
{
    static const MSG none{};
    return m_pCurrent ? *m_pCurrent : none;
}

// The procedure gets the window's last message too; only then has the window gone.
LRESULT ContainedWindow::OnMessage(const MSG& message)
{
    const MSG* const pOuter = std::exchange(m_pCurrent, &message);
    const LRESULT nResult = Pass(message);
    m_pCurrent = pOuter;
    if (message.message == WM_NCDESTROY) {
        RemovePropW(m_hWnd, kObject);
        m_hWnd = nullptr;
    }
    return nResult;
}

LRESULT CALLBACK ContainedWindow::Procedure(HWND hWnd, UINT nMessage, WPARAM wParam, LPARAM lParam)
{
    auto* pThis = static_cast<ContainedWindow*>(GetPropW(hWnd, kObject));
    if (!pThis)
        return DefWindowProcW(hWnd, nMessage, wParam, lParam);
    const std::shared_ptr<ContainedWindow> pSelf = pThis->weak_from_this().lock();
    MSG message{};
    message.hwnd = hWnd;
    message.message = nMessage;
    message.wParam = wParam;
    message.lParam = lParam;
    return pThis->OnMessage(message);
}

} // namespace Hesperon::specifics::UILayer
