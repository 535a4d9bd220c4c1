// Event: a flag that threads wait for, in the manner of the platform's events.
//
// A manual-reset event stays signalled until Reset() and lets all waiters
// through; an auto-reset event lets one waiter through and is then unsignalled.
// All operations may be called from any thread. An event must outlive its
// waiters, and may go as soon as they have been let through. A poll (Wait with zero timeout) of an
// unsignalled event reads one atomic and takes no lock, so it may stand in a loop over records.
#pragma once

#include <atomic>
#include <chrono>
#include <optional>

class Event
{
public:
    enum class Kind
    {
        AutoReset,
        ManualReset
    };
    // An empty timeout waits without end.
    using Timeout = std::optional<std::chrono::milliseconds>;

    explicit Event(Kind kind, bool bSignalled = false);
    ~Event();
    Event(const Event&) = delete;
    Event& operator=(const Event&) = delete;

    void Set();
    void Reset();

    // True when the event was signalled, false on timeout.
    bool Wait(Timeout timeout = {})
    {
        return timeout && timeout->count() <= 0 ? TryTake() : WaitLong(timeout);
    }

    // Waits for one of two: gives 0 or 1 for the event that let this thread
    // through, the first one where both are signalled; empty on timeout.
    static std::optional<int> WaitAny(Event& first, Event& second, Timeout timeout = {});

    // The same for three.
    static std::optional<int> WaitAny(Event& first, Event& second, Event& third, Timeout timeout);

    // The same for two, but gives kSystemInput as soon as a message comes for the calling
    // thread's windows, if no event is set before. Messages that the thread has seen and left
    // in its queue don't count. Only where the system keeps such a queue for each thread; see
    // WaitAnyOrInput in MessageWindow.h for all.
    static constexpr int kSystemInput = 2;
    static std::optional<int> WaitAnyOrSystemInput(Event& first, Event& second, Timeout timeout);

private:
    // A thread that waits for events, and its place in the queue of one of them.
    struct Waiter;
    struct Place;

    static constexpr int kMostEvents = 3; // that one thread waits for

    static std::optional<int> WaitFor(Event* const* events, int nEvents, Timeout timeout,
                                      bool bInput);

    bool WaitLong(Timeout timeout);

    // True when signalled; unsignals an auto-reset event.
    bool TryTake()
    {
        if (!m_bSignalled.load(std::memory_order_acquire))
            return false;
        return m_kind == Kind::ManualReset ||
               m_bSignalled.exchange(false, std::memory_order_acq_rel);
    }

    void Enqueue(Place& place);
    void Dequeue(const Place& place);
    void LetThrough(Place& place);

    const Kind m_kind;
    std::atomic<bool> m_bSignalled; // never set while a thread waits in the queue
    Place* m_pFirst = nullptr;      // longest wait first; under the lock of all events
};
