#include "src/UIComponents/windows/DialogKeys.h"

#include <algorithm>
#include <vector>

#include "platform/threads/CriticalSection.h"

namespace Hesperon::specifics::UILayer {

namespace {

bool IsKey(const MSG& message)
{
    return message.message >= WM_KEYFIRST && message.message <= WM_KEYLAST;
}

// The dialogs with their threads and hooks. A table and not thread_local variables: these are
// already gone when a thread that ends takes its dialogs along.
class KeyHooks
{
public:
    void Add(HWND hDialog)
    {
        const DWORD nThread = GetCurrentThreadId();
        const LockGuard lock(m_lock);
        m_entries.reserve(m_entries.size() + 1);
        const auto other = OfThread(nThread);
        const HHOOK hHook = other == m_entries.end()
                                ? SetWindowsHookExW(WH_GETMESSAGE, &OnGetMessage, nullptr, nThread)
                                : other->hHook;
        m_entries.push_back({hDialog, nThread, hHook});
    }

    void Remove(HWND hDialog)
    {
        const LockGuard lock(m_lock);
        const auto entry = std::ranges::find(m_entries, hDialog, &Entry::hDialog);
        if (entry == m_entries.end())
            return;
        const Entry removed = *entry;
        m_entries.erase(entry);
        if (removed.hHook && OfThread(removed.nThread) == m_entries.end())
            UnhookWindowsHookEx(removed.hHook);
    }

    bool Has(HWND hDialog)
    {
        const LockGuard lock(m_lock);
        return std::ranges::find(m_entries, hDialog, &Entry::hDialog) != m_entries.end();
    }

private:
    struct Entry
    {
        HWND hDialog;
        DWORD nThread;
        HHOOK hHook; // the same for all dialogs of a thread
    };

    static LRESULT CALLBACK OnGetMessage(int nCode, WPARAM wParam, LPARAM lParam);

    std::vector<Entry>::iterator OfThread(DWORD nThread)
    {
        return std::ranges::find(m_entries, nThread, &Entry::nThread);
    }

    CriticalSection m_lock;
    std::vector<Entry> m_entries;
};

KeyHooks g_keyHooks;

// The key may end the dialog and this hook with it. A message that was only looked at comes
// once more when it is taken.
LRESULT CALLBACK KeyHooks::OnGetMessage(int nCode, WPARAM wParam, LPARAM lParam)
{
    auto& message = *reinterpret_cast<MSG*>(lParam);
    if (nCode == HC_ACTION && wParam == PM_REMOVE && IsKey(message)) {
        const HWND hDialog = GetAncestor(message.hwnd, GA_ROOT);
        if (g_keyHooks.Has(hDialog) && IsDialogMessageW(hDialog, &message))
            message.message = WM_NULL;
    }
    return CallNextHookEx(nullptr, nCode, wParam, lParam);
}

} // namespace

DialogKeys::DialogKeys(HWND hDialog) : m_hDialog(hDialog)
{
    g_keyHooks.Add(hDialog);
}

DialogKeys::~DialogKeys()
{
    g_keyHooks.Remove(m_hDialog);
}

} // namespace Hesperon::specifics::UILayer
