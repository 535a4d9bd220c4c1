#include <gtest/gtest.h>

#include <chrono>

#include "datetime/qrlDateTime.h"
#include "tests/datetime/values.h"

namespace {

using namespace qrlDateTime;
using namespace qrlDateTime::details;

struct KnownDay
{
    std::int32_t nDay;
    int nYear, nMonth, nDayOfMonth, nWeekday;
};

constexpr KnownDay kKnownDays[] = {
    {2, 1900, 1, 1, 1},       {60, 1900, 2, 28, 3},     {61, 1900, 3, 1, 4},
    {367, 1901, 1, 1, 2},     {1521, 1904, 2, 29, 1},   {25569, 1970, 1, 1, 4},
    {36526, 2000, 1, 1, 6},   {36585, 2000, 2, 29, 2},  {36586, 2000, 3, 1, 3},
    {45657, 2024, 12, 31, 2}, {65380, 2078, 12, 31, 6},
};

TEST(Calendar, KnownDaysConvertBothWays)
{
    for (const KnownDay& row : kKnownDays) {
        SCOPED_TRACE(row.nDay);
        TDate date{};
        EXPECT_TRUE(JulianToDateImpl(row.nDay, date));
        EXPECT_EQ(std::tuple(row.nYear, row.nMonth, row.nDayOfMonth),
                  std::tuple(date.Year, date.Month, date.Day));
        std::int32_t nDay = 0;
        EXPECT_TRUE(DateToJulianImpl(date, nDay));
        EXPECT_EQ(row.nDay, nDay);
        EXPECT_EQ(row.nWeekday, GetDayOfWeekImpl(row.nDay));
    }
}

TEST(Calendar, EveryDayOfTheRangeAgreesWithACount)
{
    using namespace std::chrono;
    const sys_days first = sys_days(1900y / January / 1);
    for (std::int32_t nDay = kFirstDay; nDay <= kLastDay; ++nDay) {
        const sys_days day = first + days(nDay - kFirstDay);
        const year_month_day ymd(day);
        const TDate expected{static_cast<std::int16_t>(static_cast<unsigned>(ymd.month())),
                             static_cast<std::int16_t>(static_cast<unsigned>(ymd.day())),
                             static_cast<std::int16_t>(static_cast<int>(ymd.year()))};
        TDate date{};
        std::int32_t nBack = 0;
        JulianToDateImpl(nDay, date);
        DateToJulianImpl(expected, nBack);
        ASSERT_EQ(std::tuple(expected.Year, expected.Month, expected.Day, nDay,
                             weekday(day).c_encoding()),
                  std::tuple(date.Year, date.Month, date.Day, nBack,
                             static_cast<unsigned>(GetDayOfWeekImpl(nDay))))
            << "day " << nDay;
    }
}

TEST(Calendar, FirstDaysOfTheFirstYears)
{
    constexpr std::int32_t kStarts[] = {2, 367, 732, 1097, 1462, 1828, 2193, 2558};
    for (int n = 0; n < 8; ++n) {
        SCOPED_TRACE(1900 + n);
        std::int32_t nDay = 0;
        DateToJulianImpl({1, 1, static_cast<std::int16_t>(1900 + n)}, nDay);
        EXPECT_EQ(kStarts[n], nDay);
    }
}

TEST(Calendar, DayZeroIsADateAndASaturday)
{
    TDate date{};
    EXPECT_TRUE(JulianToDateImpl(0, date));
    EXPECT_EQ(std::tuple(1899, 12, 30), std::tuple(date.Year, date.Month, date.Day));
    EXPECT_EQ(6, GetDayOfWeekImpl(0));
}

TEST(Calendar, DayOneHasOnlyADayOfTheWeek)
{
    EXPECT_EQ(0, GetDayOfWeekImpl(1));
    TDate date{7, 7, 1977};
    EXPECT_THROW(JulianToDateImpl(1, date), std::range_error);
    EXPECT_EQ(1977, date.Year);
}

TEST(Calendar, TheQuietFormsRefuseWhatTheOthersThrowAt)
{
    for (const std::int32_t nDay : {INT32_MIN, -1, 0, 1, 2, 65380, 65381, INT32_MAX}) {
        SCOPED_TRACE(nDay);
        TDate date{7, 7, 1977};
        const bool bAdmitted = nDay == 0 || (nDay >= 2 && nDay <= 65380);
        EXPECT_EQ(bAdmitted, TryJulianToDate(nDay, date));
        EXPECT_EQ(!bAdmitted, date.Year == 1977);
    }
    for (const std::int32_t nTime : {INT32_MIN, -1, 0, 86399, 86400, INT32_MAX}) {
        SCOPED_TRACE(nTime);
        TTime time{77, 77, 77};
        const bool bAdmitted = nTime >= 0 && nTime <= 86399;
        EXPECT_EQ(bAdmitted, TryTimeToTTime(nTime, time));
        EXPECT_EQ(!bAdmitted, time.Hour == 77);
    }
}

TEST(Calendar, LengthsOfMonths)
{
    struct Row
    {
        int nYear;
        int nLengths[12];
    };
    constexpr Row kRows[] = {
        {1900, {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31}},
        {1904, {31, 29, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31}},
        {2000, {31, 29, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31}},
        {2023, {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31}},
        {2100, {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31}},
        {2400, {31, 29, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31}},
    };
    for (const Row& row : kRows)
        for (int nMonth = 1; nMonth <= 12; ++nMonth)
            EXPECT_EQ(row.nLengths[nMonth - 1], GetDaysInMonth(row.nYear, nMonth))
                << row.nYear << '-' << nMonth;
}

TEST(TimeOfDay, EverySecondOfADaySplitsAndJoins)
{
    std::int32_t nSeconds = 0;
    for (int nHour = 0; nHour < 24; ++nHour)
        for (int nMinute = 0; nMinute < 60; ++nMinute)
            for (int nSecond = 0; nSecond < 60; ++nSecond, ++nSeconds) {
                TTime time{};
                ASSERT_TRUE(TimeToTTime(nSeconds, time));
                ASSERT_EQ(std::tuple(nHour, nMinute, nSecond, nSeconds),
                          std::tuple(time.Hour, time.Minute, time.Second,
                                     HMSToTime(nHour, nMinute, nSecond)));
            }
    EXPECT_EQ(86400, nSeconds);
}

TEST(ReplaceDate, SetsTheDateAndLeavesTheTime)
{
    SYSTEMTIME time = MakeTime(1950, 5, 5, 23, 58, 57, 56);
    EXPECT_EQ(0, ReplaceDateInSYSTEMTIME(2, time));
    SYSTEMTIME expected = MakeTime(1900, 1, 1, 23, 58, 57, 56);
    expected.wDayOfWeek = 1;
    EXPECT_EQ(FieldsOf(expected), FieldsOf(time)) << time;
}

TEST(ReplaceTime, SetsTheTimeClearsMillisecondsAndLeavesTheDate)
{
    SYSTEMTIME time = MakeTime(1950, 5, 6, 1, 2, 3, 4);
    time.wDayOfWeek = 6;
    EXPECT_EQ(0, ReplaceTimeInSYSTEMTIME(86399, time));
    SYSTEMTIME expected = MakeTime(1950, 5, 6, 23, 59, 59, 0);
    expected.wDayOfWeek = 6;
    EXPECT_EQ(FieldsOf(expected), FieldsOf(time)) << time;
}

} // namespace
