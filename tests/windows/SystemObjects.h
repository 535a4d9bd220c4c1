// The objects of the system that this process holds for drawing and for its windows, to be
// compared before and after.
//
// The system counts them. Wine gives 0, but takes the low half of an object's handle for the
// whole, so there each one can be tried.
#pragma once

#include "platform/component.h"

namespace system_objects {

template <class IsObject>
unsigned CountHandles(IsObject isObject)
{
    constexpr ULONG_PTR kHandles = 0x10000;
    unsigned n = 0;
    for (ULONG_PTR nHandle = 1; nHandle < kHandles; ++nHandle)
        n += isObject(nHandle);
    return n;
}

inline BOOL CALLBACK CountOne(HWND, LPARAM lParam)
{
    ++*reinterpret_cast<unsigned*>(lParam);
    return TRUE;
}

} // namespace system_objects

// Fonts, brushes, bitmaps, device contexts.
inline unsigned CountGdiObjects()
{
    if (const DWORD nCounted = GetGuiResources(GetCurrentProcess(), GR_GDIOBJECTS))
        return nCounted;
    return system_objects::CountHandles(
        [](ULONG_PTR n) { return GetObjectType(reinterpret_cast<HGDIOBJ>(n)) != 0; });
}

// Menus and windows: where the system doesn't count them, menus.
inline unsigned CountUserObjects()
{
    if (const DWORD nCounted = GetGuiResources(GetCurrentProcess(), GR_USEROBJECTS))
        return nCounted;
    return system_objects::CountHandles(
        [](ULONG_PTR n) { return IsMenu(reinterpret_cast<HMENU>(n)) != 0; });
}

// Of the calling thread, children included.
inline unsigned CountWindows()
{
    unsigned n = 0;
    EnumThreadWindows(
        GetCurrentThreadId(),
        [](HWND hWnd, LPARAM lParam) -> BOOL {
            EnumChildWindows(hWnd, &system_objects::CountOne, lParam);
            return system_objects::CountOne(hWnd, lParam);
        },
        reinterpret_cast<LPARAM>(&n));
    return n;
}
