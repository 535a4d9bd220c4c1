#include "module/MenuLibrary.h"

#include <utility>

#include "module/MenuLibrary_win32.h"
#include "platform/Module_win32.h"

namespace {

HMODULE g_hLibrary = nullptr; // changes only while this module is loaded or unloaded

// What the library lacks gives Result's empty value.
template <class Result, class... Args>
Result Call(const char* pszEntry, Args... args)
{
    using Entry = Result(WINAPI*)(Args...);
    const FARPROC pfnEntry = g_hLibrary ? GetProcAddress(g_hLibrary, pszEntry) : nullptr;
    if (!pfnEntry)
        return Result();
    return reinterpret_cast<Entry>(reinterpret_cast<void*>(pfnEntry))(args...);
}

// A file that is damaged fails like one that isn't there, without a box of the system's.
HMODULE LoadQuietly(const string_t& path)
{
    DWORD nMode = 0;
    SetThreadErrorMode(GetThreadErrorMode() | SEM_FAILCRITICALERRORS, &nMode);
    const HMODULE hLibrary = LoadLibraryW(path.c_str());
    SetThreadErrorMode(nMode, nullptr);
    return hLibrary;
}

} // namespace

void MenuLibrary::Load(HMODULE hModule)
{
    g_hLibrary = LoadQuietly(PathBeside(hModule, L"Kelmstyle.dll"));
}

void MenuLibrary::Free()
{
    if (g_hLibrary)
        FreeLibrary(std::exchange(g_hLibrary, nullptr));
}

void MenuLibrary::EnableKelmstyle(LONG nStyle)
{
    Call<void>("EnableKelmstyle", nStyle);
}

void MenuLibrary::SetMenuEffect(LONG nEffect)
{
    Call<void>("SetMenuEffect", nEffect);
}

void MenuLibrary::SetFlatMenu(HWND hWnd)
{
    Call<void>("SetFlatMenu", hWnd);
}

LONG MenuLibrary::SelectImageLoaderId(LONG nLoader)
{
    return Call<LONG>("SelectImageLoaderId", nLoader);
}

HIMAGELIST MenuLibrary::LoadImagesFromToolbar(UINT nToolbar, HINSTANCE hModule)
{
    return Call<HIMAGELIST>("LoadImagesFromToolbar", nToolbar, hModule);
}
