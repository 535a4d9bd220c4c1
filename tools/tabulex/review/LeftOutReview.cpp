// A column of text that nobody left out on purpose is worth a word. If it holds symbols, it is
// worth another: without them several series come out as one. It is taken for such where the sample
// has two different texts and the heading says so, or says nothing while both texts have letters. A
// column of numbers could be anything. The first such column is told and no other.

#include <algorithm>

#include <fmt/format.h>

#include "advice/headings/HeadingWords.h"
#include "tools/tabulex/review/Corrections.h"
#include "tools/tabulex/review/LayoutReview.h"

namespace tabulex {

namespace {

bool HasLetter(std::string_view text)
{
    return std::ranges::any_of(text, [](char c) {
        return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c & 0x80) != 0;
    });
}

constexpr std::string_view kMonths[] = {"jan", "feb", "mar", "apr", "may", "jun",
                                        "jul", "aug", "sep", "oct", "nov", "dec"};

// A number of the day, a word that begins as a month, and a year: "06-Jul-2015".
bool IsDateWithMonth(const std::string& text)
{
    const auto tokens = HeadingTokens(text);
    const auto nDigits = std::ranges::count_if(text, [](char c) { return c >= '0' && c <= '9'; });
    return tokens.size() == 1 && nDigits > 2 &&
           std::ranges::any_of(
               kMonths, [&](std::string_view month) { return tokens.front().starts_with(month); });
}

// The first two texts of a column that differ; the second is empty if all are the same.
struct TwoTexts
{
    std::string sFirst;
    std::string sSecond;
};

TwoTexts TextsIn(const LayoutFacts& facts, std::size_t nColumn)
{
    TwoTexts texts;
    for (const SampledRow& row : facts.rows) {
        const std::string& cell = row.cells[nColumn];
        if (cell.empty())
            continue;
        if (texts.sFirst.empty())
            texts.sFirst = cell;
        else if (cell != texts.sFirst)
            return {texts.sFirst, cell};
    }
    return texts;
}

// By its heading, or where that says nothing by texts of letters; numbers and dates may be
// anything.
bool MayHoldSymbols(const LayoutFacts& facts, std::size_t nColumn, const TwoTexts& texts)
{
    switch (MeaningOf(facts.columns[nColumn].sHeading)) {
    case Meaning::Symbol:
        return true;
    case Meaning::Unknown:
        return HasLetter(texts.sFirst) && HasLetter(texts.sSecond);
    default:
        return false;
    }
}

// Dates that another column of numbers has kept from being read.
bool WarnOfDates(const LayoutFacts& facts, std::size_t nColumn, const TwoTexts& texts,
                 Warnings& warnings)
{
    const auto nDate = facts.ColumnOf(TypeDate);
    if (!nDate || !IsDateWithMonth(texts.sFirst) || !IsDateWithMonth(texts.sSecond))
        return false;
    warnings.Add("date-left-out",
                 fmt::format("column {} has \"{}\", which looks like a date, and isn't read; if "
                             "column {} isn't the date, give --column {}=Symbol --column {}=Date",
                             ColumnText(nColumn, facts.columns[nColumn]), ShownText(texts.sFirst),
                             ColumnText(*nDate, facts.columns[*nDate]), *nDate + 1, nColumn + 1));
    return true;
}

void WarnOfMergedSymbols(const LayoutFacts& facts, const std::vector<std::size_t>& leftOut,
                         Warnings& warnings)
{
    if (facts.ColumnOf(TypeSymbol))
        return;
    for (const std::size_t nColumn : leftOut) {
        const TwoTexts texts = TextsIn(facts, nColumn);
        if (texts.sSecond.empty() || !MayHoldSymbols(facts, nColumn, texts))
            continue;
        if (WarnOfDates(facts, nColumn, texts, warnings))
            return;
        warnings.Add("symbols-merged",
                     fmt::format("rows of several symbols come out as one: column {} has \"{}\", "
                                 "\"{}\" and isn't read; give --column {}=Symbol",
                                 ColumnText(nColumn, facts.columns[nColumn]),
                                 ShownText(texts.sFirst), ShownText(texts.sSecond), nColumn + 1));
        return;
    }
}

} // namespace

void ReviewLeftOut(const Host& host, const LayoutFacts& facts, Warnings& warnings)
{
    const auto leftOut = LeftOutColumns(facts);
    if (leftOut.empty())
        return;
    std::vector<std::string> names;
    for (const std::size_t nColumn : leftOut)
        names.push_back(ColumnText(nColumn, facts.columns[nColumn]));
    const Corrections corrections(host, facts);
    const std::string setting = corrections.Added().empty()
                                    ? fmt::format(" --column {}=TYPE", leftOut.front() + 1)
                                    : corrections.Added();
    warnings.Add("column-left-out",
                 fmt::format("{} {} {} left out; to read {}, give{}, and if it is to be so, "
                             "--column {}=none",
                             leftOut.size() == 1 ? "column" : "columns", ListText(names),
                             leftOut.size() == 1 ? "is" : "are", leftOut.size() == 1 ? "it" : "one",
                             setting, leftOut.front() + 1));
    WarnOfMergedSymbols(facts, leftOut, warnings);
}

} // namespace tabulex
