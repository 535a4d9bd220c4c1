// ConversionSink: receives a conversion and hands its rows to an output.
#pragma once

#include "tools/tabulex/host/DataSink.h"
#include "tools/tabulex/output/ReshapedRows.h"
#include "tools/tabulex/output/RowOutput.h"
#include "tools/tabulex/review/DeliveredReview.h"
#include "tools/tabulex/review/RowReview.h"
#include "tools/tabulex/run/ErrorReporter.h"
#include "tools/tabulex/run/RangeEnd.h"

namespace tabulex {

class ConversionSink : public DataSink
{
public:
    // `output` is null for a dry run, and takes rows as they are reshaped. All must
    // outlive the run.
    ConversionSink(ReshapedRows& rows, RowOutput* output, ErrorReporter& errors,
                   RowReview* review = nullptr, DeliveredReview* days = nullptr,
                   RangeEnd* end = nullptr)
        : m_reshaped(rows), m_output(output), m_errors(errors), m_review(review), m_days(days),
          m_end(end)
    {}

    // Of all batches that came, whatever the end; rows without those behind the range.
    ULONGLONG Batches() const { return m_nBatches; }
    ULONGLONG Rows() const { return m_nRows; }
    // A batch couldn't be kept, which ended the run.
    bool IsOutOfMemory() const { return m_bOutOfMemory; }

    HRESULT STDMETHODCALLTYPE DataChanged(VARIANT Data) override;

private:
    HRESULT TakeBatch(SAFEARRAY* records);

    ReshapedRows& m_reshaped;
    RowOutput* m_output; // null for a dry run
    ErrorReporter& m_errors;
    RowReview* m_review;     // sees the rows first; null for none
    DeliveredReview* m_days; // the same
    RangeEnd* m_end;         // null where the component keeps to the range
    ULONGLONG m_nBatches = 0;
    ULONGLONG m_nRows = 0;
    bool m_bOutOfMemory = false;
};

} // namespace tabulex
