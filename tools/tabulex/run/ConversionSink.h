// ConversionSink: receives a conversion and hands its rows to an output.
#pragma once

#include "tools/tabulex/host/DataSink.h"
#include "tools/tabulex/output/RowOutput.h"
#include "tools/tabulex/run/ErrorReporter.h"

namespace tabulex {

// Lines in a batch; only the last batch of a run has fewer.
inline constexpr ULONGLONG kBatchLines = 1000;

class ConversionSink : public DataSink
{
public:
    // `output` is null for a dry run, and takes batches of `nColumns` columns. All must
    // outlive the run.
    ConversionSink(std::size_t nColumns, RowOutput* output, ErrorReporter& errors)
        : m_nColumns(nColumns), m_output(output), m_errors(errors)
    {}

    // Of all batches that came, whatever the end.
    ULONGLONG Batches() const { return m_nBatches; }
    ULONGLONG Rows() const { return m_nRows; }
    // A batch couldn't be kept, which ended the run.
    bool IsOutOfMemory() const { return m_bOutOfMemory; }

    HRESULT STDMETHODCALLTYPE DataChanged(VARIANT Data) override;

private:
    HRESULT TakeBatch(SAFEARRAY* records);

    std::size_t m_nColumns;
    RowOutput* m_output; // null for a dry run
    ErrorReporter& m_errors;
    ULONGLONG m_nBatches = 0;
    ULONGLONG m_nRows = 0;
    bool m_bOutOfMemory = false;
};

} // namespace tabulex
