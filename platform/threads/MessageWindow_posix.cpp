// Each thread with windows has a queue, emptied by PumpMessages and by sends that wait.
//
// One lock guards the table of windows and all queues. There are few messages, one or two for
// a batch of records, and a window that goes can answer its senders at once. A thread waits
// without the lock, for the event of its queue. The event is set under the lock after each
// change, so none is missed. It may also be set for a message that has been handled already,
// so a thread that is woken looks again.

#include "platform/threads/MessageWindow.h"

#include <algorithm>
#include <list>
#include <map>
#include <memory>

#include "platform/threads/Mutex.h"

using Clock = std::chrono::steady_clock;

namespace {

struct Queue;

// The answer that a sender waits for.
struct Reply
{
    Queue& sender;
    LONG_PTR nResult = 0;
    bool bDone = false;
};

struct Message
{
    WindowHandle hWnd;
    UINT nMessage;
    ULONG_PTR wParam;
    LONG_PTR lParam;
    Reply* pReply; // null for a posted one
};

// The messages of one thread.
struct Queue
{
    Event changed{Event::Kind::AutoReset}; // a message, or the answer to one, has come
    std::list<Message> messages;
};

struct Window
{
    MessageWindow* pTarget;
    Queue* pQueue;
    Clock::duration period{}; // zero: no timer
    Clock::time_point tNext;
};

using Lock = std::unique_lock<Mutex>;

// Never destroyed: threads may end while static objects go.
struct Windows
{
    Mutex lock; // guards all of it, the queues too
    std::map<WindowHandle, Window> table;
    WindowHandle nLast = 0;
};

Windows& All()
{
    static Windows& windows = *new Windows;
    return windows;
}

void Answer(const Message& message, LONG_PTR nResult)
{
    if (!message.pReply)
        return;
    message.pReply->nResult = nResult;
    message.pReply->bDone = true;
    message.pReply->sender.changed.Set();
}

// A thread's queue, which destroys the thread's windows when the thread ends.
class ThreadQueue
{
public:
    ~ThreadQueue()
    {
        while (MessageWindow* pTarget = AnyWindow())
            pTarget->Destroy();
    }

    Queue queue;

private:
    MessageWindow* AnyWindow()
    {
        Lock lock(All().lock);
        for (const auto& [handle, window] : All().table)
            if (window.pQueue == &queue)
                return window.pTarget;
        return nullptr;
    }
};

Queue& ThisThread()
{
    static thread_local ThreadQueue own;
    return own.queue;
}

bool HasWindows(const Queue& queue)
{
    return std::ranges::any_of(All().table,
                               [&](const auto& entry) { return entry.second.pQueue == &queue; });
}

} // namespace

struct WindowDispatch
{
    // Handles one message without the lock.
    static LONG_PTR Deliver(Lock& lock, MessageWindow& target, const Message& message)
    {
        lock.unlock();
        const LONG_PTR nResult = target.OnMessage(message.nMessage, message.wParam, message.lParam);
        lock.lock();
        return nResult;
    }

    // The first message of a queue that `wanted` takes; false if there is none. A message
    // in the queue always has a window, since a window that goes removes its messages.
    template <class Wanted>
    static bool DeliverNext(Lock& lock, Queue& queue, Wanted wanted)
    {
        const auto at = std::ranges::find_if(queue.messages, wanted);
        if (at == queue.messages.end())
            return false;
        const Message message = *at;
        queue.messages.erase(at);
        MessageWindow& target = *All().table.at(message.hWnd).pTarget;
        Answer(message, Deliver(lock, target, message));
        return true;
    }

    // The window of this queue whose timer is due first; null if none has one.
    static std::pair<const WindowHandle, Window>* NextTimer(const Queue& queue)
    {
        std::pair<const WindowHandle, Window>* pNext = nullptr;
        for (auto& entry : All().table) {
            const Window& window = entry.second;
            if (window.pQueue != &queue || window.period == Clock::duration::zero())
                continue;
            if (!pNext || window.tNext < pNext->second.tNext)
                pNext = &entry;
        }
        return pNext;
    }

    static bool DeliverTimer(Lock& lock, const Queue& queue)
    {
        auto* pEntry = NextTimer(queue);
        if (!pEntry || pEntry->second.tNext > Clock::now())
            return false;
        pEntry->second.tNext = Clock::now() + pEntry->second.period;
        Deliver(lock, *pEntry->second.pTarget, {pEntry->first, kTimerMessage, 0, 0, nullptr});
        return true;
    }

    // As many messages as there were at first: what handlers add is left for the next time, so that
    // a window that posts to itself doesn't keep the caller here.
    static unsigned DeliverAll(Lock& lock, Queue& queue)
    {
        unsigned nHandled = 0;
        for (auto nLeft = queue.messages.size(); nLeft > 0; --nLeft)
            nHandled += DeliverNext(lock, queue, [](const Message&) { return true; });
        return nHandled + DeliverTimer(lock, queue);
    }

    static LONG_PTR Send(const Message& message)
    {
        Queue& own = ThisThread();
        Lock lock(All().lock);
        const auto at = All().table.find(message.hWnd);
        if (at == All().table.end())
            return 0;
        Queue& queue = *at->second.pQueue;
        if (&queue == &own)
            return Deliver(lock, *at->second.pTarget, message);

        Reply reply{own};
        queue.messages.push_back(message);
        queue.messages.back().pReply = &reply;
        queue.changed.Set();
        // Sends to this thread are handled meanwhile, or two threads could wait for each other.
        const auto isSent = [](const Message& waiting) { return waiting.pReply != nullptr; };
        while (!reply.bDone)
            if (!DeliverNext(lock, own, isSent) && !reply.bDone) {
                lock.unlock();
                own.changed.Wait();
                lock.lock();
            }
        return reply.nResult;
    }
};

MessageWindow::~MessageWindow()
{
    Destroy();
}

WindowHandle MessageWindow::Create()
{
    Queue& own = ThisThread();
    Lock lock(All().lock);
    m_handle = ++All().nLast;
    All().table.emplace(m_handle, Window{this, &own, {}, {}});
    return m_handle;
}

void MessageWindow::Destroy()
{
    if (!m_handle)
        return;
    {
        Lock lock(All().lock);
        Queue& queue = *All().table.at(m_handle).pQueue;
        All().table.erase(m_handle);
        queue.messages.remove_if([this](const Message& message) {
            const bool bOwn = message.hWnd == m_handle;
            if (bOwn)
                Answer(message, 0);
            return bOwn;
        });
    }
    m_handle = 0;
    OnFinalMessage();
}

void MessageWindow::SetTimer(std::chrono::milliseconds period)
{
    Lock lock(All().lock);
    Window& window = All().table.at(m_handle);
    window.period = period;
    window.tNext = Clock::now() + period;
}

bool IsLiveWindow(WindowHandle hWnd)
{
    Lock lock(All().lock);
    return All().table.contains(hWnd);
}

LONG_PTR SendWindowMessage(WindowHandle hWnd, UINT nMessage, ULONG_PTR wParam, LONG_PTR lParam)
{
    return WindowDispatch::Send({hWnd, nMessage, wParam, lParam, nullptr});
}

bool PostWindowMessage(WindowHandle hWnd, UINT nMessage, ULONG_PTR wParam, LONG_PTR lParam)
{
    Lock lock(All().lock);
    const auto at = All().table.find(hWnd);
    if (at == All().table.end())
        return false;
    Queue& queue = *at->second.pQueue;
    queue.messages.push_back({hWnd, nMessage, wParam, lParam, nullptr});
    queue.changed.Set();
    return true;
}

namespace {

// Longer times count as endless: their end could overflow the clock.
constexpr std::chrono::hours kLongest{24 * 365};

std::optional<Clock::time_point> EndOf(Event::Timeout timeout)
{
    if (!timeout || *timeout >= kLongest)
        return {};
    return Clock::now() + *timeout;
}

// What is left until the end, rounded up; empty if there is no end.
Event::Timeout Left(std::optional<Clock::time_point> end)
{
    using std::chrono::milliseconds;
    if (!end)
        return {};
    return std::max(std::chrono::ceil<milliseconds>(*end - Clock::now()), milliseconds(0));
}

std::optional<Clock::time_point> Earlier(std::optional<Clock::time_point> a,
                                         std::optional<Clock::time_point> b)
{
    return a && b ? std::min(*a, *b) : (a ? a : b);
}

std::optional<Clock::time_point> NextTimerTime(const Queue& queue)
{
    const auto* pEntry = WindowDispatch::NextTimer(queue);
    return pEntry ? std::optional(pEntry->second.tNext) : std::nullopt;
}

} // namespace

unsigned PumpMessages(std::optional<std::chrono::milliseconds> timeout)
{
    const auto end = EndOf(timeout);
    Queue& own = ThisThread();
    Lock lock(All().lock);
    for (;;) {
        if (const unsigned nHandled = WindowDispatch::DeliverAll(lock, own))
            return nHandled;
        if (end && Clock::now() >= *end)
            return 0;
        const auto until = Earlier(end, NextTimerTime(own));
        lock.unlock();
        own.changed.Wait(Left(until));
        lock.lock();
    }
}

std::optional<int> WaitAnyOrInput(Event& first, Event& second, Event::Timeout timeout)
{
    constexpr std::chrono::milliseconds kNoTime(0);
    const auto nEvent = Event::WaitAny(first, second, kNoTime);
    if (nEvent || (timeout && *timeout <= kNoTime))
        return nEvent;
    Queue& own = ThisThread();
    const auto end = EndOf(timeout);
    std::optional<Clock::time_point> timer;
    {
        Lock lock(All().lock);
        if (!own.messages.empty())
            return kInput;
        timer = NextTimerTime(own);
    }
    const auto nEnding = Event::WaitAny(first, second, own.changed, Left(Earlier(end, timer)));
    const bool bTimer = !nEnding && timer && (!end || *timer < *end);
    return bTimer ? kInput : nEnding;
}

std::optional<int> WaitAnyPumping(Event& first, Event& second, Event::Timeout timeout)
{
    const auto end = EndOf(timeout);
    for (;;) {
        const auto nEnding = WaitAnyOrInput(first, second, Left(end));
        if (nEnding != kInput)
            return nEnding;
        PumpMessages(std::chrono::milliseconds(0));
    }
}

void DispatchUntil(const std::function<bool()>& isOver)
{
    while (!isOver())
        PumpMessages(std::chrono::milliseconds(0));
}

bool OwnsWindows()
{
    Lock lock(All().lock);
    return HasWindows(ThisThread());
}
