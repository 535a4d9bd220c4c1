// Rows are copied and taken where they go on another thread, while the component waits for nothing
// but the copy. So a fault of the output may show in a later batch, or after the last one, and then
// still takes the run back. An interrupt ends the run with the batch that is taken.

#include "tools/tabulex/run/ConversionSink.h"

#include <new>

#include "platform/values.h"
#include "tools/tabulex/host/BatchCells.h"
#include "tools/tabulex/system/Interrupt.h"

namespace tabulex {

HRESULT ConversionSink::DataChanged(VARIANT Data)
try {
    if (Data.vt != (VT_ARRAY | VT_VARIANT) || SafeArrayGetDim(Data.parray) != 2)
        return E_UNEXPECTED;
    const HRESULT hr = TakeBatch(Data.parray);
    return SUCCEEDED(hr) && Interrupted() ? E_ABORT : hr;
} catch (const std::bad_alloc&) {
    m_bOutOfMemory = true;
    return E_OUTOFMEMORY;
}

// A reader that closes its pipe ends the run well.
HRESULT ConversionSink::TakeBatch(SAFEARRAY* records)
{
    const BatchCells cells(records);
    if (cells.Columns() != m_path.Columns() || (cells.Rows() > 0 && !cells.Data()))
        return E_UNEXPECTED;
    const bool bTaken = m_queue.Take(cells.Data(), cells.Rows());
    ++m_nBatches;
    m_errors.EndBatch(kBatchLines);
    if (bTaken)
        return S_OK;
    m_queue.Drain();
    m_nBatches = m_path.Batches(); // how many came meanwhile depends on the threads
    return m_path.IsReaderGone() ? S_FALSE : E_FAIL;
}

void ConversionSink::FinishRows()
try {
    const bool bTaken = m_queue.Finish();
    m_bFailed = m_bOutOfMemory || (!bTaken && !m_path.IsReaderGone());
    if (!bTaken)
        m_nBatches = m_path.Batches();
} catch (const std::bad_alloc&) {
    m_bFailed = m_bOutOfMemory = true;
}

} // namespace tabulex
