#include "tests/windows/dialogs/Pictures.h"

#include <filesystem>
#include <fstream>
#include <vector>

#include "platform/component.h"

namespace {

constexpr WORD kBitsPerPixel = 24;
constexpr wchar_t kMenuClass[] = L"#32768";

struct ScreenCopy
{
    BITMAPINFOHEADER header{};
    std::vector<char> pixels;
};

bool CopyScreen(const RECT& rect, ScreenCopy& copy)
{
    const LONG nWidth = rect.right - rect.left;
    const LONG nHeight = rect.bottom - rect.top;
    const LONG nPitch = (nWidth * 3 + 3) & ~3;
    copy.header.biSize = sizeof(copy.header);
    copy.header.biWidth = nWidth;
    copy.header.biHeight = nHeight;
    copy.header.biPlanes = 1;
    copy.header.biBitCount = kBitsPerPixel;
    copy.header.biSizeImage = static_cast<DWORD>(nPitch * nHeight);
    const HDC hScreen = GetDC(nullptr);
    const HDC hMemory = CreateCompatibleDC(hScreen);
    void* pBits = nullptr;
    const HBITMAP hBitmap =
        CreateDIBSection(hMemory, reinterpret_cast<const BITMAPINFO*>(&copy.header), DIB_RGB_COLORS,
                         &pBits, nullptr, 0);
    bool bDone = false;
    if (hBitmap) {
        const HGDIOBJ hBefore = SelectObject(hMemory, hBitmap);
        bDone = BitBlt(hMemory, 0, 0, nWidth, nHeight, hScreen, rect.left, rect.top, SRCCOPY);
        GdiFlush();
        copy.pixels.assign(static_cast<const char*>(pBits),
                           static_cast<const char*>(pBits) + copy.header.biSizeImage);
        SelectObject(hMemory, hBefore);
        DeleteObject(hBitmap);
    }
    DeleteDC(hMemory);
    ReleaseDC(nullptr, hScreen);
    return bDone;
}

bool WriteBitmap(const ScreenCopy& copy, const std::wstring& sName)
{
    BITMAPFILEHEADER head{};
    head.bfType = 0x4D42; // "BM"
    head.bfOffBits = sizeof(head) + sizeof(copy.header);
    head.bfSize = head.bfOffBits + copy.header.biSizeImage;
    std::ofstream out(std::filesystem::path(PICTURES) / (sName + L".bmp"), std::ios::binary);
    out.write(reinterpret_cast<const char*>(&head), sizeof(head));
    out.write(reinterpret_cast<const char*>(&copy.header), sizeof(copy.header));
    out.write(copy.pixels.data(), static_cast<std::streamsize>(copy.pixels.size()));
    return out.good();
}

} // namespace

// Without one the driver of the display makes bitmaps, but shows nothing: the screen stays
// black, also where a window of another colour lies.
bool HasScreen()
{
    HKEY hKey = nullptr;
    wchar_t szDriver[32] = L"";
    DWORD nBytes = sizeof(szDriver);
    if (RegOpenKeyExW(HKEY_CURRENT_USER, L"Software\\Wine\\Drivers", 0, KEY_READ, &hKey) != 0)
        return true;
    RegQueryValueExW(hKey, L"Graphics", nullptr, nullptr, reinterpret_cast<BYTE*>(szDriver),
                     &nBytes);
    RegCloseKey(hKey);
    return lstrcmpiW(szDriver, L"null") != 0;
}

bool TakePicture(HWND hWnd, const std::wstring& sName)
{
    RECT rect{};
    ScreenCopy copy;
    if (!GetWindowRect(hWnd, &rect))
        return false;
    for (HWND h = FindWindowExW(nullptr, nullptr, kMenuClass, nullptr); h;
         h = FindWindowExW(nullptr, h, kMenuClass, nullptr)) {
        RECT menu{};
        if (IsWindowVisible(h) && GetWindowRect(h, &menu))
            UnionRect(&rect, &rect, &menu);
    }
    return CopyScreen(rect, copy) && WriteBitmap(copy, sName);
}
