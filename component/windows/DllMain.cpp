// The library's entries that only a Windows host calls.

#include "component/windows/Registration.h"
#include "module/MenuLibrary_win32.h"
#include "module/MessageLoops.h"
#include "platform/Module_win32.h"
#include "src/UIComponents/windows/SystemWindows.h"

// Each thread that enters is switched to the system's default locale, whatever the host
// has set.
BOOL WINAPI DllMain(HINSTANCE hInstance, DWORD nReason, LPVOID pAtProcessEnd)
{
    switch (nReason) {
    case DLL_PROCESS_ATTACH:
        MenuLibrary::Load(hInstance);
        SetThreadLocale(LOCALE_SYSTEM_DEFAULT);
        Hesperon::specifics::UILayer::UseSystemWindows();
        break;
    case DLL_THREAD_ATTACH:
        SetThreadLocale(LOCALE_SYSTEM_DEFAULT);
        break;
    case DLL_PROCESS_DETACH:
        if (!pAtProcessEnd) {
            MenuLibrary::Free();
            ForgetMessageLoop();
        }
        break;
    case DLL_THREAD_DETACH:
        ForgetMessageLoop();
        break;
    }
    return TRUE;
}

STDAPI DllRegisterServer()
{
    return RegisterComponent(ThisModule());
}

STDAPI DllUnregisterServer()
{
    return UnregisterComponent(ThisModule());
}
