// Bars of minutes and days must follow each other by whole ones, so their measure names the size.
// Where the moments drift, or one occurs twice, each row is a bar by itself.
#include "advice/Steps.h"

#include <algorithm>
#include <map>
#include <numeric>

namespace tabulex::advice {

namespace {

using namespace IQRL_TabulexConverter;

constexpr std::int64_t kMinute = 60000, kDay = 86400000;

struct SymbolSeries
{
    std::vector<std::int64_t> moments;
    bool bUp = true, bDown = true;
};

} // namespace

StepFacts FindSteps(const std::vector<ReadRow>& rows)
{
    StepFacts facts;
    if (rows.empty())
        return facts;
    std::map<std::string, SymbolSeries> series;
    facts.bForwards = facts.bBackwards = true;
    for (std::size_t i = 0; i < rows.size(); ++i) {
        SymbolSeries& own = series[rows[i].sSymbol];
        if (!own.moments.empty()) {
            own.bUp = own.bUp && rows[i].nMoment >= own.moments.back();
            own.bDown = own.bDown && rows[i].nMoment <= own.moments.back();
        }
        own.moments.push_back(rows[i].nMoment);
        facts.bForwards = facts.bForwards && (i == 0 || rows[i].nMoment >= rows[i - 1].nMoment);
        facts.bBackwards = facts.bBackwards && (i == 0 || rows[i].nMoment <= rows[i - 1].nMoment);
    }
    facts.nSymbols = series.size();
    facts.bInSymbols = std::ranges::all_of(series, [](const auto& s) { return s.second.bUp; }) ||
                       std::ranges::all_of(series, [](const auto& s) { return s.second.bDown; });
    for (auto& [name, own] : series) {
        std::ranges::sort(own.moments);
        for (std::size_t i = 1; i < own.moments.size(); ++i) {
            const std::int64_t nStep = own.moments[i] - own.moments[i - 1];
            facts.bTwice = facts.bTwice || nStep == 0;
            facts.nStep = std::gcd(facts.nStep, nStep);
        }
    }
    const auto [first, last] = std::ranges::minmax_element(rows, {}, &ReadRow::nMoment);
    const std::int64_t nFront = rows.front().nMoment, nBack = rows.back().nMoment;
    facts.bWholeFile =
        std::min(nFront, nBack) != first->nMoment || std::max(nFront, nBack) != last->nMoment;
    return facts;
}

void ChooseResolution(const StepFacts& steps, bool bBars, bool bTimes, Reading& reading)
{
    if (!bBars) {
        reading.nResolution = ResolutionTick;
    } else if (steps.bTwice || (bTimes && steps.nStep % kMinute != 0)) {
        reading.nResolution = ResolutionTickBars;
    } else if (bTimes) {
        reading.nResolution = ResolutionMinutes;
        reading.nSize = std::max<long>(1, static_cast<long>(steps.nStep / kMinute));
    } else if (steps.nStep == 7 * kDay) {
        reading.nResolution = ResolutionWeeks;
    } else {
        reading.nResolution = ResolutionDays;
        reading.nSize = 1;
    }
}

} // namespace tabulex::advice
