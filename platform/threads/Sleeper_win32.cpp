// The sleeping thread waits for an event of the system, since only those can be waited for
// together with messages.

#include "platform/threads/Sleeper.h"

#include <algorithm>
#include <memory>
#include <new>
#include <vector>

#include "platform/component.h"

// Making an event costs more than a wait, so events are kept for later sleepers. A wake-up
// that came too late leaves its event set, and ends a later sleep for no reason.
struct Sleeper::Signal
{
    class Spares;

    Signal() : hEvent(CreateEventW(nullptr, FALSE, FALSE, nullptr))
    {
        if (!hEvent)
            throw std::bad_alloc();
    }
    ~Signal() { CloseHandle(hEvent); }
    Signal(const Signal&) = delete;
    Signal& operator=(const Signal&) = delete;

    const HANDLE hEvent;
};

class Sleeper::Signal::Spares
{
public:
    // Made when the module is loaded. A thread that made it later would have to register its
    // destructor, and at the end of the process the runtime keeps others from that, while it
    // runs the destructor that waits for this very thread.
    static Spares s_all;

    Signal* Take()
    {
        const std::lock_guard lock(m_lock);
        if (m_signals.empty())
            return new Signal;
        Signal* pSignal = m_signals.back().release();
        m_signals.pop_back();
        return pSignal;
    }

    void Give(Signal* pSignal)
    {
        std::unique_ptr<Signal> signal(pSignal);
        const std::lock_guard lock(m_lock);
        m_signals.push_back(std::move(signal));
    }

private:
    Mutex m_lock;
    std::vector<std::unique_ptr<Signal>> m_signals;
};

Sleeper::Signal::Spares Sleeper::Signal::Spares::s_all;

namespace {

// Rounded up, so that a sleep isn't over before its time.
DWORD MillisecondsUntil(const Sleeper::Deadline& deadline)
{
    if (!deadline)
        return INFINITE;
    using std::chrono::milliseconds;
    const auto left = *deadline - std::chrono::steady_clock::now();
    const auto nLeft = std::chrono::ceil<milliseconds>(left).count();
    return static_cast<DWORD>(std::clamp<LONGLONG>(nLeft, 0, INFINITE - 1));
}

} // namespace

Sleeper::Sleeper() : m_pSignal(Signal::Spares::s_all.Take()) {}

Sleeper::~Sleeper()
{
    Signal::Spares::s_all.Give(m_pSignal);
}

Sleeper::Ending Sleeper::Sleep(std::unique_lock<Mutex>& lock, Deadline deadline, bool bInput)
{
    const DWORD nTimeout = MillisecondsUntil(deadline);
    lock.unlock();
    const DWORD nResult =
        bInput ? MsgWaitForMultipleObjects(1, &m_pSignal->hEvent, FALSE, nTimeout, QS_ALLINPUT)
               : WaitForSingleObject(m_pSignal->hEvent, nTimeout);
    lock.lock();
    switch (nResult) {
    case WAIT_TIMEOUT:
        return Ending::Late;
    case WAIT_OBJECT_0 + 1:
        return Ending::Input;
    default:
        return Ending::Woken;
    }
}

void Sleeper::Wake()
{
    SetEvent(m_pSignal->hEvent);
}
