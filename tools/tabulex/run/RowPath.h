// RowPath: the way of delivered rows to an output: those behind the range are left out, the others
// are reviewed as they were read, reshaped, and written.
//
// Used by one thread at a time, which needn't be that of the run.
#pragma once

#include "tools/tabulex/output/ReshapedRows.h"
#include "tools/tabulex/output/RowOutput.h"
#include "tools/tabulex/review/DeliveredReview.h"
#include "tools/tabulex/review/RowReview.h"
#include "tools/tabulex/run/RangeEnd.h"

namespace tabulex {

class RowPath
{
public:
    // What is null is left out: the output for a dry run, the end where the component keeps to the
    // range. All must outlive this.
    explicit RowPath(ReshapedRows& rows, RowOutput* output, RowReview* review = nullptr,
                     DeliveredReview* days = nullptr, RangeEnd* end = nullptr)
        : m_reshaped(rows), m_output(output), m_review(review), m_days(days), m_end(end)
    {}

    // Of a row as it is delivered.
    std::size_t Columns() const { return m_reshaped.Columns(); }
    // The rows of a whole batch, each with its cells side by side. False if the output refuses
    // them, which are counted and reviewed all the same, and for all that come after these.
    bool Take(const VARIANT* cells, ULONGLONG nRows);
    // Batches so far, and their rows without those behind the range.
    ULONGLONG Batches() const { return m_nBatches; }
    ULONGLONG Rows() const { return m_nRows; }

    // False for an output that nobody sees before its commit, and for none.
    bool ShowsAtOnce() const { return m_output && m_output->ShowsAtOnce(); }
    // The reader of a pipe is gone, which is no fault.
    bool IsReaderGone() const { return m_output && m_output->IsReaderGone(); }

private:
    ReshapedRows& m_reshaped;
    RowOutput* m_output;
    RowReview* m_review;
    DeliveredReview* m_days;
    RangeEnd* m_end;
    bool m_bRefused = false;
    ULONGLONG m_nBatches = 0;
    ULONGLONG m_nRows = 0;
};

} // namespace tabulex
