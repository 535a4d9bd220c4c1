#include "tools/tabulex/ConversionSink.h"

#include <new>

#include "platform/values.h"
#include "tools/tabulex/Interrupt.h"
#include "tools/tabulex/Text.h"

namespace tabulex {

namespace {

// Few writes, and small against what the component keeps of the file.
constexpr std::size_t kBufferBytes = std::size_t{256} * 1024;

// Cells of a batch where they lie: the columns of a record side by side, a record after
// the other.
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

ConversionSink::ConversionSink(const ResolutionOffers& offers, std::unique_ptr<RowWriter> writer,
                               std::size_t nColumns, OutputFile* output, ErrorReporter& errors)
    : EventSink(offers), m_writer(std::move(writer)), m_nColumns(nColumns), m_output(output),
      m_errors(errors)
{
    m_writer->Begin(m_buffer);
}

// The component takes a reference for each line that it looks at.
ULONG ConversionSink::AddRef()
{
    m_nPulse.fetch_add(1, std::memory_order_relaxed);
    return EventSink::AddRef();
}

// Holds off Close for as long as it lives, and shows the sink as busy.
class ConversionSink::Call
{
public:
    explicit Call(ConversionSink& sink) : m_sink(sink), m_lock(sink.m_calls)
    {
        ++m_sink.m_nPulse;
        m_sink.m_bBusy = true;
    }
    ~Call()
    {
        ++m_sink.m_nPulse;
        m_sink.m_bBusy = false;
    }
    Call(const Call&) = delete;
    Call& operator=(const Call&) = delete;

    bool IsRefused() const { return m_sink.m_bClosed; }

private:
    ConversionSink& m_sink;
    std::lock_guard<std::mutex> m_lock;
};

HRESULT ConversionSink::PutRecords(VARIANT vRecords, ULONGLONG nRecCountWithSkeeped)
try {
    const Call call(*this);
    if (call.IsRefused())
        return E_ABORT;
    if (vRecords.vt != (VT_ARRAY | VT_VARIANT) || SafeArrayGetDim(vRecords.parray) != 2)
        return E_UNEXPECTED;
    const HRESULT hr = TakeBatch(vRecords.parray, nRecCountWithSkeeped);
    if (hr != S_OK)
        return hr;
    return Interrupted() ? E_ABORT : WriteWhenFull();
} catch (const std::bad_alloc&) {
    return E_OUTOFMEMORY;
}

HRESULT ConversionSink::TakeBatch(SAFEARRAY* records, ULONGLONG nLines)
{
    ULONGLONG nRows = 0;
    const HRESULT hr = WriteRows(records, nRows);
    if (FAILED(hr))
        return hr;
    ++m_counts.nBatches;
    m_counts.nDelivered += nRows;
    m_counts.nSkipped += nLines - nRows;
    m_nLines += nLines;
    m_errors.EndBatch(nLines);
    return S_OK;
}

// Any failure but E_INVALIDARG makes the component end the run with a rollback; that
// one it takes for an end which the sink has told itself.
HRESULT ConversionSink::WriteRows(SAFEARRAY* records, ULONGLONG& nRows)
{
    if (Extent(records, 1) != m_nColumns)
        return E_UNEXPECTED;
    nRows = Extent(records, 2);
    const Cells cells(records);
    if (nRows > 0 && !cells.data())
        return E_UNEXPECTED;
    for (ULONGLONG i = 0; i < nRows; ++i)
        m_writer->Row(cells.data() + i * m_nColumns, m_buffer);
    return S_OK;
}

// A reader that has seen enough ends the run as a complete one.
HRESULT ConversionSink::WriteWhenFull()
{
    if (m_buffer.size() < kBufferBytes || WriteRest())
        return S_OK;
    return m_output->IsReaderGone() ? S_FALSE : E_FAIL;
}

bool ConversionSink::WriteRest()
{
    const bool bWritten = !m_output || m_output->Write(m_buffer);
    m_buffer.clear();
    return bWritten;
}

HRESULT ConversionSink::EndTransaction(VARIANT_BOOL bResult)
{
    End(bResult != VARIANT_FALSE);
    return S_OK;
}

HRESULT ConversionSink::OnError2(LONG_PTR lptrLineNum, LONG lptrFieldNum, BSTR bsDescription)
try {
    const Call call(*this);
    const BadLine bad{static_cast<ULONGLONG>(lptrLineNum), lptrFieldNum,
                      ToUtf8(TextOf(bsDescription))};
    if (!call.IsRefused() && m_errors.Tell(bad) && !Interrupted())
        return S_OK;
    End(false); // after this answer the component sends no end
    return S_FALSE;
} catch (const std::bad_alloc&) {
    End(false);
    return E_OUTOFMEMORY;
}

void ConversionSink::End(bool bCommit)
{
    {
        std::lock_guard lock(m_lock);
        if (m_bEnded)
            return;
        m_bEnded = true;
        m_bCommit = bCommit;
    }
    m_ended.notify_all();
}

void ConversionSink::Close()
{
    End(false);
    std::lock_guard lock(m_calls);
    m_bClosed = true;
}

bool ConversionSink::WaitForEnd(std::chrono::milliseconds nMost)
{
    std::unique_lock lock(m_lock);
    return m_ended.wait_for(lock, nMost, [this] { return m_bEnded; });
}

} // namespace tabulex
