#include <cmath>
#include <limits>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/values.h"
#include "src/parsing/templates/MonthNames.h"
#include "src/parsing/templates/NumberText.h"
#include "src/parsing/templates/TextTests.h"
#include "src/values/CaseFold.h"
#include "tests/parsing/FieldText.h"
#include "tests/support/ReportLog.h"

using namespace Hesperon::specifics;

namespace {

TEST(TextTests, FloatAndIntegerTexts)
{
    struct
    {
        string_view_t sText;
        bool bFloat, bDigitsAndSigns, bWhole;
    } rows[] = {
        {OLESTR(""), true, true, true},
        {OLESTR("123"), true, true, true},
        {OLESTR("-1+2"), true, true, true},
        {OLESTR("123.00"), true, false, true},
        {OLESTR("123,0"), true, false, true},
        {OLESTR("123."), true, false, true},
        {OLESTR("12.50"), true, false, false},
        {OLESTR("12.0-"), true, false, false},
        {OLESTR("1,234.00"), true, false, true}, // the point decides
        {OLESTR("1.000,5"), true, false, false},
        {OLESTR("1,000,5"), true, false, false},
        {OLESTR("1,0,0"), true, false, false},
        {OLESTR("1e5"), false, false, false},
        {OLESTR(" 1"), false, false, false},
        {OLESTR("\u0131"), false, false, false}, // low byte of '1'
        {OLESTR("1:2"), false, false, false},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(Shown(row.sText));
        EXPECT_EQ(IsFloatText(row.sText), row.bFloat);
        EXPECT_EQ(IsIntegerText(row.sText, false), row.bDigitsAndSigns);
        EXPECT_EQ(IsIntegerText(row.sText, true), row.bWhole);
    }
}

TEST(TextTests, TemplateDividersAreTenByTheirLowByte)
{
    const string_view_t dividers = OLESTR(":/\\.,=|-_ ");
    for (unsigned c = 0; c < 0x400; ++c)
        EXPECT_EQ(IsTemplateDivider(static_cast<OLECHAR>(c)),
                  dividers.find(static_cast<OLECHAR>(c & 0xFF)) != dividers.npos)
            << c;
}

TEST(TextTests, BoundaryDividersGoOnlyFromTheEnd)
{
    struct
    {
        string_view_t sText, sExpected;
    } rows[] = {
        {OLESTR("a"), OLESTR("a")},        {OLESTR("a/"), OLESTR("a")},
        {OLESTR("a/b:, "), OLESTR("a/b")}, {OLESTR("/a/"), OLESTR("/a")},
        {OLESTR(" - a"), OLESTR(" - a")},  {OLESTR("/:-"), OLESTR("/:-")},
        {OLESTR(""), OLESTR("")},          {OLESTR("a;"), OLESTR("a;")},
        {OLESTR("a\u012F"), OLESTR("a")},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(Shown(row.sText));
        EXPECT_EQ(Shown(RemoveBoundaryDividers(row.sText)), Shown(row.sExpected));
    }
}

TEST(TextTests, BoundaryDividersReportANullText)
{
    ReportLog reports;
    EXPECT_TRUE(RemoveBoundaryDividers({}).empty());
    EXPECT_THAT(reports.Texts(), testing::ElementsAre("0 != szCase"));
}

TEST(TextTests, MatchCountPairsEqualLetters)
{
    struct
    {
        string_view_t sFirst, sSecond;
        std::size_t nExpected;
    } rows[] = {
        {OLESTR("Date"), OLESTR("Date"), 4},
        {OLESTR("Date"), OLESTR("dATE"), 4},
        {OLESTR("Up Volume"), OLESTR("UpVolume"), 8},
        {OLESTR("Low"), OLESTR("Vol"), 2},
        {OLESTR("Volume"), OLESTR("Vol"), 3},
        {OLESTR("aab"), OLESTR("abb"), 2}, // each position once, on either side
        {OLESTR("abc"), OLESTR("cba"), 3}, // places don't matter
        {OLESTR("Open"), OLESTR("O"), 4},  // one letter counts for all
        {OLESTR("Close"), OLESTR("o"), 5},
        {OLESTR("aaa"), OLESTR("a"), 3},
        {OLESTR("Open"), OLESTR("x"), 0},
        {OLESTR("O"), OLESTR("Open"), 1},
        {OLESTR(""), OLESTR("a"), 0},
        {OLESTR("a"), OLESTR(""), 0},
        {{}, {}, 0},
        {OLESTR("\u00C9t\u00E9"), OLESTR("\u00E9T\u00C9"), 3},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(Shown(row.sFirst) + " and " + Shown(row.sSecond));
        EXPECT_EQ(FindMatchCount(row.sFirst, row.sSecond), row.nExpected);
    }
}

TEST(TextTests, MatchCountReportsANullCharacter)
{
    ReportLog reports;
    EXPECT_EQ(FindMatchCount(string_view_t(OLESTR("a\0"), 2), OLESTR("a")), 2u);
    EXPECT_THAT(reports.Texts(), testing::ElementsAre("cFirst && cSecond"));
}

TEST(TextTests, CaseIsIgnoredBeyondAsciiToo)
{
    EXPECT_TRUE(EqualIgnoringCase(OLESTR("P.M. \u00C9"), OLESTR("p.m. \u00E9")));
    EXPECT_FALSE(EqualIgnoringCase(OLESTR("pm"), OLESTR("pmx")));
    EXPECT_FALSE(EqualIgnoringCase(OLESTR("["), OLESTR("{")));
    EXPECT_EQ(FoldCase(OLESTR('Z')), OLESTR('z'));
    EXPECT_EQ(FoldCase(OLESTR('@')), OLESTR('@'));
}

TEST(MonthNames, EnglishShortNamesInAnyCase)
{
    const char* names[] = {"jan", "feb", "mar", "apr", "may", "jun",
                           "jul", "aug", "sep", "oct", "nov", "dec"};
    for (int i = 0; i < 12; ++i) {
        string_t sName(names[i], names[i] + 3);
        SCOPED_TRACE(names[i]);
        EXPECT_EQ(FindMonthIndex(sName), i);
        sName[0] = static_cast<OLECHAR>(sName[0] - 0x20);
        EXPECT_EQ(FindMonthIndex(sName), i);
        sName[2] = static_cast<OLECHAR>(sName[2] - 0x20);
        EXPECT_EQ(FindMonthIndex(sName), i);
    }
}

TEST(MonthNames, ShortNamesOfTheUsersLanguage)
{
    for (int i = 0; i < 12; ++i) {
        Bstr name;
        ASSERT_EQ(VarMonthName(i + 1, 1, 0, name.put()), S_OK);
        SCOPED_TRACE(Shown(name.view()));
        EXPECT_EQ(FindMonthIndex(name.view()), i);
    }
}

TEST(MonthNames, UnknownNamesHaveNoIndex)
{
    for (string_view_t sName : {OLESTR(""), OLESTR("ja"), OLESTR("january"), OLESTR("jan."),
                                OLESTR("1"), OLESTR("xyz"), OLESTR(" jan")}) {
        SCOPED_TRACE(Shown(sName));
        EXPECT_EQ(FindMonthIndex(sName), -1);
    }
}

// A letter lowered by one and a last letter raised by 33 give the same hash.
TEST(MonthNames, EqualHashesAreEqualNames)
{
    EXPECT_EQ(FindMonthIndex(OLESTR("j`\u008F")), 0);
}

TEST(MonthNames, Of511CharactersAtMost)
{
    // 508 zero units leave the hash at 0.
    string_t sText(508, OLECHAR(0));
    sText += OLESTR("dec");
    EXPECT_EQ(FindMonthIndex(sText), 11);
    EXPECT_EQ(FindMonthIndex(sText + OLESTR("x")), 11);
}

TEST(Numbers, DoubleIsTheLongestReadableHead)
{
    struct
    {
        string_view_t sText;
        double expected;
    } rows[] = {
        {OLESTR(""), 0},
        {OLESTR("x"), 0},
        {OLESTR("-"), 0},
        {OLESTR("."), 0},
        {OLESTR("-.e5"), 0},
        {OLESTR("5"), 5},
        {OLESTR(" \t\n5"), 5},
        {OLESTR("+5."), 5},
        {OLESTR("-.5"), -0.5},
        {OLESTR("1.2.3"), 1.2},
        {OLESTR("1,5"), 1},
        {OLESTR("1-2"), 1},
        {OLESTR("--1"), 0},
        {OLESTR("1.5e3x"), 1500},
        {OLESTR("1.5E-3"), 0.0015},
        {OLESTR("1.5e"), 1.5},
        {OLESTR("1.5e+"), 1.5},
        {OLESTR("0.1"), 0.1},
        {OLESTR("123456.789"), 123456.789},
        {OLESTR("9007199254740993"), 9007199254740992.0},
        {OLESTR("9007199254740993.00000000000001"), 9007199254740994.0},
        {OLESTR("0.00000000000000000000000000001"), 1e-29},
        {OLESTR("00000000000000000000000000000007.5"), 7.5},
        {OLESTR("1e999"), std::numeric_limits<double>::infinity()},
        {OLESTR("-1e999"), -std::numeric_limits<double>::infinity()},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(Shown(row.sText));
        EXPECT_EQ(TextToDouble(row.sText), row.expected);
    }
    EXPECT_TRUE(std::signbit(TextToDouble(OLESTR("-0"))));
    EXPECT_FALSE(std::signbit(TextToDouble(OLESTR("-"))));
}

TEST(Numbers, IntegersSaturate)
{
    constexpr LONGLONG kMax = std::numeric_limits<LONGLONG>::max();
    constexpr LONGLONG kMin = std::numeric_limits<LONGLONG>::min();
    struct
    {
        string_view_t sText;
        LONGLONG n64;
        LONG n32;
    } rows[] = {
        {OLESTR(""), 0, 0},
        {OLESTR("x1"), 0, 0},
        {OLESTR("+"), 0, 0},
        {OLESTR("--5"), 0, 0},
        {OLESTR(" 12x"), 12, 12},
        {OLESTR("-12.9"), -12, -12},
        {OLESTR("+12"), 12, 12},
        {OLESTR("2147483647"), 2147483647, 2147483647},
        {OLESTR("2147483648"), 2147483648, 2147483647},
        {OLESTR("-2147483649"), -2147483649, -2147483647 - 1},
        {OLESTR("9223372036854775807"), kMax, 2147483647},
        {OLESTR("9223372036854775808"), kMax, 2147483647},
        {OLESTR("99999999999999999999"), kMax, 2147483647},
        {OLESTR("-9223372036854775808"), kMin, -2147483647 - 1},
        {OLESTR("-9223372036854775809"), kMin, -2147483647 - 1},
        {OLESTR("000000000000000000000000012"), 12, 12},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(Shown(row.sText));
        EXPECT_EQ(TextToInt64(row.sText), row.n64);
        EXPECT_EQ(TextToInt32(row.sText), row.n32);
    }
}

TEST(Numbers, DigitsOnly)
{
    LONGLONG value = -1;
    EXPECT_TRUE(ReadDigits(OLESTR("999999999999999999"), value));
    EXPECT_EQ(value, 999999999999999999);
    EXPECT_TRUE(ReadDigits(OLESTR("0000000000000000000000009"), value));
    EXPECT_EQ(value, 9);
    EXPECT_FALSE(ReadDigits(OLESTR("-1"), value));
    EXPECT_EQ(value, 9);
    EXPECT_TRUE(ReadDigits(OLESTR(""), value));
    EXPECT_EQ(value, 0);
}

} // namespace
