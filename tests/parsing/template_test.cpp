#include <gtest/gtest.h>

#include "src/parsing/DataTypes.h"
#include "tests/parsing/FieldText.h"

using namespace Hesperon::specifics;

namespace {

constexpr const char* kRefused = "refused";
constexpr const char* kHasNoValue = kRefused; // valid, but only together with a date

struct TemplateRow
{
    string_view_t sTemplate;
    string_view_t sText;
    const char* expected;
};

void ExpectRows(unsigned uiType, std::initializer_list<TemplateRow> rows)
{
    for (const TemplateRow& row : rows) {
        SCOPED_TRACE("\"" + Shown(row.sTemplate) + "\" reads \"" + Shown(row.sText) + "\"");
        EXPECT_EQ(Read(uiType, row.sTemplate, row.sText), row.expected);
    }
}

// ---- dates -------------------------------------------------------------------

TEST(DateTemplate, ReadsTheOrderThatItNames)
{
    ExpectRows(TypeDate, {
                             {OLESTR("*y/*m/*d"), OLESTR("01/02/03"), "2001-02-03"},
                             {OLESTR("*m/*d/*y"), OLESTR("12/25/2003"), "2003-12-25"},
                             {OLESTR("*d.*m.*y"), OLESTR("25.12.2003"), "2003-12-25"},
                             {OLESTR("*y/*m/*d"), OLESTR("jan/1/1"), kRefused},
                             {OLESTR("*y/*m/*d"), OLESTR("03/1/+2"), kRefused},
                             {OLESTR("*y/*m/*d"), OLESTR("12/25/2003"), kRefused},
                             {OLESTR("*d/*m/*y"), OLESTR("31/02/03"), kRefused},
                             {OLESTR("*d \\*m=*y"), OLESTR("1 \\2=3"), kRefused},
                             {OLESTR("*d\\*m|*y"), OLESTR("1\\2|3"), "2003-02-01"},
                         });
}

TEST(DateTemplate, ReadsDigitsWithoutDividers)
{
    ExpectRows(TypeDate, {
                             {OLESTR("yyyymmdd"), OLESTR("20031225"), "2003-12-25"},
                             {OLESTR("yyyymmdd"), OLESTR("2003125"), kRefused},
                             {OLESTR("yyyymmdd"), OLESTR("200312251"), kRefused},
                             {OLESTR("yymmdd"), OLESTR("031225"), "2003-12-25"},
                             {OLESTR("*dmmyyyy"), OLESTR("1122003"), "2003-12-01"},
                             {OLESTR("*dmmyyyy"), OLESTR("25122003"), "2003-12-25"},
                             {OLESTR("ddmmy*"), OLESTR("251203"), "2003-12-25"},
                             {OLESTR("ddmmy*"), OLESTR("25122003"), "2003-12-25"},
                         });
}

TEST(DateTemplate, ReadsMonthNames)
{
    ExpectRows(TypeDate, {
                             {OLESTR("*d-mmm-*y"), OLESTR("25-Dec-03"), "2003-12-25"},
                             {OLESTR("mmm,*d *y"), OLESTR("Dec,25 2003"), "2003-12-25"},
                             {OLESTR("*dmmmyyyy"), OLESTR("5JAN2004"), "2004-01-05"},
                             {OLESTR("*dmmmyy"), OLESTR("15jan04"), "2004-01-15"},
                             {OLESTR("*d-mmm-*y"), OLESTR("25-Dex-03"), kRefused},
                             {OLESTR("*d-mmm-*y"), OLESTR("25-012-03"), "2003-12-25"},
                             // A month that a star reads has to be digits.
                             {OLESTR("*d-*m-*y"), OLESTR("25-Dec-03"), kRefused},
                             {OLESTR("*d-*mmm-*y"), OLESTR("25-Dec-03"), "2003-12-25"},
                             {OLESTR("*d-*mmm-*y"), OLESTR("25-xDec-03"), kRefused},
                             {OLESTR("*d-mmm*-*y"), OLESTR("25-Dec-03"), "2003-12-25"},
                         });
}

TEST(DateTemplate, WidensYearsBelow200)
{
    ExpectRows(TypeDate, {
                             {OLESTR("*y/*m/*d"), OLESTR("0/1/1"), "2000-01-01"},
                             {OLESTR("*y/*m/*d"), OLESTR("49/1/1"), "2049-01-01"},
                             {OLESTR("*y/*m/*d"), OLESTR("50/1/1"), "1950-01-01"},
                             {OLESTR("*y/*m/*d"), OLESTR("99/1/1"), "1999-01-01"},
                             {OLESTR("*y/*m/*d"), OLESTR("100/1/1"), "2000-01-01"},
                             {OLESTR("*y/*m/*d"), OLESTR("199/1/1"), "2099-01-01"},
                             {OLESTR("*y/*m/*d"), OLESTR("200/1/1"), kRefused},
                             {OLESTR("*y/*m/*d"), OLESTR("1899/1/1"), kRefused},
                             {OLESTR("*y/*m/*d"), OLESTR("1900/1/1"), "1900-01-01"},
                             {OLESTR("*y/*m/*d"), OLESTR("2099/12/31"), "2099-12-31"},
                             {OLESTR("*y/*m/*d"), OLESTR("2100/1/1"), kRefused},
                         });
}

TEST(DateTemplate, HoldsDaysAgainstTheLengthOfTheMonth)
{
    ExpectRows(TypeDate, {
                             {OLESTR("*y/*m/*d"), OLESTR("2003/1/31"), "2003-01-31"},
                             {OLESTR("*y/*m/*d"), OLESTR("2003/1/32"), kRefused},
                             {OLESTR("*y/*m/*d"), OLESTR("2003/4/30"), "2003-04-30"},
                             {OLESTR("*y/*m/*d"), OLESTR("2003/4/31"), kRefused},
                             {OLESTR("*y/*m/*d"), OLESTR("2003/1/0"), kRefused},
                             {OLESTR("*y/*m/*d"), OLESTR("2003/0/1"), kRefused},
                             {OLESTR("*y/*m/*d"), OLESTR("2003/13/1"), kRefused},
                             // No leap-year test: the day rolls over.
                             {OLESTR("*y/*m/*d"), OLESTR("2004/2/29"), "2004-02-29"},
                             {OLESTR("*y/*m/*d"), OLESTR("2003/2/29"), "2003-03-01"},
                             {OLESTR("*y/*m/*d"), OLESTR("2003/2/30"), kRefused},
                         });
}

TEST(DateTemplate, NeedsYearAndMonthButNoDay)
{
    ExpectRows(TypeDate, {
                             {OLESTR("*m/*d"), OLESTR("12/25"), kRefused},
                             {OLESTR("*y/*d"), OLESTR("03/25"), kRefused},
                             {OLESTR("yyyymm"), OLESTR("200312"), "2003-11-30"},
                             {OLESTR(""), OLESTR("2003"), kRefused},
                             {OLESTR("@ymd"), OLESTR("2003"), kRefused},
                             {OLESTR("*h:*s"), OLESTR("1:2"), kRefused},
                         });
}

TEST(DateTemplate, AddsUpARepeatedVariable)
{
    ExpectRows(TypeDate, {
                             {OLESTR("*y/*m/*d/*d"), OLESTR("2003/1/2/5"), "2003-01-07"},
                             {OLESTR("dyyyymmd"), OLESTR("32003014"), "2003-01-07"},
                         });
}

TEST(DateTemplate, IgnoresDividersBehindTextAndTemplate)
{
    ExpectRows(TypeDate, {
                             {OLESTR("*y/*m/*d"), OLESTR("03/1/2/- "), "2003-01-02"},
                             {OLESTR("*y/*m/*d/,"), OLESTR("03/1/2"), "2003-01-02"},
                             {OLESTR("*y/*m/*d"), OLESTR(" 03/1/2"), kRefused},
                             {OLESTR("/*y/*m/*d"), OLESTR("/03/1/2"), kRefused},
                             {OLESTR("*y//*m/*d"), OLESTR("03//1/2"), kRefused},
                             {OLESTR("*y/*m/*d"), OLESTR("03/1/2/4"), kRefused},
                             {OLESTR("*y/*m/*d"), OLESTR("03/1"), kRefused},
                             {OLESTR("*y/*m"), OLESTR("03"), kRefused},
                             {OLESTR("*y/*m/*d"), OLESTR("///"), kRefused},
                             {OLESTR("*y/*m/*d"), OLESTR(""), kRefused},
                         });
}

// ---- times -------------------------------------------------------------------

TEST(TimeTemplate, ReadsTheOrderThatItNames)
{
    ExpectRows(TypeTime, {
                             {OLESTR("*hmm"), OLESTR("930"), "09:30:00.000"},
                             {OLESTR("*hmm"), OLESTR("1030"), "10:30:00.000"},
                             {OLESTR("*hmmss"), OLESTR("93015"), "09:30:15.000"},
                             {OLESTR("*h:mm"), OLESTR("9:30"), "09:30:00.000"},
                             {OLESTR("*h:mm"), OLESTR("9:3"), kRefused},
                             {OLESTR("*h:*m"), OLESTR("9:3"), "09:03:00.000"},
                             {OLESTR("*h:*m:*s.*f"), OLESTR("09:30:15.5"), "09:30:15.005"},
                             {OLESTR("*h:*m:*s.*f"), OLESTR("09:30:15.1500"), "09:30:15.999"},
                             {OLESTR("*hmm"), OLESTR("9:30"), kRefused},
                         });
}

TEST(TimeTemplate, EndsEarlyWithTheText)
{
    ExpectRows(TypeTime, {
                             {OLESTR("*h:*m:*s"), OLESTR("09:30"), kRefused},
                             {OLESTR("*h:*m:*s"), OLESTR("09:30:"), kRefused},
                             {OLESTR("*h:*m"), OLESTR(""), "00:00:00.000"},
                             {OLESTR("*hmm"), OLESTR("25"), "00:25:00.000"},
                             {OLESTR("*hmm"), OLESTR("5"), "00:05:00.000"},
                             {OLESTR("hhm*"), OLESTR("9"), "09:00:00.000"},
                             {OLESTR("*h:*m:"), OLESTR("9:30:59"), "09:30:00.000"},
                         });
}

TEST(TimeTemplate, HoldsHoursMinutesAndSecondsAgainstTheClock)
{
    ExpectRows(TypeTime, {
                             {OLESTR("*h:*m"), OLESTR("24:00"), kHasNoValue},
                             {OLESTR("*h:*m"), OLESTR("24:59"), kHasNoValue},
                             {OLESTR("*h:*m"), OLESTR("25:00"), kRefused},
                             {OLESTR("*h:*m"), OLESTR("-1:00"), kRefused},
                             {OLESTR("*h:*m"), OLESTR("9:59"), "09:59:00.000"},
                             {OLESTR("*h:*m"), OLESTR("9:60"), kRefused},
                             {OLESTR("*h:*m:*s"), OLESTR("9:30:59"), "09:30:59.000"},
                             {OLESTR("*h:*m:*s"), OLESTR("9:30:60"), kRefused},
                             {OLESTR("*h"), OLESTR("9"), kRefused},
                             {OLESTR("*m:*s"), OLESTR("9:30"), kRefused},
                         });
}

TEST(TimeTemplate, TurnsTheHourByThePmWord)
{
    ExpectRows(TypeTime, {
                             {OLESTR("*h:*mtt@pm"), OLESTR("12:30pm"), "12:30:00.000"},
                             {OLESTR("*h:*mtt@pm"), OLESTR("12:30am"), "00:30:00.000"},
                             {OLESTR("*h:*mtt@pm"), OLESTR("1:30pm"), "13:30:00.000"},
                             {OLESTR("*h:*mtt@pm"), OLESTR("1:30am"), "01:30:00.000"},
                             {OLESTR("*h:*mtt@pm"), OLESTR("13:30am"), "01:30:00.000"},
                             {OLESTR("*h:*mtt@pm"), OLESTR("24:00am"), "12:00:00.000"},
                             {OLESTR("*h:*mtt@pm"), OLESTR("36:00am"), kHasNoValue},
                             {OLESTR("*h:*mtt@pm"), OLESTR("37:00am"), kRefused},
                             {OLESTR("*h:*m:*s tt@pm"), OLESTR("1:05:30 PM"), "13:05:30.000"},
                             {OLESTR("*h:*m tt@PM"), OLESTR("1:05 pM"), "13:05:00.000"},
                             {OLESTR("*h:*m t*@p.m"), OLESTR("1:05 p.m."), "13:05:00.000"},
                             {OLESTR("*h:*mtt"), OLESTR("1:30pm"), "01:30:00.000"},
                             {OLESTR("*h:*mtt@"), OLESTR("1:30pm"), "01:30:00.000"},
                             {OLESTR("*h:*mtt@x@pm"), OLESTR("1:30pm"), "01:30:00.000"},
                         });
}

// A '-' in front of a time with seconds counts as one second.
TEST(TimeTemplate, SignQuirkOfTimesWithSeconds)
{
    ExpectRows(TypeTime, {
                             {OLESTR("*h:*m:*s"), OLESTR("-09:30:15"), "09:30:16.000"},
                             {OLESTR("*h:*m:*s"), OLESTR("+09:30:15"), "09:30:15.000"},
                             {OLESTR("*h:*m:*s"), OLESTR("-+09:30:15"), "09:30:16.000"},
                             {OLESTR("*h:*m:*s"), OLESTR("++09:30:15"), "09:30:15.000"},
                             {OLESTR("*h:*m:*s"), OLESTR("-09:30:59"), kRefused},
                             {OLESTR("*h:*m:*s"), OLESTR("--09:30:15"), kRefused},
                             {OLESTR("*h:*m:*s"), OLESTR("-"), "00:00:01.000"},
                             {OLESTR("*h:*m"), OLESTR("-09:30"), kRefused},
                         });
}

TEST(TimeTemplate, ReadsAMonthNameAnywhere)
{
    ExpectRows(TypeTime, {
                             {OLESTR("*h:*m"), OLESTR("jan:feb"), "01:02:00.000"},
                             {OLESTR("*h:*m"), OLESTR("jax:feb"), kRefused},
                             {OLESTR("*h:*m"), OLESTR("9:3-4"), "09:03:00.000"},
                         });
}

// ---- symbols of one chunk ----------------------------------------------------

TEST(Chunk, StarStandsFirstOrLastAndOnce)
{
    ExpectRows(TypeTime, {
                             {OLESTR("*hmm"), OLESTR("930"), "09:30:00.000"},
                             {OLESTR("hhm*"), OLESTR("0930"), "09:30:00.000"},
                             {OLESTR("h*mm"), OLESTR("0930"), kRefused},
                             {OLESTR("*hmm*"), OLESTR("930"), kRefused},
                             {OLESTR("**hmm"), OLESTR("930"), kRefused},
                             {OLESTR("*h:*m:*"), OLESTR("9:30:1"), kRefused},
                             {OLESTR("*h:*m:**"), OLESTR("9:30:1"), kRefused},
                         });
}

TEST(Chunk, WithoutStarNeedsItsOwnLength)
{
    ExpectRows(TypeTime, {
                             {OLESTR("hhmm"), OLESTR("0930"), "09:30:00.000"},
                             {OLESTR("hhmm"), OLESTR("930"), kRefused},
                             {OLESTR("hhmm"), OLESTR("00930"), kRefused},
                         });
}

TEST(Chunk, QuestionMarkPassesOverOneCharacter)
{
    ExpectRows(TypeTime, {
                             {OLESTR("?hhmm"), OLESTR("x0930"), "09:30:00.000"},
                             {OLESTR("??hhmm"), OLESTR("xy0930"), "09:30:00.000"},
                             {OLESTR("hhmm?"), OLESTR("0930x"), "09:30:00.000"},
                             {OLESTR("*hmm?"), OLESTR("930x"), "09:30:00.000"},
                             {OLESTR("*h?mm"), OLESTR("9x30"), kRefused},
                             {OLESTR("hh:mm:?"), OLESTR("09:30:x"), "09:30:00.000"},
                             {OLESTR("hh:mm:?*"), OLESTR("09:30:x"), kRefused},
                             {OLESTR("hh:mm:*?"), OLESTR("09:30:xy"), kRefused},
                             {OLESTR("hh:mm:?s*"), OLESTR("09:30:x"), "09:30:00.000"},
                             {OLESTR("hh:mm:??s*"), OLESTR("09:30:x"), kRefused},
                         });
}

// What follows a '?' within a run joins that run, whatever letter it is.
TEST(Chunk, RunGoesOnBehindAnInnerQuestionMark)
{
    ExpectRows(TypeTime, {
                             {OLESTR("h?h:mm"), OLESTR("1x2:30"), "12:30:00.000"},
                             {OLESTR("h?mm"), OLESTR("1x23"), "12:03:00.000"},
                             {OLESTR("hh?mm"), OLESTR("09x30"), kRefused},
                             {OLESTR("h?m:mm"), OLESTR("1x2:30"), "12:30:00.000"},
                             {OLESTR("h??h:mm"), OLESTR("1x23:30"), kRefused},
                             {OLESTR("h??h:mm"), OLESTR("0x23:30"), "23:30:00.000"},
                             {OLESTR("*m?m:hh"), OLESTR("12x3:10"), kRefused},
                             {OLESTR("*m?m:hh"), OLESTR("1x3:10"), "10:13:00.000"},
                             {OLESTR("hh:m?*"), OLESTR("10:3x0"), "10:30:00.000"},
                         });
    ExpectRows(TypeDate, {
                             {OLESTR("yyyy/m?mm/dd"), OLESTR("2003/Dxec/25"), "2003-12-25"},
                             {OLESTR("yyy?m/mm/dd"), OLESTR("200x3/12/25"), "2003-12-25"},
                             {OLESTR("yyy?m/mm/dd"), OLESTR("200x+/12/25"), kRefused},
                             {OLESTR("yyyy/mm/d?d"), OLESTR("2003/12/2x5"), "2003-12-25"},
                             {OLESTR("yyyy/mm/d?d"), OLESTR("2003/12/2xy"), kRefused},
                         });
}

TEST(Chunk, TextThatEndsWithinAStarredChunkLeavesTheRestAt0)
{
    ExpectRows(TypeTime, {
                             {OLESTR("hhmm*"), OLESTR("09"), "09:00:00.000"},
                             {OLESTR("hhxx*:mm"), OLESTR("09:30"), kRefused},
                             {OLESTR("hhxx*:mm"), OLESTR("9:30"), "09:30:00.000"},
                             {OLESTR("hh?mm*"), OLESTR("09"), "09:00:00.000"},
                             {OLESTR("hh??mm*"), OLESTR("09x"), kRefused},
                             {OLESTR("hh?xx*:mm"), OLESTR("09:30"), kRefused},
                             {OLESTR("*sh?mm"), OLESTR("5"), "00:05:00.000"},
                         });
}

TEST(Chunk, RefusesALetterThatTheTypeDoesNotDeclare)
{
    ExpectRows(TypeTime, {{OLESTR("hhdmm"), OLESTR("09130"), kRefused},
                          {OLESTR("hhmmx"), OLESTR("09301"), kRefused}});
    ExpectRows(TypeDate, {{OLESTR("yyyymmddt"), OLESTR("200312251"), kRefused},
                          {OLESTR("*i"), OLESTR("5"), kRefused}});
}

TEST(Chunk, DividerIsKnownByItsLowByteAndFoundAsItself)
{
    ExpectRows(TypeTime, {
                             {OLESTR("*h\u012F*m"), OLESTR("9\u012F30"), "09:30:00.000"},
                             {OLESTR("*h\u012F*m"), OLESTR("9/30"), kRefused},
                         });
}

// ---- numbers -----------------------------------------------------------------

TEST(PriceColumn, ReadsTheFirstMarkAsPoint)
{
    ExpectRows(TypePrice, {
                              {OLESTR("*i.*f"), OLESTR("1,5"), "1.5"},
                              {OLESTR(""), OLESTR("1234.25"), "1234.25"},
                              {OLESTR("x"), OLESTR("1,234.5"), "1.234"},
                              {OLESTR(""), OLESTR("1.2.3"), "1.2"},
                              {OLESTR(""), OLESTR("1-2"), "1"},
                              {OLESTR(""), OLESTR("-"), "0"},
                              {OLESTR(""), OLESTR(""), "0"},
                              {OLESTR(""), OLESTR("-1.5"), "-1.5"},
                              {OLESTR(""), OLESTR(" 1.5"), kRefused},
                              {OLESTR(""), OLESTR("1.5e3"), kRefused},
                              {OLESTR(""), OLESTR("1.5x"), kRefused},
                          });
}

TEST(WholeColumn, ReadsWholeNumbers)
{
    ExpectRows(TypeVolume, {
                               {OLESTR("*i"), OLESTR("123"), "123"},
                               {OLESTR("*i"), OLESTR("123.00"), "123"},
                               {OLESTR("*i"), OLESTR("123,0"), "123"},
                               {OLESTR("*i"), OLESTR("12.5"), kRefused},
                               {OLESTR(""), OLESTR("-7"), "-7"},
                               {OLESTR(""), OLESTR("1-2"), "1"},
                               {OLESTR(""), OLESTR(""), "0"},
                               {OLESTR(""), OLESTR("9223372036854775807"), "9223372036854775807"},
                               {OLESTR(""), OLESTR("9223372036854775808"), "9223372036854775807"},
                               {OLESTR(""), OLESTR("-9223372036854775809"), "-9223372036854775808"},
                               {OLESTR(""), OLESTR("x"), kRefused},
                           });
}

} // namespace
