// RowQueue: hands the rows of a run to a thread of its own, which takes them along their path, so
// that the component reads on meanwhile.
//
// Rows are copied into a few batches whose memory is used again; a caller that is ahead by all of
// them waits. The first batch takes the caller's thread, so that a small file starts none. All
// calls come from one thread. Nothing else may use what the path leads to between Take and the next
// Drain or Finish.
#pragma once

#include <array>
#include <condition_variable>
#include <exception>
#include <mutex>
#include <thread>

#include "tools/tabulex/run/RowCopy.h"
#include "tools/tabulex/run/RowPath.h"

namespace tabulex {

class RowQueue
{
public:
    enum class Threads
    {
        One, // the caller's does everything
        Two
    };

    // The path must outlive this.
    RowQueue(RowPath& path, Threads threads) : m_path(path), m_bAlone(threads == Threads::One) {}
    // Drops what waits, and ends the thread.
    ~RowQueue();
    RowQueue(const RowQueue&) = delete;
    RowQueue& operator=(const RowQueue&) = delete;

    // The rows of a whole batch, which are free when it returns. False once the path has refused
    // rows, of this batch or one before; it gets those that come after all the same.
    bool Take(const VARIANT* cells, ULONGLONG nRows);
    // Waits until all rows have been taken along the path.
    void Drain();
    // The same, ends the thread, and throws what the path threw there. Call it once, after the last
    // Take. False if the path has refused rows.
    bool Finish();

private:
    static constexpr std::size_t kBatches = 4;
    // Waking a thread costs more than a batch, so each side sleeps until half of them are for it.
    static constexpr std::size_t kHalf = kBatches / 2;

    struct Batch
    {
        RowCopy rows;
        ULONGLONG nRows = 0;
    };

    bool HasThread();
    bool TakeHere(const VARIANT* cells, ULONGLONG nRows);
    void WaitForRoom();
    bool HandOver();
    void End(bool bDrop);
    void Main();
    bool WaitForBatch();
    bool TakeBatch(const Batch& batch);
    void GiveBack(bool bSound);
    ULONGLONG Waiting() const { return m_nFilled - m_nEmptied; }

    RowPath& m_path;
    bool m_bAlone;
    bool m_bFirst = true; // no batch has come yet
    std::array<Batch, kBatches>
        m_batches; // by number modulo their count; whose turn it is owns one
    std::thread m_thread;

    std::mutex m_lock; // guards what follows
    std::condition_variable m_filled, m_emptied;
    ULONGLONG m_nFilled = 0;     // batches that were handed over
    ULONGLONG m_nEmptied = 0;    // and of them, those that were taken along the path
    bool m_bIdle = false;        // the thread waits for batches
    bool m_bWaits = false;       // the caller waits for room
    bool m_bUrgent = false;      // the caller waits for all of them
    bool m_bEnd = false;         // no batch comes any more
    bool m_bDrop = false;        // those that wait aren't wanted
    bool m_bFailed = false;      // the path has refused rows, or thrown
    std::exception_ptr m_thrown; // by the path; of the thread until that has ended
};

} // namespace tabulex
