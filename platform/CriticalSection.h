// CriticalSection: a recursive lock. The thread that holds it may take it again;
// it is free when it has been left as often as it was entered.
//
// Taking it again on the owning thread costs no atomic read-modify-write, since
// objects call their own locked operations under their lock all the time.
// Usable with std::lock_guard and std::unique_lock.
#pragma once

#include <atomic>
#include <mutex>

#include "platform/ThreadToken.h"

class CriticalSection
{
public:
    CriticalSection() = default;
    CriticalSection(const CriticalSection&) = delete;
    CriticalSection& operator=(const CriticalSection&) = delete;

    void lock()
    {
        const void* self = ThreadToken();
        // Only the owner can have stored its own token, so the unlocked read is safe.
        if (m_owner.load(std::memory_order_relaxed) != self) {
            m_mutex.lock();
            m_owner.store(self, std::memory_order_relaxed);
        }
        ++m_nDepth;
    }

    void unlock()
    {
        if (--m_nDepth == 0) {
            m_owner.store(nullptr, std::memory_order_relaxed);
            m_mutex.unlock();
        }
    }

    bool try_lock()
    {
        const void* self = ThreadToken();
        if (m_owner.load(std::memory_order_relaxed) != self) {
            if (!m_mutex.try_lock())
                return false;
            m_owner.store(self, std::memory_order_relaxed);
        }
        ++m_nDepth;
        return true;
    }

private:
    std::mutex m_mutex;
    std::atomic<const void*> m_owner = nullptr;
    unsigned m_nDepth = 0; // guarded by m_mutex
};

using LockGuard = std::lock_guard<CriticalSection>;
