// An empty cell makes no column, so the cells behind it move one column ahead. Gaps behind the last
// column that is read move nothing that is delivered, and aren't counted. Where blanks divide, an
// empty cell can't be told from a wide gap between two columns.

#include <algorithm>

#include <fmt/format.h>

#include "tools/tabulex/review/LayoutReview.h"

namespace tabulex {

namespace {

constexpr LONG kBlankIsDivider = 2; // bit

// Empty cells ahead of the last column that is read.
std::vector<std::size_t> GapsOf(const SampledRow& row, std::size_t nLastRead)
{
    std::vector<std::size_t> gaps;
    for (const std::size_t nCell : row.emptyCells)
        if (nCell <= nLastRead)
            gaps.push_back(nCell);
    return gaps;
}

std::size_t LastReadColumn(const LayoutFacts& facts)
{
    std::size_t nLast = 0;
    for (std::size_t i = 0; i < facts.columns.size(); ++i)
        if (facts.columns[i].uiType != kNoType)
            nLast = i;
    return nLast;
}

} // namespace

// Without headings columns were counted without empty cells too, so that only rows unlike the
// first one are read wrong.
void ReviewGaps(const LayoutFacts& facts, Warnings& warnings)
{
    if (facts.rows.empty() || (facts.layout.nDividers.value_or(0) & kBlankIsDivider))
        return;
    const std::size_t nLast = LastReadColumn(facts);
    const auto usual =
        facts.headings.empty() ? GapsOf(facts.rows.front(), nLast) : std::vector<std::size_t>();
    std::size_t nRows = 0;
    std::size_t nCell = 0;
    for (const SampledRow& row : facts.rows) {
        const auto gaps = GapsOf(row, nLast);
        if (gaps == usual)
            continue;
        if (nRows++ == 0)
            nCell = gaps.empty() ? usual.front() : gaps.front();
    }
    if (nRows > 0)
        warnings.Add("cells-empty",
                     fmt::format("{} of {} rows looked at have empty cells, first cell {}; the "
                                 "cells behind an empty one are read one column too early; fill "
                                 "such cells, or take those rows out",
                                 nRows, facts.rows.size(), nCell + 1));
}

} // namespace tabulex
