// Threads that find a section held wait in its queue, each for an event of its own.
//
// 1. The section's word has kWanted in it exactly while its queue isn't empty. The word of a
//    section that is wanted changes under g_sectionsLock only: a thread that comes finds it
//    other than 0, and the owner finds it other than its token, so both come here.
// 2. An owner that leaves makes the first thread that waits ahead the next owner. If there
//    is none, it leaves the section free and wakes the first in the queue, which takes it
//    unless another comes before.
// 3. A thread that has been made the owner stands in no queue any more. All others leave it
//    themselves.
// 4. A thread that leaves touches nothing of a section after it is free and not wanted: the
//    section may be gone.

#include "platform/threads/CriticalSection.h"

#include "platform/threads/Event.h"

namespace {

Mutex g_sectionsLock; // guards the queues of all sections

} // namespace

struct CriticalSection::Waiter
{
    const Token self;
    const bool bAhead;
    Event look{Event::Kind::AutoReset}; // set when it has been made the owner, or may try
    Waiter* next = nullptr;
};

void CriticalSection::LockContended(Token self)
{
    Waiter waiter{self, false};
    std::unique_lock lock(g_sectionsLock);
    Enqueue(waiter);
    while (!TakeInTurn(waiter)) {
        lock.unlock();
        waiter.look.Wait();
        lock.lock();
    }
}

bool CriticalSection::lock_ahead(void (*pfnWait)(Event& owned))
{
    const Token self = Self();
    if (Owner() != self) {
        LockChecker::Trying check(this);
        if (!TakeFree(self) && !WaitAhead(self, pfnWait))
            return false;
        check.Succeeded();
    }
    ++m_nDepth;
    return true;
}

bool CriticalSection::WaitAhead(Token self, void (*pfnWait)(Event& owned))
{
    Waiter waiter{self, true};
    std::unique_lock lock(g_sectionsLock);
    Enqueue(waiter);
    if (TakeInTurn(waiter))
        return true;
    lock.unlock();
    pfnWait(waiter.look);
    lock.lock();
    const bool bTaken = TakeInTurn(waiter);
    if (!bTaken)
        GiveUp(waiter);
    return bTaken;
}

void CriticalSection::UnlockContended()
{
    const std::lock_guard lock(g_sectionsLock);
    if (Waiter* heir = FirstAhead()) {
        Dequeue(*heir);
        SetOwner(heir->self);
        heir->look.Set();
        return;
    }
    Waiter* first = m_pFirst;
    SetOwner(0);
    if (first)
        first->look.Set();
}

// ---- under g_sectionsLock

void CriticalSection::Enqueue(Waiter& waiter)
{
    Waiter** link = &m_pFirst;
    while (*link)
        link = &(*link)->next;
    *link = &waiter;
    m_nWord.fetch_or(kWanted, std::memory_order_relaxed);
}

void CriticalSection::Dequeue(const Waiter& waiter)
{
    Waiter** link = &m_pFirst;
    while (*link != &waiter)
        link = &(*link)->next;
    *link = waiter.next;
}

// True where the thread has been made the owner, or finds the section free and takes it.
bool CriticalSection::TakeInTurn(const Waiter& waiter)
{
    const Token owner = m_nWord.load(std::memory_order_acquire) & ~kWanted;
    if (owner == 0) {
        Dequeue(waiter);
        SetOwner(waiter.self);
        return true;
    }
    return owner == waiter.self;
}

void CriticalSection::GiveUp(const Waiter& waiter)
{
    Dequeue(waiter);
    if (!m_pFirst)
        m_nWord.fetch_and(~kWanted, std::memory_order_relaxed);
}

void CriticalSection::SetOwner(Token owner)
{
    m_nWord.store(owner | (m_pFirst ? kWanted : 0), std::memory_order_release);
}

CriticalSection::Waiter* CriticalSection::FirstAhead() const
{
    Waiter* waiter = m_pFirst;
    while (waiter && !waiter->bAhead)
        waiter = waiter->next;
    return waiter;
}
