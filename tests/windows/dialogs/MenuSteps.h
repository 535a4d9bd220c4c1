// MenuSteps: drives the menus that are open on the test's thread, by keys.
//
//   const MenuSteps steps({MenuKeys(hOwner, {VK_DOWN, VK_RETURN})});
//   TrackPopupMenuEx(...);                // the steps run inside its loop
//   EXPECT_TRUE(steps.AllRan());
#pragma once

#include <functional>
#include <vector>

#include "tests/windows/dialogs/ModalDriver.h"

// The windows of this thread's menus, the innermost one first.
inline std::vector<HWND> MenuWindows()
{
    std::vector<HWND> found;
    EnumThreadWindows(
        GetCurrentThreadId(),
        [](HWND hWnd, LPARAM lParam) -> BOOL {
            wchar_t szClass[16] = L"";
            GetClassNameW(hWnd, szClass, 16);
            if (lstrcmpW(szClass, L"#32768") == 0 && IsWindowVisible(hWnd))
                reinterpret_cast<std::vector<HWND>*>(lParam)->push_back(hWnd);
            return TRUE;
        },
        reinterpret_cast<LPARAM>(&found));
    return found;
}

// Steps that run one after the other while a menu is open on this thread: each of them is called
// every 10 ms until it gives true. A driver bounds the whole in time.
class MenuSteps
{
public:
    using Step = std::function<bool()>;

    explicit MenuSteps(std::vector<Step> steps) : m_steps(std::move(steps))
    {
        s_pSteps = this;
        m_nTimer = SetTimer(nullptr, 0, 10, &OnTimer);
    }
    ~MenuSteps()
    {
        KillTimer(nullptr, m_nTimer);
        s_pSteps = nullptr;
    }
    MenuSteps(const MenuSteps&) = delete;
    MenuSteps& operator=(const MenuSteps&) = delete;

    bool AllRan() const { return m_nNext == m_steps.size(); }

private:
    static void CALLBACK OnTimer(HWND, UINT, UINT_PTR, DWORD)
    {
        MenuSteps* const pSteps = s_pSteps;
        if (pSteps && !pSteps->AllRan() && pSteps->m_steps[pSteps->m_nNext]())
            ++pSteps->m_nNext;
    }

    static inline MenuSteps* s_pSteps = nullptr;
    const ModalDriver m_limit;
    const std::vector<Step> m_steps;
    std::size_t m_nNext = 0;
    UINT_PTR m_nTimer;
};

// A step that waits for a number of menus, and then posts keys to the window that owns them.
inline MenuSteps::Step MenuKeys(HWND hOwner, std::vector<UINT> keys, std::size_t nMenus = 1)
{
    return [=] {
        if (MenuWindows().size() != nMenus)
            return false;
        for (const UINT nKey : keys)
            PostKey(hOwner, nKey);
        return true;
    };
}
