// Mutex and Condition: a lock, and what a thread waits for under it. Usable with std::lock_guard
// and std::unique_lock.
//
// They are the standard library's. On Windows those of the compiler hold handles of the system,
// which a mutex never gives back and which stay behind when this module is unloaded; there they
// are the system's slim ones, which have none.
#pragma once

#include <condition_variable>
#include <mutex>

#if defined(_WIN32)
#include "platform/component.h"

class Mutex
{
public:
    Mutex() = default;
    Mutex(const Mutex&) = delete;
    Mutex& operator=(const Mutex&) = delete;

    void lock() { AcquireSRWLockExclusive(&m_lock); }
    bool try_lock() { return TryAcquireSRWLockExclusive(&m_lock); }
    void unlock() { ReleaseSRWLockExclusive(&m_lock); }

private:
    friend class Condition;

    SRWLOCK m_lock = SRWLOCK_INIT;
};

class Condition
{
public:
    Condition() = default;
    Condition(const Condition&) = delete;
    Condition& operator=(const Condition&) = delete;

    // May end for no reason.
    void wait(std::unique_lock<Mutex>& lock)
    {
        SleepConditionVariableSRW(&m_condition, &lock.mutex()->m_lock, INFINITE, 0);
    }
    template <class Holds>
    void wait(std::unique_lock<Mutex>& lock, Holds holds)
    {
        while (!holds())
            wait(lock);
    }
    void notify_one() { WakeConditionVariable(&m_condition); }
    void notify_all() { WakeAllConditionVariable(&m_condition); }

private:
    CONDITION_VARIABLE m_condition = CONDITION_VARIABLE_INIT;
};
#else
using Mutex = std::mutex;
using Condition = std::condition_variable;
#endif
