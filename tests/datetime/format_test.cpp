#include <gtest/gtest.h>

#include "datetime/qrlDateTime.h"
#include "platform/text/Locale.h"
#include "tests/datetime/faults.h"
#include "tests/datetime/values.h"

namespace {

using namespace qrlDateTime;

constexpr std::size_t kRoom = SDateTime::kFormatCapacity - 1;

struct FormatRow
{
    SDateTime value;
    const OLECHAR* szFormat;
    const OLECHAR* szText;
};

// A value with a fraction of a second in units of 100 nanoseconds.
SDateTime WithFraction(const SYSTEMTIME& time, int nTicks)
{
    return FromTicks(From(time).m_ticks + nTicks);
}

const SDateTime kEarly = WithFraction(MakeTime(2005, 3, 4, 1, 2, 3), 70'089);
const SDateTime kLate = WithFraction(MakeTime(1999, 12, 31, 23, 58, 59), 9'999'999);
const SDateTime kNoon = From(MakeTime(2000, 1, 1, 12, 0, 0, 50));

TEST(Format, Specifiers)
{
    const FormatRow kRows[] = {
        {kEarly, OLESTR("%H:%M:%S"), OLESTR("01:02:03")},
        {kLate, OLESTR("%H:%M:%S"), OLESTR("23:58:59")},
        {kEarly, OLESTR("%s"), OLESTR("3")},
        {kLate, OLESTR("%s"), OLESTR("59")},
        {kNoon, OLESTR("%s"), OLESTR("0")},
        {kEarly, OLESTR("%d.%m.%Y"), OLESTR("04.03.2005")},
        {kLate, OLESTR("%d.%m.%Y"), OLESTR("31.12.1999")},
        {kEarly, OLESTR("%y"), OLESTR("05")},
        {kNoon, OLESTR("%y"), OLESTR("00")},
        {kLate, OLESTR("%y"), OLESTR("99")},
        {kEarly, OLESTR("%F"), OLESTR("007")},
        {kEarly, OLESTR("%f"), OLESTR("7")},
        {kEarly, OLESTR("%G"), OLESTR("007008")},
        {kEarly, OLESTR("%g"), OLESTR("7008")},
        {kLate, OLESTR("%F|%f|%G|%g"), OLESTR("999|999|999999|999999")},
        {From(MakeTime(2000, 1, 1)), OLESTR("%F|%f|%G|%g"), OLESTR("000|0|000000|0")},
        {kNoon, OLESTR(".%f"), OLESTR(".50")},
        {kNoon, OLESTR("100%%"), OLESTR("100%")},
        {kNoon, OLESTR("%%H"), OLESTR("%H")},
        {kNoon, OLESTR("a%qb"), OLESTR("ab")},
        {kNoon, OLESTR("%q%H"), OLESTR("12")},
        {kNoon, OLESTR("text, \u20AC"), OLESTR("text, \u20AC")},
        {kNoon, OLESTR(""), OLESTR("")},
        {kNoon, OLESTR("a%"), OLESTR("a")},
        {FromTicks(SDateTime::OleDate2Ticks(0.75)), OLESTR("%Y %H"), OLESTR("1899 18")},
    };
    for (const FormatRow& row : kRows) {
        SCOPED_TRACE(&row - kRows);
        EXPECT_EQ(string_t(row.szText), row.value.Format(row.szFormat));
    }
}

TEST(Format, NamesAreAskedForByTheirTypes)
{
    // 2001-01-01 was a Monday, and January.
    for (int n = 0; n < 12; ++n) {
        SCOPED_TRACE(n);
        const SDateTime value = From(MakeTime(2001, 1 + n, 1 + n % 7));
        const SYSTEMTIME time = value.ToSYSTEMTIME();
        const int nWeekday = time.wDayOfWeek == 0 ? 7 : time.wDayOfWeek;
        EXPECT_EQ(LocaleInfo(42 + nWeekday), value.Format(OLESTR("%A")));
        EXPECT_EQ(LocaleInfo(49 + nWeekday), value.Format(OLESTR("%a")));
        EXPECT_EQ(LocaleInfo(55 + time.wMonth), value.Format(OLESTR("%B")));
        EXPECT_EQ(LocaleInfo(67 + time.wMonth), value.Format(OLESTR("%b")));
        EXPECT_FALSE(value.Format(OLESTR("%A")).empty());
    }
}

TEST(Format, SundayCountsAsTheSeventhDay)
{
    const SDateTime sunday = From(MakeTime(2001, 1, 7));
    EXPECT_EQ(LocaleInfo(49), sunday.Format(OLESTR("%A")));
    EXPECT_EQ(LocaleInfo(56), sunday.Format(OLESTR("%a")));
}

TEST(Format, DateAndTimeOfTheLocale)
{
    EXPECT_EQ(ShortDate(kEarly.ToSYSTEMTIME()), kEarly.Format(OLESTR("%D")));
    EXPECT_FALSE(kEarly.Format(OLESTR("%D")).empty());
    EXPECT_EQ(string_t(OLESTR("01:02:03")), kEarly.Format(OLESTR("%T")));
}

// How each kind of output is cut at the end of the buffer: nRoom units are left when the
// specifier is reached; other text fills the rest.
TEST(Format, TheEndOfTheRoomCuts)
{
    struct CutRow
    {
        std::size_t nRoom;
        const OLECHAR* szFormat;
        const OLECHAR* szTail; // what follows the filling
    };
    const CutRow kRows[] = {
        {3, OLESTR("abcd"), OLESTR("abc")},
        {1, OLESTR("%%x"), OLESTR("%")},
        {4, OLESTR("%Yx"), OLESTR("1999")},
        {3, OLESTR("%Yx"), OLESTR("199")},
        {1, OLESTR("%Hx"), OLESTR("2")},
        {1, OLESTR("%sx"), OLESTR("5")},
        // A printed number leaves one unit free.
        {4, OLESTR("%Fxy"), OLESTR("999x")},
        {3, OLESTR("%Fxy"), OLESTR("99x")},
        {2, OLESTR("%fxy"), OLESTR("9x")},
        {1, OLESTR("%fxy"), OLESTR("x")},
        {7, OLESTR("%Gxy"), OLESTR("999999x")},
        {6, OLESTR("%gxy"), OLESTR("99999x")},
        // A text of the locale is written whole, or it ends the walk.
        {8, OLESTR("%Tx"), OLESTR("23:58:59")},
        {9, OLESTR("%Tx"), OLESTR("23:58:59x")},
        {7, OLESTR("%Tx"), OLESTR("")},
    };
    for (const CutRow& row : kRows) {
        SCOPED_TRACE(&row - kRows);
        const string_t sFilling(kRoom - row.nRoom, OLECHAR('.'));
        EXPECT_EQ(sFilling + row.szTail, kLate.Format(sFilling + row.szFormat));
    }
}

TEST(Format, ATextThatDoesNotFitJumpsToTheEndOfTheRoom)
{
    OLECHAR buffer[8];
    std::fill(std::begin(buffer), std::end(buffer), OLECHAR('#'));
    EXPECT_EQ(6u, kLate.Format(buffer, 7, OLESTR("ab%Tcd")));
    EXPECT_EQ(string_view_t(OLESTR("ab####\0#"), 8), string_view_t(buffer, 8));
}

TEST(Format, TheBufferIsTerminatedAndNotOverrun)
{
    for (std::size_t nCapacity = 1; nCapacity <= 7; ++nCapacity) {
        SCOPED_TRACE(nCapacity);
        OLECHAR buffer[8];
        std::fill(std::begin(buffer), std::end(buffer), OLECHAR('#'));
        EXPECT_EQ(nCapacity - 1, kLate.Format(buffer, nCapacity, OLESTR("%H%Y%d")));
        EXPECT_EQ(string_t(OLESTR("23199931"), nCapacity - 1), string_t(buffer));
        EXPECT_EQ(OLECHAR('#'), buffer[nCapacity]);
    }
}

TEST(Format, TheCountIsThatOfTheUnitsBeforeTheTerminator)
{
    OLECHAR buffer[SDateTime::kFormatCapacity];
    EXPECT_EQ(3u, kNoon.Format(buffer, SDateTime::kFormatCapacity, OLESTR(".%f")));
    EXPECT_EQ(string_t(OLESTR(".50")), string_t(buffer));
}

TEST(Format, AnInvalidDateIsAFaultWithTheInnerOne)
{
    struct FaultRow
    {
        double date;
        const char* szDays;
        const char* szTicks;
    };
    constexpr FaultRow kRows[] = {{1.0, "1", "599265216000000000"},
                                  {65381.0, "65381", "655753536000000000"}};
    for (const FaultRow& row : kRows) {
        SCOPED_TRACE(row.date);
        const SDateTime value = FromTicks(SDateTime::OleDate2Ticks(row.date));
        const std::string sExpected =
            std::string("qrlDateTime::SDateTime::Format : try to format invalid date/time ("
                        "qrlDateTime::details::JulianToDateImpl : 'days' parameter is out of range "
                        "(days = ") +
            row.szDays + ")): m_ticks = " + row.szTicks;
        EXPECT_EQ(sExpected, FaultOf([&] { value.Format(OLESTR("no date in it")); }));
    }
}

} // namespace
