// Helpers for tests of tasks: a log of what has run, gates that hold a thread, and waits with
// a deadline.
#pragma once

#include <chrono>
#include <functional>
#include <mutex>
#include <string>
#include <thread>

#include "LocalRPC/TaskFactory.h"

inline constexpr std::chrono::seconds kDeadline{20};

// A log of words in the order in which threads added them.
class Log
{
public:
    void Say(const std::string& sWord)
    {
        const std::lock_guard lock(m_lock);
        m_sWords += (m_sWords.empty() ? "" : " ") + sWord;
    }
    std::string Words() const
    {
        const std::lock_guard lock(m_lock);
        return m_sWords;
    }
    // A task that adds the word to the log.
    LocalRPC::TaskPtr Task(const std::string& sWord)
    {
        return LocalRPC::MakeAsyncTask([this, sWord] { Say(sWord); });
    }

private:
    mutable std::mutex m_lock;
    std::string m_sWords;
};

// A gate that holds threads until it is opened.
class Gate
{
public:
    void Open() { m_event.Set(); }
    bool Pass() { return m_event.Wait(std::chrono::milliseconds(kDeadline)); }

private:
    Event m_event{Event::Kind::ManualReset};
};

// A task that signals when it runs and then holds its thread until it is released.
struct Hold
{
    Gate entered, leave;

    LocalRPC::TaskPtr Task()
    {
        return LocalRPC::MakeAsyncTask([this] {
            entered.Open();
            leave.Pass();
        });
    }
};

// False when the deadline passes first.
inline bool Eventually(const std::function<bool()>& holds)
{
    const auto until = std::chrono::steady_clock::now() + kDeadline;
    while (!holds()) {
        if (std::chrono::steady_clock::now() > until)
            return false;
        std::this_thread::yield();
    }
    return true;
}
