#include "src/UIComponents/windows/ResizableFrame.h"

namespace Hesperon::specifics::UILayer {

namespace {

// The system's own, as a child in the corner. What lies behind it shows through, as the system
// draws the lines of the grip alone.
HWND MakeGrip(HWND hDialog, const RECT& client)
{
    const int nWidth = GetSystemMetrics(SM_CXVSCROLL);
    const int nHeight = GetSystemMetrics(SM_CYHSCROLL);
    return CreateWindowExW(WS_EX_TRANSPARENT, L"SCROLLBAR", nullptr,
                           WS_CHILD | WS_VISIBLE | SBS_SIZEGRIP, client.right - nWidth,
                           client.bottom - nHeight, nWidth, nHeight, hDialog, nullptr, nullptr,
                           nullptr);
}

bool IsButton(HWND hWnd)
{
    wchar_t szClass[16] = L"";
    GetClassNameW(hWnd, szClass, 16);
    return lstrcmpiW(szClass, L"BUTTON") == 0;
}

} // namespace

void ResizableFrame::Attach(HWND hDialog)
{
    if (!(GetWindowLongW(hDialog, GWL_STYLE) & WS_THICKFRAME))
        return;
    m_hDialog = hDialog;
    RECT client{};
    RECT window{};
    GetClientRect(hDialog, &client);
    GetWindowRect(hDialog, &window);
    m_least = {window.right - window.left, window.bottom - window.top};
    const HWND hGrip = MakeGrip(hDialog, client);
    for (HWND h = GetWindow(hDialog, GW_CHILD); h; h = GetWindow(h, GW_HWNDNEXT)) {
        if (h != hGrip && !IsButton(h))
            continue;
        RECT rect{};
        GetWindowRect(h, &rect);
        MapWindowPoints(nullptr, hDialog, reinterpret_cast<POINT*>(&rect), 2);
        m_followers.push_back({h, {client.right - rect.left, client.bottom - rect.top}});
    }
}

void ResizableFrame::Follow()
{
    RECT client{};
    GetClientRect(m_hDialog, &client);
    for (const Follower& follower : m_followers)
        SetWindowPos(follower.hWnd, nullptr, client.right - follower.distance.cx,
                     client.bottom - follower.distance.cy, 0, 0,
                     SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
}

void ResizableFrame::Limit(MINMAXINFO& limits) const
{
    if (m_hDialog)
        limits.ptMinTrackSize = m_least;
}

} // namespace Hesperon::specifics::UILayer
