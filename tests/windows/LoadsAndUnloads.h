// What may stay in a process when the component's library was loaded, used and unloaded again and
// again.
#pragma once

#include <gtest/gtest.h>

#include <windows.h>

#include "tests/front/ProcessCounts.h"

// What the system makes for a process when its first window is shown stays: libraries with objects
// of their own, and a thread.
inline void ShowFirstWindow()
{
    constexpr ULONGLONG kShown = 300; // milliseconds
    for (const wchar_t* pszLibrary : {L"comctl32.dll", L"uxtheme.dll", L"shell32.dll"})
        LoadLibraryW(pszLibrary);
    const HWND hWnd = CreateWindowExW(0, L"#32770", L"", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 0, 0,
                                      200, 100, nullptr, nullptr, nullptr, nullptr);
    const HWND hEdit = CreateWindowExW(0, L"EDIT", L"", WS_CHILD | WS_VISIBLE, 0, 0, 100, 20, hWnd,
                                       nullptr, nullptr, nullptr);
    SetForegroundWindow(hWnd);
    SetFocus(hEdit);
    for (const ULONGLONG nEnd = GetTickCount64() + kShown; GetTickCount64() < nEnd;) {
        MsgWaitForMultipleObjects(0, nullptr, FALSE, 10, QS_ALLINPUT);
        MSG message;
        while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE))
            DispatchMessageW(&message);
    }
    DestroyWindow(hWnd);
}

// Each load has a copy of the compiler's runtime, which keeps two semaphores for local statics and,
// as long as the host's thread lives, a record of it with two handles. The system makes a thread
// of its own for windows at one time or another, once, with up to four handles.
inline void ExpectNothingKept(const ProcessCounts& first, const ProcessCounts& last,
                              std::size_t nLoads)
{
    constexpr std::size_t kOfTheRuntime = 4;
    constexpr std::size_t kOfTheSystem = 4;
    EXPECT_LE(last.nThreads, first.nThreads + 1);
    EXPECT_LE(last.nHandles, first.nHandles + kOfTheRuntime * nLoads + kOfTheSystem);
}
