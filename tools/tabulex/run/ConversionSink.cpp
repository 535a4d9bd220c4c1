// A batch is reviewed as the component gives it and written as it is reshaped, so that what is
// judged is what was read. Lines that were left out aren't in a batch, yet each stands for the same
// number of lines, so its place is counted in those. An interrupt ends the run with the batch that
// is written.

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
    const ULONGLONG nAll = Extent(records, 2);
    if (Extent(records, 1) != m_reshaped.Columns() || (nAll > 0 && !cells.data()))
        return E_UNEXPECTED;
    const auto [taken, nRows] =
        m_end ? m_end->Of(cells.data(), nAll) : RangeEnd::Rows{cells.data(), nAll};
    if (m_review)
        m_review->Take(taken, nRows);
    if (m_days)
        m_days->Take(taken, nRows, m_nBatches * kBatchLines);
    const VARIANT* rows = m_reshaped.Of(taken, nRows);
    const bool bWritten = !m_output || m_output->Write(rows, nRows);
    ++m_nBatches;
    m_nRows += nRows;
    m_errors.EndBatch(kBatchLines);
    if (bWritten)
        return S_OK;
    return m_output->IsReaderGone() ? S_FALSE : E_FAIL;
}

} // namespace tabulex
