// A date is kept as ticks. A SYSTEMTIME becomes ticks field by field, after all fields have
// been checked; ticks become a SYSTEMTIME by division. An OLE date is rounded to units of 10
// microseconds first.

#include "datetime/qrlDateTime.h"

#include "datetime/CalendarTables.h"
#include "datetime/RangeFault.h"
#include "datetime/TickParts.h"

namespace qrlDateTime {

using namespace details;

namespace {

constexpr std::int64_t kTicksPerMillisecond = 10'000;

// OLE dates are taken in units of 10 microseconds.
constexpr std::int64_t kTicksPerOleUnit = 100;
constexpr double kOleUnitsPerDay = 8.64e9;
constexpr std::int64_t kOleUnitsOfOleZero = kTicksOfOleZero / kTicksPerOleUnit;
constexpr std::int64_t kLastOleDate = kLastDay + 1;
constexpr std::int64_t kLastOleUnit = kLastOleDate * (kTicksPerDay / kTicksPerOleUnit);
static_assert(kOleUnitsOfOleZero == 5992643520000000 && kLastOleUnit == 564891840000000);

struct FieldRange
{
    WORD SYSTEMTIME::*field;
    const char* szName;
    WORD nLow, nHigh;
};

// In the order in which the fields are checked.
constexpr FieldRange kFieldRanges[] = {
    {&SYSTEMTIME::wMilliseconds, "aDate.wMilliseconds", 0, 999},
    {&SYSTEMTIME::wSecond, "aDate.wSecond", 0, 59},
    {&SYSTEMTIME::wMinute, "aDate.wMinute", 0, 59},
    {&SYSTEMTIME::wHour, "aDate.wHour", 0, 23},
    {&SYSTEMTIME::wDay, "aDate.wDay", 1, 31},
    {&SYSTEMTIME::wMonth, "aDate.wMonth", 1, 12},
    {&SYSTEMTIME::wYear, "aDate.wYear", kFirstYear, kLastYear},
};

void CheckFields(const SYSTEMTIME& aDate)
{
    for (const FieldRange& row : kFieldRanges)
        CheckRange("SDateTime::operator =", row.szName, row.nLow, row.nHigh, aDate.*row.field);
}

std::int32_t DayNumberOf(const SYSTEMTIME& aDate)
{
    const TDate date{static_cast<std::int16_t>(aDate.wMonth), static_cast<std::int16_t>(aDate.wDay),
                     static_cast<std::int16_t>(aDate.wYear)};
    std::int32_t nDays = 0;
    DateToJulianImpl(date, nDays);
    return nDays;
}

} // namespace

std::int64_t SDateTime::OleDate2Ticks(double value)
{
    constexpr char kFunction[] = "SDateTime::OleDate2Ticks";
    if (!(0.0 <= value && value <= static_cast<double>(kLastOleDate))) // catches a NaN too
        ThrowOutOfRange(kFunction, "value", 0, kLastOleDate, value);
    const auto num = static_cast<std::int64_t>(value * kOleUnitsPerDay + 0.5);
    CheckRange(kFunction, "num", 0, kLastOleUnit, num);
    return (kOleUnitsOfOleZero + num) * kTicksPerOleUnit;
}

// Date, seconds and milliseconds are put in one after the other; each step keeps
// the coarser part of the ticks and replaces the finer one.
SDateTime& SDateTime::operator=(const SYSTEMTIME& aDate)
{
    CheckFields(aDate);
    const std::int32_t nDays = DayNumberOf(aDate);
    m_ticks = (nDays + kDaysToOleZero) * kTicksPerDay + m_ticks % kTicksPerDay;
    m_ticks = (m_ticks / kTicksPerDay * kSecondsPerDay +
               HMSToTime(aDate.wHour, aDate.wMinute, aDate.wSecond)) *
              kTicksPerSecond;
    m_ticks = (m_ticks / kTicksPerSecond * 1000 + aDate.wMilliseconds) * kTicksPerMillisecond;
    return *this;
}

SYSTEMTIME SDateTime::ToSYSTEMTIME(SYSTEMTIME* aOut) const
{
    SYSTEMTIME result{};
    ReplaceDateInSYSTEMTIME(DayNumberOfTicks(m_ticks), result);
    ReplaceTimeInSYSTEMTIME(SecondsOfTicks(m_ticks), result);
    result.wMilliseconds = static_cast<WORD>(FractionOfTicks(m_ticks) / kTicksPerMillisecond);
    if (aOut)
        *aOut = result;
    return result;
}

int ReplaceDateInSYSTEMTIME(std::int32_t aDate, SYSTEMTIME& aTarget)
{
    CheckRange("ReplaceDateInSYSTEMTIME", "aDate", kFirstDay, kLastDay, aDate);
    TDate date;
    if (!TryJulianToDate(aDate, date))
        return 1;
    aTarget.wYear = static_cast<WORD>(date.Year);
    aTarget.wMonth = static_cast<WORD>(date.Month);
    aTarget.wDayOfWeek = static_cast<WORD>(GetDayOfWeekImpl(aDate));
    aTarget.wDay = static_cast<WORD>(date.Day);
    return 0;
}

int ReplaceTimeInSYSTEMTIME(std::int32_t aTime, SYSTEMTIME& aTarget)
{
    CheckRange("ReplaceTimeInSYSTEMTIME", "aTime", 0, kSecondsPerDay - 1, aTime);
    TTime time;
    if (!TryTimeToTTime(aTime, time))
        return 1;
    aTarget.wHour = static_cast<WORD>(time.Hour);
    aTarget.wMinute = static_cast<WORD>(time.Minute);
    aTarget.wSecond = static_cast<WORD>(time.Second);
    aTarget.wMilliseconds = 0;
    return 0;
}

bool IsValidSYSTEMTIME(const SYSTEMTIME& aDate)
{
    for (const FieldRange& row : kFieldRanges)
        if (!InRange(aDate.*row.field, row.nLow, row.nHigh))
            return false;
    return aDate.wDay <= DaysInMonth(aDate.wYear, aDate.wMonth);
}

} // namespace qrlDateTime
