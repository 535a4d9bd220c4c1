// Rows of the sample are held against what their columns were taken for. A single odd row says
// nothing; more than half of them do.
#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>

#include <fmt/format.h>

#include "tools/tabulex/review/Corrections.h"
#include "tools/tabulex/review/LayoutReview.h"

namespace tabulex {

using namespace IQRL_TabulexConverter;

namespace {

constexpr std::size_t kFewestRows = 3;
constexpr double kFarFactor = 2;    // a price so many times another one isn't of the same bar
constexpr double kNearFactor = 1.5; // prices of one bar are within

constexpr unsigned kBarTypes[] = {TypeOpen, TypeHigh, TypeLow, TypeClose};
constexpr std::size_t kBarTypeCount = std::size(kBarTypes);

using BarColumns = std::array<std::optional<std::size_t>, kBarTypeCount>;

std::optional<double> ParsedNumber(std::string text)
{
    std::ranges::replace(text, ',', '.');
    char* pEnd = nullptr;
    const double value = std::strtod(text.c_str(), &pEnd);
    return text.empty() || *pEnd != '\0' ? std::nullopt : std::optional(value);
}

std::optional<double> NumberIn(const SampledRow& row, std::optional<std::size_t> nColumn)
{
    return nColumn ? ParsedNumber(row.cells[*nColumn]) : std::nullopt;
}

// How many rows a test can judge, and how many of them fail it.
struct Votes
{
    std::size_t nAgainst = 0;
    std::size_t nRows = 0;

    void Add(bool bAgainst)
    {
        ++nRows;
        nAgainst += bAgainst;
    }
    bool AreAgainst() const { return nRows >= kFewestRows && nAgainst * 2 > nRows; }
};

std::string ColumnOfType(const LayoutFacts& facts, std::size_t nColumn)
{
    return fmt::format("column {} (taken as {})", ColumnText(nColumn, facts.columns[nColumn]),
                       facts.columns[nColumn].sType);
}

void WarnOfValues(const LayoutFacts& facts, std::size_t nColumn, const Votes& votes,
                  std::string_view what, Warnings& warnings)
{
    warnings.Add("values-disagree",
                 fmt::format("{} {} in {} of {} rows looked at; see 'tabulex inspect', and name "
                             "the columns by --column N=TYPE",
                             ColumnOfType(facts, nColumn), what, votes.nAgainst, votes.nRows));
}

// ---- a price that isn't near the others of its bar

bool AreNear(double a, double b)
{
    return a > 0 && b > 0 && a < b * kNearFactor && b < a * kNearFactor;
}

bool IsFar(double a, double b)
{
    return a < 0 || a > b * kFarFactor || b > a * kFarFactor;
}

Votes VotesOnPrice(const LayoutFacts& facts, const BarColumns& bar, std::size_t nPrice)
{
    Votes votes;
    for (const SampledRow& row : facts.rows) {
        std::vector<double> others;
        for (std::size_t i = 0; i < kBarTypeCount; ++i)
            if (const auto value = NumberIn(row, bar[i]); value && i != nPrice)
                others.push_back(*value);
        const auto value = NumberIn(row, bar[nPrice]);
        if (!value || others.size() < 2)
            continue;
        const auto [least, most] = std::ranges::minmax(others);
        votes.Add(AreNear(least, most) && IsFar(*value, most));
    }
    return votes;
}

bool ReviewPrices(const LayoutFacts& facts, const BarColumns& bar, Warnings& warnings)
{
    bool bFound = false;
    for (std::size_t i = 0; i < kBarTypeCount; ++i) {
        const Votes votes = VotesOnPrice(facts, bar, i);
        if (!votes.AreAgainst())
            continue;
        WarnOfValues(facts, *bar[i], votes, "is far from the other prices", warnings);
        bFound = true;
    }
    return bFound;
}

// ---- high and low

void ReviewExtreme(const LayoutFacts& facts, const BarColumns& bar, std::size_t nExtreme,
                   double sign, std::string_view what, Warnings& warnings)
{
    Votes votes;
    for (const SampledRow& row : facts.rows) {
        const auto extreme = NumberIn(row, bar[nExtreme]);
        bool bAgainst = false;
        for (std::size_t i = 0; i < kBarTypeCount; ++i)
            if (const auto value = NumberIn(row, bar[i]); value && extreme)
                bAgainst = bAgainst || *value * sign > *extreme * sign;
        if (extreme)
            votes.Add(bAgainst);
    }
    if (votes.AreAgainst())
        WarnOfValues(facts, *bar[nExtreme], votes, what, warnings);
}

// ---- a volume that follows the price

void ReviewVolume(const LayoutFacts& facts, const BarColumns& bar, Warnings& warnings)
{
    const auto nVolume = facts.ColumnOf(TypeVolume);
    const auto nPrice = bar[3] ? bar[3] : facts.ColumnOf(TypePrice);
    if (!nVolume || !nPrice || facts.columns[*nVolume].bByUser)
        return;
    Votes votes;
    for (const SampledRow& row : facts.rows) {
        const auto volume = NumberIn(row, nVolume);
        const auto price = NumberIn(row, nPrice);
        if (volume && price)
            votes.Add(*volume > 0 && std::abs(*volume - *price) < 0.2 * std::abs(*price));
    }
    if (votes.nRows >= 5 && votes.nAgainst == votes.nRows)
        WarnOfValues(facts, *nVolume, votes, "looks like a price", warnings);
}

// Prices of a bar whose headings are in doubt, or that the user named, have been judged.
void ReviewBar(const LayoutFacts& facts, const BarColumns& bar, Warnings& warnings)
{
    const auto doubtful = DoubtfulColumns(facts);
    bool bByUser = true;
    for (const auto& nColumn : bar) {
        if (nColumn && std::ranges::find(doubtful, *nColumn) != doubtful.end())
            return;
        bByUser = bByUser && nColumn && facts.columns[*nColumn].bByUser;
    }
    if (bByUser || ReviewPrices(facts, bar, warnings))
        return;
    ReviewExtreme(facts, bar, 1, 1, "isn't the highest price", warnings);
    ReviewExtreme(facts, bar, 2, -1, "isn't the lowest price", warnings);
}

} // namespace

void ReviewValues(const LayoutFacts& facts, Warnings& warnings)
{
    BarColumns bar;
    for (std::size_t i = 0; i < kBarTypeCount; ++i)
        bar[i] = facts.ColumnOf(kBarTypes[i]);
    ReviewBar(facts, bar, warnings);
    ReviewVolume(facts, bar, warnings);
}

} // namespace tabulex
