// Each question is asked of all rows and answered by the share of rows that say yes: files have bad
// cells, so nearly all is taken for all. Rows that lack a value on either side don't count. Equal
// prices fit any order of a bar, so the usual orders come first, and only a market that opens far
// from the close before it is a reason to exchange the two.
#include "advice/PriceColumns.h"

#include <algorithm>
#include <cmath>

namespace tabulex::advice {

namespace {

constexpr double kMost = 0.97;       // of the rows, that may be called all
constexpr double kNear = 0.02;       // by which an average may miss the range of a bar
constexpr double kWideSpread = 0.05; // of a bid and an ask
constexpr std::size_t kFewRows = 3;

// Which of the open and the close comes first shows from bar to bar: a market opens near the close
// before it. How far the first is from the second of the bar before.
double GapBetween(const Numbers& open, const Numbers& close)
{
    double dSum = 0;
    for (std::size_t i = 1; i < open.size(); ++i)
        if (const double dGap = std::abs(open[i] - close[i - 1]); !std::isnan(dGap))
            dSum += dGap;
    return dSum;
}

std::size_t CountIn(const std::vector<std::size_t>& counts)
{
    std::size_t nSum = 0;
    for (const std::size_t n : counts)
        nSum += n;
    return nSum;
}

} // namespace

double ShareOfBars(const Numbers& open, const Numbers& high, const Numbers& low,
                   const Numbers& close)
{
    std::size_t nAll = 0, nGood = 0;
    for (std::size_t i = 0; i < open.size(); ++i) {
        if (std::isnan(open[i]) || std::isnan(high[i]) || std::isnan(low[i]) ||
            std::isnan(close[i]))
            continue;
        ++nAll;
        nGood +=
            std::max(open[i], close[i]) <= high[i] && std::min(open[i], close[i]) >= low[i] ? 1 : 0;
    }
    return nAll == 0 ? 0 : static_cast<double>(nGood) / static_cast<double>(nAll);
}

std::optional<std::array<std::size_t, 4>> BarOf(std::span<const Numbers> four)
{
    const std::size_t nRows = four.front().size();
    std::vector<std::size_t> highest(4), lowest(4);
    std::size_t nRowsRead = 0, nWide = 0;
    for (std::size_t n = 0; n < nRows; ++n) {
        double dMost = four[0][n], dLeast = four[0][n];
        for (std::size_t i = 1; i < 4; ++i) {
            dMost = std::isnan(four[i][n]) ? four[i][n] : std::max(dMost, four[i][n]);
            dLeast = std::min(dLeast, four[i][n]);
        }
        if (std::isnan(dMost) || std::isnan(dLeast) || dLeast <= 0)
            continue;
        ++nRowsRead;
        nWide += dMost > dLeast * 4 ? 1 : 0;
        for (std::size_t i = 0; i < 4; ++i) {
            highest[i] += four[i][n] == dMost ? 1 : 0;
            lowest[i] += four[i][n] == dLeast ? 1 : 0;
        }
    }
    if (nRowsRead == 0 || nWide * 20 > nRowsRead || CountIn(highest) == 0)
        return std::nullopt;
    const auto all = [&](std::size_t n) {
        return static_cast<double>(n) >= kMost * static_cast<double>(nRowsRead);
    };
    // Rows of four equal prices fit any order, and the usual one is tried first.
    constexpr std::array<std::size_t, 4> kOrders[] = {{0, 1, 2, 3}, {0, 2, 1, 3}, {1, 2, 3, 0},
                                                      {3, 1, 2, 0}, {0, 3, 2, 1}, {0, 2, 3, 1},
                                                      {2, 0, 1, 3}, {3, 0, 1, 2}, {0, 3, 1, 2}};
    for (auto order : kOrders) {
        if (!all(highest[order[1]]) || !all(lowest[order[2]]))
            continue;
        const double dGiven = GapBetween(four[order[0]], four[order[3]]);
        const double dOther = GapBetween(four[order[3]], four[order[0]]);
        if (dGiven > 2 * dOther && nRowsRead > 10 && order[0] > order[3])
            std::swap(order[0], order[3]);
        return order;
    }
    return std::nullopt;
}

bool IsTurnover(const Numbers& a, const Numbers& b, const Numbers& low, const Numbers& high)
{
    std::size_t nAll = 0, nGood = 0;
    for (std::size_t i = 0; i < a.size(); ++i) {
        if (!(a[i] > 0) || !(b[i] > 0) || std::isnan(low[i]) || std::isnan(high[i]))
            continue;
        const double dPrice = b[i] / a[i];
        ++nAll;
        nGood += dPrice >= low[i] * (1 - kNear) && dPrice <= high[i] * (1 + kNear) ? 1 : 0;
    }
    return nAll >= kFewRows && static_cast<double>(nGood) >= 0.8 * static_cast<double>(nAll);
}

double StepShare(const Numbers& numbers)
{
    std::vector<double> steps;
    for (std::size_t i = 1; i < numbers.size(); ++i)
        if (numbers[i - 1] > 0 && numbers[i] > 0)
            steps.push_back(std::abs(numbers[i] - numbers[i - 1]) / numbers[i - 1]);
    if (steps.empty())
        return 1;
    const auto middle = steps.begin() + static_cast<std::ptrdiff_t>(steps.size() / 2);
    std::nth_element(steps.begin(), middle, steps.end());
    return *middle;
}

bool IsBidAndAsk(const Numbers& bid, const Numbers& ask)
{
    std::size_t nAll = 0, nGood = 0, nApart = 0;
    for (std::size_t i = 0; i < bid.size(); ++i) {
        if (std::isnan(bid[i]) || std::isnan(ask[i]) || bid[i] <= 0)
            continue;
        ++nAll;
        nGood += ask[i] >= bid[i] && ask[i] <= bid[i] * (1 + kWideSpread) ? 1 : 0;
        nApart += ask[i] > bid[i] ? 1 : 0;
    }
    return nAll > 0 && static_cast<double>(nGood) >= kMost * static_cast<double>(nAll) &&
           nApart * 2 > nAll;
}

} // namespace tabulex::advice
