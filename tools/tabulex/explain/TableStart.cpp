// Of the dividers the one is taken under which most lines have the same number of cells, at
// least two; ties go to the one that the component prefers. The table then begins at the first
// line with that number of cells that holds data and is followed by another such line.
#include "tools/tabulex/explain/TableStart.h"

#include <algorithm>
#include <map>

#include "tools/tabulex/explain/Cells.h"

namespace tabulex {

namespace {

constexpr LONG kBar = 16, kTab = 32;
// Masks in the order in which the component prefers them.
constexpr LONG kDividerMasks[] = {kTab, kBar | kTab, 8 | kTab, 4 | kTab, 2 | kTab};

bool IsRow(const Sample& sample, std::size_t i, const TableStart& start)
{
    const std::string& text = sample.lines[i].sText;
    return CountCells(text, start.nDividers) == start.nCells &&
           HasData(CellsOf(text, start.nDividers));
}

bool IsHeading(const Sample& sample, std::size_t i, const TableStart& start)
{
    const std::string& text = sample.lines[i].sText;
    const std::size_t nCells = CountCells(text, start.nDividers);
    return nCells + 1 >= start.nCells && nCells <= start.nCells + 1 &&
           !HasData(CellsOf(text, start.nDividers));
}

// Most frequent number of cells, and how frequent it is.
TableStart Tried(const Sample& sample, LONG nDividers)
{
    std::map<std::size_t, std::size_t> counts;
    for (const SampleLine& line : sample.lines)
        ++counts[CountCells(line.sText, nDividers)];
    const auto most = std::ranges::max_element(counts, {}, [](const auto& c) { return c.second; });
    return {nDividers, most->first, 0, false,
            static_cast<double>(most->second) / static_cast<double>(sample.lines.size())};
}

bool Place(const Sample& sample, TableStart& start)
{
    for (std::size_t i = 0; i < sample.lines.size(); ++i)
        if (IsRow(sample, i, start) &&
            (i + 1 == sample.lines.size() || IsRow(sample, i + 1, start))) {
            start.nData = i;
            start.bHeader = i > 0 && IsHeading(sample, i - 1, start);
            return true;
        }
    return false;
}

} // namespace

std::optional<TableStart> FindTableStart(const Sample& sample)
{
    std::optional<TableStart> best;
    for (const LONG nDividers : kDividerMasks) {
        if (sample.lines.empty())
            break;
        TableStart start = Tried(sample, nDividers);
        if (start.nCells >= 2 && (!best || start.agreement > best->agreement + 0.05) &&
            Place(sample, start))
            best = start;
    }
    return best;
}

} // namespace tabulex
