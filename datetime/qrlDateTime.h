// qrlDateTime: the calendar value of the system, and the conversions around it.
//
// Dates are of the proleptic Gregorian calendar, without a time zone. A day number
// counts whole days from 1899-12-30, so 2 is Monday, 1900-01-01. Valid dates are
// days 2 to 65380, that is 1900-01-01 to 2078-12-31. Day 0 is the date part of a value
// that is only a time; the calls that take it say so.
//
// A value out of range throws std::range_error, whose text names the function, the
// argument, the range and the value. A call that throws has changed nothing.
//
// Nothing here has state beyond its arguments: all of it may run on any thread. One
// SDateTime isn't shared between threads.
#pragma once

#include <cstddef>
#include <cstdint>

#include "platform/component.h"

namespace qrlDateTime {

inline constexpr std::int64_t kTicksPerSecond = 10'000'000;
inline constexpr std::int64_t kSecondsPerDay = 86'400;
inline constexpr std::int64_t kTicksPerDay = kSecondsPerDay * kTicksPerSecond;

// Days from tick zero to day 0, and the same in ticks.
inline constexpr std::int64_t kDaysToOleZero = 693'593;
inline constexpr std::int64_t kTicksOfOleZero = kDaysToOleZero * kTicksPerDay;

inline constexpr std::int32_t kFirstDay = 2;
inline constexpr std::int32_t kLastDay = 65'380;
inline constexpr int kFirstYear = 1900;
inline constexpr int kLastYear = 2078;

struct TDate
{
    std::int16_t Month; // 1 to 12
    std::int16_t Day;   // from 1
    std::int16_t Year;  // all four digits
};

struct TTime
{
    std::int16_t Hour;
    std::int16_t Minute;
    std::int16_t Second;
};

// A point in time, exact to 100 nanoseconds.
struct SDateTime
{
    // Ticks of 100 nanoseconds since 0001-01-01 00:00:00.
    std::int64_t m_ticks = 599'266'080'000'000'000; // 1900-01-01

    // Capacity of Format's buffer in units, terminator included.
    static constexpr std::size_t kFormatCapacity = 255;

    // Ticks of an OLE date, 0.0 to 65381.0, rounded to the nearest 10 microseconds,
    // halves up. The upper end is let through although it is no valid date.
    static std::int64_t OleDate2Ticks(double value);

    // Takes over all fields except wDayOfWeek. The result is whole milliseconds.
    SDateTime& operator=(const SYSTEMTIME& aDate);

    // All eight fields; digits below the millisecond are cut. Also stored in *aOut
    // if that is given. Throws outside days 2 to 65380.
    SYSTEMTIME ToSYSTEMTIME(SYSTEMTIME* aOut = nullptr) const;

    // Writes the value into szBuffer as the format says, with a terminator, and gives
    // the position of the terminator. Text beyond the capacity is cut off without an
    // error. A date that is neither valid nor day 0 throws, whatever the format.
    //
    //   %H %M %S  hour, minute, second, two digits   %s  second, no leading zero
    //   %d %m %y  day, month, year modulo 100, two digits   %Y  year, four digits
    //   %F %f     milliseconds, three digits / no leading zeros
    //   %G %g     microseconds, six digits / no leading zeros
    //   %A %a %B %b  names in the user's locale, see LocaleInfo for types 42 + w,
    //             49 + w, 55 + month, 67 + month; w is 1 for Monday to 7 for Sunday
    //   %D %T     short date of the user's locale, invariant time
    //   %%        a percent sign; any other letter writes nothing
    //
    // A name, date or time that is empty or doesn't fit puts the position at the end
    // of the buffer, which ends the text; the units skipped stay as they were.
    std::size_t Format(OLECHAR* szBuffer, std::size_t nCapacity, string_view_t sFormat) const;

    // The same as a string, up to the first zero of a zeroed buffer of
    // kFormatCapacity units.
    string_t Format(string_view_t sFormat) const;
};

// Splits seconds since midnight, 0 to 86399. Gives true.
bool TimeToTTime(std::int32_t aTime, TTime& aOut);

// Seconds since midnight.
std::int32_t HMSToTime(int aHour, int aMinute, int aSecond);

// Length of month 1 to 12, for a year of any range.
int GetDaysInMonth(int nYear, int aMonth);

// Sets wYear, wMonth, wDayOfWeek and wDay from a day number of 2 to 65380 and
// leaves the time. Gives 0, or 1 if the calendar refuses the day.
int ReplaceDateInSYSTEMTIME(std::int32_t aDate, SYSTEMTIME& aTarget);

// Sets wHour, wMinute and wSecond from seconds since midnight, clears wMilliseconds
// and leaves the date. Gives 0, or 1 if the seconds can't be split.
int ReplaceTimeInSYSTEMTIME(std::int32_t aTime, SYSTEMTIME& aTarget);

// Whether SDateTime takes the value. Throws nothing and builds no text, so it may
// stand before an assignment wherever bad values are common.
bool IsValidSYSTEMTIME(const SYSTEMTIME& aDate);

namespace details {

// Day number of a date. Gives true.
bool DateToJulianImpl(const TDate& aDate, std::int32_t& aOut);

// Date of a day number; takes day 0 too. Gives true.
bool JulianToDateImpl(std::int32_t days, TDate& aOut);

// 0 for Sunday to 6 for Saturday, of day number 0 to 65380.
int GetDayOfWeekImpl(std::int32_t aDays);

// The conversions in a form that gives false, and leaves aOut alone, instead of
// throwing.
bool TryDateToJulian(const TDate& aDate, std::int32_t& aOut);
bool TryJulianToDate(std::int32_t days, TDate& aOut);
bool TryTimeToTTime(std::int32_t aTime, TTime& aOut);

} // namespace details
} // namespace qrlDateTime
