#include <gtest/gtest.h>

#include <cstdlib>
#include <iostream>
#include <random>

#include "platform/text/CodePage.h"
#include "src/parsing/RecordText.h"
#include "tests/parsing/FieldText.h"
#include "tests/support/Seed.h"

using namespace Hesperon::specifics;

namespace {

DividerSet Dividers(string_view_t sMembers)
{
    DividerSet dividers;
    for (OLECHAR c : sMembers)
        dividers.Insert(c);
    return dividers;
}

std::string Normalised(string_view_t sRecord)
{
    return Shown(NormalisedRecord(sRecord));
}

// ---- normalising ------------------------------------------------------------------

TEST(Normalising, CollapsesRunsOfBlanksAndTabsToTheirFirstCharacter)
{
    struct Row
    {
        string_view_t sRecord;
        string_view_t sNormalised;
    };
    const Row kRows[] = {
        {OLESTR(""), OLESTR("")},
        {OLESTR("a,b"), OLESTR("a,b")},
        {OLESTR("a b"), OLESTR("a b")},
        {OLESTR("a   b"), OLESTR("a b")},
        {OLESTR("a \tb"), OLESTR("a b")},
        {OLESTR("a\t b"), OLESTR("a\tb")},
        {OLESTR("a  b  c"), OLESTR("a b c")},
        {OLESTR("a  "), OLESTR("a  ")},
        {OLESTR("a  b \t"), OLESTR("a b \t")},
    };
    for (const Row& row : kRows) {
        SCOPED_TRACE(Shown(row.sRecord));
        EXPECT_EQ(Shown(row.sNormalised), Normalised(row.sRecord));
    }
}

TEST(Normalising, DropsQuotesAndBracketsWhereverTheyStand)
{
    struct Row
    {
        string_view_t sRecord;
        const char* szNormalised;
    };
    const Row kRows[] = {
        {OLESTR("\"a b\"  ,1"), "a b ,1"},
        {OLESTR("'1','2'"), "1,2"},
        {OLESTR("(1)[2]"), "12"},
        {OLESTR("\"\"''"), ""},
        {OLESTR("<a>{b}"), "<a>{b}"},
        // Blanks collapse before quotes go, so those around a quote stay two.
        {OLESTR("a \" b"), "a  b"},
        {OLESTR("a  \""), "a "},
    };
    for (const Row& row : kRows) {
        SCOPED_TRACE(Shown(row.sRecord));
        EXPECT_EQ(row.szNormalised, Normalised(row.sRecord));
    }
}

TEST(Normalising, JudgesCharactersByTheirLowByte)
{
    struct Row
    {
        string_view_t sRecord;
        string_view_t sNormalised;
    };
    const Row kRows[] = {
        {OLESTR("a\u0120\u0220b"), OLESTR("a\u0120b")},
        {OLESTR("a\u0122b\u0128"), OLESTR("ab")},
        // A low byte of 0 is a blank, and then a quote.
        {OLESTR("a\u0100b"), OLESTR("ab")},
        {OLESTR("a \u0100b"), OLESTR("a b")},
        {OLESTR("a\u0100 b"), OLESTR("ab")},
    };
    for (const Row& row : kRows) {
        SCOPED_TRACE(Shown(row.sRecord));
        EXPECT_EQ(Shown(row.sNormalised), Normalised(row.sRecord));
    }
}

TEST(Normalising, LooksAtNoMoreThan511Characters)
{
    EXPECT_EQ(511u, NormalisedRecord(string_t(511, 'x')).size());
    EXPECT_EQ(511u, NormalisedRecord(string_t(512, 'x')).size());
    EXPECT_EQ(509u, NormalisedRecord(OLESTR("\"\"") + string_t(600, 'x')).size());
}

// A slow, plain implementation, one character at a time.
string_t PlainlyNormalised(const string_t& sRecord)
{
    const auto isBlank = [](OLECHAR c) { return c == ' ' || c == '\t'; };
    std::size_t nEnd = sRecord.size();
    while (nEnd > 0 && isBlank(sRecord[nEnd - 1]))
        --nEnd;
    string_t s;
    for (std::size_t i = 0; i < sRecord.size(); ++i) {
        const bool bInRun = i > 0 && i < nEnd && isBlank(sRecord[i]) && isBlank(sRecord[i - 1]);
        const bool bQuote = string_view_t(OLESTR("'\"()[]")).find(sRecord[i]) != string_t::npos;
        if (!bInRun && !bQuote)
            s += sRecord[i];
    }
    return s;
}

TEST(Normalising, AgreesWithAPlainReader)
{
    std::mt19937 random(Seed());
    constexpr string_view_t kLetters = OLESTR("  \t\t\"'()[],;1a");
    for (int nRound = 0; nRound < Rounds(5000); ++nRound) {
        string_t sRecord(random() % 16, 0);
        for (OLECHAR& c : sRecord)
            c = kLetters[random() % kLetters.size()];
        ASSERT_EQ(Shown(PlainlyNormalised(sRecord)), Normalised(sRecord)) << Shown(sRecord);
    }
}

// ---- splitting --------------------------------------------------------------------

struct SplitRow
{
    string_view_t sRecord;
    string_view_t sDividers;
    const char* szAll;    // empty fields counted; each field in brackets
    const char* szFilled; // empty fields skipped
};

constexpr SplitRow kSplits[] = {
    {OLESTR("a,b"), OLESTR(","), "[a][b]", "[a][b]"},
    {OLESTR("a,,b"), OLESTR(","), "[a][][b]", "[a][b]"},
    {OLESTR("a,b,"), OLESTR(","), "[a][b][]", "[a][b]"},
    {OLESTR(",a"), OLESTR(","), "[][a]", "[a]"},
    {OLESTR(","), OLESTR(","), "[][]", ""},
    {OLESTR(""), OLESTR(","), "[]", ""},
    {OLESTR(" a ,\t,b\t"), OLESTR(","), "[a][][b]", "[a][b]"},
    {OLESTR("a b,c"), OLESTR(","), "[a b][c]", "[a b][c]"},
    {OLESTR("a b,c"), OLESTR(", "), "[a][b][c]", "[a][b][c]"},
    {OLESTR("a, b"), OLESTR(", "), "[a][][b]", "[a][b]"},
    {OLESTR("a,b"), OLESTR(""), "[a,b]", "[a,b]"},
};

std::string Split(const SplitRow& row, bool (FieldWalk::*next)())
{
    const DividerSet dividers = Dividers(row.sDividers);
    std::string s;
    for (FieldWalk walk(row.sRecord, dividers); (walk.*next)();)
        s += "[" + Shown(walk.Text()) + "]";
    return s;
}

TEST(Splitting, CutsAtDividersAndTrimsTheFields)
{
    for (const SplitRow& row : kSplits) {
        SCOPED_TRACE(Shown(row.sRecord) + " at " + Shown(row.sDividers));
        EXPECT_EQ(row.szAll, Split(row, &FieldWalk::Next));
        EXPECT_EQ(row.szFilled, Split(row, &FieldWalk::NextFilled));
    }
}

TEST(Splitting, FieldsByIndexAreThoseOfTheWalks)
{
    for (const SplitRow& row : kSplits) {
        SCOPED_TRACE(Shown(row.sRecord) + " at " + Shown(row.sDividers));
        const DividerSet dividers = Dividers(row.sDividers);
        std::string sAll;
        for (std::size_t i = 0; const auto sField = FieldAt(row.sRecord, dividers, i); ++i)
            sAll += "[" + Shown(*sField) + "]";
        std::string sFilled;
        for (std::size_t i = 0; const auto sField = FilledFieldAt(row.sRecord, dividers, i); ++i)
            sFilled += "[" + Shown(*sField) + "]";
        EXPECT_EQ(row.szAll, sAll);
        EXPECT_EQ(row.szFilled, sFilled);
    }
}

TEST(Splitting, AnEmptyFieldShiftsTheIndexReaderAlone)
{
    const DividerSet comma = Dividers(OLESTR(","));
    EXPECT_EQ(OLESTR("b"), *FieldAt(OLESTR("a,,b"), comma, 2));
    EXPECT_EQ(OLESTR("b"), *FilledFieldAt(OLESTR("a,,b"), comma, 1));
    EXPECT_FALSE(FieldAt(OLESTR("a,,b"), comma, 3));
    EXPECT_FALSE(FilledFieldAt(OLESTR("a,,b"), comma, 2));
}

// ---- headers and lines of text -------------------------------------------------------

TEST(HeaderRecords, HaveNoFieldThatLooksLikeData)
{
    struct Row
    {
        string_view_t sRecord;
        bool bHeader;
    };
    const Row kRows[] = {
        {OLESTR("Date,Time,Close"), true},
        {OLESTR("AM,PM"), false},
        {OLESTR("Date,pm"), false},
        {OLESTR(""), true},
        {OLESTR(",,"), true},
        {OLESTR(" , \t"), true},
        {OLESTR("Date,,Close"), true},
        {OLESTR("ES,1"), false},
        {OLESTR("ES, 1 "), false},
        {OLESTR("-"), false},
        {OLESTR("1-2"), false},
        {OLESTR("1/2/2003"), false},
        {OLESTR("9:30a"), false},
        {OLESTR("9:30-10"), true}, // no set has both colon and hyphen
        {OLESTR("25-Dec-03"), true},
        {OLESTR("12ab"), true},
    };
    for (const Row& row : kRows) {
        SCOPED_TRACE(Shown(row.sRecord));
        EXPECT_EQ(row.bHeader, IsHeaderRecord(row.sRecord, Dividers(OLESTR(","))));
    }
}

// The ANSI code page is a setting of the process.
class AnsiPage
{
public:
    explicit AnsiPage(UINT nCodePage) : m_before(AnsiCodePage())
    {
        EXPECT_TRUE(SetAnsiCodePage(nCodePage));
    }
    ~AnsiPage() { SetAnsiCodePage(m_before); }

private:
    UINT m_before;
};

TEST(TextRecords, AreShortAndWithoutControlCharacters)
{
    AnsiPage latin(kLatinCodePage);
    struct Row
    {
        string_t sRecord;
        bool bText;
    };
    const Row kRows[] = {
        {OLESTR(""), false},         {OLESTR("a"), true},        {string_t(258, 'x'), true},
        {string_t(259, 'x'), false}, {OLESTR("a\tb\r\n"), true}, {OLESTR("a\x1F"), false},
        {OLESTR("\x01"), false},     {OLESTR("a\x0B"), false},   {string_t(1, 0), false},
        {OLESTR("\u00E9"), true},
    };
    for (const Row& row : kRows) {
        SCOPED_TRACE(Shown(row.sRecord));
        EXPECT_EQ(row.bText, IsTextRecord(row.sRecord));
    }
}

TEST(TextRecords, AreMeasuredInBytesOfTheCodePage)
{
    constexpr UINT kUtf8 = 65001;
    const string_t sRecord(130, 0x00E9); // two bytes each in UTF-8
    {
        AnsiPage latin(kLatinCodePage);
        EXPECT_TRUE(IsTextRecord(sRecord));
    }
    AnsiPage utf8(kUtf8);
    EXPECT_FALSE(IsTextRecord(sRecord));
    EXPECT_TRUE(IsTextRecord(sRecord.substr(0, 129)));
}

} // namespace
