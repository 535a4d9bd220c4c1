#include "tests/windows/dialogs/ModalDriver.h"

#include <algorithm>
#include <cstdio>
#include <memory>

namespace {

ModalDriver* g_pDriver = nullptr;
constexpr UINT_PTR kStepTimer = 0x7D17;
constexpr UINT kStepMilliseconds = 10;

std::wstring ClassOf(HWND hWnd)
{
    wchar_t szClass[64] = L"";
    GetClassNameW(hWnd, szClass, 64);
    return szClass;
}

std::string Narrow(const wchar_t* psz)
{
    char sz[256] = "";
    WideCharToMultiByte(CP_UTF8, 0, psz, -1, sz, sizeof sz, nullptr, nullptr);
    return sz;
}

// The text as the system keeps it: asking the window would wait for a thread that hangs.
BOOL CALLBACK PrintWindow(HWND hWnd, LPARAM)
{
    wchar_t szText[64] = L"";
    InternalGetWindowText(hWnd, szText, 64);
    std::fprintf(stderr, "  window %p of class %s, %s, \"%s\"\n", static_cast<void*>(hWnd),
                 Narrow(ClassOf(hWnd).c_str()).c_str(), IsWindowVisible(hWnd) ? "shown" : "hidden",
                 Narrow(szText).c_str());
    return TRUE;
}

// As the loop of a modal dialog does it.
bool IsDialogKey(MSG& message)
{
    const HWND hRoot = message.hwnd ? GetAncestor(message.hwnd, GA_ROOT) : nullptr;
    return hRoot && ClassOf(hRoot) == L"#32770" && IsDialogMessageW(hRoot, &message);
}

} // namespace

ModalDriver::ModalDriver(std::chrono::milliseconds limit) : m_limit(limit)
{
    g_pDriver = this;
    m_hDone = CreateEventW(nullptr, TRUE, FALSE, nullptr);
    m_hWatch = CreateThread(nullptr, 0, &Watch, this, 0, nullptr);
    m_hHook = SetWindowsHookExW(WH_CBT, &OnHook, nullptr, GetCurrentThreadId());
}

ModalDriver::~ModalDriver()
{
    UnhookWindowsHookEx(m_hHook);
    SetEvent(m_hDone);
    WaitForSingleObject(m_hWatch, INFINITE);
    CloseHandle(m_hWatch);
    CloseHandle(m_hDone);
    g_pDriver = nullptr;
}

LRESULT CALLBACK ModalDriver::OnHook(int nCode, WPARAM wParam, LPARAM lParam)
{
    if (g_pDriver && nCode == HCBT_ACTIVATE)
        g_pDriver->Seen(reinterpret_cast<HWND>(wParam));
    if (g_pDriver && nCode == HCBT_DESTROYWND)
        std::erase(g_pDriver->m_done, reinterpret_cast<HWND>(wParam));
    return CallNextHookEx(nullptr, nCode, wParam, lParam);
}

void ModalDriver::Seen(HWND hWnd)
{
    if (ClassOf(hWnd) != L"#32770" || m_nNext >= m_steps.size())
        return;
    for (const Live& live : m_live)
        if (live.hWnd == hWnd)
            return;
    // Whatever becomes active again behind a box that was closed has had its step.
    if (std::ranges::find(m_done, hWnd) != m_done.end())
        return;
    m_live.push_back({hWnd, m_nNext++});
    SetTimer(hWnd, kStepTimer, kStepMilliseconds, &OnTimer);
}

void CALLBACK ModalDriver::OnTimer(HWND hWnd, UINT, UINT_PTR nTimer, DWORD)
{
    KillTimer(hWnd, nTimer); // a step isn't entered again while it runs
    if (g_pDriver)
        g_pDriver->RunStep(hWnd);
}

void ModalDriver::RunStep(HWND hWnd)
{
    const auto at = [this, hWnd] { return std::ranges::find(m_live, hWnd, &Live::hWnd); };
    if (at() == m_live.end())
        return;
    // A dialog that opens may let messages through before it is on show.
    const bool bShown = IsWindowVisible(hWnd);
    const Step step = m_steps[at()->nStep]; // a copy: steps may be added meanwhile
    if (!(bShown && step(hWnd)) && IsWindow(hWnd))
        SetTimer(hWnd, kStepTimer, kStepMilliseconds, &OnTimer);
    else if (at() != m_live.end()) {
        m_done.push_back(hWnd);
        m_live.erase(at());
    }
}

DWORD WINAPI ModalDriver::Watch(void* pThis)
{
    const auto& driver = *static_cast<ModalDriver*>(pThis);
    if (WaitForSingleObject(driver.m_hDone, static_cast<DWORD>(driver.m_limit.count())) ==
        WAIT_OBJECT_0)
        return 0;
    std::fprintf(stderr, "time limit passed, %zu of %zu steps begun\n", driver.m_nNext,
                 driver.m_steps.size());
    EnumWindows(&PrintWindow, 0);
    std::fflush(stderr);
    TerminateProcess(GetCurrentProcess(), 86);
    return 0;
}

ModalDriver::Step InTurn(std::vector<ModalDriver::Step> steps)
{
    return [steps = std::move(steps), nNext = std::make_shared<std::size_t>(0)](HWND hWnd) {
        if (steps[*nNext](hWnd))
            ++*nNext;
        return *nNext == steps.size();
    };
}

// ---- what steps do

void Press(HWND hDlg, int nControl)
{
    PostMessageW(Descendant(hDlg, nControl), BM_CLICK, 0, 0);
}

void PostKey(HWND hWnd, UINT nKey)
{
    PostMessageW(hWnd, WM_KEYDOWN, nKey, 1);
    PostMessageW(hWnd, WM_KEYUP, nKey, static_cast<LPARAM>(0xC0000001));
}

std::wstring TextOf(HWND hWnd)
{
    std::wstring s(static_cast<std::size_t>(GetWindowTextLengthW(hWnd)) + 1, L'\0');
    s.resize(static_cast<std::size_t>(GetWindowTextW(hWnd, s.data(), static_cast<int>(s.size()))));
    return s;
}

std::wstring TextOf(HWND hDlg, int nControl)
{
    return TextOf(Descendant(hDlg, nControl));
}

HMENU OpenMenu()
{
    const HWND hMenu = FindWindowW(L"#32768", nullptr);
    return hMenu ? reinterpret_cast<HMENU>(SendMessageW(hMenu, MN_GETHMENU, 0, 0)) : nullptr;
}

namespace {

// The loop of a menu reads the keys of the window that owns it.
HWND MenuOwner()
{
    GUITHREADINFO info{};
    info.cbSize = sizeof(info);
    return GetGUIThreadInfo(GetCurrentThreadId(), &info) ? info.hwndMenuOwner : nullptr;
}

std::wstring ItemText(HMENU hMenu, int nItem)
{
    wchar_t szText[600] = L"";
    GetMenuStringW(hMenu, static_cast<UINT>(nItem), szText, 600, MF_BYPOSITION);
    return szText;
}

// How often the key for down is pressed until an item is the chosen one; lines are skipped. 0 for
// an item that isn't there.
int KeysDownTo(HMENU hMenu, const std::wstring& sText)
{
    int nKeys = 0;
    for (int i = 0; i < GetMenuItemCount(hMenu); ++i) {
        MENUITEMINFOW info{};
        info.cbSize = sizeof(info);
        info.fMask = MIIM_FTYPE;
        GetMenuItemInfoW(hMenu, static_cast<UINT>(i), TRUE, &info);
        if (!(info.fType & MFT_SEPARATOR))
            ++nKeys;
        if (ItemText(hMenu, i) == sText)
            return nKeys;
    }
    return 0;
}

HMENU SubMenu(HMENU hMenu, const std::wstring& sText)
{
    for (int i = 0; i < GetMenuItemCount(hMenu); ++i)
        if (ItemText(hMenu, i) == sText)
            return GetSubMenu(hMenu, i);
    return nullptr;
}

} // namespace

// A menu within a menu opens with its first item chosen.
bool ChooseInMenu(const std::vector<std::wstring>& path)
{
    const HWND hOwner = MenuOwner();
    HMENU hMenu = OpenMenu();
    bool bFirst = true;
    for (const std::wstring& sText : path) {
        const int nKeys = KeysDownTo(hMenu, sText);
        for (int i = bFirst ? 0 : 1; i < nKeys; ++i)
            PostMessageW(hOwner, WM_KEYDOWN, VK_DOWN, 0);
        const bool bLast = &sText == &path.back();
        PostMessageW(hOwner, WM_KEYDOWN, nKeys == 0 ? VK_ESCAPE : bLast ? VK_RETURN : VK_RIGHT, 0);
        if (nKeys == 0)
            return false;
        hMenu = SubMenu(hMenu, sText);
        bFirst = false;
    }
    return true;
}

void PressInMenu(const std::vector<UINT>& keys)
{
    for (const UINT nKey : keys)
        PostMessageW(MenuOwner(), WM_KEYDOWN, nKey, 0);
}

HWND Descendant(HWND hWnd, int nControl)
{
    if (const HWND hChild = GetDlgItem(hWnd, nControl))
        return hChild;
    for (HWND h = GetWindow(hWnd, GW_CHILD); h; h = GetWindow(h, GW_HWNDNEXT))
        if (const HWND hFound = Descendant(h, nControl))
            return hFound;
    return nullptr;
}

HWND DescendantOfClass(HWND hWnd, const wchar_t* pszClass)
{
    for (HWND h = GetWindow(hWnd, GW_CHILD); h; h = GetWindow(h, GW_HWNDNEXT)) {
        if (lstrcmpiW(ClassOf(h).c_str(), pszClass) == 0)
            return h;
        if (const HWND hFound = DescendantOfClass(h, pszClass))
            return hFound;
    }
    return nullptr;
}

bool PumpUntil(const std::function<bool()>& state)
{
    constexpr ULONGLONG kLongest = 10'000;
    const ULONGLONG nEnd = GetTickCount64() + kLongest;
    while (!state()) {
        if (GetTickCount64() > nEnd)
            return false;
        MsgWaitForMultipleObjects(0, nullptr, FALSE, kStepMilliseconds, QS_ALLINPUT);
        MSG message;
        while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE))
            if (!IsDialogKey(message)) {
                TranslateMessage(&message);
                DispatchMessageW(&message);
            }
    }
    return true;
}

void PumpFor(std::chrono::milliseconds time)
{
    const ULONGLONG nEnd = GetTickCount64() + static_cast<ULONGLONG>(time.count());
    PumpUntil([nEnd] { return GetTickCount64() >= nEnd; });
}

void PressKey(UINT nKey)
{
    PostKey(GetFocus(), nKey);
    PumpFor(std::chrono::milliseconds(30));
}
