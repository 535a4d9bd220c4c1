// A run may end without a word to its sink, where the component takes the fault for known; it lets
// go of the sink all the same. So a program that waits is woken as well when nobody but the run
// holds the sink any more.

#include "component/reader/RowRun.h"

#include <new>

#include "component/reader/ReadFailure.h"

namespace Hesperon::reader {

using tabulex::detail::CountsRow;
using tabulex::detail::Step;

// ---- the worker's side

RowSink::RowSink(std::shared_ptr<RowQueue> queue, const OpenedFile& file)
    : m_queue(std::move(queue)), m_rules(file.Rules()), m_types(file.ReadTypes()),
      m_bBackwards(file.Layout().runs_backwards != 0), m_batch(std::make_unique<RowBatch>(m_rules))
{}

HRESULT RowSink::OnError2(LONG_PTR nLine, LONG nField, BSTR bsText)
try {
    m_batch->AddBad(nLine, nField, ToUtf8(TextOf(bsText)));
    return S_OK;
} catch (const std::bad_alloc&) {
    return FailForMemory();
}

// The component's numbers of bad lines are those of the position before, in the last batch of a
// file that runs backwards if it isn't full.
HRESULT RowSink::PutRecords(VARIANT vRecords, ULONGLONG nLines)
try {
    constexpr ULONGLONG kFullBatch = 1000;
    if (vRecords.vt != (VT_ARRAY | VT_VARIANT) ||
        !m_batch->AddRows(*vRecords.parray, m_types, nLines))
        return E_UNEXPECTED;
    if (m_bBackwards && nLines < kFullBatch)
        m_batch->ShiftBad();
    return Deliver(std::exchange(m_batch, std::make_unique<RowBatch>(m_rules)));
} catch (const std::bad_alloc&) {
    return FailForMemory();
}

HRESULT RowSink::Deliver(std::unique_ptr<RowBatch> batch)
{
    std::unique_lock lock(m_queue->lock);
    m_queue->changed.wait(
        lock, [&] { return m_queue->bCancelled || m_queue->batches.size() < RowQueue::kAhead; });
    if (m_queue->bCancelled)
        return E_ABORT;
    m_queue->batches.push_back(std::move(batch));
    m_queue->changed.notify_all();
    return S_OK;
}

HRESULT RowSink::EndTransaction(VARIANT_BOOL bResult)
{
    const std::lock_guard lock(m_queue->lock);
    m_queue->bEnded = true;
    m_queue->bWell = bResult != VARIANT_FALSE;
    m_queue->changed.notify_all();
    return S_OK;
}

HRESULT RowSink::FailForMemory()
{
    const std::lock_guard lock(m_queue->lock);
    m_queue->bOutOfMemory = true;
    return E_OUTOFMEMORY;
}

// This object may be gone once the reference is.
ULONG RowSink::Release()
{
    const std::shared_ptr<RowQueue> queue = m_queue;
    const ULONG nLeft = ParserSink::Release();
    if (nLeft == 1) {
        const std::lock_guard lock(queue->lock);
        queue->changed.notify_all();
    }
    return nLeft;
}

// ---- the program's side

RowRun::RowRun(OpenedFile& file) : m_file(file)
{
    if (!file.Fault().empty())
        throw ReadFailure{file.Fault()};
    if (file.m_bBusy)
        throw ReadFailure{"its rows are being read already; end that first, or open the file "
                          "once more"};
    m_sink = com_ptr<RowSink>(new RowSink(m_queue, file));
    m_parser = file.RowReader();
    Require(m_parser->StartConversion(m_sink.get(), reinterpret_cast<ULONG_PTR>(m_sink.get())),
            "starting to read");
    file.m_bBusy = true;
}

// The worker may wait in the sink: it is woken before the component is asked to end the run.
RowRun::~RowRun()
{
    Cancel();
    m_parser->AbortConversion();
    m_file.m_bBusy = false;
}

void RowRun::Cancel()
{
    const std::lock_guard lock(m_queue->lock);
    m_queue->bCancelled = true;
    m_queue->changed.notify_all();
}

Step RowRun::Next(std::unique_ptr<RowBatch>& batch)
{
    std::unique_lock lock(m_queue->lock);
    m_queue->changed.wait(lock, [&] {
        return m_queue->bCancelled || !m_queue->batches.empty() || m_queue->bEnded ||
               m_sink->References() == 1;
    });
    if (m_queue->bCancelled)
        return Step::cancelled;
    if (!m_queue->batches.empty()) {
        batch = std::move(m_queue->batches.front());
        m_queue->batches.pop_front();
        m_queue->changed.notify_all();
        lock.unlock();
        Count(batch->Counts());
        return Step::batch;
    }
    const bool bWell = m_queue->bWell;
    const bool bOutOfMemory = m_queue->bOutOfMemory;
    lock.unlock();
    if (bOutOfMemory)
        throw ReadFailure{"memory ran out"};
    m_file.RequireWhole();
    if (!bWell)
        throw ReadFailure{"reading ended ahead of the end of the file"};
    return Step::end;
}

void RowRun::Count(const CountsRow& batch)
{
    m_counts.lines += batch.lines;
    m_counts.delivered += batch.delivered;
    m_counts.bad += batch.bad;
    m_counts.out_of_range += batch.out_of_range;
    m_counts.other_symbols += batch.other_symbols;
    m_counts.cut_volumes += batch.cut_volumes;
}

} // namespace Hesperon::reader
