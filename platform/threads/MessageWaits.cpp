// Waits that dispatch messages: each is a wait for something or for input, made again until
// that something has come, with a look at the messages in between.

#include "platform/threads/MessageWindow.h"

namespace {

// Without end.
int WaitOrInput(Event& event)
{
    Event never(Event::Kind::ManualReset);
    return *WaitAnyOrInput(event, never);
}

} // namespace

void WaitPumping(Event& event)
{
    DispatchUntil([&] { return WaitOrInput(event) != kInput; });
}

// The section is handed over only while this thread sleeps, never while it dispatches: a
// handler may wait for a thread that needs the section.
void LockPumping(CriticalSection& section)
{
    if (!OwnsWindows()) {
        section.lock();
        return;
    }
    const auto waitAMoment = [](Event& owned) {
        constexpr std::chrono::milliseconds kMoment(50);
        owned.Wait(kMoment);
    };
    const auto waitOrInput = [](Event& owned) { WaitOrInput(owned); };
    if (!section.lock_ahead(waitAMoment))
        DispatchUntil([&] { return section.lock_ahead(waitOrInput); });
}
