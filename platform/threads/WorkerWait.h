// WorkerWait: how a worker thread waits for one of two events, and dispatches its messages.
//
// A wait with a timeout of zero makes no system call: it reads the events' flags, and looks
// at the thread's messages only if some time has passed since the last look. So it may stand
// in a loop over records. Any other wait dispatches messages as they come. For one thread.
#pragma once

#include "platform/TickCount.h"
#include "platform/threads/MessageWindow.h"

class WorkerWait
{
public:
    // 0 or 1 for the event that let the thread through, the first one where both are
    // signalled; empty when the time is over.
    std::optional<int> WaitAny(Event& first, Event& second, Event::Timeout timeout)
    {
        constexpr std::chrono::milliseconds kNoTime(0);
        if (!timeout || *timeout > kNoTime)
            return WaitAnyPumping(first, second, timeout);
        const auto nEvent = Event::WaitAny(first, second, kNoTime);
        if (!nEvent)
            PumpInTime();
        return nEvent;
    }

private:
    static constexpr std::uint32_t kLookEvery = 10; // milliseconds

    void PumpInTime()
    {
        const std::uint32_t nNow = TickCount();
        if (nNow - m_nLastLook < kLookEvery)
            return;
        m_nLastLook = nNow;
        PumpMessages(std::chrono::milliseconds(0));
    }

    std::uint32_t m_nLastLook = 0;
};
