// What stands in the cells of the preview grid.

#include <gtest/gtest.h>

#include <limits>

#include "src/UIComponents/controls/GridCell.h"
#include "src/UIComponents/controls/GridPage.h"
#include "tests/dialog/GridFakes.h"

using namespace dialog_test;
using Hesperon::specifics::DateText;
using Hesperon::specifics::GridPage;
using Hesperon::specifics::WriteText;
using Hesperon::specifics::WriteValue;

namespace {

constexpr std::size_t kCellBuffer = 259; // units, as grids draw

std::string Cell(const VARIANT& value, std::size_t nBuffer = kCellBuffer)
{
    std::vector<OLECHAR> buffer(nBuffer + 1, OLECHAR('#'));
    WriteValue(value, std::span(buffer.data(), nBuffer));
    EXPECT_EQ(OLECHAR('#'), buffer[nBuffer]) << "written beyond its end";
    return Utf8(buffer.data());
}

VARIANT Number(VARTYPE vt, LONGLONG n)
{
    VARIANT value{};
    value.vt = vt;
    value.llVal = n;
    return value;
}

VARIANT Real(double f)
{
    VARIANT value{};
    value.vt = VT_R8;
    value.dblVal = f;
    return value;
}

std::string DateCell(DATE date)
{
    return Utf8(DateText(date));
}

constexpr DATE kMillisecond = 1.0 / 86'400'000;
constexpr DATE kHalfPastNine = 9.5 / 24;

// ---- kinds

TEST(GridCells, ShowEachKindInItsWay)
{
    ReportLog reports;
    EXPECT_EQ("\"ABC\"", Cell(Variant::FromText(OLESTR("ABC"))));
    EXPECT_EQ("\"\"", Cell(Variant::FromText(OLESTR(""))));
    EXPECT_EQ("4770.25", Cell(Real(4770.25)));
    EXPECT_EQ("-0.5", Cell(Real(-0.5)));
    EXPECT_EQ("477114", Cell(Number(VT_I8, 477114)));
    EXPECT_EQ("-3", Cell(Number(VT_I8, -3)));
    EXPECT_EQ("18446744073709551615", Cell(Number(VT_UI8, -1)));
    EXPECT_EQ("1/13/2003", Cell(Variant::FromDate(37634)));
    EXPECT_TRUE(reports.Texts().empty());
}

TEST(GridCells, OtherKindsStayEmptyAndAreReported)
{
    for (const VARIANT& value : {Number(VT_EMPTY, 0), Number(VT_NULL, 0), Number(VT_I4, 5),
                                 Number(VT_BOOL, 1), Number(VT_R4, 1)}) {
        ReportLog reports;
        EXPECT_EQ("", Cell(value)) << value.vt;
        EXPECT_EQ(std::vector<std::string>{""}, reports.Texts()) << value.vt;
    }
}

// ---- texts

TEST(GridCells, ALongTextIsCutBetweenItsQuotationMarks)
{
    const string_t sLong(300, OLECHAR('x'));
    EXPECT_EQ("\"" + std::string(256, 'x') + "\"", Cell(Variant::FromText(sLong), kCellBuffer));
    const string_t sFits(256, OLECHAR('y'));
    EXPECT_EQ("\"" + std::string(256, 'y') + "\"", Cell(Variant::FromText(sFits), kCellBuffer));
}

TEST(GridCells, SmallBuffersAreNotOverrun)
{
    const Variant text = Variant::FromText(OLESTR("abc"));
    const char* const kTexts[] = {nullptr, "", "", "\"\"", "\"a\"", "\"ab\"", "\"abc\""};
    for (std::size_t n = 1; n < std::size(kTexts); ++n)
        EXPECT_EQ(kTexts[n], Cell(text, n)) << n;
    EXPECT_EQ("1", Cell(Number(VT_I8, 12345), 2));
    EXPECT_EQ("1234", Cell(Number(VT_I8, 12345), 5));
    EXPECT_EQ("1/13", Cell(Variant::FromDate(37634), 5));
    std::vector<OLECHAR> none;
    WriteText(OLESTR("a"), none);
}

// ---- dates

TEST(GridCells, ADateStandsAlone)
{
    EXPECT_EQ("7/6/2009", DateCell(40000));
    EXPECT_EQ("7/6/2009", DateCell(40000.5));
    EXPECT_EQ("1/1/1900", DateCell(2));
    EXPECT_EQ("12/31/2078", DateCell(65380.75));
}

TEST(GridCells, ATimeHasNoDate)
{
    EXPECT_EQ("12:00:00 AM", DateCell(0));
    EXPECT_EQ("9:30:00 AM", DateCell(kHalfPastNine));
    EXPECT_EQ("12:00:00 PM", DateCell(0.5));
    EXPECT_EQ("11:59:59 PM", DateCell(86399.0 / 86400));
}

TEST(GridCells, MillisecondsStandBeforeTheHalfOfTheDay)
{
    EXPECT_EQ("12:00:00.250 PM", DateCell(0.5 + 250 * kMillisecond));
    EXPECT_EQ("9:30:00.999 AM", DateCell(kHalfPastNine + 999 * kMillisecond));
}

TEST(GridCells, MillisecondsHaveNoLeadingZeros)
{
    EXPECT_EQ("9:30:00.50 AM", DateCell(kHalfPastNine + 50 * kMillisecond));
    EXPECT_EQ("9:30:00.1 AM", DateCell(kHalfPastNine + kMillisecond));
}

TEST(GridCells, LessThanAMillisecondDoesNotShow)
{
    EXPECT_EQ("9:30:00 AM", DateCell(kHalfPastNine + 0.5 * kMillisecond));
}

TEST(GridCells, NegativeValuesAreReadTenDaysOn)
{
    EXPECT_EQ("12:00:00 PM", DateCell(-0.5));
    EXPECT_EQ("1/7/1900", DateCell(-2.0)); // day 8
}

TEST(GridCells, ValuesThatTheCalendarRefusesAreEmpty)
{
    for (const DATE date : {1.0, 1.5, 65381.0, 65382.0, 1e300, -9.0, -10.5, -1e300,
                            std::numeric_limits<double>::quiet_NaN()})
        EXPECT_EQ("", DateCell(date)) << date;
}

// ---- pages

class GridPages : public GridTest
{
protected:
    std::string Text(const GridPage& page, LONG nRecord, LONG nField)
    {
        std::vector<OLECHAR> buffer(kCellBuffer, OLECHAR('#'));
        page.WriteCell(nRecord, nField, buffer);
        return Utf8(buffer.data());
    }
    static Variant Text(const char* pszText) { return Variant::FromText(Wide(pszText)); }
};

TEST_F(GridPages, HaveTheRecordsOfTheFileByNumber)
{
    ULONG nAsked = 0;
    m_pParser->m_onPage = [&](VARIANT* v, ULONG nFrom, ULONG nCount) {
        nAsked = nCount;
        *v = GridBlock(nFrom, {{Text("a"), Text("b")}, {Text("c"), Text("d")}}).detach();
        return S_OK;
    };
    GridPage page;
    EXPECT_EQ("", Text(page, 0, 0));
    page.Fetch(*m_pParser.get(), 1000, 1001);
    EXPECT_EQ(2u, nAsked);
    EXPECT_EQ("\"a\"", Text(page, 1000, 0));
    EXPECT_EQ("\"b\"", Text(page, 1000, 1));
    EXPECT_EQ("\"c\"", Text(page, 1001, 0));
    EXPECT_EQ("\"d\"", Text(page, 1001, 1));
    for (const auto& [nRecord, nField] :
         {std::pair<LONG, LONG>{999, 0}, {1002, 0}, {1000, 2}, {1000, -1}, {0, 0}, {-1, 0}})
        EXPECT_EQ("", Text(page, nRecord, nField)) << nRecord << ',' << nField;
    page.Clear();
    EXPECT_EQ("", Text(page, 1000, 0));
}

TEST_F(GridPages, AreEmptyAfterAFailure)
{
    GridPage page;
    bool bFail = false;
    m_pParser->m_onPage = [&](VARIANT* v, ULONG nFrom, ULONG) {
        if (bFail)
            return E_FAIL;
        *v = GridBlock(nFrom, {{Text("a")}}).detach();
        return S_OK;
    };
    page.Fetch(*m_pParser.get(), 0, 0);
    EXPECT_EQ("\"a\"", Text(page, 0, 0));
    bFail = true;
    page.Fetch(*m_pParser.get(), 0, 0);
    EXPECT_EQ("", Text(page, 0, 0));
    EXPECT_TRUE(m_reports.Texts().empty());
}

TEST_F(GridPages, AreEmptyForARangeThatIsNone)
{
    bool bAsked = false;
    m_pParser->m_onPage = [&](VARIANT*, ULONG, ULONG) {
        bAsked = true;
        return E_FAIL;
    };
    GridPage page;
    page.Fetch(*m_pParser.get(), 5, 4);
    page.Fetch(*m_pParser.get(), -1, 4);
    EXPECT_FALSE(bAsked);
}

TEST_F(GridPages, OfAnotherShapeHaveNoCells)
{
    GridPage page;
    m_pParser->m_onPage = [](VARIANT* v, ULONG, ULONG) {
        *v = Variant::FromArray(SafeArrayCreateVector(VT_VARIANT, 0, 1), VT_VARIANT).detach();
        return S_OK;
    };
    page.Fetch(*m_pParser.get(), 0, 0);
    EXPECT_EQ("", Text(page, 0, 0));
    m_pParser->m_onPage = [](VARIANT* v, ULONG, ULONG) {
        *v = Variant::FromText(OLESTR("a")).detach();
        return S_OK;
    };
    page.Fetch(*m_pParser.get(), 0, 0);
    EXPECT_EQ("", Text(page, 0, 0));
}

TEST_F(GridPages, CellsBeyondTheHeadingsStayEmpty)
{
    MakeView();
    m_pParser->m_onPage = [&](VARIANT* v, ULONG nFrom, ULONG) {
        *v = GridBlock(nFrom, {{Text("a"), Text("b")}}).detach();
        return S_OK;
    };
    m_pRecords->m_columns = {"Open"};
    PutParser();
    m_pGrid->CreateFields();
    m_pView->Events().OnRange(0, 0);
    EXPECT_EQ("\"a\"", m_pView->CellText(0, 0));
    EXPECT_EQ("", m_pView->CellText(0, 1));
    m_pView->Events().CellText(0, 0, nullptr, 5);
    EXPECT_EQ("", m_pView->CellText(0, 0, 1));
}

TEST_F(GridPages, AreFetchedAnewForEachPaint)
{
    MakeView();
    int nPaint = 0;
    m_pParser->m_onPage = [&](VARIANT* v, ULONG nFrom, ULONG) {
        *v = GridBlock(nFrom, {{Text(std::to_string(++nPaint).c_str())}}).detach();
        return S_OK;
    };
    m_pRecords->m_columns = {"Open"};
    PutParser();
    m_pGrid->CreateFields();
    m_pView->Events().OnRange(0, 0);
    EXPECT_EQ("\"1\"", m_pView->CellText(0, 0));
    m_pView->Events().OnRange(0, 0);
    EXPECT_EQ("\"2\"", m_pView->CellText(0, 0));
}

} // namespace
