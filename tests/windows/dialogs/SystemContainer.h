// The system's own container of controls, which a host uses by two calls: one makes a control in a
// window of the host's, the other gives the control of a window. The window ends the control.
#pragma once

#include "platform/com_ptr.h"

class SystemContainer
{
public:
    // Its window classes may be there already; it is the making of a control that shows.
    SystemContainer() : m_hModule(LoadLibraryW(L"atl.dll"))
    {
        Entry<BOOL WINAPI()>("AtlAxWinInit")();
    }
    ~SystemContainer() { FreeLibrary(m_hModule); }
    SystemContainer(const SystemContainer&) = delete;
    SystemContainer& operator=(const SystemContainer&) = delete;

    HRESULT Create(const wchar_t* pszName, HWND hWnd, com_ptr<IUnknown>& pContainer) const
    {
        using Function = HRESULT WINAPI(LPCOLESTR, HWND, IStream*, IUnknown**);
        return Entry<Function>("AtlAxCreateControl")(pszName, hWnd, nullptr, pContainer.put());
    }
    HRESULT Control(HWND hWnd, com_ptr<IUnknown>& pControl) const
    {
        using Function = HRESULT WINAPI(HWND, IUnknown**);
        return Entry<Function>("AtlAxGetControl")(hWnd, pControl.put());
    }

private:
    template <class Function>
    Function* Entry(const char* pszName) const
    {
        return reinterpret_cast<Function*>(
            reinterpret_cast<void*>(GetProcAddress(m_hModule, pszName)));
    }

    const HMODULE m_hModule;
};
