// Table: a sample seen as rows of cells under headings, with what is known of each column.
//
// Facts only: what divides the cells, where the headings stand, how numbers are written, which
// texts can be moments. What a column means is asked elsewhere. The sample must outlive it.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "advice/forms/FileSample.h"
#include "advice/forms/MomentForms.h"
#include "advice/forms/NumberForms.h"
#include "advice/forms/Rows.h"

namespace tabulex::advice {

inline constexpr std::size_t kMostColumns = 256; // wider lines are no quotes

struct TableRow
{
    std::uint64_t nLine = 0; // as in SampledLine
    std::string_view sText;
    std::vector<std::string_view> cells;

    // Empty behind the last one.
    std::string_view Cell(std::size_t n) const { return n < cells.size() ? cells[n] : ""; }
};

struct FormCount
{
    MomentForm form;
    std::size_t nRead = 0; // cells
};

struct Column
{
    std::string sHeading;     // UTF-8; empty for none
    std::size_t nCells = 0;   // of the rows that were looked at, those without a value left out
    std::size_t nMissing = 0; // cells that stand for no value, empty ones included
    std::size_t nNumbers = 0;
    std::size_t nTexts = 0; // cells with a letter that are no number
    int nMostDecimals = 0;
    unsigned uMarks = 0;          // of NumberMark
    double dLeast = 0, dMost = 0; // of numbers
    bool bConstant = true;        // all cells are the same text
    std::string_view sFirst;      // the first cell with a value
    std::vector<FormCount> forms; // that read at least one, the likelier first

    bool IsNumeric() const { return nNumbers > 0 && nNumbers * 10 >= nCells * 9; }
    bool IsWhole() const { return IsNumeric() && nMostDecimals == 0; }
    // How many cells the form reads.
    std::size_t ReadBy(const MomentForm& form) const;
};

struct Table
{
    Dialect dialect;
    NumberStyle style;
    std::size_t nHeading = 0; // place of the heading in the sample's lines, if there is one
    bool bHeading = false;
    std::size_t nFirstRow = 0; // place of the first row of data in the sample's lines
    std::vector<Column> columns;
    std::vector<TableRow> rows; // from the first one on, lines that are none included
    bool bShifted = false;      // a heading lacks, and it isn't that of the last column
    bool bMarksUnclear = false; // commas are taken for marks of thousands, and may be decimal ones
    std::string sEncoding;      // of the headings, where they aren't UTF-8

    bool IsEmpty() const { return rows.empty() || columns.size() < 2; }
};

// Bytes in an encoding as UTF-8; empty where they can't be text of it, or it isn't known.
using Decoder =
    std::function<std::optional<std::string>(std::string_view bytes, std::string_view encoding)>;

// The table of a sample; an empty one where no divider gives any, and one without facts where there
// are more than kMostColumns. Headings that aren't UTF-8 are read in the encoding in which most of
// them are known.
Table FindTable(const FileSample& sample, const Decoder& decode = {});

} // namespace tabulex::advice
