// Dates become day numbers by table: the day of January 1 of the year, the offset of the
// month, and the day. Day numbers become dates by the conversion of Fliegel and Van
// Flandern. Each step has a form that throws and one that gives false.

#include "datetime/CalendarTables.h"
#include "datetime/RangeFault.h"
#include "datetime/qrlDateTime.h"

namespace qrlDateTime {

using namespace details;

int GetDaysInMonth(int nYear, int aMonth)
{
    CheckRange("GetDaysInMonth", "aMonth", 1, 12, aMonth);
    return DaysInMonth(nYear, aMonth);
}

std::int32_t HMSToTime(int aHour, int aMinute, int aSecond)
{
    CheckRange("HMSToTime", "aHour", 0, 23, aHour);
    CheckRange("HMSToTime", "aMinute", 0, 59, aMinute);
    CheckRange("HMSToTime", "aSecond", 0, 59, aSecond);
    return (aMinute + aHour * 60) * 60 + aSecond;
}

bool TimeToTTime(std::int32_t aTime, TTime& aOut)
{
    CheckRange("TimeToTTime", "aTime", 0, kSecondsPerDay - 1, aTime);
    return TryTimeToTTime(aTime, aOut);
}

namespace details {
namespace {

constexpr char kDateToJulian[] = "details::DateToJulianImpl";

// The check of the day's range has caught this case already. This one keeps the table of
// a common year safe if that check ever changes.
void CheckLeapDay(const TDate& aDate, bool bLeap)
{
    if (!bLeap && aDate.Month == 2 && aDate.Day == 29) [[unlikely]]
        throw std::range_error(JoinPieces("qrlDateTime::", kDateToJulian,
                                          " : TDate out of range (not leap year! 29 Feb ",
                                          aDate.Year, ")"));
}

} // namespace

bool DateToJulianImpl(const TDate& aDate, std::int32_t& aOut)
{
    CheckRange(kDateToJulian, "aDate.Year", kFirstYear, kLastYear, aDate.Year);
    CheckRange(kDateToJulian, "aDate.Month", 1, 12, aDate.Month);
    CheckRange(kDateToJulian, "aDate.Day", 1, DaysInMonth(aDate.Year, aDate.Month), aDate.Day);
    CheckLeapDay(aDate, IsLeapYear(aDate.Year));
    return TryDateToJulian(aDate, aOut);
}

bool TryDateToJulian(const TDate& aDate, std::int32_t& aOut)
{
    if (!InRange(aDate.Year, kFirstYear, kLastYear) || !InRange(aDate.Month, 1, 12) ||
        !InRange(aDate.Day, 1, DaysInMonth(aDate.Year, aDate.Month)))
        return false;
    const MonthOffsets& months = IsLeapYear(aDate.Year) ? kLeapMonths : kCommonMonths;
    aOut = months[aDate.Month - 1] + kYearStarts[aDate.Year - kFirstYear] + aDate.Day - 1;
    return true;
}

bool JulianToDateImpl(std::int32_t days, TDate& aOut)
{
    if (!TryJulianToDate(days, aOut))
        throw std::range_error(JoinPieces("qrlDateTime::details::JulianToDateImpl",
                                          " : 'days' parameter is out of range (days = ", days,
                                          ")"));
    return true;
}

// The conversion of Fliegel and Van Flandern (Communications of the ACM 11, 1968, page 657). Its
// input is a Julian day plus 68569, and the Julian day of day 0 is 2415019.
bool TryJulianToDate(std::int32_t days, TDate& aOut)
{
    if (days != 0 && !InRange(days, kFirstDay, kLastDay))
        return false;
    int l = days + 2415019 + 68569;
    const int n = 4 * l / 146097;
    l -= (146097 * n + 3) / 4;
    const int i = 4000 * (l + 1) / 1461001;
    l = l - 1461 * i / 4 + 31;
    const int j = 80 * l / 2447;
    aOut.Day = static_cast<std::int16_t>(l - 2447 * j / 80);
    l = j / 11;
    aOut.Month = static_cast<std::int16_t>(j + 2 - 12 * l);
    aOut.Year = static_cast<std::int16_t>(100 * (n - 49) + i + l);
    return true;
}

// Day 1 is a Sunday. Day 0, the Saturday before it, would give a negative remainder.
int GetDayOfWeekImpl(std::int32_t aDays)
{
    CheckRange("details::GetDayOfWeekImpl", "aDays", 0, kLastDay, aDays);
    return aDays == 0 ? 6 : (aDays - 1) % 7;
}

bool TryTimeToTTime(std::int32_t aTime, TTime& aOut)
{
    if (!InRange(aTime, 0, kSecondsPerDay - 1))
        return false;
    aOut.Hour = static_cast<std::int16_t>(aTime / 3600);
    aOut.Minute = static_cast<std::int16_t>(aTime % 3600 / 60);
    aOut.Second = static_cast<std::int16_t>(aTime % 60);
    return true;
}

} // namespace details
} // namespace qrlDateTime
