#include "platform/threads/Event.h"

#include <algorithm>
#include <cassert>

#include "platform/threads/Mutex.h"
#include "platform/threads/Sleeper.h"

// 1. An event hands its signal to the longest waiting thread under g_queuesLock, so no
//    signal is lost between a thread's look at the flag and its sleep.
// 2. A thread that was let through stands in no queue any more, so that an event
//    can't spend a second signal on it.
// 3. A signal stays in the flag only while nobody waits. Taking it from there is
//    one exchange and needs no lock.

namespace {

Mutex g_queuesLock; // guards the queues of all events and the results of all waiters

constexpr int kNotYet = -1;

// Longer times count as endless: their deadline could overflow.
constexpr std::chrono::milliseconds kEndless = std::chrono::hours(24 * 365);

} // namespace

struct Event::Place
{
    Waiter* waiter = nullptr;
    Event* event = nullptr;
    int nIndex = 0; // the waiter's result where this event lets it through
    Place* next = nullptr;
};

struct Event::Waiter
{
    Sleeper sleeper;
    int nResult = kNotYet;
    Place places[kMostEvents];
    int nPlaces = 0;

    void Leave()
    {
        for (int n = 0; n < nPlaces; ++n)
            places[n].event->Dequeue(places[n]);
    }

    // Ends when an event lets the thread through, at the deadline, or with bInput when a
    // message comes. The lock is held before and after.
    Sleeper::Ending Sleep(std::unique_lock<Mutex>& lock, Timeout timeout, bool bInput)
    {
        Sleeper::Deadline deadline;
        if (timeout && *timeout < kEndless)
            deadline = std::chrono::steady_clock::now() + *timeout;
        auto ending = Sleeper::Ending::Woken;
        while (nResult == kNotYet && ending == Sleeper::Ending::Woken)
            ending = sleeper.Sleep(lock, deadline, bInput);
        return ending;
    }
};

Event::Event(Kind kind, bool bSignalled) : m_kind(kind), m_bSignalled(bSignalled) {}

// A thread that took the signal may come here while Set() is still at work.
Event::~Event()
{
    const std::lock_guard lock(g_queuesLock);
    assert(!m_pFirst);
}

void Event::Set()
{
    const std::lock_guard lock(g_queuesLock);
    if (m_kind == Kind::AutoReset && m_pFirst) {
        LetThrough(*m_pFirst);
        return;
    }
    m_bSignalled.store(true, std::memory_order_release);
    while (m_pFirst)
        LetThrough(*m_pFirst);
}

void Event::Reset()
{
    const std::lock_guard lock(g_queuesLock);
    m_bSignalled.store(false, std::memory_order_release);
}

bool Event::WaitLong(Timeout timeout)
{
    Event* const events[] = {this};
    return WaitFor(events, 1, timeout, false).has_value();
}

std::optional<int> Event::WaitAny(Event& first, Event& second, Timeout timeout)
{
    Event* const events[] = {&first, &second};
    return WaitFor(events, 2, timeout, false);
}

std::optional<int> Event::WaitAny(Event& first, Event& second, Event& third, Timeout timeout)
{
    Event* const events[] = {&first, &second, &third};
    return WaitFor(events, 3, timeout, false);
}

std::optional<int> Event::WaitAnyOrSystemInput(Event& first, Event& second, Timeout timeout)
{
    Event* const events[] = {&first, &second};
    return WaitFor(events, 2, timeout, true);
}

std::optional<int> Event::WaitFor(Event* const* events, int nEvents, Timeout timeout, bool bInput)
{
    const auto take = [&]() -> std::optional<int> {
        for (int n = 0; n < nEvents; ++n)
            if (events[n]->TryTake())
                return n;
        return {};
    };
    const std::optional<int> nTaken = take();
    if (nTaken || (timeout && timeout->count() <= 0))
        return nTaken;

    std::unique_lock lock(g_queuesLock);
    // A signal may have come before the lock did.
    if (const std::optional<int> nLate = take())
        return nLate;
    Waiter waiter;
    for (int n = 0; n < nEvents; ++n) {
        waiter.places[n] = {&waiter, events[n], n};
        events[n]->Enqueue(waiter.places[n]);
    }
    waiter.nPlaces = nEvents;
    const Sleeper::Ending ending = waiter.Sleep(lock, timeout, bInput);
    if (waiter.nResult != kNotYet)
        return waiter.nResult;
    waiter.Leave();
    return ending == Sleeper::Ending::Input ? std::optional<int>(kSystemInput) : std::nullopt;
}

void Event::Enqueue(Place& place)
{
    Place** link = &m_pFirst;
    while (*link)
        link = &(*link)->next;
    *link = &place;
}

void Event::Dequeue(const Place& place)
{
    Place** link = &m_pFirst;
    while (*link && *link != &place)
        link = &(*link)->next;
    if (*link)
        *link = place.next;
}

// The waiter may be gone as soon as the lock is released, so it is woken before.
void Event::LetThrough(Place& place)
{
    Waiter& waiter = *place.waiter;
    waiter.nResult = place.nIndex;
    waiter.Leave();
    waiter.sleeper.Wake();
}
