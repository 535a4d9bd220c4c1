// Stands in for the menu library: remembers its calls, and has a toolbar class of its own that is
// the system's under another name.

#include <windows.h>

#include <commctrl.h>

namespace {

long g_nStyle = -1;
long g_nEffect = -1;
HWND g_hFlatMenu = nullptr;
long g_nLoader = 0;
long g_nLoaderAtLoad = -1;
long g_nToolbars = 0;

constexpr wchar_t kToolbarClass[] = L"KelmFlatToolbar";
WNDPROC g_pfnToolbar = nullptr;

LRESULT CALLBACK OnToolbar(HWND hWnd, UINT nMessage, WPARAM wParam, LPARAM lParam)
{
    if (nMessage == WM_NCCREATE)
        ++g_nToolbars;
    return CallWindowProcW(g_pfnToolbar, hWnd, nMessage, wParam, lParam);
}

void RegisterToolbar(HINSTANCE hModule)
{
    WNDCLASSEXW info{};
    info.cbSize = sizeof(info);
    if (!GetClassInfoExW(nullptr, TOOLBARCLASSNAMEW, &info))
        return;
    g_pfnToolbar = info.lpfnWndProc;
    info.lpfnWndProc = &OnToolbar;
    info.lpszClassName = kToolbarClass;
    info.hInstance = hModule;
    info.style |= CS_GLOBALCLASS;
    RegisterClassExW(&info);
}

} // namespace

BOOL WINAPI DllMain(HINSTANCE hModule, DWORD nReason, LPVOID)
{
    if (nReason == DLL_PROCESS_ATTACH)
        RegisterToolbar(hModule);
    else if (nReason == DLL_PROCESS_DETACH)
        UnregisterClassW(kToolbarClass, hModule);
    return TRUE;
}

extern "C" {

__declspec(dllexport) void EnableKelmstyle(long nStyle)
{
    g_nStyle = nStyle;
}

__declspec(dllexport) void SetMenuEffect(long nEffect)
{
    g_nEffect = nEffect;
}

__declspec(dllexport) void SetFlatMenu(HWND hWnd)
{
    g_hFlatMenu = hWnd;
}

__declspec(dllexport) long SelectImageLoaderId(long nLoader)
{
    const long nBefore = g_nLoader;
    g_nLoader = nLoader;
    return nBefore;
}

// Two images of a size that no bitmap of the component has.
__declspec(dllexport) HIMAGELIST LoadImagesFromToolbar(UINT nToolbar, HINSTANCE hModule)
{
    g_nLoaderAtLoad = g_nLoader;
    constexpr int nBitmap = 2; // the type
    if (!FindResourceW(hModule, MAKEINTRESOURCEW(nToolbar), MAKEINTRESOURCEW(nBitmap)))
        return nullptr;
    HIMAGELIST hImages = ImageList_Create(11, 12, ILC_COLOR32, 2, 0);
    ImageList_SetImageCount(hImages, 2);
    return hImages;
}

__declspec(dllexport) long LastStyle()
{
    return g_nStyle;
}

__declspec(dllexport) long LastEffect()
{
    return g_nEffect;
}

__declspec(dllexport) HWND LastFlatMenu()
{
    return g_hFlatMenu;
}

__declspec(dllexport) long CurrentLoader()
{
    return g_nLoader;
}

__declspec(dllexport) long LoaderAtLastLoad()
{
    return g_nLoaderAtLoad;
}

__declspec(dllexport) long ToolbarsMade()
{
    return g_nToolbars;
}
}
