// Rows are copied and taken where they go on another thread, while the component waits for nothing
// but the copy. So a fault of the output may show in a later batch, or after the last one, and then
// still takes the run back. An interrupt ends the run with the batch that is taken.

#include "tools/tabulex/run/ConversionSink.h"

#include <new>

#include "platform/values.h"
#include "tools/tabulex/system/Interrupt.h"

namespace tabulex {

namespace {

// The cells of a batch, in place: record after record, each with its columns side by side.
class Cells
{
public:
    explicit Cells(SAFEARRAY* array) : m_array(array)
    {
        if (FAILED(SafeArrayAccessData(array, &m_data)))
            m_data = nullptr;
    }
    ~Cells()
    {
        if (m_data)
            SafeArrayUnaccessData(m_array);
    }
    const VARIANT* data() const { return static_cast<const VARIANT*>(m_data); }

private:
    SAFEARRAY* m_array;
    void* m_data = nullptr;
};

ULONGLONG Extent(SAFEARRAY* array, UINT nDimension)
{
    LONG nFirst = 0;
    LONG nLast = -1;
    SafeArrayGetLBound(array, nDimension, &nFirst);
    SafeArrayGetUBound(array, nDimension, &nLast);
    return static_cast<ULONGLONG>(LONGLONG(nLast) - nFirst + 1);
}

} // namespace

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
    const Cells cells(records);
    const ULONGLONG nRows = Extent(records, 2);
    if (Extent(records, 1) != m_path.Columns() || (nRows > 0 && !cells.data()))
        return E_UNEXPECTED;
    const bool bTaken = m_queue.Take(cells.data(), nRows);
    ++m_nBatches;
    m_errors.EndBatch(kBatchLines);
    if (bTaken)
        return S_OK;
    m_queue.Drain();
    return m_path.IsReaderGone() ? S_FALSE : E_FAIL;
}

void ConversionSink::FinishRows()
try {
    const bool bTaken = m_queue.Finish();
    m_bFailed = m_bOutOfMemory || (!bTaken && !m_path.IsReaderGone());
} catch (const std::bad_alloc&) {
    m_bFailed = m_bOutOfMemory = true;
}

} // namespace tabulex
