#include <gtest/gtest.h>

#include "src/parsing/detection/Dividers.h"
#include "src/parsing/detection/FieldConstructor.h"
#include "tests/parsing/FieldText.h"

using namespace Hesperon::specifics;

namespace {

// The members in the order of their codes: "0" for the character 0, "T" for the tab,
// "_" for the blank.
std::string ShownDividers(const DividerSet& dividers)
{
    std::string s;
    for (OLECHAR c = 0; c < 0x100; ++c)
        if (dividers.Contains(c))
            s += c == 0 ? '0' : c == '\t' ? 'T' : c == ' ' ? '_' : static_cast<char>(c);
    return s;
}

struct DividersRow
{
    string_view_t sRecord;
    const char* szDividers;
};

void ExpectDividers(std::initializer_list<DividersRow> rows)
{
    for (const DividersRow& row : rows) {
        SCOPED_TRACE(Shown(row.sRecord));
        EXPECT_EQ(row.szDividers, ShownDividers(FindDividers(row.sRecord)));
    }
}

TEST(Dividers, TheStrongestCandidateWinsAndTheTabJoins)
{
    ExpectDividers({
        {OLESTR("01/02/2003,09:30,1.5"), "T,"},
        {OLESTR("01/02/2003;1.5"), "T;"},
        {OLESTR("2003 1.5 7"), "T_"},
        {OLESTR("9:30 1.5"), "T_"},
        {OLESTR("09:30"), "T:"},
        {OLESTR("a|b;c,d e:f"), "T|"},
        {OLESTR("a:b c,d;e|f"), "T|"},
        {OLESTR("a|b\tc"), "T"},
    });
}

TEST(Dividers, WithoutCandidatesTheWinnerIsTheCharacterZero)
{
    ExpectDividers({{OLESTR("abc"), "0T"}, {OLESTR(""), "0T"}, {OLESTR("1.5-7"), "0T"}});
}

TEST(Dividers, ABlankBetweenDateAndTimeDividesToo)
{
    ExpectDividers({
        {OLESTR("01/02/2003 09:30,1.5,7"), "T_,"},
        {OLESTR("01/02/2003 09:30;1.5"), "T_;"},
        {OLESTR("2003 1.5\t7"), "T_"},
        {OLESTR("9:30 am|1.5"), "T_|"},
    });
}

TEST(Dividers, ABlankDividesOnlyWithADigitAheadOfTheWinner)
{
    ExpectDividers({
        {OLESTR("Date Time,1.5"), "T,"},
        {OLESTR("ES,01/02/2003 09:30,1.5"), "T,"},
        {OLESTR("a b,1 2"), "T,"},
    });
}

TEST(Dividers, TheLookForADigitBeginsBehindAsManyCharactersAsColonsWereMet)
{
    ExpectDividers({
        {OLESTR("1: a,2"), "T,"},
        {OLESTR("11: a,2"), "T_,"},
        {OLESTR("12::: a,2"), "T,"},
        {OLESTR(":: 1,2"), "T_,"},
    });
}

TEST(Dividers, AMaskHasABitACandidate)
{
    struct MaskRow
    {
        LONG nMask;
        const char* szDividers;
    };
    const MaskRow kRows[] = {
        {0, ""},   {1, ":"},  {2, "_"},       {4, ","},      {8, ";"},
        {16, "|"}, {32, "T"}, {63, "T_,:;|"}, {2 + 4, "_,"},
    };
    for (const MaskRow& row : kRows) {
        SCOPED_TRACE(row.nMask);
        const DividerSet dividers = DividerSet::FromMask(row.nMask);
        EXPECT_EQ(row.szDividers, ShownDividers(dividers));
        EXPECT_EQ(row.nMask, dividers.Mask());
    }
    EXPECT_EQ(":", ShownDividers(DividerSet::FromMask(64 + 1)));
}

TEST(Dividers, TheCharacterZeroHasNoBit)
{
    EXPECT_EQ(32, FindDividers(OLESTR("abc")).Mask());
}

TEST(Dividers, CharactersBeyondTheSetDivideNothing)
{
    const DividerSet dividers = DividerSet::FromMask(63);
    EXPECT_FALSE(dividers.Contains(OLECHAR(0x012C))); // low byte of a comma
    EXPECT_FALSE(dividers.Contains(OLECHAR(0xFFFF)));
}

TEST(Dividers, AreSettledOnce)
{
    ParserState state;
    DetectionReport report;
    CFieldConstructor columns(state, report);
    columns.FindDivider(OLESTR("a;b"));
    columns.FindDivider(OLESTR("a,b"));
    EXPECT_TRUE(state.m_bDividerFound);
    EXPECT_EQ("T;", ShownDividers(state.m_dividers));
}

} // namespace
