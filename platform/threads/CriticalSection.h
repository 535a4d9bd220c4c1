// CriticalSection: a recursive lock. The thread that holds it may take it again;
// it is free when it has been left as often as it was entered.
//
// Taking it costs one atomic exchange while nobody else has it, and so does leaving it
// while nobody waits. Taking it again on the owning thread costs neither, since objects
// call their own locked operations under their lock all the time.
//
// A free section goes to whoever comes first, which may be the thread that has just left
// it. A thread that waits by lock_ahead is served before all others: it is made the owner
// by the thread that leaves.
//
// Usable with std::lock_guard and std::unique_lock. It may go as soon as nobody holds it or
// waits for it.
#pragma once

#include <atomic>
#include <cstdint>

#include "platform/threads/LockChecker.h"
#include "platform/threads/Mutex.h"
#include "platform/threads/ThreadToken.h"

class Event;

class CriticalSection
{
public:
    constexpr CriticalSection() = default;
    CriticalSection(const CriticalSection&) = delete;
    CriticalSection& operator=(const CriticalSection&) = delete;

    void lock()
    {
        const Token self = Self();
        if (Owner() != self) {
            const LockChecker::Taking check(this);
            if (!TakeFree(self))
                LockContended(self);
        }
        ++m_nDepth;
    }

    bool try_lock()
    {
        const Token self = Self();
        if (Owner() != self) {
            LockChecker::Trying check(this);
            if (!TakeFree(self))
                return false;
            check.Succeeded();
        }
        ++m_nDepth;
        return true;
    }

    // Waits once: pfnWait waits for the event, which is set when this thread has been made
    // the owner, or for something else. True with the section taken; false where pfnWait
    // came back without it.
    bool lock_ahead(void (*pfnWait)(Event& owned));

    void unlock()
    {
        if (--m_nDepth == 0) {
            const LockChecker::Leaving check(this);
            Token self = Self();
            if (!m_nWord.compare_exchange_strong(self, 0, std::memory_order_release,
                                                 std::memory_order_relaxed))
                UnlockContended();
        }
    }

private:
    using Token = std::uintptr_t;
    struct Waiter;

    static constexpr Token kWanted = 1;

    static Token Self() { return reinterpret_cast<Token>(ThreadToken()); }
    // Only the owner can have stored its own token, so it may look without more ado.
    Token Owner() const { return m_nWord.load(std::memory_order_relaxed) & ~kWanted; }

    bool TakeFree(Token self)
    {
        Token free = 0;
        return m_nWord.compare_exchange_strong(free, self, std::memory_order_acquire,
                                               std::memory_order_relaxed);
    }

    void LockContended(Token self);
    bool WaitAhead(Token self, void (*pfnWait)(Event& owned));
    void UnlockContended();

    void Enqueue(Waiter& waiter);
    void Dequeue(const Waiter& waiter);
    bool TakeInTurn(const Waiter& waiter);
    void GiveUp(const Waiter& waiter);
    void SetOwner(Token owner);
    Waiter* FirstAhead() const;

    std::atomic<Token> m_nWord = 0; // the owner's token, 0 for none; and kWanted
    unsigned m_nDepth = 0;          // the owner's
    Waiter* m_pFirst = nullptr;     // threads that wait, longest wait first
};

using LockGuard = std::lock_guard<CriticalSection>;
