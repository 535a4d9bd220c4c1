// The calendar as tables, built by the compiler: a date becomes a day number by
// lookups alone, since that happens once per record.
#pragma once

#include <array>
#include <cstdint>

#include "datetime/qrlDateTime.h"

namespace qrlDateTime::details {

constexpr bool IsLeapYear(int nYear)
{
    return nYear % 4 == 0 && (nYear % 100 != 0 || nYear % 400 == 0);
}

// Length of month n, in a common year.
inline constexpr std::array<std::uint8_t, 13> kMonthLengths = {0,  31, 28, 31, 30, 31, 30,
                                                               31, 31, 30, 31, 30, 31};

// Requires a month of 1 to 12.
constexpr int DaysInMonth(int nYear, int nMonth)
{
    return nMonth == 2 && IsLeapYear(nYear) ? 29 : kMonthLengths[nMonth];
}

// Entry n is the day number of January 1 of the year 1900 + n.
using YearStarts = std::array<std::int32_t, kLastYear - kFirstYear + 1>;

constexpr YearStarts MakeYearStarts()
{
    YearStarts starts{};
    std::int32_t nDay = kFirstDay;
    for (int nYear = kFirstYear; nYear <= kLastYear; ++nYear) {
        starts[nYear - kFirstYear] = nDay;
        nDay += IsLeapYear(nYear) ? 366 : 365;
    }
    return starts;
}

inline constexpr YearStarts kYearStarts = MakeYearStarts();
static_assert(kYearStarts.back() + 364 == kLastDay);

// Entry n is the number of days of the year before month n + 1.
using MonthOffsets = std::array<std::int32_t, 12>;

constexpr MonthOffsets MakeMonthOffsets(int nFebruary)
{
    MonthOffsets offsets{};
    for (int n = 1; n < 12; ++n)
        offsets[n] = offsets[n - 1] + (n == 2 ? nFebruary : kMonthLengths[n]);
    return offsets;
}

inline constexpr MonthOffsets kCommonMonths = MakeMonthOffsets(28);
inline constexpr MonthOffsets kLeapMonths = MakeMonthOffsets(29);

} // namespace qrlDateTime::details
