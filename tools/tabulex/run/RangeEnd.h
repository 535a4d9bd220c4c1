// RangeEnd: leaves out rows behind the end of a range.
//
// The component ends a run at the first such row, so a file in blocks, or out of order, is read
// with a range that has no end, and the end is kept here. Used by one thread.
#pragma once

#include <vector>

#include "tools/tabulex/host/Host.h"
#include "tools/tabulex/output/Column.h"

namespace tabulex {

class RangeEnd
{
public:
    // Of rows with these columns; a row at dtTo is the last one that stays.
    RangeEnd(const Host& host, const std::vector<Column>& columns, DATE dtTo);

    struct Rows
    {
        const VARIANT* cells; // row after row
        ULONGLONG nRows;
    };
    // Those that stay. Good until the next call, and no longer than the cells it was given.
    Rows Of(const VARIANT* cells, ULONGLONG nRows);
    // Rows so far that were left out.
    ULONGLONG LeftOut() const { return m_nLeftOut; }

private:
    bool IsBehind(const VARIANT* cells) const;

    std::size_t m_date, m_time; // places of the cells in a row
    std::size_t m_nColumns;
    LONGLONG m_nLast; // moment in milliseconds since 1899-12-30
    std::vector<VARIANT> m_kept;
    ULONGLONG m_nLeftOut = 0;
};

} // namespace tabulex
