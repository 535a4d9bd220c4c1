#include <chrono>
#include <string>

#include <gtest/gtest.h>

#include "advice/forms/MomentForms.h"
#include "advice/forms/MonthNames.h"
#include "advice/forms/NumberForms.h"

namespace tabulex::advice {

namespace {

using intake::ClockForm;
using intake::DateForm;

std::int64_t Milliseconds(int nYear, unsigned nMonth, unsigned nDay, int nHour = 0, int nMinute = 0,
                          int nSecond = 0, int nMilli = 0)
{
    const std::chrono::sys_days day{std::chrono::year{nYear} / std::chrono::month{nMonth} /
                                    std::chrono::day{nDay}};
    return day.time_since_epoch().count() * 86400000LL +
           ((nHour * 60 + nMinute) * 60 + nSecond) * 1000LL + nMilli;
}

} // namespace

struct MomentRow
{
    const char* pszText;
    DateForm date;
    ClockForm clock;
    std::int64_t nMoment;
};

TEST(MomentForms, ReadsWhatVendorsWrite)
{
    const MomentRow rows[] = {
        {"2003-12-25", DateForm::YearMonthDay, ClockForm::None, Milliseconds(2003, 12, 25)},
        {"2003/1/2", DateForm::YearMonthDay, ClockForm::None, Milliseconds(2003, 1, 2)},
        {"2003.01.02", DateForm::YearMonthDay, ClockForm::None, Milliseconds(2003, 1, 2)},
        {"25.12.2003", DateForm::DayMonthYear, ClockForm::None, Milliseconds(2003, 12, 25)},
        {"25/12/03", DateForm::DayMonthYear, ClockForm::None, Milliseconds(2003, 12, 25)},
        {"12/25/1999", DateForm::MonthDayYear, ClockForm::None, Milliseconds(1999, 12, 25)},
        {"20031225", DateForm::YearMonthDay, ClockForm::None, Milliseconds(2003, 12, 25)},
        {"25122003", DateForm::DayMonthYear, ClockForm::None, Milliseconds(2003, 12, 25)},
        {"031225", DateForm::YearMonthDay, ClockForm::None, Milliseconds(2003, 12, 25)},
        {"4-Jan-10", DateForm::DayMonthYear, ClockForm::None, Milliseconds(2010, 1, 4)},
        {"22-JUN-2011", DateForm::DayMonthYear, ClockForm::None, Milliseconds(2011, 6, 22)},
        {"Nov 02, 2017", DateForm::MonthDayYear, ClockForm::None, Milliseconds(2017, 11, 2)},
        {"Jan 1 2000", DateForm::MonthDayYear, ClockForm::None, Milliseconds(2000, 1, 1)},
        {"Fri, 05 Jan 2018", DateForm::DayMonthYear, ClockForm::None, Milliseconds(2018, 1, 5)},
        {"2 März 2015", DateForm::DayMonthYear, ClockForm::None, Milliseconds(2015, 3, 2)},
        {"25Dec2003", DateForm::DayMonthYear, ClockForm::None, Milliseconds(2003, 12, 25)},
        {"2019年08月30日", DateForm::YearMonthDay, ClockForm::None, Milliseconds(2019, 8, 30)},
        {"2017-3-7 0:0:0", DateForm::YearMonthDay, ClockForm::Any, Milliseconds(2017, 3, 7)},
        {"2015-09-23T20:57:42.146", DateForm::YearMonthDay, ClockForm::Any,
         Milliseconds(2015, 9, 23, 20, 57, 42, 146)},
        {"2024-11-11T17:30:00-06:00", DateForm::YearMonthDay, ClockForm::Any,
         Milliseconds(2024, 11, 11, 17, 30)},
        {"2020-02-27 01:51:00+00:00", DateForm::YearMonthDay, ClockForm::Any,
         Milliseconds(2020, 2, 27, 1, 51)},
        {"2020-02-27T01:51:00Z", DateForm::YearMonthDay, ClockForm::Any,
         Milliseconds(2020, 2, 27, 1, 51)},
        {"2019-10-17 09-AM", DateForm::YearMonthDay, ClockForm::Any, Milliseconds(2019, 10, 17, 9)},
        {"2019-10-17 12-PM", DateForm::YearMonthDay, ClockForm::Any,
         Milliseconds(2019, 10, 17, 12)},
        {"3/19/2015 4:00:00 PM", DateForm::MonthDayYear, ClockForm::Any,
         Milliseconds(2015, 3, 19, 16)},
        {"3/19/2015 12:05 a.m.", DateForm::MonthDayYear, ClockForm::Any,
         Milliseconds(2015, 3, 19, 0, 5)},
        {"20110301 090100", DateForm::YearMonthDay, ClockForm::HoursMinutesSeconds,
         Milliseconds(2011, 3, 1, 9, 1)},
        {"20200101 170010447", DateForm::YearMonthDay, ClockForm::HoursMinutesMilliseconds,
         Milliseconds(2020, 1, 1, 17, 0, 10, 447)},
        {"1315922016", DateForm::EpochSeconds, ClockForm::Any,
         Milliseconds(2011, 9, 13, 13, 53, 36)},
        {"1637971200000", DateForm::EpochMilliseconds, ClockForm::Any, Milliseconds(2021, 11, 27)},
        {"2015-03", DateForm::YearMonth, ClockForm::None, Milliseconds(2015, 3, 1)},
        {"03/2015", DateForm::MonthYear, ClockForm::None, Milliseconds(2015, 3, 1)},
        {"Mar-15", DateForm::MonthYear, ClockForm::None, Milliseconds(2015, 3, 1)},
        {"20210301093015", DateForm::YearMonthDay, ClockForm::Any,
         Milliseconds(2021, 3, 1, 9, 30, 15)},
        {"202103010930", DateForm::YearMonthDay, ClockForm::Any, Milliseconds(2021, 3, 1, 9, 30)},
        {"9:30", DateForm::None, ClockForm::Any, Milliseconds(1970, 1, 1, 9, 30)},
        {"930", DateForm::None, ClockForm::HoursMinutes, Milliseconds(1970, 1, 1, 9, 30)},
        {"84500", DateForm::None, ClockForm::HoursMinutesSeconds, Milliseconds(1970, 1, 1, 8, 45)},
        {"14400000", DateForm::None, ClockForm::MillisecondsOfDay, Milliseconds(1970, 1, 1, 4)},
    };
    for (const MomentRow& row : rows) {
        const auto read = ReadMoment(row.pszText, {row.date, row.clock});
        ASSERT_TRUE(read) << row.pszText;
        EXPECT_EQ(read->Milliseconds(), row.nMoment) << row.pszText;
    }
}

TEST(MomentForms, RefusesWhatNoCalendarHas)
{
    for (const char* pszText :
         {"", "abc", "2003-13-25x", "31/31/2003", "99999-01-01", "2003-02-30", "24/7", "12:75",
          "1.25", "-5", "20031301250", "Highest:55.22", "2003-12-25 9:30 25", "1e5", "12 of 13",
          "1234567890123456789012345", "2003.12", "12-03"})
        EXPECT_TRUE(ReadingsOfMoment(pszText).empty() ||
                    ReadingsOfMoment(pszText).front().form.date == DateForm::None)
            << pszText;
}

TEST(MomentForms, TellsBothOrdersWhereBothAreDays)
{
    const auto both = ReadingsOfMoment("02/03/2010 16:53:50");
    ASSERT_EQ(both.size(), 2u);
    EXPECT_EQ(both[0].form.date, DateForm::DayMonthYear);
    EXPECT_EQ(both[1].form.date, DateForm::MonthDayYear);
    EXPECT_EQ(ReadingsOfMoment("13/03/2010").size(), 1u);
}

TEST(MonthNames, KnowsThemInManyLanguages)
{
    const std::pair<const char*, int> rows[] = {
        {"Jan", 1},   {"febrero", 2}, {"März", 3},  {"avril", 4}, {"MAG", 5},    {"июнь", 6},
        {"lipca", 7}, {"août", 8},    {"eylül", 9}, {"Okt", 10},  {"kasım", 11}, {"dez", 12},
        {"T", 0},     {"close", 0},   {"foo", 0},   {"", 0}};
    for (const auto& [pszWord, nMonth] : rows)
        EXPECT_EQ(MonthOf(pszWord), nMonth) << pszWord;
}

struct NumberRow
{
    const char* pszText;
    NumberStyle style;
    std::optional<double> value;
    int nDecimals = 0;
};

TEST(NumberForms, ReadsEachStyleStrictly)
{
    const NumberRow rows[] = {{"1234.50", {'.', 0}, 1234.5, 1},
                              {"-0.25", {'.', 0}, -0.25, 2},
                              {"1,234.5", {'.', ','}, 1234.5, 1},
                              {"1,234.5", {'.', 0}, std::nullopt},
                              {"12,34.5", {'.', ','}, std::nullopt},
                              {"1.234,5", {',', '.'}, 1234.5, 1},
                              {"100.923", {',', '.'}, 100923, 0},
                              {"100.923", {'.', 0}, 100.923, 3},
                              {"1 098,05", {',', ' '}, 1098.05, 2},
                              {"1\xC2\xA0"
                               "098,05",
                               {',', ' '},
                               1098.05,
                               2},
                              {"1'098.05", {'.', '\''}, 1098.05, 2},
                              {"10,90M", {',', '.'}, 10900000, 0},
                              {"497.30K", {'.', 0}, 497300, 0},
                              {"1.5e3", {'.', 0}, 1500, 0},
                              {"-0.74%", {'.', 0}, -0.74, 2},
                              {"$1.50", {'.', 0}, 1.5, 1},
                              {"1.50 €", {'.', 0}, 1.5, 1},
                              {"1.2.3", {'.', 0}, std::nullopt},
                              {"", {'.', 0}, std::nullopt},
                              {"M", {'.', 0}, std::nullopt},
                              {"5;2", {'.', 0}, std::nullopt},
                              {"1e999", {'.', 0}, std::nullopt},
                              {"0x10", {'.', 0}, std::nullopt},
                              {"12abc", {'.', 0}, std::nullopt}};
    for (const NumberRow& row : rows) {
        const auto read = ReadNumber(row.pszText, row.style);
        ASSERT_EQ(read.has_value(), row.value.has_value()) << row.pszText;
        if (!read)
            continue;
        EXPECT_DOUBLE_EQ(read->dValue, *row.value) << row.pszText;
        EXPECT_EQ(read->nDecimals, row.nDecimals) << row.pszText;
    }
    EXPECT_FALSE(ReadNumber(std::string(1000, '7'), {'.', 0}));
}

TEST(NumberForms, KnowsMarksOfMissingValues)
{
    for (const char* pszText : {"", "-", "--", "N/A", "null", "NaN", "#N/A"})
        EXPECT_TRUE(IsMissing(pszText)) << pszText;
    for (const char* pszText : {"0", "-1", "A", "nano"})
        EXPECT_FALSE(IsMissing(pszText)) << pszText;
}

} // namespace tabulex::advice
