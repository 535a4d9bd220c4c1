// A library of the host's that gives each new thread of the process the German locale.

#include <windows.h>

BOOL WINAPI DllMain(HINSTANCE, DWORD nReason, LPVOID)
{
    if (nReason == DLL_THREAD_ATTACH)
        SetThreadLocale(MAKELCID(MAKELANGID(LANG_GERMAN, SUBLANG_GERMAN), SORT_DEFAULT));
    return TRUE;
}
