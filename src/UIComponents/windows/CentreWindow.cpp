#include "src/UIComponents/windows/CentreWindow.h"

#include <algorithm>

namespace Hesperon::specifics::UILayer {

namespace {

// Of the monitor on which most of a window lies; of the primary one for null.
RECT WorkArea(HWND hWnd)
{
    MONITORINFO info{};
    info.cbSize = sizeof(info);
    GetMonitorInfoW(MonitorFromWindow(hWnd, MONITOR_DEFAULTTOPRIMARY), &info);
    return info.rcWork;
}

// Where nSize has its middle in that of [nFrom, nTo), pulled into the area; the upper end wins.
LONG Middle(LONG nFrom, LONG nTo, LONG nSize, LONG nAreaFrom, LONG nAreaTo)
{
    return std::max(nAreaFrom, std::min((nFrom + nTo - nSize) / 2, nAreaTo - nSize));
}

} // namespace

void CentreWindow(HWND hWnd, HWND hOwner)
{
    const RECT area = WorkArea(hOwner);
    RECT owner = area;
    RECT own{};
    if (hOwner && IsWindowVisible(hOwner) && !IsIconic(hOwner))
        GetWindowRect(hOwner, &owner);
    GetWindowRect(hWnd, &own);
    SetWindowPos(hWnd, nullptr,
                 Middle(owner.left, owner.right, own.right - own.left, area.left, area.right),
                 Middle(owner.top, owner.bottom, own.bottom - own.top, area.top, area.bottom), 0, 0,
                 SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
}

} // namespace Hesperon::specifics::UILayer
