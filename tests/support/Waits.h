// Waits for what happens on another thread. Each of them ends, so that a test fails where
// nothing happens.
#pragma once

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <thread>

inline constexpr std::chrono::seconds kPatience(60); // a sanitizer on a busy machine

// Something that happens once.
class Signal
{
public:
    void Raise()
    {
        const std::lock_guard lock(m_lock);
        m_bRaised = true;
        m_changed.notify_all();
    }
    // False if it doesn't happen in time.
    bool Await()
    {
        std::unique_lock lock(m_lock);
        return m_changed.wait_for(lock, kPatience, [this] { return m_bRaised; });
    }

private:
    std::mutex m_lock;
    std::condition_variable m_changed;
    bool m_bRaised = false;
};

// Looks again and again, for what gives no sign when it happens.
template <class Condition>
bool Eventually(Condition holds)
{
    const auto tEnd = std::chrono::steady_clock::now() + kPatience;
    while (!holds()) {
        if (std::chrono::steady_clock::now() > tEnd)
            return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    return true;
}
