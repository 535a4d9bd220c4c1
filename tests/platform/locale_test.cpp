#include <gtest/gtest.h>

#include "System.h"
#include "SystemTime.h"
#include "Values.h"
#include "platform/text/Locale.h"

// The tests run as an English user.
namespace {

TEST(LocaleInfo, HasNamesForTheTypes42To79)
{
    struct Row
    {
        int nType;
        string_view_t name;
    };
    const Row rows[] = {
        {42, OLESTR("Monday")},   {47, OLESTR("Saturday")}, {48, OLESTR("Sunday")},
        {49, OLESTR("Mon")},      {55, OLESTR("Sun")},      {56, OLESTR("January")},
        {67, OLESTR("December")}, {68, OLESTR("Jan")},      {79, OLESTR("Dec")},
        {41, OLESTR("")},         {80, OLESTR("")},         {0, OLESTR("")},
        {-1, OLESTR("")},
    };
    for (const Row& row : rows)
        EXPECT_EQ(Narrow(LocaleInfo(row.nType)), Narrow(row.name)) << row.nType;
}

TEST(ShortDate, HasTheYearInFull)
{
    EXPECT_EQ(Narrow(ShortDate(Time(2078, 12, 31))), "12/31/2078");
    EXPECT_EQ(Narrow(ShortDate(Time(2004, 3, 5))), "3/5/2004");
}

TEST(ShortDate, IsEmptyForNoDate)
{
    for (const SYSTEMTIME& time : {Time(2004, 0, 1), Time(2004, 13, 1), Time(2004, 4, 31),
                                   Time(2003, 2, 30), Time(1600, 1, 1), Time(2004, 1, 0)})
        EXPECT_EQ(ShortDate(time), OLESTR(""))
            << time.wYear << '-' << time.wMonth << '-' << time.wDay;
}

TEST(ShortDate, HasLeapDaysInLeapYears)
{
    EXPECT_EQ(Narrow(ShortDate(Time(2004, 2, 29))), "2/29/2004");
    EXPECT_EQ(ShortDate(Time(2003, 2, 29)).empty(), !EachYearHasALeapDay());
}

SYSTEMTIME TimeOfDay(WORD wHour, WORD wMinute, WORD wSecond)
{
    SYSTEMTIME time = {};
    time.wHour = wHour;
    time.wMinute = wMinute;
    time.wSecond = wSecond;
    return time;
}

TEST(TimeText, HasSecondsAndTheHalfOfTheDay)
{
    EXPECT_EQ(Narrow(TimeText(TimeOfDay(9, 30, 0))), "9:30:00 AM");
    EXPECT_EQ(Narrow(TimeText(TimeOfDay(0, 5, 9))), "12:05:09 AM");
    EXPECT_EQ(Narrow(TimeText(TimeOfDay(12, 0, 0))), "12:00:00 PM");
    EXPECT_EQ(Narrow(TimeText(TimeOfDay(23, 59, 59))), "11:59:59 PM");
}

TEST(TimeText, LeavesMillisecondsOut)
{
    SYSTEMTIME time = TimeOfDay(9, 30, 0);
    time.wMilliseconds = 250;
    EXPECT_EQ(Narrow(TimeText(time)), "9:30:00 AM");
}

TEST(TimeText, IsEmptyForNoTimeOfDay)
{
    for (const SYSTEMTIME& time : {TimeOfDay(24, 0, 0), TimeOfDay(0, 60, 0), TimeOfDay(0, 0, 60)})
        EXPECT_EQ(TimeText(time), OLESTR(""));
}

TEST(FormatTexts, AreThePicturesOfShortDatesAndTimes)
{
    EXPECT_EQ(Narrow(DateFormatText()), "M/d/yyyy");
    EXPECT_EQ(Narrow(TimeFormatText()), "h:mm:ss tt");
}

TEST(InvariantTime, HasTwoDigitsEverywhere)
{
    SYSTEMTIME time = {};
    EXPECT_EQ(InvariantTime(time), OLESTR("00:00:00"));
    time.wHour = 7;
    time.wMinute = 5;
    time.wSecond = 9;
    EXPECT_EQ(InvariantTime(time), OLESTR("07:05:09"));
    time.wHour = 23;
    time.wMinute = time.wSecond = 59;
    EXPECT_EQ(InvariantTime(time), OLESTR("23:59:59"));
    time.wHour = 24;
    EXPECT_EQ(InvariantTime(time), OLESTR(""));
}

TEST(LowerCase, MapsUnitToUnit)
{
    string_t text = OLESTR("JAN \u00C4\u0394\u0416 1\u4E00\xD83D\xDE00 z");
    LowerCase(text);
    EXPECT_EQ(text, OLESTR("jan \u00E4\u03B4\u0436 1\u4E00\xD83D\xDE00 z"));
}

} // namespace
