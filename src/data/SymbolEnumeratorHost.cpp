// A list of enumerations and a thread that takes one step of the first of them at a time. A step
// that returns anything but S_OK takes its enumeration off the list, and the next one begins. The
// thread waits while the list is empty. Between two steps it looks for messages and for the
// request to stop.

#include "src/data/SymbolEnumeratorHost.h"

#include <deque>
#include <list>

#include "diagnostics/FaultmereClient.h"
#include "platform/Process.h"
#include "platform/com_ptr.h"
#include "platform/threads/CriticalSection.h"
#include "platform/threads/WorkerThread.h"
#include "platform/threads/WorkerWait.h"

using FaultmereUtil::Assert;
using IQRL_TabulexConverter::IFileHandlerEvents;

namespace Hesperon::specifics {

namespace {

//   Invariants
//   1. m_thread holds the thread that serves the list, or nothing. The list has entries
//      only while there is one.
//   2. A thread whose stop event is set takes no further step, and has neither m_thread nor
//      the list. Whoever stopped it keeps it until it has been joined. A thread that was
//      stopped by its own step can't be joined there: it is kept in m_retired.
class CSymbolEnumeratorHost
{
public:
    // Made at first use and never destroyed, since its thread may outlive static objects;
    // at the end of the process the thread is ended.
    static CSymbolEnumeratorHost& Instance();

    void AddConvertor();
    void ReleaseConvertor();
    void EndThread();
    HRESULT Add(IFileHandlerEvents* pEvents);

private:
    struct CConverterPersist
    {
        com_ptr<IFileHandlerEvents> pEvents;
        ULONGLONG nNext; // record position
    };
    using WorkList = std::deque<CConverterPersist>;

    struct EnumeratorThread
    {
        Event wake{Event::Kind::AutoReset}; // a new entry is there
        Event stop{Event::Kind::ManualReset};
        WorkerWait wait;
        WorkerThread worker;
    };
    using ThreadList = std::list<EnumeratorThread>;

    CSymbolEnumeratorHost() = default;

    void StartThread();
    void ThreadMain(EnumeratorThread& self);
    bool WaitForWork(EnumeratorThread& self);
    void Step(EnumeratorThread& self);
    void BeginStop(ThreadList& stopped, WorkList& dropped);
    void AwaitStop(ThreadList& stopped);
    void JoinEnded();

    CriticalSection m_lock; // guards all below
    ThreadList m_thread;    // one at most
    ThreadList m_retired;
    std::size_t m_nAwaited = 0; // stopped threads that somebody waits for
    LONG m_nRefCount = 0;       // front objects alive
    WorkList m_arSymbolEnumerators;
};

CSymbolEnumeratorHost& CSymbolEnumeratorHost::Instance()
{
    static CSymbolEnumeratorHost& host = *new CSymbolEnumeratorHost;
    static const struct AtExit
    {
        ~AtExit()
        {
            if (!OtherThreadsAreGone())
                host.EndThread();
        }
    } end;
    return host;
}

// ---- front objects

void CSymbolEnumeratorHost::AddConvertor()
{
    LockGuard lock(m_lock);
    ++m_nRefCount;
}

void CSymbolEnumeratorHost::ReleaseConvertor()
{
    WorkList dropped; // let go of without the lock
    ThreadList stopped;
    LONG nLeft = 0;
    {
        LockGuard lock(m_lock);
        nLeft = --m_nRefCount;
        if (nLeft == 0)
            BeginStop(stopped, dropped);
    }
    Assert(0 <= nLeft, "0 <= (LONG)_host.m_nRefCount");
    AwaitStop(stopped);
}

// With the lock held. Gives the thread to wait for, if there is one.
void CSymbolEnumeratorHost::BeginStop(ThreadList& stopped, WorkList& dropped)
{
    JoinEnded();
    if (m_thread.empty())
        return;
    EnumeratorThread& thread = m_thread.front();
    thread.stop.Set();
    dropped.swap(m_arSymbolEnumerators);
    ThreadList& keeper = thread.worker.IsSelf() ? m_retired : stopped;
    keeper.splice(keeper.end(), m_thread);
    m_nAwaited += stopped.size();
}

void CSymbolEnumeratorHost::AwaitStop(ThreadList& stopped)
{
    if (stopped.empty())
        return;
    for (EnumeratorThread& thread : stopped)
        thread.worker.JoinPumping();
    LockGuard lock(m_lock);
    m_nAwaited -= stopped.size();
}

// With the lock held: a thread that has ended doesn't take it again.
void CSymbolEnumeratorHost::JoinEnded()
{
    m_retired.remove_if([](EnumeratorThread& thread) {
        const bool bEnded = thread.worker.HasEnded();
        if (bEnded)
            thread.worker.Join();
        return bEnded;
    });
}

// Enumerations that still wait aren't released: the code that they would run may be gone.
void CSymbolEnumeratorHost::EndThread()
{
    ThreadList threads;
    {
        LockGuard lock(m_lock);
        threads.swap(m_retired);
        threads.splice(threads.end(), m_thread);
    }
    for (EnumeratorThread& thread : threads) {
        thread.stop.Set();
        if (thread.worker.IsSelf())
            thread.worker.Leave();
        else
            thread.worker.Join();
    }
}

// ---- enumerations

HRESULT CSymbolEnumeratorHost::Add(IFileHandlerEvents* pEvents)
{
    LockGuard lock(m_lock);
    JoinEnded();
    // A front object that came after the last one had gone isn't kept waiting.
    if (m_nAwaited > 0 && m_nRefCount == 0)
        return S_FALSE;
    if (m_thread.empty())
        StartThread();
    m_arSymbolEnumerators.push_back({pEvents, 0});
    // With the lock held: the thread takes the signal before the first step of this entry, so
    // it never wakes to an empty list.
    m_thread.front().wake.Set();
    return S_OK;
}

void CSymbolEnumeratorHost::StartThread()
{
    EnumeratorThread& self = m_thread.emplace_back();
    try {
        self.worker.Start(WorkerThread::Priority::Normal, WorkerThread::Runtime::Apartment,
                          [this, &self] { ThreadMain(self); });
    } catch (...) {
        m_thread.clear();
        throw;
    }
}

void CSymbolEnumeratorHost::ThreadMain(EnumeratorThread& self)
{
    while (WaitForWork(self))
        Step(self);
}

// False: the thread is to end.
bool CSymbolEnumeratorHost::WaitForWork(EnumeratorThread& self)
{
    constexpr int kStop = 0;
    Event::Timeout timeout; // without end
    {
        LockGuard lock(m_lock);
        if (!m_arSymbolEnumerators.empty())
            timeout = std::chrono::milliseconds(0);
    }
    return self.wait.WaitAny(self.stop, self.wake, timeout) != kStop;
}

void CSymbolEnumeratorHost::Step(EnumeratorThread& self)
{
    com_ptr<IFileHandlerEvents> pEvents; // may be the last reference when the entry has gone
    ULONGLONG nPosition = 0;
    {
        LockGuard lock(m_lock);
        if (!m_arSymbolEnumerators.empty()) {
            CConverterPersist& first = m_arSymbolEnumerators.front();
            pEvents = first.pEvents;
            nPosition = first.nNext++;
        }
    }
    if (!Assert(static_cast<bool>(pEvents), "!m_arSymbolEnumerators.IsEmpty()"))
        return;
    if (pEvents->ProcessRecord(nPosition, nullptr, VARIANT_TRUE) == S_OK)
        return;
    LockGuard lock(m_lock);
    // A thread that was stopped within the step has lost the list, maybe to a new thread.
    const bool bOwnList = !m_thread.empty() && &m_thread.front() == &self;
    if (bOwnList)
        m_arSymbolEnumerators.pop_front();
}

} // namespace

// ---- what the library uses --------------------------------------------------

void SymbolEnumeratorHost::AddConvertor()
{
    CSymbolEnumeratorHost::Instance().AddConvertor();
}

void SymbolEnumeratorHost::ReleaseConvertor()
{
    CSymbolEnumeratorHost::Instance().ReleaseConvertor();
}

void SymbolEnumeratorHost::EndThread()
{
    CSymbolEnumeratorHost::Instance().EndThread();
}

HRESULT SymbolEnumeratorHost::Add(IFileHandlerEvents* pEvents)
{
    return CSymbolEnumeratorHost::Instance().Add(pEvents);
}

} // namespace Hesperon::specifics
