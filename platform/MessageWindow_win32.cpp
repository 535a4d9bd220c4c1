// Windows of the system, message-only.

#include "platform/MessageWindow.h"

#include <algorithm>
#include <utility>

namespace {

constexpr wchar_t kClassName[] = L"TabulexMessageWindow";
constexpr UINT_PTR kTimer = 1;

// Calls of this thread's windows, so that sent messages can be counted. Of a trivial kind:
// an object with a destructor would keep the module loaded until every thread has ended.
thread_local unsigned t_nHandled = 0;

HWND AsWindow(WindowHandle hWnd)
{
    return reinterpret_cast<HWND>(hWnd);
}

HINSTANCE ThisModule()
{
    HMODULE hModule = nullptr;
    GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS |
                           GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                       kClassName, &hModule);
    return hModule;
}

MessageWindow* TargetOf(HWND hWnd)
{
    return reinterpret_cast<MessageWindow*>(GetWindowLongPtrW(hWnd, GWLP_USERDATA));
}

// Windows that the thread leaves behind would never hear of their end.
void NTAPI OnThreadEnd(void*)
{
    HWND hWnd = nullptr;
    while ((hWnd = FindWindowExW(HWND_MESSAGE, hWnd, kClassName, nullptr)) != nullptr) {
        if (GetWindowThreadProcessId(hWnd, nullptr) != GetCurrentThreadId())
            continue;
        if (MessageWindow* pTarget = TargetOf(hWnd))
            pTarget->Destroy();
        hWnd = nullptr; // from the first one again
    }
}

// The count of a thread's windows, in a slot that calls back when a thread ends with one
// left; thread_local variables have gone by then. Given back with the module.
class WindowCount
{
public:
    ~WindowCount() { FlsFree(m_nSlot); }

    std::uintptr_t Get() const { return reinterpret_cast<std::uintptr_t>(FlsGetValue(m_nSlot)); }
    void Add() { Set(Get() + 1); }
    void Remove()
    {
        if (const std::uintptr_t nWindows = Get())
            Set(nWindows - 1);
    }

private:
    void Set(std::uintptr_t n) { FlsSetValue(m_nSlot, reinterpret_cast<void*>(n)); }

    DWORD m_nSlot = FlsAlloc(&OnThreadEnd);
};

WindowCount& Windows()
{
    static WindowCount count;
    return count;
}

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

    static bool RegisterClassOnce()
    {
        static const bool bRegistered = [] {
            WNDCLASSEXW info{};
            info.cbSize = sizeof info;
            info.lpfnWndProc = &Proc;
            info.hInstance = ThisModule();
            info.lpszClassName = kClassName;
            return RegisterClassExW(&info) != 0;
        }();
        return bRegistered;
    }
};

MessageWindow::~MessageWindow()
{
    Destroy();
}

WindowHandle MessageWindow::Create()
{
    if (!WindowDispatch::RegisterClassOnce())
        return 0;
    const HWND hWnd = CreateWindowExW(0, kClassName, nullptr, 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr,
                                      ThisModule(), nullptr);
    if (!hWnd)
        return 0;
    Windows().Add();
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
    Windows().Remove();
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

// A null window would post to the thread.
bool PostWindowMessage(WindowHandle hWnd, UINT nMessage, ULONG_PTR wParam, LONG_PTR lParam)
{
    return hWnd && PostMessageW(AsWindow(hWnd), nMessage, wParam, lParam);
}

namespace {

// A request to quit is the host's loop's and goes back into the queue.
bool DispatchAll()
{
    const unsigned nBefore = t_nHandled;
    bool bAny = false;
    MSG message;
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
        if (message.message == WM_QUIT) {
            PostQuitMessage(static_cast<int>(message.wParam));
            return true;
        }
        TranslateMessage(&message);
        DispatchMessageW(&message);
        bAny = true;
    }
    return bAny || t_nHandled != nBefore;
}

} // namespace

unsigned PumpMessages(std::optional<std::chrono::milliseconds> timeout)
{
    using Clock = std::chrono::steady_clock;
    const auto tStart = Clock::now();
    for (;;) {
        const unsigned nBefore = t_nHandled;
        if (DispatchAll())
            return std::max(t_nHandled - nBefore, 1u);
        DWORD nWait = INFINITE;
        if (timeout) {
            using std::chrono::milliseconds;
            const auto nPassed = std::chrono::duration_cast<milliseconds>(Clock::now() - tStart);
            if (nPassed >= *timeout)
                return 0;
            nWait =
                static_cast<DWORD>(std::min<LONGLONG>((*timeout - nPassed).count(), INFINITE - 1));
        }
        MsgWaitForMultipleObjects(0, nullptr, FALSE, nWait, QS_ALLINPUT);
    }
}

bool OwnsWindows()
{
    return Windows().Get() > 0;
}
