// Which rows of the preview grid an import would take, and their background.

#include "tests/dialog/GridFakes.h"

using namespace dialog_test;
using Hesperon::specifics::BlendColours;
using Hesperon::specifics::GridTint;

namespace {

class GridTints : public GridTest
{
protected:
    static constexpr ULONG kPlain = 0x00FFFFFF;  // the window's colour in the fake view
    static constexpr ULONG kTinted = 0x00D8C5BC; // with three tenths of the highlight's 0x804020

    // The colour of the only row, whose record is this text.
    ULONG ColourOf(const std::string& sRecord)
    {
        m_pParser->m_records = {sRecord};
        m_pView->Events().OnRange(0, 0);
        EXPECT_EQ(m_pView->Events().IsImported(0), m_pView->Events().RowColour(0) == kTinted);
        return m_pView->Events().RowColour(0);
    }
    bool Contains(DATE start, DATE end, DATE date)
    {
        m_pParser->m_start = start;
        m_pParser->m_end = end;
        GridTint tint;
        tint.ReadRange(*m_pParser.get());
        return tint.Contains(date);
    }
    void Open(DATE start, DATE end)
    {
        MakeView();
        m_pParser->m_start = start;
        m_pParser->m_end = end;
        PutParser();
    }
};

// ---- colours

TEST(GridBlend, GoesThreeTenthsOfTheWay)
{
    struct Row
    {
        ULONG nFrom, nTo, nBlend;
    };
    const Row kRows[] = {
        {0x000000, 0x000000, 0x000000}, {0xFFFFFF, 0xFFFFFF, 0xFFFFFF},
        {0x000000, 0xFFFFFF, 0x4C4C4C}, // 76.5
        {0xFFFFFF, 0x000000, 0xB2B2B2}, // 178.5
        {0x000000, 0x0A0A0A, 0x030303}, {0x0A0A0A, 0x000000, 0x070707},
        {0x102030, 0x102030, 0x102030}, {0x0000FF, 0xFF0000, 0x4C00B2},
        {0xFFFFFF, 0x804020, 0xD8C5BC},
    };
    for (const Row& row : kRows)
        EXPECT_EQ(row.nBlend, BlendColours(row.nFrom, row.nTo))
            << std::hex << row.nFrom << " to " << row.nTo;
}

// ---- ranges

TEST_F(GridTints, BothEndsOfTheRangeBelongToIt)
{
    EXPECT_FALSE(Contains(40000, 40001.5, 39999.999));
    EXPECT_TRUE(Contains(40000, 40001.5, 40000));
    EXPECT_TRUE(Contains(40000, 40001.5, 40001.5));
    EXPECT_FALSE(Contains(40000, 40001.5, 40001.50001));
    EXPECT_FALSE(Contains(40001, 40000, 40000.5));
}

TEST_F(GridTints, WithoutARangeNothingIsIn)
{
    EXPECT_FALSE(Contains(0, 0, 40000));
    GridTint unread;
    EXPECT_FALSE(unread.Contains(40000));
}

TEST_F(GridTints, DatesBeforeDayZeroAreComparedByTheCalendar)
{
    // Of day -3 the first quarter ends at -3.25, and the third at -3.75.
    EXPECT_TRUE(Contains(-3.25, -3.75, -3.5));
    EXPECT_FALSE(Contains(-3.75, -3.25, -3.5));
    EXPECT_TRUE(Contains(-4.75, 0.5, -3.0));
    EXPECT_TRUE(Contains(-4.25, -3.0, -4.75));
    EXPECT_FALSE(Contains(-4.75, -3.0, -4.25));
}

TEST_F(GridTints, AnEndWhoseDaysAreAllOnesTurnsTheTintOff)
{
    EXPECT_FALSE(Contains(40000, 65535, 40001)); // in the year 2079
    EXPECT_FALSE(Contains(65535.5, 70000, 66000));
    EXPECT_FALSE(Contains(-1, 50000, 40000)); // its low 16 bits are ones, too
    EXPECT_TRUE(Contains(40000, 65536, 40001));
    EXPECT_TRUE(Contains(40000, 65534, 40001));
    Open(40000, 65535);
    EXPECT_EQ(kPlain, ColourOf("40001"));
    EXPECT_TRUE(m_pParser->m_positions.empty()) << "records are read in vain";
}

// ---- rows

TEST_F(GridTints, TheRowsOfTheRangeAreTinted)
{
    Open(40000, 40001);
    m_pParser->m_records = {"39999", "40000", "40000.5", "40001", "40001.5"};
    m_pView->Events().OnRange(0, 4);
    const bool kImported[] = {false, true, true, true, false};
    for (LONG n = 0; n < 5; ++n) {
        EXPECT_EQ(kImported[n], m_pView->Events().IsImported(n)) << n;
        EXPECT_EQ(kImported[n] ? kTinted : kPlain, m_pView->Events().RowColour(n)) << n;
    }
}

TEST_F(GridTints, TheRangeIsThatOfTheLastPage)
{
    Open(0, 0);
    EXPECT_EQ(kPlain, ColourOf("40001"));
    m_pParser->m_start = 40000;
    m_pParser->m_end = 40002;
    EXPECT_FALSE(m_pView->Events().IsImported(0));
    m_pView->Events().OnRange(0, 0);
    EXPECT_TRUE(m_pView->Events().IsImported(0));
}

TEST_F(GridTints, AFailureAtAnyStepLeavesTheWindowsColour)
{
    Open(40000, 40002);
    m_pParser->m_records = {"40001"};
    m_pView->Events().OnRange(0, 0);
    ASSERT_TRUE(m_pView->Events().IsImported(0));
    EXPECT_FALSE(m_pView->Events().IsImported(1)) << "no such record";
    EXPECT_FALSE(m_pView->Events().IsImported(-1));
    for (const char* pszFailure : {"Position", "CurrentRecord"}) {
        m_pParser->m_failures = {{pszFailure, E_FAIL}};
        EXPECT_FALSE(m_pView->Events().IsImported(0)) << pszFailure;
    }
    m_pParser->m_failures = {{"Position", S_FALSE}};
    EXPECT_FALSE(m_pView->Events().IsImported(0)) << "the parser stands at another record";
    m_pParser->m_failures.clear();
    for (const char* pszFailure : {"Parse", "CurrentDateTime"}) {
        m_pRecords->m_failures = {{pszFailure, E_INVALIDARG}};
        EXPECT_FALSE(m_pView->Events().IsImported(0)) << pszFailure;
    }
    m_pRecords->m_failures.clear();
    EXPECT_TRUE(m_pView->Events().IsImported(0));
    EXPECT_TRUE(m_reports.Texts().empty());
}

TEST_F(GridTints, ARangeThatCanNotBeReadTintsNothing)
{
    Open(40000, 40002);
    m_pParser->m_records = {"40001"};
    m_pParser->m_failures = {{"EndDateTime", E_FAIL}};
    m_pView->Events().OnRange(0, 0);
    EXPECT_FALSE(m_pView->Events().IsImported(0));
}

TEST_F(GridTints, LinesAreNotTinted)
{
    Open(40000, 40002);
    m_pGrid->put_TextMode(VARIANT_TRUE);
    m_pParser->m_records = {"40001"};
    m_pView->Events().OnRange(0, 0);
    EXPECT_FALSE(m_pView->Events().IsImported(0));
    EXPECT_EQ(kPlain, m_pView->Events().RowColour(0));
}

} // namespace
