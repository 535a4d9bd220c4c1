#include <cmath>
#include <cstring>
#include <random>

#include <gtest/gtest.h>

#include "System.h"
#include "SystemTime.h"
#include "platform/component.h"
#include "tests/support/Seed.h"

namespace {

constexpr int kFirstDay = -657434; // 0100-01-01
constexpr int kLastDay = 2958465;  // 9999-12-31

std::string Show(const SYSTEMTIME& t)
{
    return (testing::Message() << t.wYear << '-' << t.wMonth << '-' << t.wDay << ' ' << t.wHour
                               << ':' << t.wMinute << ':' << t.wSecond << '.' << t.wMilliseconds)
        .GetString();
}

struct ToDate
{
    SYSTEMTIME time;
    bool bValid;
    DATE date;
};

TEST(SystemTimeToVariantTime, GivesDaysSinceTheEndOf1899)
{
    const ToDate rows[] = {
        {Time(1899, 12, 30), true, 0},
        {Time(1899, 12, 31), true, 1},
        {Time(1980, 1, 1), true, 29221},
        {Time(1990, 12, 31), true, 33238},
        {Time(2000, 2, 29), true, 36585},
        {Time(100, 1, 1), true, kFirstDay},
        {Time(9999, 1, 1), true, 2958101},
        {Time(9999, 12, 31), true, kLastDay},
        {Time(1980, 1, 1, 18, 1, 16), true, 29221.75087962963},
        // Milliseconds don't count.
        {Time(1899, 12, 30, 0, 0, 0, 999), true, 0},
        // Before day 0 the fraction grows away from zero.
        {Time(1899, 12, 25, 6), true, -5.25},
        {Time(1899, 12, 25, 23, 59, 59), true, -5.9999884259259},
        {Time(1899, 12, 26), true, -4},
        {Time(1899, 12, 30, 6), true, 0.25},
    };
    for (ToDate row : rows) {
        SCOPED_TRACE(Show(row.time));
        DATE date = 1e9;
        EXPECT_EQ(SystemTimeToVariantTime(&row.time, &date), 1);
        EXPECT_NEAR(date, row.date, 1e-9);
    }
}

TEST(SystemTimeToVariantTime, RollsDaysAndMonthsOver)
{
    const ToDate rows[] = {
        {Time(1980, 1, 0), true, 29220},  // 1979-12-31
        {Time(1980, 0, 1), true, 29190},  // 1979-12-01
        {Time(1980, 0, 0), true, 29189},  // 1979-11-30
        {Time(1981, 2, 29), true, 29646}, // 1981-03-01
        {Time(1981, 2, 30), true, 29647}, {Time(1980, 2, 29), true, 29280},
        {Time(1980, 2, 30), true, 29281}, {Time(2001, 4, 31), true, 37012}, // 2001-05-01
        {Time(1980, 1, 32), false, 0},    {Time(1980, 13, 1), false, 0},
    };
    for (ToDate row : rows) {
        SCOPED_TRACE(Show(row.time));
        DATE date = 1e9;
        EXPECT_EQ(SystemTimeToVariantTime(&row.time, &date), row.bValid ? 1 : 0);
        EXPECT_EQ(date, row.bValid ? row.date : 1e9);
    }
}

// A hundred years up to the last one; 1930 to 2029 unless the user wants it otherwise.
TEST(SystemTimeToVariantTime, TakesTwoDigitYearsForTheUsersCentury)
{
    for (int nYear = 0; nYear < 100; ++nYear) {
        SYSTEMTIME asked = Time(nYear, 2, 3);
        SYSTEMTIME full = Time(FullYearOf(nYear), 2, 3);
        DATE date = 1e9;
        DATE expected = 0;
        EXPECT_EQ(SystemTimeToVariantTime(&asked, &date), 1) << nYear;
        EXPECT_EQ(SystemTimeToVariantTime(&full, &expected), 1) << nYear;
        EXPECT_EQ(date, expected) << nYear;
    }
    EXPECT_GE(LastYearOfTwoDigits(), 2029);
}

TEST(SystemTimeToVariantTime, RefusesYearsBeyond9999)
{
    for (const int nYear : {10000, 32767, 65535}) {
        SYSTEMTIME time = Time(nYear, 1, 1);
        DATE date = 0;
        EXPECT_EQ(SystemTimeToVariantTime(&time, &date), 0) << nYear;
    }
}

struct FromDate
{
    DATE date;
    SYSTEMTIME time;
    int nDayOfWeek;
};

TEST(VariantTimeToSystemTime, GivesCalendarAndClockToTheNearestSecond)
{
    const FromDate rows[] = {
        {29221, Time(1980, 1, 1), 2},
        {33238, Time(1990, 12, 31), 1},
        {0, Time(1899, 12, 30), 6},
        {kFirstDay, Time(100, 1, 1), 5},
        {kLastDay, Time(9999, 12, 31), 5},
        {29221.25, Time(1980, 1, 1, 6), 2},
        {29221.33333333, Time(1980, 1, 1, 8), 2},
        {29221.9888884444, Time(1980, 1, 1, 23, 44), 2},
        {29221.7508765432, Time(1980, 1, 1, 18, 1, 16), 2},
        {-5.25, Time(1899, 12, 25, 6), 1},
        {-5.9999884259259, Time(1899, 12, 25, 23, 59, 59), 1},
        {-4, Time(1899, 12, 26), 2},
        {-0.25, Time(1899, 12, 30, 6), 6},
        {0.25, Time(1899, 12, 30, 6), 6},
    };
    for (const FromDate& row : rows) {
        SCOPED_TRACE(row.date);
        SYSTEMTIME time = Time(1, 1, 1, 1, 1, 1, 1);
        EXPECT_EQ(VariantTimeToSystemTime(row.date, &time), 1);
        EXPECT_EQ(Show(time), Show(row.time));
        EXPECT_EQ(time.wDayOfWeek, row.nDayOfWeek);
    }
}

TEST(VariantTimeToSystemTime, RoundsUpToTheNextDay)
{
    const FromDate rows[] = {
        {29221.9999999, Time(1980, 1, 2), 3},
        {-5.9999999, Time(1899, 12, 26), 2},
        {0.9999999, Time(1899, 12, 31), 0},
    };
    for (const FromDate& row : rows) {
        SCOPED_TRACE(row.date);
        SYSTEMTIME time = {};
        EXPECT_EQ(VariantTimeToSystemTime(row.date, &time), 1);
        EXPECT_EQ(Show(time), Show(row.time));
        EXPECT_EQ(time.wDayOfWeek == row.nDayOfWeek, !WeekdayStaysBehind()) << time.wDayOfWeek;
    }
}

TEST(VariantTimeToSystemTime, RefusesWhatIsOutOfRange)
{
    for (const DATE date : {kFirstDay - 1.0, kLastDay + 1.0, -1e18, 1e18}) {
        SYSTEMTIME time = {};
        EXPECT_EQ(VariantTimeToSystemTime(date, &time), 0) << date;
    }
}

TEST(VariantTimeToSystemTime, RefusesWhatIsNotANumber)
{
    SYSTEMTIME time = {};
    EXPECT_EQ(VariantTimeToSystemTime(std::nan(""), &time), NotANumberIsANumber() ? 1 : 0);
}

TEST(VariantTime, ComesBackUnchanged)
{
    std::mt19937 random(Seed());
    std::uniform_int_distribution<int> days(kFirstDay, kLastDay);
    std::uniform_int_distribution<int> seconds(0, 86399);
    for (int n = 0; n < Rounds(20000); ++n) {
        const int nDay = days(random);
        const double fraction = seconds(random) / 86400.0;
        const DATE date = nDay < 0 ? nDay - fraction : nDay + fraction;
        SYSTEMTIME time = {};
        ASSERT_EQ(VariantTimeToSystemTime(date, &time), 1) << date;
        DATE again = 1e9;
        ASSERT_EQ(SystemTimeToVariantTime(&time, &again), 1) << Show(time);
        // The times of day 0 have two numbers, above and below 0; the positive one comes back.
        ASSERT_NEAR(again, nDay == 0 ? std::fabs(date) : date, 1e-9) << Show(time);
    }
}

TEST(VariantTime, OfEachDayFollowsTheCalendar)
{
    SYSTEMTIME last = {};
    ASSERT_EQ(VariantTimeToSystemTime(kFirstDay, &last), 1);
    const auto isLeap = [](int y) { return y % 4 == 0 && (y % 100 != 0 || y % 400 == 0); };
    const int lengths[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    for (int nDay = kFirstDay + 1; nDay <= kLastDay; ++nDay) {
        SYSTEMTIME expected = last;
        const int nLength =
            lengths[last.wMonth - 1] + (last.wMonth == 2 && isLeap(last.wYear) ? 1 : 0);
        if (++expected.wDay > nLength) {
            expected.wDay = 1;
            if (++expected.wMonth > 12) {
                expected.wMonth = 1;
                ++expected.wYear;
            }
        }
        SYSTEMTIME time = {};
        ASSERT_EQ(VariantTimeToSystemTime(nDay, &time), 1) << nDay;
        expected.wDayOfWeek = static_cast<WORD>((last.wDayOfWeek + 1) % 7);
        ASSERT_EQ(std::memcmp(&time, &expected, sizeof time), 0)
            << nDay << ": " << Show(time) << " for " << Show(expected);
        last = time;
    }
}

} // namespace
