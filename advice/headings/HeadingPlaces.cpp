// Each place where a heading may lack is tried. A heading agrees with a column that can hold what
// it says, and speaks against one that can't; high and low agree once more with the column that has
// the most or the least of those of its size. The best sum wins, and the last place among equals,
// since a last column without a name is the commonest.
#include "advice/headings/HeadingPlaces.h"

#include <algorithm>

#include "advice/headings/HeadingWords.h"

namespace tabulex::advice {

namespace {

bool HasMoment(const Column& column, bool bDate)
{
    return std::ranges::any_of(column.forms, [&](const FormCount& count) {
        const bool bHasDate = count.form.date != intake::DateForm::None;
        return bHasDate == bDate && count.nRead * 2 >= column.nCells;
    });
}

// 1 where the column can be what the heading says, -1 where it can't.
int Agreement(const std::string& heading, const Column& column)
{
    const Meaning meaning = MeaningOf(heading);
    if (column.nCells == 0 || meaning == Meaning::Unknown || meaning == Meaning::Other)
        return 0;
    switch (meaning) {
    case Meaning::Date:
    case Meaning::Moment:
        return HasMoment(column, true) ? 1 : -1;
    case Meaning::Time:
        return HasMoment(column, true) || HasMoment(column, false) ? 1 : -1;
    case Meaning::Symbol:
        return column.IsNumeric() && !column.bConstant ? -1 : 1;
    case Meaning::Open:
    case Meaning::High:
    case Meaning::Low:
    case Meaning::Close:
    case Meaning::Price:
        return column.IsNumeric() ? (column.dMost > 0 ? 1 : 0) : -1;
    default:
        return column.IsNumeric() ? (column.IsWhole() ? 1 : 0) : -1;
    }
}

// Whether the column has the most, or the least, of all columns of much the same size.
bool IsExtreme(const Column& column, const std::vector<Column>& columns, bool bMost)
{
    return std::ranges::all_of(columns, [&](const Column& other) {
        const bool bLike =
            other.IsNumeric() && other.dMost <= 2 * column.dMost && other.dMost * 2 >= column.dMost;
        return !bLike || (bMost ? other.dMost <= column.dMost : other.dLeast >= column.dLeast);
    });
}

// High and low show by their values where all else fits several places.
int ExtremesIn(const std::string& heading, const Column& column, const std::vector<Column>& columns)
{
    const Meaning meaning = MeaningOf(heading);
    if (!column.IsNumeric() || (meaning != Meaning::High && meaning != Meaning::Low))
        return 0;
    return IsExtreme(column, columns, meaning == Meaning::High) ? 1 : 0;
}

} // namespace

std::vector<std::string> PlaceHeadings(const std::vector<std::string>& headings,
                                       const std::vector<Column>& columns)
{
    std::vector<std::string> placed = headings;
    placed.resize(columns.size());
    if (headings.size() + 1 != columns.size())
        return placed;
    int nBest = -1000;
    std::size_t nGap = columns.size() - 1;
    for (std::size_t nAt = columns.size(); nAt-- > 0;) {
        int nSum = 0;
        for (std::size_t i = 0; i < headings.size(); ++i)
            nSum += Agreement(headings[i], columns[i < nAt ? i : i + 1]) +
                    ExtremesIn(headings[i], columns[i < nAt ? i : i + 1], columns);
        if (nSum > nBest) {
            nBest = nSum;
            nGap = nAt;
        }
    }
    placed = headings;
    placed.insert(placed.begin() + static_cast<std::ptrdiff_t>(nGap), std::string());
    return placed;
}

} // namespace tabulex::advice
