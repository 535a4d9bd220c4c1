// The line of headings is doubted before its words are: if more than half of them are numbers it is
// a row, and if more than half of the rows have more cells, the words don't stand over their
// columns. In both cases the headings are forgotten, so that no later look judges columns by them.
// Half is asked for, since a heading may well be a year, and a row may have a divider within a
// text.

#include <algorithm>

#include <fmt/format.h>

#include "advice/headings/HeadingWords.h"
#include "tools/tabulex/review/Corrections.h"
#include "tools/tabulex/review/LayoutReview.h"

namespace tabulex {

namespace {

using namespace IQRL_TabulexConverter;

constexpr LONG kBlankDivider = 2; // bit of the mask

// Types that are easily exchanged, and show by their headings.
constexpr unsigned kQuoteTypes[] = {TypeOpen, TypeHigh, TypeLow, TypeClose, TypeVolume};

bool IsNumberText(const std::string& text)
{
    return text.find_first_of("0123456789") != std::string::npos &&
           text.find_first_not_of("0123456789.,-+:/ ") == std::string::npos;
}

bool AreData(const std::vector<std::string>& headings)
{
    const auto nNumbers = std::ranges::count_if(headings, IsNumberText);
    return static_cast<std::size_t>(nNumbers) * 2 > headings.size();
}

bool IsLonger(const SampledRow& row, std::size_t nHeadings)
{
    return row.nCells - row.emptyCells.size() > nHeadings;
}

// Most rows have more cells than there are headings; all of them where blanks divide, as a text
// with a blank makes two cells then.
bool AreShifted(const LayoutFacts& facts)
{
    const std::size_t nHeadings = facts.headings.size();
    if (facts.layout.nDividers.value_or(0) & kBlankDivider)
        return std::ranges::all_of(facts.rows,
                                   [&](const SampledRow& row) { return IsLonger(row, nHeadings); });
    const auto nLonger = std::ranges::count_if(
        facts.rows, [&](const SampledRow& row) { return row.nCells > nHeadings; });
    return static_cast<std::size_t>(nLonger) * 2 > facts.rows.size();
}

void ForgetHeadings(LayoutFacts& facts)
{
    facts.headings.clear();
    for (ReviewedColumn& column : facts.columns)
        column.sHeading.clear();
}

} // namespace

void ReviewHeadingLine(LayoutFacts& facts, Warnings& warnings)
{
    if (facts.headings.empty() || facts.rows.empty())
        return;
    const ULONGLONG nLine = facts.layout.nHeaderOffset + 1;
    if (AreData(facts.headings)) {
        warnings.Add("heading-is-data",
                     fmt::format("line {} is taken for the headings and isn't delivered, but "
                                 "looks like data: \"{}\"; give --header no",
                                 nLine, ShownText(*facts.layout.sHeader)));
        ForgetHeadings(facts);
    } else if (AreShifted(facts)) {
        warnings.Add("headings-shifted",
                     fmt::format("the heading line names {} columns, but rows have {}: the names "
                                 "don't stand over their columns, and the last cells aren't read; "
                                 "give --lines-to-skip {} --header no",
                                 facts.headings.size(), facts.rows.front().nCells, nLine));
        ForgetHeadings(facts);
    }
}

void ReviewHeadings(const Host& host, const LayoutFacts& facts, Warnings& warnings)
{
    const auto doubtful = DoubtfulColumns(facts);
    if (facts.headings.empty() || doubtful.empty())
        return;
    std::vector<std::string> columns;
    for (const std::size_t nColumn : doubtful)
        columns.push_back(fmt::format("{} as {}", ColumnText(nColumn, facts.columns[nColumn]),
                                      facts.columns[nColumn].sType));
    warnings.Add("heading-disagrees",
                 fmt::format("the heading doesn't say what the column is taken for: column {}; if "
                             "that is wrong, give{}",
                             ListText(columns), Corrections(host, facts).All()));
}

void ReviewNamed(const LayoutFacts& facts, Warnings& warnings)
{
    const auto isQuote = [](unsigned uiType) {
        return std::ranges::find(kQuoteTypes, uiType) != std::end(kQuoteTypes);
    };
    for (std::size_t i = 0; i < facts.columns.size(); ++i) {
        const ReviewedColumn& column = facts.columns[i];
        const Meaning meaning = MeaningOf(column.sHeading);
        if (column.bByUser && isQuote(column.uiType) && isQuote(TypeOfMeaning(meaning)) &&
            !Agrees(meaning, column.uiType))
            warnings.Add("named-against-heading",
                         fmt::format("column {} is read as {}, as --column says, though its "
                                     "heading says something else; look at its values",
                                     ColumnText(i, column), column.sType));
    }
}

} // namespace tabulex
