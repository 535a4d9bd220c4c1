// ConversionSink: receives a conversion and hands its rows to a queue.
#pragma once

#include "tools/tabulex/host/DataSink.h"
#include "tools/tabulex/run/ErrorReporter.h"
#include "tools/tabulex/run/RowPath.h"
#include "tools/tabulex/run/RowQueue.h"

namespace tabulex {

class ConversionSink : public DataSink
{
public:
    // The queue leads to the path. All must outlive the run.
    ConversionSink(const RowPath& path, RowQueue& queue, ErrorReporter& errors)
        : m_path(path), m_queue(queue), m_errors(errors)
    {}

    // Once the session is over: waits until its rows have been taken. May throw what the output
    // threw.
    void FinishRows();

    // The rest is valid after that.

    // Of all batches that came, whatever the end; rows without those behind the range.
    ULONGLONG Batches() const { return m_nBatches; }
    ULONGLONG Rows() const { return m_path.Rows(); }
    // The session ended well, and all rows were taken.
    bool IsCommitted() const { return DataSink::IsCommitted() && !m_bFailed; }
    // A batch couldn't be kept, which ended the run.
    bool IsOutOfMemory() const { return m_bOutOfMemory; }

    HRESULT STDMETHODCALLTYPE DataChanged(VARIANT Data) override;

private:
    HRESULT TakeBatch(SAFEARRAY* records);

    const RowPath& m_path;
    RowQueue& m_queue;
    ErrorReporter& m_errors;
    ULONGLONG m_nBatches = 0;
    bool m_bFailed = false;
    bool m_bOutOfMemory = false;
};

} // namespace tabulex
