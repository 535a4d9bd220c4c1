// Rows are matched by their moment, and among those of one moment by their values, each once.
#include "advice/Score.h"

#include <algorithm>
#include <cmath>
#include <numeric>

#include <fmt/format.h>

#include "advice/PriceColumns.h"
#include "advice/Steps.h"

namespace tabulex::advice {

namespace {

constexpr std::size_t kMostOfMoment = 500; // rows that are tried for a match

double ShareOf(std::size_t n, std::size_t nAll)
{
    return nAll == 0 ? 0 : static_cast<double>(n) / static_cast<double>(nAll);
}

// Scales are undone by a division, which rounds.
bool IsSame(double a, double b)
{
    return std::abs(a - b) <= 1e-9 * std::max(1.0, std::abs(a));
}

// Places of the same columns in both.
std::vector<std::pair<std::size_t, std::size_t>> CommonColumns(const ReadRows& a, const ReadRows& b)
{
    std::vector<std::pair<std::size_t, std::size_t>> common;
    for (std::size_t i = 0; i < a.columns.size(); ++i) {
        const auto at = std::ranges::find(b.columns, a.columns[i]);
        if (at != b.columns.end())
            common.emplace_back(i, static_cast<std::size_t>(at - b.columns.begin()));
    }
    return common;
}

std::vector<std::size_t> ByMoment(const std::vector<ReadRow>& rows)
{
    std::vector<std::size_t> order(rows.size());
    std::iota(order.begin(), order.end(), std::size_t(0));
    std::ranges::stable_sort(order, {}, [&](std::size_t i) { return rows[i].nMoment; });
    return order;
}

// A column of prices of the delivered rows; not a number where it lacks.
Numbers PricesOf(const ReadRows& rows, std::string_view name)
{
    Numbers numbers;
    const auto at = std::ranges::find(rows.columns, name);
    if (at != rows.columns.end())
        for (const ReadRow& row : rows.rows)
            numbers.push_back(row.values[static_cast<std::size_t>(at - rows.columns.begin())]);
    return numbers;
}

// Lines that a reading leaves out on purpose aren't among the expected ones.
ScorePart DeliveredPart(const Candidate& candidate, const TrialResult& result)
{
    const std::size_t nAll = candidate.expected.rows.size() + candidate.expected.nBad;
    const std::size_t nDelivered = result.rows.rows.size();
    return {"lines delivered", std::min(1.0, ShareOf(nDelivered, nAll)), 40,
            fmt::format("{} of {} lines", nDelivered, nAll)};
}

ScorePart SamePart(const Agreement& agreement)
{
    const std::size_t nAll = agreement.nSame + agreement.nOther + agreement.nMissing;
    return {"rows as they stand in the file", ShareOf(agreement.nSame, nAll), 20,
            fmt::format("{} of {} rows", agreement.nSame, nAll)};
}

// Files have bars that can't be, by a lost point or a late correction, so a share counts.
ScorePart BarsPart(const ReadRows& rows)
{
    const auto open = PricesOf(rows, "Open"), high = PricesOf(rows, "High"),
               low = PricesOf(rows, "Low"), close = PricesOf(rows, "Close");
    if (open.empty() || high.empty() || low.empty() || close.empty())
        return {"bars that can be", rows.rows.empty() ? 0.0 : 1.0, 20, "the rows are no bars"};
    const double dShare = ShareOfBars(open, high, low, close);
    return {"bars that can be", dShare, 20,
            fmt::format("{:.1f} % have no price beyond high and low", 100 * dShare)};
}

ScorePart OrderPart(const ReadRows& rows)
{
    const StepFacts steps = FindSteps(rows.rows);
    const bool bOrdered = steps.bForwards || steps.bBackwards || steps.bInSymbols;
    return {"moments in order", bOrdered ? 1.0 : 0.0, 10,
            bOrdered ? "they run in one direction" : "they run to and fro"};
}

// A role without a reason has its heading's.
ScorePart HeadingPart(const Candidate& candidate)
{
    const auto nByHeading =
        std::ranges::count_if(candidate.roles, [](const Role& r) { return r.sReason.empty(); });
    return {"columns told by headings",
            ShareOf(static_cast<std::size_t>(nByHeading), candidate.roles.size()), 10,
            fmt::format("{} of {} columns", nByHeading, candidate.roles.size())};
}

} // namespace

double Score::Total() const
{
    double dTotal = 0;
    for (const ScorePart& part : parts)
        dTotal += part.dShare * part.nPoints;
    return dTotal;
}

Agreement Compare(const ReadRows& expected, const ReadRows& delivered)
{
    const auto common = CommonColumns(expected, delivered);
    const auto same = [&](const ReadRow& a, const ReadRow& b) {
        return (!expected.bSymbols || !delivered.bSymbols || a.sSymbol == b.sSymbol) &&
               std::ranges::all_of(common, [&](const auto& c) {
                   return IsSame(a.values[c.first], b.values[c.second]);
               });
    };
    const auto expectedOrder = ByMoment(expected.rows), deliveredOrder = ByMoment(delivered.rows);
    std::vector<bool> used(expected.rows.size());
    Agreement agreement;
    std::size_t nFirst = 0;
    for (const std::size_t nRow : deliveredOrder) {
        const ReadRow& row = delivered.rows[nRow];
        while (nFirst < expectedOrder.size() &&
               (expected.rows[expectedOrder[nFirst]].nMoment < row.nMoment ||
                used[expectedOrder[nFirst]]))
            ++nFirst;
        bool bFound = false;
        for (std::size_t i = nFirst; i < std::min(expectedOrder.size(), nFirst + kMostOfMoment);
             ++i) {
            const std::size_t nExpected = expectedOrder[i];
            if (expected.rows[nExpected].nMoment != row.nMoment)
                break;
            if (!used[nExpected] && same(expected.rows[nExpected], row)) {
                used[nExpected] = bFound = true;
                break;
            }
        }
        ++(bFound ? agreement.nSame : agreement.nOther);
    }
    agreement.nMissing = expected.rows.size() - agreement.nSame;
    return agreement;
}

Score ScoreOf(const Candidate& candidate, const TrialResult& result)
{
    Score score;
    score.parts.push_back(DeliveredPart(candidate, result));
    score.parts.push_back(BarsPart(result.rows));
    score.parts.push_back(SamePart(Compare(candidate.expected, result.rows)));
    score.parts.push_back(OrderPart(result.rows));
    score.parts.push_back(HeadingPart(candidate));
    return score;
}

} // namespace tabulex::advice
