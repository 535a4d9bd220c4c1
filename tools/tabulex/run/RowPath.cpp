// A batch is reviewed as the component gives it and written as it is reshaped, so that what is
// judged is what was read. Lines that were left out aren't in a batch, yet each stands for the same
// number of lines, so its place is counted in those.

#include "tools/tabulex/run/RowPath.h"

#include "tools/tabulex/account/ReportedLine.h"

namespace tabulex {

bool RowPath::Take(const VARIANT* cells, ULONGLONG nRows)
{
    if (m_bRefused)
        return false;
    const auto [taken, nTaken] = m_end ? m_end->Of(cells, nRows) : RangeEnd::Rows{cells, nRows};
    if (m_review)
        m_review->Take(taken, nTaken);
    if (m_days)
        m_days->Take(taken, nTaken, m_nBatches * kBatchLines);
    const VARIANT* rows = m_reshaped.Of(taken, nTaken);
    m_bRefused = m_output && !m_output->Write(rows, nTaken);
    ++m_nBatches;
    m_nRows += nTaken;
    return !m_bRefused;
}

} // namespace tabulex
