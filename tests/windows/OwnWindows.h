// The component's windows of this process, as the system knows them.
#pragma once

#include <vector>

#include <windows.h>

// The search starts again if a window of another program was destroyed during it.
inline std::vector<HWND> OwnMessageWindows()
{
    std::vector<HWND> own;
    HWND hWnd = nullptr;
    for (;;) {
        const HWND hBefore = hWnd;
        hWnd = FindWindowExW(HWND_MESSAGE, hBefore, L"TabulexMessageWindow", nullptr);
        if (hWnd) {
            DWORD nProcess = 0;
            GetWindowThreadProcessId(hWnd, &nProcess);
            if (nProcess == GetCurrentProcessId())
                own.push_back(hWnd);
        } else if (hBefore && !IsWindow(hBefore)) {
            own.clear();
        } else {
            return own;
        }
    }
}
