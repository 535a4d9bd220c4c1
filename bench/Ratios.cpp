#include "bench/Ratios.h"

#include <algorithm>

#include <fmt/format.h>

namespace {

struct Ratio
{
    const char* szWhat;
    const char* szMeasured;
    const char* szYardstick;
    double fMark;
};

constexpr Ratio kRatios[] = {
    {"conversion into a reading sink / hand-written reader", "Convert", "HandWrittenReader", 5.0},
    {"line-index scan / memchr count", "IndexScan", "MemchrCount", 4.0},
};

} // namespace

void RatioReporter::ReportRuns(const std::vector<Run>& runs)
{
    ConsoleReporter::ReportRuns(runs);
    for (const Run& run : runs) {
        if (run.run_type != Run::RT_Iteration || run.error_occurred)
            continue;
        const double fSeconds = run.real_accumulated_time / static_cast<double>(run.iterations);
        const auto [entry, bNew] = m_seconds.emplace(run.run_name.function_name, fSeconds);
        entry->second = std::min(entry->second, fSeconds);
    }
}

void RatioReporter::Finalize()
{
    for (const Ratio& ratio : kRatios) {
        const auto measured = m_seconds.find(ratio.szMeasured);
        const auto yardstick = m_seconds.find(ratio.szYardstick);
        if (measured != m_seconds.end() && yardstick != m_seconds.end())
            GetOutputStream() << fmt::format("{}: {:.2f} (mark: {:g})\n", ratio.szWhat,
                                             measured->second / yardstick->second, ratio.fMark);
    }
}
