// Sleeper: lets one thread sleep until another one wakes it.
//
// It is used under a lock, which is released while the thread sleeps. The thread that calls
// Wake holds the same lock, so that no wake-up is missed. A sleep may end for no reason: test
// what you wait for, and sleep again.
#pragma once

#include <chrono>
#include <optional>

#include "platform/threads/Mutex.h"

class Sleeper
{
public:
    using Deadline = std::optional<std::chrono::steady_clock::time_point>; // empty: no end
    enum class Ending
    {
        Woken,
        Input, // a message came for the thread's windows, and bInput was set
        Late
    };

    Sleeper();
    ~Sleeper();
    Sleeper(const Sleeper&) = delete;
    Sleeper& operator=(const Sleeper&) = delete;

    // Never ends by Input on a system that keeps no message queue for each thread.
    Ending Sleep(std::unique_lock<Mutex>& lock, Deadline deadline, bool bInput);
    void Wake();

private:
    struct Signal; // the system's
    Signal* m_pSignal;
};
