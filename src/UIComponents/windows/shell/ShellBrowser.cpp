#include "src/UIComponents/windows/shell/ShellBrowser.h"

#include "module/Guarded.h"

namespace Hesperon::specifics::UILayer {

HRESULT ShellBrowser::QueryInterface(REFIID riid, void** ppv)
{
    // The window's interface is the browser's base, which ComObject doesn't list.
    const bool bWindow = riid == __uuidof(IOleWindow);
    return ComObject::QueryInterface(bWindow ? iid_of<IShellBrowser> : riid, ppv);
}

HRESULT ShellBrowser::GetWindow(HWND* phWnd)
{
    if (!phWnd)
        return E_POINTER;
    *phWnd = m_hHost;
    return S_OK;
}

HRESULT ShellBrowser::GetViewStateStream(DWORD, IStream** ppStream)
{
    if (ppStream)
        *ppStream = nullptr;
    return E_NOTIMPL;
}

HRESULT ShellBrowser::GetControlWindow(UINT, HWND* phWnd)
{
    if (phWnd)
        *phWnd = nullptr;
    return E_NOTIMPL;
}

HRESULT ShellBrowser::QueryActiveShellView(IShellView** ppView)
{
    if (ppView)
        *ppView = nullptr;
    return E_NOTIMPL;
}

HRESULT ShellBrowser::OnDefaultCommand(IShellView*)
{
    Guarded([&] {
        if (m_pEvents)
            m_pEvents->OnDefaultAction();
        return S_OK;
    });
    return S_OK;
}

HRESULT ShellBrowser::OnStateChange(IShellView*, ULONG nChange)
{
    if (nChange != CDBOSC_SELCHANGE)
        return S_OK;
    return Guarded([&] {
        if (m_pEvents)
            m_pEvents->OnSelectionChange();
        return S_OK;
    });
}

HRESULT ShellBrowser::IncludeObject(IShellView*, PCUITEMID_CHILD pChild)
{
    return Guarded([&] { return m_pEvents && m_pEvents->Includes(pChild) ? S_OK : S_FALSE; });
}

} // namespace Hesperon::specifics::UILayer
