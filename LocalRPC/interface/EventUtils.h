// Events of active objects and their threads.
#pragma once

#include <atomic>

#include "platform/threads/Event.h"

namespace LocalRPC {

// The poster of a task waits for this. It is set once, and then lets everybody through.
class CSyncTaskEvent
{
public:
    void Set() { m_event.Set(); }
    bool Wait(Event::Timeout timeout = {}) { return m_event.Wait(timeout); }

private:
    Event m_event{Event::Kind::ManualReset};
};

namespace details {

// Where a thread stands in its life.
enum ControlSignal
{
    eCSNone,
    eCSStart,
    eCSStop
};

// Passes a control signal to all threads that wait for one; it stays until Reset.
class ControlEvent
{
public:
    void Signal(ControlSignal cs)
    {
        m_cs = cs;
        m_event.Set();
    }
    void Reset()
    {
        m_event.Reset();
        m_cs = eCSNone;
    }
    // eCSNone when the time is over.
    ControlSignal Wait(Event::Timeout timeout = {})
    {
        return m_event.Wait(timeout) ? m_cs.load() : eCSNone;
    }

private:
    Event m_event{Event::Kind::ManualReset};
    std::atomic<ControlSignal> m_cs = eCSNone;
};

} // namespace details

} // namespace LocalRPC
