// Where the table begins in a file that has other lines in front of it.
#pragma once

#include <optional>

#include "tools/tabulex/explain/Sample.h"

namespace tabulex {

struct TableStart
{
    LONG nDividers;     // mask: the divider that cuts most lines into equal numbers of cells
    std::size_t nCells; // of most lines
    std::size_t nData;  // index in Sample::lines of the first line with data
    bool bHeader;       // the line in front of it names the columns
    double agreement;   // share of the lines that have that many cells, 0 to 1

    std::size_t First() const { return nData - (bHeader ? 1 : 0); }
};

// Empty where no divider cuts the lines into two cells or more.
std::optional<TableStart> FindTableStart(const Sample& sample);

} // namespace tabulex
