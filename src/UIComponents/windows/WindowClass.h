// WindowClass: a class of windows of this module.
//
//   static const WindowClass windowClass(L"TabulexThing", &Procedure);
//   if (windowClass) ...
//
// A static one is unregistered when the module goes. Otherwise windows of a module that is loaded
// again would run the code of the unloaded one. The class is known to this module alone, so
// another library may have one of the same name.
#pragma once

#include "platform/Module_win32.h"

namespace Hesperon::specifics::UILayer {

class WindowClass
{
public:
    // The name must outlive this object.
    WindowClass(const wchar_t* pszName, WNDPROC pfnProcedure) : m_pszName(pszName)
    {
        WNDCLASSEXW info{};
        info.cbSize = sizeof info;
        info.lpfnWndProc = pfnProcedure;
        info.hInstance = ThisModule();
        info.hCursor = LoadCursorW(nullptr, reinterpret_cast<LPCWSTR>(IDC_ARROW));
        info.lpszClassName = pszName;
        m_bRegistered = RegisterClassExW(&info) != 0;
    }
    ~WindowClass()
    {
        if (m_bRegistered)
            UnregisterClassW(m_pszName, ThisModule());
    }
    WindowClass(const WindowClass&) = delete;
    WindowClass& operator=(const WindowClass&) = delete;

    explicit operator bool() const { return m_bRegistered; }

private:
    const wchar_t* const m_pszName;
    bool m_bRegistered;
};

} // namespace Hesperon::specifics::UILayer
