#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <vector>

#include "datetime/qrlDateTime.h"
#include "tests/datetime/faults.h"
#include "tests/datetime/values.h"

namespace {

using namespace qrlDateTime;
using namespace qrlDateTime::details;

struct FaultRow
{
    std::function<void()> call;
    std::string sText; // empty: the value is in range
};

void ExpectTexts(const std::vector<FaultRow>& rows)
{
    for (const FaultRow& row : rows) {
        SCOPED_TRACE(&row - rows.data());
        EXPECT_EQ(row.sText, FaultOf(row.call));
    }
}

TEST(RangeFaults, TimeToTTime)
{
    const std::string sHead = "qrlDateTime::TimeToTTime: value of 'aTime' is out of range "
                              "[0..86399]; aTime = ";
    TTime time{77, 77, 77};
    ExpectTexts({{[&] { TimeToTTime(-1, time); }, sHead + "-1"},
                 {[&] { TimeToTTime(86400, time); }, sHead + "86400"}});
    EXPECT_EQ(77, time.Hour);
    ExpectTexts({{[&] { TimeToTTime(0, time); }, ""}, {[&] { TimeToTTime(86399, time); }, ""}});
}

TEST(RangeFaults, ReplaceDateInSYSTEMTIME)
{
    const std::string sHead = "qrlDateTime::ReplaceDateInSYSTEMTIME: value of 'aDate' is out of "
                              "range [2..65380]; aDate = ";
    SYSTEMTIME time = MakeTime(1950, 5, 5, 1, 2, 3, 4);
    const auto before = FieldsOf(time);
    ExpectTexts({{[&] { ReplaceDateInSYSTEMTIME(-7, time); }, sHead + "-7"},
                 {[&] { ReplaceDateInSYSTEMTIME(0, time); }, sHead + "0"},
                 {[&] { ReplaceDateInSYSTEMTIME(1, time); }, sHead + "1"},
                 {[&] { ReplaceDateInSYSTEMTIME(65381, time); }, sHead + "65381"}});
    EXPECT_EQ(before, FieldsOf(time));
    ExpectTexts({{[&] { ReplaceDateInSYSTEMTIME(2, time); }, ""},
                 {[&] { ReplaceDateInSYSTEMTIME(65380, time); }, ""}});
}

TEST(RangeFaults, ReplaceTimeInSYSTEMTIME)
{
    const std::string sHead = "qrlDateTime::ReplaceTimeInSYSTEMTIME: value of 'aTime' is out of "
                              "range [0..86399]; aTime = ";
    SYSTEMTIME time = MakeTime(1950, 5, 5, 1, 2, 3, 4);
    const auto before = FieldsOf(time);
    ExpectTexts({{[&] { ReplaceTimeInSYSTEMTIME(-1, time); }, sHead + "-1"},
                 {[&] { ReplaceTimeInSYSTEMTIME(86400, time); }, sHead + "86400"}});
    EXPECT_EQ(before, FieldsOf(time));
}

TEST(RangeFaults, OleDate2Ticks)
{
    const std::string sHead = "qrlDateTime::SDateTime::OleDate2Ticks: value of 'value' is out of "
                              "range [0..65381]; value = ";
    ExpectTexts({{[] { SDateTime::OleDate2Ticks(-0.1); }, sHead + "-0.1"},
                 {[] { SDateTime::OleDate2Ticks(65381.5); }, sHead + "65381.5"},
                 {[] { SDateTime::OleDate2Ticks(1e300); }, sHead + "1e+300"},
                 {[] { SDateTime::OleDate2Ticks(0.0); }, ""},
                 {[] { SDateTime::OleDate2Ticks(65381.0); }, ""}});
    EXPECT_NE("", FaultOf([] { SDateTime::OleDate2Ticks(std::nan("")); }));
}

TEST(RangeFaults, GetDayOfWeekImpl)
{
    const std::string sHead = "qrlDateTime::details::GetDayOfWeekImpl: value of 'aDays' is out of "
                              "range [0..65380]; aDays = ";
    ExpectTexts({{[] { GetDayOfWeekImpl(-1); }, sHead + "-1"},
                 {[] { GetDayOfWeekImpl(65381); }, sHead + "65381"}});
}

TEST(RangeFaults, GetDaysInMonth)
{
    const std::string sHead = "qrlDateTime::GetDaysInMonth: value of 'aMonth' is out of range "
                              "[1..12]; aMonth = ";
    ExpectTexts({{[] { GetDaysInMonth(2000, 0); }, sHead + "0"},
                 {[] { GetDaysInMonth(2000, 13); }, sHead + "13"}});
}

TEST(RangeFaults, HMSToTimeTestsHourThenMinuteThenSecond)
{
    const std::string sHead = "qrlDateTime::HMSToTime: value of '";
    ExpectTexts(
        {{[] { HMSToTime(24, 60, 60); }, sHead + "aHour' is out of range [0..23]; aHour = 24"},
         {[] { HMSToTime(-1, 0, 0); }, sHead + "aHour' is out of range [0..23]; aHour = -1"},
         {[] { HMSToTime(23, 60, 60); }, sHead + "aMinute' is out of range [0..59]; aMinute = 60"},
         {[] { HMSToTime(0, -1, 0); }, sHead + "aMinute' is out of range [0..59]; aMinute = -1"},
         {[] { HMSToTime(23, 59, 60); }, sHead + "aSecond' is out of range [0..59]; aSecond = 60"},
         {[] { HMSToTime(0, 0, -1); }, sHead + "aSecond' is out of range [0..59]; aSecond = -1"}});
}

TEST(RangeFaults, DateToJulianTestsYearThenMonthThenDay)
{
    const std::string sHead = "qrlDateTime::details::DateToJulianImpl: value of 'aDate.";
    const auto convert = [](std::int16_t nYear, std::int16_t nMonth, std::int16_t nDay) {
        return [=] {
            std::int32_t nOut = 0;
            DateToJulianImpl({nMonth, nDay, nYear}, nOut);
        };
    };
    const auto year = [&](const char* szValue) {
        return sHead + "Year' is out of range [1900..2078]; aDate.Year = " + szValue;
    };
    const auto month = [&](const char* szValue) {
        return sHead + "Month' is out of range [1..12]; aDate.Month = " + szValue;
    };
    const auto day = [&](const char* szLength, const char* szValue) {
        return sHead + "Day' is out of range [1.." + szLength + "]; aDate.Day = " + szValue;
    };
    ExpectTexts({{convert(1899, 13, 32), year("1899")},
                 {convert(2079, 0, 0), year("2079")},
                 {convert(-1, 1, 1), year("-1")},
                 {convert(1900, 13, 32), month("13")},
                 {convert(1900, 0, 32), month("0")},
                 {convert(1900, 1, 32), day("31", "32")},
                 {convert(1900, 1, 0), day("31", "0")},
                 {convert(1900, 2, 29), day("28", "29")},
                 {convert(2023, 2, 29), day("28", "29")},
                 {convert(2000, 2, 30), day("29", "30")},
                 {convert(2000, 4, 31), day("30", "31")},
                 {convert(2000, 2, 29), ""}});
}

TEST(RangeFaults, JulianToDateImpl)
{
    const std::string sHead = "qrlDateTime::details::JulianToDateImpl : 'days' parameter is out of "
                              "range (days = ";
    TDate date{};
    ExpectTexts({{[&] { JulianToDateImpl(-1, date); }, sHead + "-1)"},
                 {[&] { JulianToDateImpl(1, date); }, sHead + "1)"},
                 {[&] { JulianToDateImpl(65381, date); }, sHead + "65381)"},
                 {[&] { JulianToDateImpl(0, date); }, ""}});
}

TEST(RangeFaults, TextsIgnoreTheGlobalLocale)
{
    struct Grouping : std::numpunct<char>
    {
        std::string do_grouping() const override { return "\3"; }
    };
    const std::locale before = std::locale::global(std::locale(std::locale(), new Grouping));
    const std::string sText = FaultOf([] { GetDayOfWeekImpl(65381); });
    std::locale::global(before);
    EXPECT_NE(std::string::npos, sText.find("[0..65380]; aDays = 65381")) << sText;
}

} // namespace
