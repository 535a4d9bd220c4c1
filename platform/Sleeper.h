// Sleeper: the sleep of one thread until another one wakes it.
//
// It is used under a lock, which is released while the thread sleeps and is held by who
// calls Wake, so that no wake-up is missed. A sleep may end for no reason: look at what you
// wait for, and sleep again.
#pragma once

#include <chrono>
#include <mutex>
#include <optional>

class Sleeper
{
public:
    using Deadline = std::optional<std::chrono::steady_clock::time_point>; // empty: no end
    enum class Ending
    {
        Woken,
        Input, // a message came for the thread's windows, and it wanted to hear of that
        Late
    };

    Sleeper();
    ~Sleeper();
    Sleeper(const Sleeper&) = delete;
    Sleeper& operator=(const Sleeper&) = delete;

    // A system without a queue of messages for each thread never tells of input.
    Ending Sleep(std::unique_lock<std::mutex>& lock, Deadline deadline, bool bInput);
    void Wake();

private:
    struct Signal; // the system's
    Signal* m_pSignal;
};
