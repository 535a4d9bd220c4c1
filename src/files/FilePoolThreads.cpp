// The threads' side of CFilePool: one thread for each open file.
//
// A request is queued, and whoever queued it starts threads until one is free to take it.
// That thread runs the file's handler for as long as the file is in use, and then ends,
// unless it is the only thread ever started: that one waits for the next request.

#include <algorithm>

#include "diagnostics/FaultmereClient.h"
#include "src/files/FilePoolImpl.h"

namespace Hesperon::specifics {

// A request for which no thread can be started is taken back. If it isn't in the queue any more, a
// thread that became free has taken it, and all is well.
bool CFilePool::QueueRequest(std::unique_ptr<SOpenRequest> request)
try {
    auto pHandler = std::make_shared<CFileHandler>();
    ThreadsLock lock(m_threadsLock);
    // A shutdown waits for the pool's threads, so one of them can't wait for it.
    if (m_bShutdown && IsPoolThread())
        return false;
    m_threadsChanged.wait(lock, [&] { return !m_bShutdown; });
    JoinEnded(m_threads);
    JoinEnded(m_retired);
    const ULONGLONG nTicket = ++m_nLastTicket;
    m_queue.push_back({nTicket, std::move(request), std::move(pHandler)});
    m_threadsChanged.notify_all();
    try {
        WaitUntilTaken(lock, nTicket);
    } catch (const std::exception&) {
        return std::erase_if(m_queue, [=](auto& queued) { return queued.nTicket == nTicket; }) == 0;
    }
    return true;
} catch (const std::bad_alloc&) {
    return false;
}

// Requests are taken in the order of their tickets, so this one is still there while the first of
// the queue has no later ticket. Throws where a thread is needed and can't be started.
void CFilePool::WaitUntilTaken(ThreadsLock& lock, ULONGLONG nTicket)
{
    while (!m_queue.empty() && m_queue.front().nTicket <= nTicket) {
        if (!m_bShutdown && m_nFree < m_queue.size())
            StartThread();
        else
            m_threadsChanged.wait(lock);
    }
}

void CFilePool::StartThread()
{
    PoolThread& self = m_threads.emplace_back();
    try {
        self.worker.Start(WorkerThread::Priority::Lowered, WorkerThread::Runtime::None,
                          [this, &self] { ThreadMain(self); });
    } catch (const std::exception&) {
        m_threads.pop_back();
        throw;
    }
    ++m_nThreads;
    ++m_nFree;
}

// A thread serves one file and ends; the only one ever started waits for the next.
void CFilePool::ThreadMain(PoolThread& self)
{
    ThreadsLock lock(m_threadsLock);
    for (bool bLast = false; !bLast;) {
        m_threadsChanged.wait(lock, [&] { return m_bShutdown || !m_queue.empty(); });
        --m_nFree;
        if (m_bShutdown)
            break;
        RunRequest(lock, self);
        bLast = self.bRetired || m_bShutdown || m_nThreads > 1;
        if (!bLast)
            ++m_nFree;
    }
    self.bEnded = true;
}

void CFilePool::RunRequest(ThreadsLock& lock, PoolThread& self)
{
    QueuedRequest queued = std::move(m_queue.front());
    m_queue.pop_front();
    m_threadsChanged.notify_all();
    self.pHandler = queued.pHandler;
    lock.unlock();
    try {
        queued.pHandler->Execute(std::move(queued.request));
    } catch (const std::exception&) {
        // Out of memory before the file was registered; its caller gets null, below.
    }
    if (!queued.pHandler->IsRegistered())
        AbandonOpening(queued.pHandler->FileName());
    queued.pHandler.reset();
    lock.lock();
    self.pHandler.reset();
}

bool CFilePool::IsPoolThread() const
{
    const auto isSelf = [](const PoolThread& t) { return t.worker.IsSelf(); };
    return std::ranges::any_of(m_threads, isSelf) || std::ranges::any_of(m_stopping, isSelf) ||
           std::ranges::any_of(m_retired, isSelf);
}

// A thread that has ended needs the lock no more, so joining it under the lock doesn't
// wait.
void CFilePool::JoinEnded(ThreadList& threads)
{
    std::erase_if(threads, [](PoolThread& t) {
        if (t.bEnded)
            t.worker.Join();
        return t.bEnded;
    });
}

// The last parser has released its file before: the workers that this waits for run until nobody
// holds theirs.
void CFilePool::ReleaseParser()
{
    if (--m_nRefs == 0)
        ShutdownThreads();
}

void CFilePool::ShutdownThreads()
{
    Shutdown(false);
}

void CFilePool::Shutdown(bool bWhateverLives)
{
    ThreadsLock lock(m_threadsLock);
    if (!BeginShutdown(lock, bWhateverLives))
        return;
    JoinStopping(lock);
    m_bShutdown = false;
    m_threadsChanged.notify_all();
    if (bWhateverLives)
        FaultmereUtil::Assert(m_nThreads == 0, "m_pool.IsEmpty()");
}

// False if there is nothing to do: another thread does it, or a parser has come
// meanwhile. After true, new requests wait until the end of the shutdown.
bool CFilePool::BeginShutdown(ThreadsLock& lock, bool bWhateverLives)
{
    if (m_bShutdown && IsPoolThread())
        return false;
    m_threadsChanged.wait(lock, [&] { return !m_bShutdown; });
    if (m_nRefs != 0 && !bWhateverLives)
        return false;
    m_bShutdown = true;
    m_nThreads = 0;
    m_stopping.splice(m_stopping.end(), m_threads);
    m_stopping.splice(m_stopping.end(), m_retired);
    if (bWhateverLives) {
        for (PoolThread& t : m_stopping)
            if (t.pHandler)
                t.pHandler->Stop();
    }
    m_threadsChanged.notify_all();
    return true;
}

// A thread can't join itself, so one that shuts the pool down retires instead. The lock is left for
// each join, since a thread takes it on its way out. The list stays the same meanwhile: only a
// shutdown changes it, and m_bShutdown keeps others out.
void CFilePool::JoinStopping(ThreadsLock& lock)
{
    const auto self =
        std::ranges::find_if(m_stopping, [](const PoolThread& t) { return t.worker.IsSelf(); });
    if (self != m_stopping.end()) {
        self->bRetired = true;
        m_retired.splice(m_retired.end(), m_stopping, self);
    }
    for (PoolThread& t : m_stopping) {
        lock.unlock();
        t.worker.Join();
        lock.lock();
    }
    m_stopping.clear();
}

std::size_t CFilePool::ThreadCount()
{
    std::lock_guard lock(m_threadsLock);
    return m_threads.size() + m_stopping.size() + m_retired.size();
}

} // namespace Hesperon::specifics
