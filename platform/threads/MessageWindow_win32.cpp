// Windows of the system, message-only.

#include "platform/threads/MessageWindow.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "platform/Module_win32.h"
#include "platform/Process.h"
#include "platform/threads/Mutex.h"

namespace {

constexpr wchar_t kClassName[] = L"TabulexMessageWindow";
constexpr UINT_PTR kTimer = 1;

// How many messages this thread's windows have handled, sent ones too. A plain number: a
// thread_local with a destructor would keep the module loaded until every thread has ended.
thread_local unsigned t_nHandled = 0;

HWND AsWindow(WindowHandle hWnd)
{
    return reinterpret_cast<HWND>(hWnd);
}

MessageWindow* TargetOf(HWND hWnd)
{
    return reinterpret_cast<MessageWindow*>(GetWindowLongPtrW(hWnd, GWLP_USERDATA));
}

// All windows with their threads. Searching the system's windows instead would be unreliable:
// windows of other threads and programs come and go during a search, and end it early. A
// thread with windows has a value in a slot that calls back when the thread ends;
// thread_local variables are already gone at that time.
//
// The slot calls back for the last thread of a process too. The system takes the windows
// then: an owner that is told might want a lock that a thread held when it was ended.
class WindowTable
{
public:
    ~WindowTable()
    {
        if (!OtherThreadsAreGone())
            FlsFree(m_nSlot);
    }

    void Add(MessageWindow& window)
    {
        const std::lock_guard lock(m_lock);
        m_windows.push_back({&window, GetCurrentThreadId()});
        FlsSetValue(m_nSlot, this);
    }
    void Remove(MessageWindow& window)
    {
        const std::lock_guard lock(m_lock);
        std::erase_if(m_windows, [&](const Entry& entry) { return entry.pWindow == &window; });
        if (OwnWindow() == m_windows.end())
            FlsSetValue(m_nSlot, nullptr);
    }

    // Of the calling thread.
    bool HasOwn() const { return FlsGetValue(m_nSlot) != nullptr; }
    MessageWindow* AnyOwn()
    {
        const std::lock_guard lock(m_lock);
        const auto at = OwnWindow();
        return at == m_windows.end() ? nullptr : at->pWindow;
    }

private:
    struct Entry
    {
        MessageWindow* pWindow;
        DWORD nThread;
    };

    std::vector<Entry>::iterator OwnWindow()
    {
        return std::ranges::find(m_windows, GetCurrentThreadId(), &Entry::nThread);
    }

    static void NTAPI OnThreadEnd(void* pTable)
    {
        if (OtherThreadsAreGone())
            return;
        while (MessageWindow* pWindow = static_cast<WindowTable*>(pTable)->AnyOwn())
            pWindow->Destroy();
    }

    Mutex m_lock;
    std::vector<Entry> m_windows;
    const DWORD m_nSlot = FlsAlloc(&OnThreadEnd);
};

// Made when the module is loaded, and not by the first thread that asks: for the reason see
// Spares in Sleeper_win32.cpp.
WindowTable g_windows;

} // namespace

struct WindowDispatch
{
    static LRESULT CALLBACK Proc(HWND hWnd, UINT nMessage, WPARAM wParam, LPARAM lParam)
    {
        MessageWindow* pTarget = TargetOf(hWnd);
        if (!pTarget || (nMessage < kUserMessage && nMessage != kTimerMessage))
            return DefWindowProcW(hWnd, nMessage, wParam, lParam);
        ++t_nHandled;
        return pTarget->OnMessage(nMessage, wParam, lParam);
    }
};

namespace {

// Unregistered when the module goes. Otherwise windows of a module that is loaded again would
// run the code of the unloaded one.
class WindowClass
{
public:
    WindowClass()
    {
        WNDCLASSEXW info{};
        info.cbSize = sizeof info;
        info.lpfnWndProc = &WindowDispatch::Proc;
        info.hInstance = ThisModule();
        info.lpszClassName = kClassName;
        m_bRegistered = RegisterClassExW(&info) != 0;
    }
    ~WindowClass()
    {
        if (m_bRegistered)
            UnregisterClassW(kClassName, ThisModule());
    }

    static bool IsThere()
    {
        static const WindowClass windowClass;
        return windowClass.m_bRegistered;
    }

private:
    bool m_bRegistered;
};

} // namespace

MessageWindow::~MessageWindow()
{
    Destroy();
}

WindowHandle MessageWindow::Create()
{
    if (!WindowClass::IsThere())
        return 0;
    const HWND hWnd = CreateWindowExW(0, kClassName, nullptr, 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr,
                                      ThisModule(), nullptr);
    if (!hWnd)
        return 0;
    g_windows.Add(*this);
    SetWindowLongPtrW(hWnd, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
    m_handle = reinterpret_cast<WindowHandle>(hWnd);
    return m_handle;
}

void MessageWindow::Destroy()
{
    if (!m_handle)
        return;
    const HWND hWnd = AsWindow(std::exchange(m_handle, 0));
    SetWindowLongPtrW(hWnd, GWLP_USERDATA, 0);
    g_windows.Remove(*this);
    DestroyWindow(hWnd);
    OnFinalMessage();
}

void MessageWindow::SetTimer(std::chrono::milliseconds period)
{
    if (period.count() > 0)
        ::SetTimer(AsWindow(m_handle), kTimer, static_cast<UINT>(period.count()), nullptr);
    else
        KillTimer(AsWindow(m_handle), kTimer);
}

bool IsLiveWindow(WindowHandle hWnd)
{
    return hWnd && IsWindow(AsWindow(hWnd));
}

LONG_PTR SendWindowMessage(WindowHandle hWnd, UINT nMessage, ULONG_PTR wParam, LONG_PTR lParam)
{
    return hWnd ? SendMessageW(AsWindow(hWnd), nMessage, wParam, lParam) : 0;
}

// A null handle would post to the thread.
bool PostWindowMessage(WindowHandle hWnd, UINT nMessage, ULONG_PTR wParam, LONG_PTR lParam)
{
    return hWnd && PostMessageW(AsWindow(hWnd), nMessage, wParam, lParam);
}

namespace {

// A request to quit that came among a thread's messages.
class QuitRequest
{
public:
    void Note(const MSG& message) { m_nStatus = static_cast<int>(message.wParam); }
    explicit operator bool() const { return m_nStatus.has_value(); }
    // Puts it back into the queue: it is meant for the host's loop.
    void GiveBack() const
    {
        if (m_nStatus)
            PostQuitMessage(*m_nStatus);
    }

private:
    std::optional<int> m_nStatus;
};

// Handles what waits, up to a request to quit. True if there was anything.
bool DispatchAll(QuitRequest& quit)
{
    const unsigned nBefore = t_nHandled;
    bool bAny = false;
    MSG message;
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
        bAny = true;
        if (message.message == WM_QUIT) {
            quit.Note(message);
            break;
        }
        TranslateMessage(&message);
        DispatchMessageW(&message);
    }
    return bAny || t_nHandled != nBefore;
}

using Clock = std::chrono::steady_clock;

// What is left of a timeout that began at tStart; empty for an endless one.
Event::Timeout Left(Event::Timeout timeout, Clock::time_point tStart)
{
    using std::chrono::milliseconds;
    if (!timeout)
        return {};
    const auto passed = std::chrono::floor<milliseconds>(Clock::now() - tStart);
    return std::max(*timeout - passed, milliseconds(0));
}

// Ends also for messages that the thread has seen before and left in its queue.
void WaitForInput(Event::Timeout timeout)
{
    if (timeout && timeout->count() == 0)
        return;
    const DWORD nWait =
        timeout ? static_cast<DWORD>(std::min<LONGLONG>(timeout->count(), INFINITE - 1)) : INFINITE;
    MsgWaitForMultipleObjectsEx(0, nullptr, nWait, QS_ALLINPUT, MWMO_INPUTAVAILABLE);
}

} // namespace

// Waits before it looks at the queue: looking at an empty one costs nearly as much as a
// message.
unsigned PumpMessages(std::optional<std::chrono::milliseconds> timeout)
{
    const auto tStart = Clock::now();
    for (;;) {
        const Event::Timeout left = Left(timeout, tStart);
        WaitForInput(left);
        const unsigned nBefore = t_nHandled;
        QuitRequest quit;
        const bool bAny = DispatchAll(quit);
        quit.GiveBack();
        if (bAny)
            return std::max(t_nHandled - nBefore, 1u);
        if (left && left->count() == 0)
            return 0;
    }
}

std::optional<int> WaitAnyOrInput(Event& first, Event& second, Event::Timeout timeout)
{
    static_assert(kInput == Event::kSystemInput);
    return Event::WaitAnyOrSystemInput(first, second, timeout);
}

std::optional<int> WaitAnyPumping(Event& first, Event& second, Event::Timeout timeout)
{
    const auto tStart = Clock::now();
    for (;;) {
        QuitRequest quit;
        DispatchAll(quit);
        const Event::Timeout left = quit ? std::chrono::milliseconds(0) : Left(timeout, tStart);
        const auto nEnding = WaitAnyOrInput(first, second, left);
        if (nEnding != kInput)
            return nEnding;
    }
}

// The thread may hold objects for other apartments, so it dispatches also where no window of
// ours is on it, and before it waits; and goes on after a request to quit, since the wait may
// depend on it.
void DispatchUntil(const std::function<bool()>& isOver)
{
    QuitRequest quit;
    do
        while (DispatchAll(quit)) {
        }
    while (!isOver());
    quit.GiveBack();
}

bool OwnsWindows()
{
    return g_windows.HasOwn();
}
