// Helpers for tests with windows: pumping, and other threads.
#pragma once

#include "platform/threads/MessageWindow.h"
#include "tests/localrpc/Tasks.h"

inline constexpr std::chrono::milliseconds kNoWait{0};

// Handles the messages that wait, and those that their handlers post.
inline void PumpAll()
{
    while (PumpMessages(kNoWait) > 0)
        ;
}

inline bool PumpUntil(const std::function<bool()>& holds)
{
    return Eventually([&] {
        PumpMessages(std::chrono::milliseconds(1));
        return holds();
    });
}

inline void OnAnotherThread(const std::function<void()>& body)
{
    std::thread(body).join();
}
