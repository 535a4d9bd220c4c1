// Values of the calendar and their comparison and printing.
#pragma once

#include <ostream>
#include <tuple>

#include "datetime/qrlDateTime.h"

inline auto FieldsOf(const SYSTEMTIME& t)
{
    return std::tuple(t.wYear, t.wMonth, t.wDayOfWeek, t.wDay, t.wHour, t.wMinute, t.wSecond,
                      t.wMilliseconds);
}

// Without the day of the week.
inline SYSTEMTIME MakeTime(int nYear, int nMonth, int nDay, int nHour = 0, int nMinute = 0,
                           int nSecond = 0, int nMilliseconds = 0)
{
    SYSTEMTIME t{};
    t.wYear = static_cast<WORD>(nYear);
    t.wMonth = static_cast<WORD>(nMonth);
    t.wDay = static_cast<WORD>(nDay);
    t.wHour = static_cast<WORD>(nHour);
    t.wMinute = static_cast<WORD>(nMinute);
    t.wSecond = static_cast<WORD>(nSecond);
    t.wMilliseconds = static_cast<WORD>(nMilliseconds);
    return t;
}

inline std::ostream& operator<<(std::ostream& out, const SYSTEMTIME& t)
{
    return out << t.wYear << '-' << t.wMonth << '-' << t.wDay << " (" << t.wDayOfWeek << ") "
               << t.wHour << ':' << t.wMinute << ':' << t.wSecond << '.' << t.wMilliseconds;
}

inline qrlDateTime::SDateTime FromTicks(std::int64_t nTicks)
{
    qrlDateTime::SDateTime value;
    value.m_ticks = nTicks;
    return value;
}

inline qrlDateTime::SDateTime From(const SYSTEMTIME& time)
{
    qrlDateTime::SDateTime value;
    value = time;
    return value;
}
