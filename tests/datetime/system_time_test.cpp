#include <gtest/gtest.h>

#include <chrono>
#include <limits>
#include <random>

#include "datetime/qrlDateTime.h"
#include "tests/datetime/faults.h"
#include "tests/datetime/values.h"
#include "tests/support/Seed.h"

namespace {

using namespace qrlDateTime;

TEST(SystemTime, AFreshValueIsTheFirstValidDay)
{
    SYSTEMTIME expected = MakeTime(1900, 1, 1);
    expected.wDayOfWeek = 1;
    EXPECT_EQ(599266080000000000, SDateTime().m_ticks);
    EXPECT_EQ(FieldsOf(expected), FieldsOf(SDateTime().ToSYSTEMTIME()));
}

TEST(SystemTime, KnownTicks)
{
    struct Row
    {
        SYSTEMTIME time;
        std::int64_t nTicks;
    };
    const Row kRows[] = {
        {MakeTime(1900, 1, 1), 599266080000000000},
        {MakeTime(1900, 1, 1, 0, 0, 0, 1), 599266080000010000},
        {MakeTime(1970, 1, 1), 621355968000000000},
        {MakeTime(2000, 2, 29, 12, 0, 0, 50), 630874224000500000},
        {MakeTime(2078, 12, 31, 23, 59, 59, 999), 655753535999990000},
    };
    for (const Row& row : kRows) {
        SCOPED_TRACE(testing::Message() << row.time);
        EXPECT_EQ(row.nTicks, From(row.time).m_ticks);
        const SYSTEMTIME back = From(row.time).ToSYSTEMTIME();
        SYSTEMTIME expected = row.time;
        expected.wDayOfWeek = back.wDayOfWeek;
        EXPECT_EQ(FieldsOf(expected), FieldsOf(back));
    }
}

TEST(SystemTime, FieldsAreTestedFromTheFinestToTheYear)
{
    struct Row
    {
        SYSTEMTIME time;
        const char* szText;
    };
    const Row kRows[] = {
        {MakeTime(2079, 13, 32, 24, 60, 60, 1000),
         "wMilliseconds' is out of range [0..999]; aDate.wMilliseconds = 1000"},
        {MakeTime(2079, 13, 32, 24, 60, 60),
         "wSecond' is out of range [0..59]; aDate.wSecond = 60"},
        {MakeTime(2079, 13, 32, 24, 60), "wMinute' is out of range [0..59]; aDate.wMinute = 60"},
        {MakeTime(2079, 13, 32, 24), "wHour' is out of range [0..23]; aDate.wHour = 24"},
        {MakeTime(2079, 13, 32), "wDay' is out of range [1..31]; aDate.wDay = 32"},
        {MakeTime(2079, 13, 0), "wDay' is out of range [1..31]; aDate.wDay = 0"},
        {MakeTime(2079, 13, 31), "wMonth' is out of range [1..12]; aDate.wMonth = 13"},
        {MakeTime(2079, 0, 31), "wMonth' is out of range [1..12]; aDate.wMonth = 0"},
        {MakeTime(2079, 12, 31), "wYear' is out of range [1900..2078]; aDate.wYear = 2079"},
        {MakeTime(1899, 12, 31), "wYear' is out of range [1900..2078]; aDate.wYear = 1899"},
        {MakeTime(65535, 12, 31), "wYear' is out of range [1900..2078]; aDate.wYear = 65535"},
    };
    for (const Row& row : kRows) {
        SCOPED_TRACE(testing::Message() << row.time);
        SDateTime value = FromTicks(630822816123456789);
        EXPECT_EQ(std::string("qrlDateTime::SDateTime::operator =: value of 'aDate.") + row.szText,
                  FaultOf([&] { value = row.time; }));
        EXPECT_EQ(630822816123456789, value.m_ticks);
        EXPECT_FALSE(IsValidSYSTEMTIME(row.time));
    }
}

TEST(SystemTime, TheLengthOfTheMonthIsTestedLast)
{
    struct Row
    {
        SYSTEMTIME time;
        const char* szText; // empty for a valid day
    };
    const Row kRows[] = {
        {MakeTime(1900, 2, 29), "[1..28]; aDate.Day = 29"},
        {MakeTime(2000, 2, 29), ""},
        {MakeTime(2000, 2, 30), "[1..29]; aDate.Day = 30"},
        {MakeTime(2010, 4, 31), "[1..30]; aDate.Day = 31"},
        {MakeTime(2010, 5, 31), ""},
    };
    for (const Row& row : kRows) {
        SCOPED_TRACE(testing::Message() << row.time);
        const bool bValid = !*row.szText;
        SDateTime value = FromTicks(630822816123456789);
        EXPECT_EQ(bValid ? ""
                         : std::string("qrlDateTime::details::DateToJulianImpl: value of "
                                       "'aDate.Day' is out of range ") +
                               row.szText,
                  FaultOf([&] { value = row.time; }));
        EXPECT_EQ(!bValid, value.m_ticks == 630822816123456789);
        EXPECT_EQ(bValid, IsValidSYSTEMTIME(row.time));
    }
}

TEST(SystemTime, TheDayOfTheWeekIsNotRead)
{
    SYSTEMTIME time = MakeTime(2010, 6, 7);
    time.wDayOfWeek = 77;
    EXPECT_TRUE(IsValidSYSTEMTIME(time));
    EXPECT_EQ(1, From(time).ToSYSTEMTIME().wDayOfWeek);
}

TEST(SystemTime, AssignmentReplacesEveryDigit)
{
    SDateTime value = FromTicks(630822816123456789);
    value = MakeTime(1970, 1, 1);
    EXPECT_EQ(621355968000000000, value.m_ticks);
}

TEST(SystemTime, TheTargetOfToSYSTEMTIMEIsFilledOnSuccessOnly)
{
    SYSTEMTIME time = MakeTime(1, 2, 3);
    const SYSTEMTIME result = From(MakeTime(2010, 6, 7, 8, 9, 10, 11)).ToSYSTEMTIME(&time);
    EXPECT_EQ(FieldsOf(result), FieldsOf(time));
    EXPECT_THROW(FromTicks(0).ToSYSTEMTIME(&time), std::range_error);
    EXPECT_EQ(FieldsOf(result), FieldsOf(time));
}

TEST(SystemTime, TicksBelowTheMillisecondAreCut)
{
    EXPECT_EQ(999, FromTicks(621355968009999999).ToSYSTEMTIME().wMilliseconds);
}

TEST(SystemTime, TicksFarOutOfRangeAreRefused)
{
    for (const std::int64_t nTicks : {std::numeric_limits<std::int64_t>::min(), std::int64_t{-1},
                                      std::int64_t{0}, std::numeric_limits<std::int64_t>::max()}) {
        SCOPED_TRACE(nTicks);
        EXPECT_THROW(FromTicks(nTicks).ToSYSTEMTIME(), std::range_error);
        EXPECT_THROW(FromTicks(nTicks).Format(OLESTR("x")), std::range_error);
    }
}

TEST(SystemTime, RandomValidTimesComeBack)
{
    using namespace std::chrono;
    std::mt19937 random(Seed());
    std::uniform_int_distribution<int> day(2, 65380), second(0, 86399), thousandth(0, 999);
    for (int n = 0; n < Rounds(20000); ++n) {
        const sys_days date = sys_days(1899y / December / 30) + days(day(random));
        const year_month_day ymd(date);
        const hh_mm_ss clock(seconds(second(random)));
        SYSTEMTIME time = MakeTime(
            static_cast<int>(ymd.year()), static_cast<int>(static_cast<unsigned>(ymd.month())),
            static_cast<int>(static_cast<unsigned>(ymd.day())),
            static_cast<int>(clock.hours().count()), static_cast<int>(clock.minutes().count()),
            static_cast<int>(clock.seconds().count()), thousandth(random));
        time.wDayOfWeek = static_cast<WORD>(weekday(date).c_encoding());
        const SYSTEMTIME back = From(time).ToSYSTEMTIME();
        ASSERT_EQ(FieldsOf(time), FieldsOf(back)) << time << " came back as " << back;
    }
}

// Fields a little beyond their ranges, so that each kind of fault occurs often.
TEST(SystemTime, ValidityAgreesWithAssignment)
{
    std::mt19937 random(Seed());
    const auto upTo = [&](int nLow, int nHigh) {
        return std::uniform_int_distribution<int>(nLow, nHigh)(random);
    };
    const int nTimes = Rounds(20000);
    int nValid = 0;
    for (int n = 0; n < nTimes; ++n) {
        const SYSTEMTIME time = MakeTime(upTo(1895, 2083), upTo(0, 13), upTo(0, 32), upTo(0, 24),
                                         upTo(0, 60), upTo(0, 60), upTo(0, 1010));
        const bool bAssigned = FaultOf([&] { From(time); }).empty();
        ASSERT_EQ(bAssigned, IsValidSYSTEMTIME(time)) << time;
        nValid += bAssigned;
    }
    EXPECT_GT(nValid, nTimes / 20);
    EXPECT_LT(nValid, nTimes * 19 / 20);
}

} // namespace
