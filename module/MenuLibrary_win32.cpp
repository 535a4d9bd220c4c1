#include "module/MenuLibrary.h"

#include <utility>

#include "module/MenuLibrary_win32.h"
#include "platform/Module_win32.h"

namespace {

HMODULE g_hLibrary = nullptr; // changes only while this module is loaded or unloaded

void Call(const char* pszEntry, LONG nValue)
{
    using Entry = void(WINAPI*)(LONG);
    if (!g_hLibrary)
        return;
    if (const FARPROC pfnEntry = GetProcAddress(g_hLibrary, pszEntry))
        reinterpret_cast<Entry>(reinterpret_cast<void*>(pfnEntry))(nValue);
}

} // namespace

void MenuLibrary::Load(HMODULE hModule)
{
    g_hLibrary = LoadLibraryW(PathBeside(hModule, L"Kelmstyle.dll").c_str());
}

void MenuLibrary::Free()
{
    if (g_hLibrary)
        FreeLibrary(std::exchange(g_hLibrary, nullptr));
}

void MenuLibrary::EnableKelmstyle(LONG nStyle)
{
    Call("EnableKelmstyle", nStyle);
}

void MenuLibrary::SetMenuEffect(LONG nEffect)
{
    Call("SetMenuEffect", nEffect);
}
