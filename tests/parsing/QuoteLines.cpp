#include "tests/parsing/QuoteLines.h"

#include <chrono>

#include <fmt/format.h>

#include "tests/parsing/Layout.h"

namespace {

constexpr int kMinutesPerDay = 1440;
constexpr int kFirstMinute = 9 * 60 + 30;

string_t Line(const std::string& sStamp, const std::string& sRest)
{
    return Wide(sRest.empty() ? sStamp : sStamp + "," + sRest);
}

} // namespace

std::string DateText(int nDay)
{
    using namespace std::chrono;
    const year_month_day day(sys_days(2003y / January / 6) + days(nDay));
    return fmt::format("{:04}{:02}{:02}", static_cast<int>(day.year()),
                       static_cast<unsigned>(day.month()), static_cast<unsigned>(day.day()));
}

std::string StampText(int nMinute)
{
    const int n = nMinute + kFirstMinute;
    const int nOfDay = n % kMinutesPerDay;
    return fmt::format("{},{:02}:{:02}", DateText(n / kMinutesPerDay), nOfDay / 60, nOfDay % 60);
}

std::vector<string_t> DayLines(const std::vector<int>& days, const std::string& sRest)
{
    std::vector<string_t> lines;
    for (int nDay : days)
        lines.push_back(Line(DateText(nDay), sRest));
    return lines;
}

std::vector<string_t> MinuteLines(const std::vector<int>& minutes, const std::string& sRest)
{
    std::vector<string_t> lines;
    for (int nMinute : minutes)
        lines.push_back(Line(StampText(nMinute), sRest));
    return lines;
}

std::vector<int> Evenly(int nStep, int nCount)
{
    std::vector<int> values;
    for (int i = 0; i < nCount; ++i)
        values.push_back(i * nStep);
    return values;
}
