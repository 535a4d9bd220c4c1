#include "src/UIComponents/windows/DisabledParent.h"

#include <map>
#include <utility>

#include "platform/threads/CriticalSection.h"

namespace Hesperon::specifics::UILayer {

namespace {

CriticalSection g_holdersLock;
std::map<HWND, int> g_holders; // of each window that is held; guarded by g_holdersLock

} // namespace

// Calls on the window are made without the lock: the window may belong to another thread.
DisabledParent::DisabledParent(HWND hParent) : m_hParent(hParent)
{
    if (!m_hParent)
        return;
    const LockGuard lock(g_holdersLock);
    ++g_holders[m_hParent];
}

void DisabledParent::Enable()
{
    const HWND hParent = std::exchange(m_hParent, nullptr);
    if (!hParent)
        return;
    {
        const LockGuard lock(g_holdersLock);
        const auto holders = g_holders.find(hParent);
        if (--holders->second > 0)
            return;
        g_holders.erase(holders);
    }
    EnableWindow(hParent, TRUE);
}

} // namespace Hesperon::specifics::UILayer
