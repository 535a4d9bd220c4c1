// A template without a divider reads any number of the right length whose last digits are below
// 60. Times show by their place beside the date and by running on through a day, or by their
// heading.
#include <algorithm>
#include <map>
#include <utility>

#include <fmt/format.h>

#include "advice/headings/HeadingWords.h"
#include "tools/tabulex/review/LayoutReview.h"

namespace tabulex {

namespace {

bool IsWholeNumber(const std::string& text)
{
    return !text.empty() && text.find_first_not_of("0123456789") == std::string::npos;
}

bool StandBesideEachOther(std::size_t a, std::size_t b)
{
    return a + 1 == b || b + 1 == a;
}

// Whether some day has several rows, and times go one way only within a day of a symbol.
bool RunThroughDays(const LayoutFacts& facts, std::size_t nDate, std::size_t nTime)
{
    const auto nSymbol = facts.ColumnOf(TypeSymbol);
    bool bSeveral = false, bOn = false, bBack = false;
    std::map<std::string, std::size_t> last; // row of each symbol
    for (std::size_t i = 0; i < facts.nFirstRows; ++i) {
        const auto& cells = facts.rows[i].cells;
        const auto [at, bFirst] = last.try_emplace(nSymbol ? cells[*nSymbol] : std::string(), i);
        const auto& before = facts.rows[std::exchange(at->second, i)].cells;
        if (bFirst || cells[nDate] != before[nDate])
            continue;
        bSeveral = true;
        const auto nStep = std::atoll(cells[nTime].c_str()) - std::atoll(before[nTime].c_str());
        bOn = bOn || nStep > 0;
        bBack = bBack || nStep < 0;
    }
    return bSeveral && !(bOn && bBack);
}

std::string ReadAs(std::string digits, bool bSeconds)
{
    digits.insert(0, std::max<std::size_t>(digits.size(), bSeconds ? 6 : 4) - digits.size(), '0');
    const std::size_t nHours = digits.size() - (bSeconds ? 4 : 2);
    std::string text = fmt::format("{}:{}", digits.substr(0, nHours), digits.substr(nHours, 2));
    return bSeconds ? text + ":" + digits.substr(nHours + 2) : text;
}

// A column of zeros is midnight, whatever it was meant for.
bool AreZeros(const LayoutFacts& facts, std::size_t nColumn)
{
    return std::ranges::all_of(facts.rows, [&](const SampledRow& row) {
        return row.cells[nColumn].find_first_not_of('0') == std::string::npos;
    });
}

} // namespace

void ReviewTimes(const LayoutFacts& facts, Warnings& warnings)
{
    const auto nTime = facts.ColumnOf(TypeTime);
    const auto nDate = facts.ColumnOf(TypeDate);
    if (!nTime || !nDate || facts.rows.empty() || facts.columns[*nTime].bByUser)
        return;
    const ReviewedColumn& column = facts.columns[*nTime];
    const std::string& sText = facts.rows.front().cells[*nTime];
    if (!IsWholeNumber(sText) || MeaningOf(column.sHeading) != Meaning::Unknown)
        return; // a heading that says something else has been told
    if (AreZeros(facts, *nTime))
        return;
    if (StandBesideEachOther(*nDate, *nTime) && RunThroughDays(facts, *nDate, *nTime))
        return;
    warnings.Add("number-as-time",
                 fmt::format("column {} is read as a time, {} as {}, and nothing else says that it "
                             "is one; if not, give --column {}=none",
                             ColumnText(*nTime, column), ShownText(sText),
                             ReadAs(sText, column.sTemplate.find('s') != std::string::npos),
                             *nTime + 1));
}

} // namespace tabulex
