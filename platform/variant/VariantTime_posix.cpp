// Days and dates by arithmetic, without a table of months.
//
// Years are counted from March, so that the leap day is the last of its year and the lengths
// of the months follow one line, (153 * month + 2) / 5. Four hundred years are an era of
// always the same number of days; dates before day 0 need no case of their own. These are the
// calendar algorithms of Howard Hinnant ("chrono-Compatible Low-Level Date Algorithms").

#include <algorithm>
#include <cmath>

#include "platform/component.h"
#include "platform/variant/CalendarDay_posix.h"

namespace {

constexpr int kSecondsPerDay = 86400;
constexpr int kDaysPerEra = 146097;   // 400 years
constexpr int kEraDayOfZero = 693899; // of 1899-12-30, counted from 0000-03-01
constexpr int kDayOfWeekOfZero = 6;   // Saturday

int FloorDivide(int n, int divisor)
{
    const int quotient = n / divisor;
    return quotient - (n % divisor < 0 ? 1 : 0);
}

} // namespace

int DayOfDate(CalendarDate date)
{
    const int nMonths = date.nYear * 12 + date.nMonth - 3;
    const int nYear = FloorDivide(nMonths, 12);
    const int nMonth = nMonths - nYear * 12;
    const int nEra = FloorDivide(nYear, 400);
    const int nYearOfEra = nYear - nEra * 400;
    const int nDayOfYear = (153 * nMonth + 2) / 5 + date.nDay - 1;
    const int nDayOfEra = nYearOfEra * 365 + nYearOfEra / 4 - nYearOfEra / 100 + nDayOfYear;
    return nEra * kDaysPerEra + nDayOfEra - kEraDayOfZero;
}

// The year of the era is the days divided by 365, once the leap days before them are taken off: one
// for every 1460 days, less one for every 36524, plus one for 146096.
CalendarDate DateOfDay(int nDay)
{
    const int nShifted = nDay + kEraDayOfZero;
    const int nEra = FloorDivide(nShifted, kDaysPerEra);
    const int nDayOfEra = nShifted - nEra * kDaysPerEra;
    const int nYearOfEra =
        (nDayOfEra - nDayOfEra / 1460 + nDayOfEra / 36524 - nDayOfEra / 146096) / 365;
    const int nDayOfYear = nDayOfEra - (365 * nYearOfEra + nYearOfEra / 4 - nYearOfEra / 100);
    const int nMonth = (5 * nDayOfYear + 2) / 153;
    const int nYear = nEra * 400 + nYearOfEra + (nMonth >= 10 ? 1 : 0);
    return {nYear, nMonth < 10 ? nMonth + 3 : nMonth - 9, nDayOfYear - (153 * nMonth + 2) / 5 + 1};
}

int DaysInMonth(int nYear, int nMonth)
{
    return DayOfDate({nYear, nMonth + 1, 1}) - DayOfDate({nYear, nMonth, 1});
}

int FullYear(int nYear)
{
    if (nYear < 0 || nYear > 99)
        return nYear;
    return nYear + (nYear < 30 ? 2000 : 1900);
}

DATE DateValue(int nDay, int nSeconds)
{
    const double fraction = static_cast<double>(nSeconds) / kSecondsPerDay;
    return nDay < 0 ? nDay - fraction : nDay + fraction;
}

bool SplitDate(DATE date, int& nDay, int& nSeconds)
{
    if (!(date > kFirstDay - 1.0 && date < kLastDay + 1.0))
        return false;
    const double whole = std::trunc(date);
    nDay = static_cast<int>(whole);
    nSeconds = static_cast<int>(std::floor(std::fabs(date - whole) * kSecondsPerDay + 0.5));
    if (nSeconds == kSecondsPerDay) {
        nSeconds = 0;
        ++nDay;
    }
    return nDay <= kLastDay;
}

extern "C" {

// Milliseconds are ignored. A month or a day of 0 is let through, and counts back from the first.
INT SystemTimeToVariantTime(SYSTEMTIME* time, DATE* date)
{
    if (!time || !date || time->wYear > 9999 || time->wMonth > 12 || time->wDay > 31)
        return 0;
    const int nSeconds = (time->wHour * 60 + time->wMinute) * 60 + time->wSecond;
    const int nDay =
        DayOfDate({FullYear(time->wYear), time->wMonth, time->wDay}) + nSeconds / kSecondsPerDay;
    if (nDay < kFirstDay || nDay > kLastDay)
        return 0;
    *date = DateValue(nDay, nSeconds % kSecondsPerDay);
    return 1;
}

INT VariantTimeToSystemTime(DATE date, SYSTEMTIME* time)
{
    int nDay = 0;
    int nSeconds = 0;
    if (!time || !SplitDate(date, nDay, nSeconds))
        return 0;
    const CalendarDate calendar = DateOfDay(nDay);
    const int nDayOfWeek = nDay + kDayOfWeekOfZero;
    time->wYear = static_cast<WORD>(calendar.nYear);
    time->wMonth = static_cast<WORD>(calendar.nMonth);
    time->wDayOfWeek = static_cast<WORD>(nDayOfWeek - FloorDivide(nDayOfWeek, 7) * 7);
    time->wDay = static_cast<WORD>(calendar.nDay);
    time->wHour = static_cast<WORD>(nSeconds / 3600);
    time->wMinute = static_cast<WORD>(nSeconds / 60 % 60);
    time->wSecond = static_cast<WORD>(nSeconds % 60);
    time->wMilliseconds = 0;
    return 1;
}
}
