// LayoutFacts: what the review of a layout looks at, read once from an opened file.
//
// The rows are a sample: the first ones, one of each hundred of the first thousand, the last
// one, and some in between where the component knows the whole file already. Reading them costs
// no walk through the file.
#pragma once

#include <string>
#include <vector>

#include "tools/tabulex/host/FileLayout.h"
#include "tools/tabulex/host/Settings.h"
#include "tools/tabulex/review/FileStart.h"

namespace tabulex {

struct ReviewedColumn
{
    unsigned uiType = kNoType;
    std::string sType;     // internal name; empty for an unassigned column
    std::string sTemplate; // of a Date or Time column
    std::string sHeading;  // as people read it; empty for none
    bool bByUser = false;  // the user named its type
};

struct SampledRow
{
    ULONGLONG nPosition = 0;
    std::vector<std::string> cells; // as the columns get them, one a column; empty behind the end
    std::size_t nCells = 0;         // of the record, without empty ones at its end
    std::vector<std::size_t> emptyCells; // of these, counted from 0
};

struct LayoutFacts
{
    FileLayout layout;
    std::vector<ReviewedColumn> columns;
    std::vector<std::string> headings; // of all cells of the heading line
    std::vector<SampledRow> rows;      // in the order of the records
    std::size_t nFirstRows = 0;        // so many of the rows follow on each other
    std::vector<std::string> admitted; // types that the resolution admits
    FileStart start{std::string()};
    std::string sHeaderEncoding; // that its bytes show; empty for the one in use

    // The first column of a type; empty if there is none.
    std::optional<std::size_t> ColumnOf(unsigned uiType) const;
    bool Admits(std::string_view type) const;
};

// The columns that the user has named are marked. Throws Fault where the host can't be read.
LayoutFacts ReadFacts(const Host& host, const std::vector<ColumnSetting>& byUser);

// Cuts a record as the component does, but keeps empty cells.
std::vector<std::string> SplitCells(std::string_view record, LONG nDividers);

// Text of the file for a message: cut, and without control characters.
std::string ShownText(std::string_view text);

// `6 "Adj Close"`, or the number alone; counts from 1.
std::string ColumnText(std::size_t nColumn, const ReviewedColumn& column);

// "1, 2 and 3"; of a long list the first ones, and how many more.
std::string ListText(const std::vector<std::string>& items);

} // namespace tabulex
