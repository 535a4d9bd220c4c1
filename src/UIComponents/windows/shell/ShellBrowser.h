// ShellBrowser: what the shell's view of a folder asks its host. It has no toolbar, menu or status
// line to lend; it says which things are listed, and hears of selections and of double clicks.
//
// The view holds a reference, perhaps longer than its window lives. After Disconnect nothing is
// told any more.
//
// Used on the thread of the window.
#pragma once

#include "module/ComObject.h"

#include <shlobj.h>

template <>
inline constexpr GUID iid_of<IShellBrowser> = {
    0x000214E2, 0x0000, 0x0000, {0xC0, 0, 0, 0, 0, 0, 0, 0x46}};
template <>
inline constexpr GUID iid_of<ICommDlgBrowser> = {
    0x000214F1, 0x0000, 0x0000, {0xC0, 0, 0, 0, 0, 0, 0, 0x46}};

namespace Hesperon::specifics::UILayer {

// None of these may end the view before it returns.
struct IShellBrowserEvents
{
    virtual bool Includes(PCUITEMID_CHILD pChild) = 0; // of the folder that is shown
    virtual void OnSelectionChange() = 0;              // by whomever; it may be the same again
    virtual void OnDefaultAction() = 0;                // a double click on what is selected

protected:
    ~IShellBrowserEvents() = default;
};

class ShellBrowser final : public ComObject<ShellBrowser, IShellBrowser, ICommDlgBrowser>
{
public:
    // The window that the view lies in, and who is told.
    void Connect(HWND hHost, IShellBrowserEvents& events)
    {
        m_hHost = hHost;
        m_pEvents = &events;
    }
    void Disconnect() { m_pEvents = nullptr; }

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID riid, void** ppv) override;

    // ---- IOleWindow

    HRESULT STDMETHODCALLTYPE GetWindow(HWND* phWnd) override;
    HRESULT STDMETHODCALLTYPE ContextSensitiveHelp(BOOL) override { return E_NOTIMPL; }

    // ---- IShellBrowser

    HRESULT STDMETHODCALLTYPE InsertMenusSB(HMENU, LPOLEMENUGROUPWIDTHS) override
    {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE SetMenuSB(HMENU, HOLEMENU, HWND) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE RemoveMenusSB(HMENU) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE SetStatusTextSB(LPCOLESTR) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE EnableModelessSB(BOOL) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE TranslateAcceleratorSB(MSG*, WORD) override { return S_FALSE; }
    HRESULT STDMETHODCALLTYPE BrowseObject(PCUIDLIST_RELATIVE, UINT) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetViewStateStream(DWORD, IStream** ppStream) override;
    HRESULT STDMETHODCALLTYPE GetControlWindow(UINT, HWND* phWnd) override;
    HRESULT STDMETHODCALLTYPE SendControlMsg(UINT, UINT, WPARAM, LPARAM, LRESULT*) override
    {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE QueryActiveShellView(IShellView** ppView) override;
    HRESULT STDMETHODCALLTYPE OnViewWindowActive(IShellView*) override { return S_OK; }
    HRESULT STDMETHODCALLTYPE SetToolbarItems(LPTBBUTTONSB, UINT, UINT) override
    {
        return E_NOTIMPL;
    }

    // ---- ICommDlgBrowser

    // Always S_OK, so that the shell starts no program.
    HRESULT STDMETHODCALLTYPE OnDefaultCommand(IShellView*) override;
    HRESULT STDMETHODCALLTYPE OnStateChange(IShellView*, ULONG nChange) override;
    // S_OK lists the thing, S_FALSE hides it.
    HRESULT STDMETHODCALLTYPE IncludeObject(IShellView*, PCUITEMID_CHILD pChild) override;

private:
    HWND m_hHost = nullptr;
    IShellBrowserEvents* m_pEvents = nullptr; // null when disconnected
};

} // namespace Hesperon::specifics::UILayer
