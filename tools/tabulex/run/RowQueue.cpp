// The batches are a ring. The caller fills the one after those that wait, the thread takes the one
// that has waited longest, both without the lock; only the two counts are changed under it. Either
// side sleeps only when it has nothing to do, and is woken when half of the ring is for it, or when
// the caller wants all rows taken. After an exception the thread drops what comes, since the path
// may be in no state to go on.

#include "tools/tabulex/run/RowQueue.h"

#include <system_error>
#include <utility>

namespace tabulex {

RowQueue::~RowQueue()
{
    End(true);
}

bool RowQueue::Take(const VARIANT* cells, ULONGLONG nRows)
{
    if (!HasThread())
        return TakeHere(cells, nRows);
    WaitForRoom();
    Batch& batch = m_batches[m_nFilled % kBatches];
    batch.rows.Assign(cells, nRows * m_path.Columns());
    batch.nRows = nRows;
    return HandOver();
}

// Where no thread can be had, the caller's does everything.
bool RowQueue::HasThread()
{
    const bool bFirst = std::exchange(m_bFirst, false);
    if (m_thread.joinable() || m_bAlone || bFirst)
        return m_thread.joinable();
    try {
        m_thread = std::thread([this] { Main(); });
    } catch (const std::system_error&) {
        m_bAlone = true;
    }
    return !m_bAlone;
}

bool RowQueue::TakeHere(const VARIANT* cells, ULONGLONG nRows)
{
    m_bFailed = !m_path.Take(cells, nRows) || m_bFailed;
    return !m_bFailed;
}

void RowQueue::WaitForRoom()
{
    std::unique_lock lock(m_lock);
    if (Waiting() < kBatches)
        return;
    m_bWaits = true;
    m_emptied.wait(lock, [this] { return Waiting() <= kHalf; });
    m_bWaits = false;
}

bool RowQueue::HandOver()
{
    std::unique_lock lock(m_lock);
    ++m_nFilled;
    const bool bWake = m_bIdle && Waiting() >= kHalf;
    const bool bSound = !m_bFailed;
    lock.unlock();
    if (bWake)
        m_filled.notify_one();
    return bSound;
}

void RowQueue::Drain()
{
    if (!m_thread.joinable())
        return;
    std::unique_lock lock(m_lock);
    m_bUrgent = true;
    m_filled.notify_one();
    m_emptied.wait(lock, [this] { return Waiting() == 0; });
    m_bUrgent = false;
}

bool RowQueue::Finish()
{
    End(false);
    if (m_thrown)
        std::rethrow_exception(std::exchange(m_thrown, nullptr));
    return !m_bFailed;
}

void RowQueue::End(bool bDrop)
{
    if (!m_thread.joinable())
        return;
    {
        const std::lock_guard lock(m_lock);
        m_bEnd = true;
        m_bDrop = bDrop;
    }
    m_filled.notify_one();
    m_thread.join();
}

// ---- on the thread

void RowQueue::Main()
{
    while (WaitForBatch())
        GiveBack(TakeBatch(m_batches[m_nEmptied % kBatches]));
}

// False at the end.
bool RowQueue::WaitForBatch()
{
    std::unique_lock lock(m_lock);
    if (Waiting() == 0) {
        m_bIdle = true;
        m_filled.wait(
            lock, [this] { return Waiting() >= kHalf || (m_bUrgent && Waiting() > 0) || m_bEnd; });
        m_bIdle = false;
    }
    return Waiting() > 0 && !m_bDrop;
}

bool RowQueue::TakeBatch(const Batch& batch)
{
    try {
        return !m_thrown && m_path.Take(batch.rows.Data(), batch.nRows);
    } catch (...) {
        m_thrown = std::current_exception();
        return false;
    }
}

void RowQueue::GiveBack(bool bSound)
{
    std::unique_lock lock(m_lock);
    ++m_nEmptied;
    m_bFailed = m_bFailed || !bSound;
    const bool bWake = m_bWaits ? Waiting() <= kHalf : m_bUrgent && Waiting() == 0;
    lock.unlock();
    if (bWake)
        m_emptied.notify_one();
}

} // namespace tabulex
