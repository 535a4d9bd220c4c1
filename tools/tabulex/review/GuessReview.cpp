// Without headings the first column is a symbol, and numbers become types in an order of their own.
// Texts of a symbol that are all times, dates or days of the week give such a guess away, and so do
// dates that stand in another column than the one that is read as the date. Of two whole numbers
// nothing can tell which one is the volume. Of open and close the order shows where each bar begins
// at the price at which the one before ended.
#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <regex>
#include <set>

#include <fmt/format.h>

#include "tools/tabulex/review/LayoutReview.h"

namespace tabulex {

using namespace IQRL_TabulexConverter;

namespace {

constexpr std::size_t kFewestCountedRows = 3;
constexpr std::size_t kFewestBars = 8;
constexpr double kManyTimes = 8;

// ---- what texts look like

struct TextForm
{
    const char* pszPattern; // in any case
    const char* pszName;
    bool bChanges;      // the same text in all rows may be a name
    const char* pszAid; // with the number of the column
};

constexpr TextForm kTimeForm = {"[0-9]{1,2}:[0-9]{2}(?::[0-9]{2}(?:[.,][0-9]+)?)?(?: ?[ap]m)?",
                                "times", false,
                                "give --column {0}=Time and the --resolution of the rows"};
constexpr TextForm kDateForm = {"[0-9]{1,4}([-/. ])(?:[0-9]{1,2}|[a-z]{3,9})\\1[0-9]{1,4}|"
                                "(?:19|20)[0-9]{2}(?:0[1-9]|1[0-2])(?:0[1-9]|[12][0-9]|3[01])",
                                "dates", false,
                                "if they are the dates of the rows, give --column {0}=Date"};
constexpr TextForm kWeekdayForm = {
    "(?:mon|tues?|wed(?:nes)?|thu(?:rs?)?|fri|sat(?:ur)?|sun)(?:day)?", "days of the week", true,
    "leave it out by --column {0}=none"};

bool IsOfForm(const std::string& text, const TextForm& form)
{
    return std::regex_match(text, std::regex(form.pszPattern, std::regex::icase));
}

// All texts of a column, of which there must be one.
bool AreAllOfForm(const LayoutFacts& facts, std::size_t nColumn, const TextForm& form)
{
    std::set<std::string> texts;
    for (const SampledRow& row : facts.rows)
        if (const std::string& cell = row.cells[nColumn]; !cell.empty())
            texts.insert(cell);
    return texts.size() > (form.bChanges ? 1 : 0) &&
           std::ranges::all_of(texts, [&](const auto& text) { return IsOfForm(text, form); });
}

const std::string& FirstText(const LayoutFacts& facts, std::size_t nColumn)
{
    return facts.rows.front().cells[nColumn];
}

std::string GuessedColumn(const LayoutFacts& facts, std::size_t nColumn)
{
    return fmt::format("column {} (taken as {})", ColumnText(nColumn, facts.columns[nColumn]),
                       facts.columns[nColumn].sType);
}

// ---- the symbol

// A number of the row, which programs write ahead of the others, makes each row a symbol of its
// own.
bool CountsRows(const LayoutFacts& facts, std::size_t nColumn)
{
    if (facts.nFirstRows < kFewestCountedRows)
        return false;
    const auto number = [&](std::size_t nRow) {
        const std::string& text = facts.rows[nRow].cells[nColumn];
        const bool bNumber =
            !text.empty() && text.find_first_not_of("0123456789.,") == std::string::npos;
        return bNumber ? std::strtod(text.c_str(), nullptr) : std::nan("");
    };
    for (std::size_t i = 1; i < facts.nFirstRows; ++i)
        if (std::abs(number(i) - number(i - 1)) != 1)
            return false;
    return true;
}

void ReviewSymbol(const LayoutFacts& facts, Warnings& warnings)
{
    const auto nColumn = facts.ColumnOf(TypeSymbol);
    if (!nColumn || facts.columns[*nColumn].bByUser || facts.rows.empty())
        return;
    if (CountsRows(facts, *nColumn))
        warnings.Add("symbol-is-number",
                     fmt::format("{} counts the rows, so that each row has a symbol of its own; "
                                 "leave it out by --column {}=none",
                                 GuessedColumn(facts, *nColumn), *nColumn + 1));
    for (const TextForm& form : {kTimeForm, kDateForm, kWeekdayForm})
        if (AreAllOfForm(facts, *nColumn, form))
            return warnings.Add("symbol-is-other",
                                fmt::format("{} holds {}, such as \"{}\"; {}",
                                            GuessedColumn(facts, *nColumn), form.pszName,
                                            ShownText(FirstText(facts, *nColumn)),
                                            fmt::format(fmt::runtime(form.pszAid), *nColumn + 1)));
}

// ---- the date

// A code of digits can be read as a date, which the rows' own dates then can't be.
void ReviewDateColumn(const LayoutFacts& facts, Warnings& warnings)
{
    const auto nDate = facts.ColumnOf(TypeDate);
    if (!nDate || facts.rows.empty() || facts.columns[*nDate].bByUser ||
        FirstText(facts, *nDate).find_first_not_of("0123456789") != std::string::npos ||
        IsOfForm(FirstText(facts, *nDate), kDateForm))
        return;
    for (std::size_t i = 0; i < facts.columns.size(); ++i) {
        if (i == *nDate || facts.columns[i].bByUser || !AreAllOfForm(facts, i, kDateForm))
            continue;
        warnings.Add("date-elsewhere",
                     fmt::format("column {} is read as the date, but has \"{}\", and column {} "
                                 "holds dates, such as \"{}\"; if these are meant, give --column "
                                 "{}=none --column {}=Date",
                                 ColumnText(*nDate, facts.columns[*nDate]),
                                 ShownText(FirstText(facts, *nDate)),
                                 ColumnText(i, facts.columns[i]), ShownText(FirstText(facts, i)),
                                 *nDate + 1, i + 1));
        return;
    }
}

// ---- what nothing in the file says

// A headerless file gives these only by what was left over.
bool IsGuess(const LayoutFacts& facts, const ReviewedColumn& column)
{
    const bool bSum = facts.ColumnOf(TypeTotalVolume).has_value();
    switch (column.uiType) {
    case TypeUpVolume:
    case TypeDownVolume:
        return !bSum;
    case TypeOpenInterest:
    case TypeUnchangedVolume:
    case TypeUpTicks:
    case TypeDownTicks:
    case TypeUnchangedTicks:
    case TypeTotalTicks:
        return true;
    default:
        return false;
    }
}

// The volume comes behind the open interest in the order of types, and ahead of it in most files.
bool ReviewTwoVolumes(const LayoutFacts& facts, Warnings& warnings)
{
    const auto nVolume = facts.ColumnOf(TypeVolume);
    const auto nInterest = facts.ColumnOf(TypeOpenInterest);
    if (!nVolume || !nInterest || facts.columns[*nVolume].bByUser ||
        facts.columns[*nInterest].bByUser)
        return false;
    warnings.Add("column-guessed",
                 fmt::format("column {} is taken as Open Interest and column {} as Volume, but "
                             "without headings either may be the volume; if it is the other one, "
                             "give --column {}=Volume --column \"{}=Open Interest\"",
                             *nInterest + 1, *nVolume + 1, *nInterest + 1, *nVolume + 1));
    return true;
}

// The sum of the steps from one column of a row to another of the next row.
double StepsBetween(const LayoutFacts& facts, std::size_t nFrom, std::size_t nTo)
{
    const auto number = [](std::string text) {
        std::ranges::replace(text, ',', '.');
        return std::strtod(text.c_str(), nullptr);
    };
    const auto nSymbol = facts.ColumnOf(TypeSymbol);
    double sum = 0;
    for (std::size_t i = 1; i < facts.nFirstRows; ++i) {
        const auto& before = facts.rows[i - 1].cells;
        const auto& cells = facts.rows[i].cells;
        if (!nSymbol || cells[*nSymbol] == before[*nSymbol])
            sum += std::abs(number(cells[nTo]) - number(before[nFrom]));
    }
    return sum;
}

void ReviewOpenAndClose(const LayoutFacts& facts, Warnings& warnings)
{
    const auto nOpen = facts.ColumnOf(TypeOpen);
    const auto nClose = facts.ColumnOf(TypeClose);
    if (!nOpen || !nClose || facts.nFirstRows < kFewestBars || facts.columns[*nOpen].bByUser ||
        facts.columns[*nClose].bByUser)
        return;
    if (StepsBetween(facts, *nClose, *nOpen) <= kManyTimes * StepsBetween(facts, *nOpen, *nClose))
        return;
    warnings.Add("values-disagree",
                 fmt::format("column {0} (taken as Open) and column {1} (taken as Close) may be "
                             "exchanged: each row's close is near the open of the row before; if "
                             "so, give --column {0}=Close --column {1}=Open",
                             *nOpen + 1, *nClose + 1));
}

// A factor or a flag, where each row has the same one.
void ReviewConstantVolume(const LayoutFacts& facts, Warnings& warnings)
{
    const auto nVolume = facts.ColumnOf(TypeVolume);
    if (!nVolume || facts.columns[*nVolume].bByUser || facts.rows.size() < kFewestCountedRows)
        return;
    const std::string& first = FirstText(facts, *nVolume);
    const bool bSmall = first.size() == 1 && first != "0";
    if (bSmall && std::ranges::all_of(facts.rows, [&](const SampledRow& row) {
            return row.cells[*nVolume] == first;
        }))
        warnings.Add("column-guessed",
                     fmt::format("{} is {} in all rows looked at, and has no heading; if it is no "
                                 "volume, leave it out by --column {}=none",
                                 GuessedColumn(facts, *nVolume), ShownText(first), *nVolume + 1));
}

} // namespace

void ReviewGuesses(const LayoutFacts& facts, Warnings& warnings)
{
    ReviewSymbol(facts, warnings);
    ReviewDateColumn(facts, warnings);
    if (!facts.headings.empty())
        return;
    ReviewOpenAndClose(facts, warnings);
    ReviewConstantVolume(facts, warnings);
    const bool bTold = ReviewTwoVolumes(facts, warnings);
    for (std::size_t i = 0; i < facts.columns.size(); ++i) {
        const ReviewedColumn& column = facts.columns[i];
        if (column.bByUser || !IsGuess(facts, column) ||
            (bTold && column.uiType == TypeOpenInterest))
            continue;
        warnings.Add("column-guessed",
                     fmt::format("{} has no heading, and nothing shows that it is; leave it out "
                                 "by --column {}=none, or name its type",
                                 GuessedColumn(facts, i), i + 1));
    }
}

} // namespace tabulex
