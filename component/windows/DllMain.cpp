// The library's entries that only a Windows host calls.

#include "component/windows/Registration.h"

namespace {

HMODULE g_hModule = nullptr;
HMODULE g_hMenuLibrary = nullptr; // closed, adds looks only; null where it is absent

// It lies beside this library.
HMODULE LoadMenuLibrary(HMODULE hModule)
{
    OLECHAR path[MAX_PATH];
    const DWORD nUnits = GetModuleFileNameW(hModule, path, MAX_PATH);
    if (nUnits == 0 || nUnits == MAX_PATH)
        return nullptr;
    string_t name(path, nUnits);
    name.resize(name.rfind(L'\\') + 1);
    return LoadLibraryW((name + L"Kelmstyle.dll").c_str());
}

} // namespace

// Each thread that enters is switched to the system's default locale, whatever the host
// has set.
BOOL WINAPI DllMain(HINSTANCE hInstance, DWORD nReason, LPVOID)
{
    switch (nReason) {
    case DLL_PROCESS_ATTACH:
        g_hModule = hInstance;
        g_hMenuLibrary = LoadMenuLibrary(hInstance);
        SetThreadLocale(LOCALE_SYSTEM_DEFAULT);
        break;
    case DLL_THREAD_ATTACH:
        SetThreadLocale(LOCALE_SYSTEM_DEFAULT);
        break;
    case DLL_PROCESS_DETACH:
        if (g_hMenuLibrary)
            FreeLibrary(g_hMenuLibrary);
        break;
    }
    return TRUE;
}

STDAPI DllRegisterServer()
{
    return RegisterComponent(g_hModule);
}

STDAPI DllUnregisterServer()
{
    return UnregisterComponent(g_hModule);
}
