// The grid as a window: its list, its rows and columns, the keyboard, and its end.

#include <thread>

#include "tests/windows/SystemObjects.h"
#include "tests/windows/dialogs/GridFixture.h"
#include "tests/windows/dialogs/ModalDriver.h"

using namespace grid_test;

namespace {

LONG StyleOf(HWND hWnd, int nKind = GWL_STYLE)
{
    return GetWindowLongW(hWnd, nKind);
}

std::pair<LONG, LONG> SizeOf(HWND hWnd)
{
    RECT place{};
    GetWindowRect(hWnd, &place);
    return {place.right - place.left, place.bottom - place.top};
}

string_t TextOfHeading(HWND hHeader, WPARAM nColumn)
{
    wchar_t szText[64] = L"";
    HDITEMW item{};
    item.mask = HDI_TEXT;
    item.pszText = szText;
    item.cchTextMax = 64;
    SendMessageW(hHeader, HDM_GETITEMW, nColumn, reinterpret_cast<LPARAM>(&item));
    return szText;
}

} // namespace

// ---- the window

TEST_F(GridWindowTest, HoldsAListWithoutRowsOfItsOwn)
{
    const LONG nStyle = StyleOf(m_hList);
    for (const LONG nOne : {LVS_OWNERDATA, LVS_SHOWSELALWAYS, LVS_SINGLESEL, LVS_REPORT})
        EXPECT_EQ(nOne, nStyle & nOne);
    EXPECT_TRUE(Send(LVM_GETEXTENDEDLISTVIEWSTYLE) & LVS_EX_FULLROWSELECT);
    EXPECT_EQ(m_hGrid, GetParent(m_hList));
}

TEST_F(GridWindowTest, FillsItselfWithTheList)
{
    EXPECT_EQ(std::pair(300L, 200L), SizeOf(m_hGrid));
    EXPECT_EQ(std::pair(300L, 200L), SizeOf(m_hList));
    m_pGrid->Move({0, 0, 120, 90});
    EXPECT_EQ(std::pair(120L, 90L), SizeOf(m_hList));
}

TEST_F(GridWindowTest, HasTheFontOfItsParent)
{
    const HWND hPane = CreateWindowExW(0, L"LISTBOX", L"", WS_CHILD, 0, 0, 9, 9, m_hHost, nullptr,
                                       nullptr, nullptr);
    const auto hFont = reinterpret_cast<WPARAM>(GetStockObject(SYSTEM_FIXED_FONT));
    SendMessageW(hPane, WM_SETFONT, hFont, FALSE);
    Rows rows;
    const GridWindow* const pGrid = GridWindow::Create(hPane, rows);
    ASSERT_TRUE(pGrid);
    EXPECT_EQ(hFont, static_cast<WPARAM>(SendMessageW(pGrid->List(), WM_GETFONT, 0, 0)));
}

TEST_F(GridWindowTest, TheTabKeyGetsIn)
{
    EXPECT_TRUE(StyleOf(m_hGrid, GWL_EXSTYLE) & WS_EX_CONTROLPARENT);
    EXPECT_EQ(m_hList, GetNextDlgTabItem(m_hHost, nullptr, FALSE));
}

TEST_F(GridWindowTest, PassesTheFocusOnToItsList)
{
    SetFocus(m_hGrid);
    EXPECT_EQ(m_hList, GetFocus());
    SendMessageW(m_hGrid, WM_SETFOCUS, 0, 0);
    EXPECT_EQ(m_hList, GetFocus());
}

// What is typed into a list would jump to the row that a search gives.
TEST_F(GridWindowTest, ASearchFindsNoRow)
{
    ShowRows(10);
    LVFINDINFOW find{};
    find.flags = LVFI_STRING;
    find.psz = L"r4c0";
    const auto at = reinterpret_cast<LPARAM>(&find);
    EXPECT_EQ(-1, Send(LVM_FINDITEMW, static_cast<WPARAM>(-1), at));
}

TEST_F(GridWindowTest, ADisabledOneTakesNoInput)
{
    m_pGrid->SetEnabled(false);
    EXPECT_FALSE(IsWindowEnabled(m_hList));
    m_pGrid->SetEnabled(true);
    EXPECT_TRUE(IsWindowEnabled(m_hList));
}

TEST_F(GridWindowTest, CantBeMadeInAWindowThatIsGone)
{
    const HWND hGone =
        CreateWindowExW(0, L"STATIC", L"", 0, 0, 0, 9, 9, nullptr, nullptr, nullptr, nullptr);
    DestroyWindow(hGone);
    Rows rows;
    EXPECT_FALSE(GridWindow::Create(hGone, rows));
    EXPECT_EQ(0, rows.m_nClosed);
}

// ---- rows

TEST_F(GridWindowTest, HasAsManyRowsAsItIsTold)
{
    for (const LONG nRows : {10L, 300L, 0x7FFFFFFFL, 0L}) {
        m_pGrid->SetRowCount(nRows);
        EXPECT_EQ(nRows, Count());
    }
}

TEST_F(GridWindowTest, ANewCountKeepsTheRowsInSight)
{
    ShowRows(300);
    Send(LVM_ENSUREVISIBLE, 200);
    const LONG nFirst = First();
    ASSERT_GT(nFirst, 100);
    m_pGrid->SetRowCount(400);
    EXPECT_EQ(nFirst, First());
    m_pGrid->ScrollToTop();
    EXPECT_EQ(0, First());
}

TEST_F(GridWindowTest, ACountOfAnotherThreadComesWithTheMessages)
{
    ShowRows(10);
    for (const LONG nRows : {300L, 0x7FFFFFFFL}) {
        const LONG nBefore = Count();
        std::thread([this, nRows] { m_pGrid->PostRowCount(nRows); }).join();
        EXPECT_EQ(nBefore, Count());
        EXPECT_TRUE(PumpUntil([=, this] { return Count() == nRows; }));
    }
}

TEST_F(GridWindowTest, InvalidRowsAreDrawnLater)
{
    ShowRows(10);
    UpdateWindow(m_hList);
    ASSERT_FALSE(GetUpdateRect(m_hList, nullptr, FALSE));
    m_pGrid->Invalidate(false);
    EXPECT_TRUE(GetUpdateRect(m_hList, nullptr, FALSE));
}

TEST_F(GridWindowTest, TheListIsToldTheTextOfACell)
{
    ShowRows(10);
    wchar_t szText[64] = L"";
    LVITEMW item{};
    item.iSubItem = 1;
    item.pszText = szText;
    item.cchTextMax = 64;
    Send(LVM_GETITEMTEXTW, 7, reinterpret_cast<LPARAM>(&item));
    EXPECT_EQ(string_t(L"r7c1"), szText);
}

// ---- columns

TEST_F(GridWindowTest, ColumnsStandOneAfterTheOther)
{
    ShowRows(0, {80, 60, 100});
    EXPECT_EQ(3, m_pGrid->ColumnCount());
    EXPECT_EQ(60, Send(LVM_GETCOLUMNWIDTH, 1));
    m_pGrid->SetColumnText(1, L"\u65e5\u671f");
    EXPECT_EQ(L"\u65e5\u671f", TextOfHeading(m_hHeader, 1));
    EXPECT_EQ(L"Heading", TextOfHeading(m_hHeader, 2));
    m_pGrid->ClearColumns();
    EXPECT_EQ(0, m_pGrid->ColumnCount());
}

TEST_F(GridWindowTest, AHeadingWithAMenuIsDrawnByTheGrid)
{
    EXPECT_TRUE(m_pGrid->AddColumn(L"a", 50, true));
    EXPECT_TRUE(m_pGrid->AddColumn(L"b", 50, false));
    for (const bool bDrawn : {true, false}) {
        HDITEMW item{};
        item.mask = HDI_FORMAT;
        SendMessageW(m_hHeader, HDM_GETITEMW, bDrawn ? 0 : 1, reinterpret_cast<LPARAM>(&item));
        EXPECT_EQ(bDrawn, (item.fmt & HDF_OWNERDRAW) != 0);
    }
}

TEST_F(GridWindowTest, HeadingsGoInTextModeAndComeBack)
{
    ShowRows(300);
    const LONG nFewer = PerPage();
    EXPECT_TRUE(IsWindowVisible(m_hHeader));
    m_pGrid->ClearColumns();
    ShowLines(300);
    EXPECT_FALSE(IsWindowVisible(m_hHeader));
    EXPECT_EQ(0, RowPlace(0).top);
    EXPECT_GT(PerPage(), nFewer);
    EXPECT_TRUE(m_pGrid->ShowHeader(true));
    EXPECT_TRUE(IsWindowVisible(m_hHeader));
    EXPECT_EQ(nFewer, PerPage());
}

// ---- sizes and colours

TEST_F(GridWindowTest, MeasuresTextsInTheHeadingsFont)
{
    const LONG nOne = m_pGrid->HeadingWidth(L"W");
    EXPECT_GT(nOne, 0);
    EXPECT_EQ(10 * nOne, m_pGrid->HeadingWidth(L"WWWWWWWWWW"));
    EXPECT_EQ(0, m_pGrid->HeadingWidth(L""));
    SendMessageW(m_hList, WM_SETFONT, reinterpret_cast<WPARAM>(GetStockObject(ANSI_FIXED_FONT)), 0);
    EXPECT_EQ(m_pGrid->HeadingWidth(L"W"), m_pGrid->HeadingWidth(L"i"));
}

TEST_F(GridWindowTest, GivesTheSizesAndColoursOfTheSystem)
{
    RECT client{};
    GetClientRect(m_hList, &client);
    EXPECT_EQ(client.right, m_pGrid->ClientWidth());
    EXPECT_EQ(GetSystemMetrics(SM_CXEDGE), m_pGrid->EdgeWidth());
    EXPECT_EQ(GetSysColor(COLOR_HIGHLIGHT), m_pGrid->Colour(ColourHighlight));
    EXPECT_EQ(GetSysColor(COLOR_BTNFACE), m_pGrid->Colour(ColourButtonFace));
}

TEST_F(GridWindowTest, AnotherThemeHasEverythingDrawnAnew)
{
    ShowRows(10);
    for (const UINT nMessage : {WM_THEMECHANGED, WM_SYSCOLORCHANGE}) {
        RedrawWindow(m_hGrid, nullptr, nullptr, RDW_VALIDATE | RDW_ALLCHILDREN);
        UpdateWindow(m_hHeader);
        ASSERT_FALSE(GetUpdateRect(m_hList, nullptr, FALSE));
        SendMessageW(m_hGrid, nMessage, 0, 0);
        EXPECT_TRUE(GetUpdateRect(m_hList, nullptr, FALSE)) << nMessage;
        EXPECT_TRUE(GetUpdateRect(m_hHeader, nullptr, FALSE)) << nMessage;
    }
}

// ---- the end

TEST_F(GridWindowTest, ClosesOnceWithItsWindow)
{
    ShowRows(10);
    DestroyWindow(m_hGrid);
    EXPECT_EQ(1, m_rows.m_nClosed);
    EXPECT_FALSE(IsWindow(m_hList));
    DestroyWindow(m_hHost);
    EXPECT_EQ(1, m_rows.m_nClosed);
}

TEST_F(GridWindowTest, ClosesWithItsParent)
{
    ShowRows(10);
    DestroyWindow(m_hHost);
    EXPECT_EQ(1, m_rows.m_nClosed);
}

// The first ones may load what the system keeps. A hidden window's children are made faster.
TEST_F(GridWindowTest, AThousandLeaveNothing)
{
    ShowWindow(m_hHost, SW_HIDE);
    const auto makeOne = [this](bool bHeadings) {
        Rows rows;
        GridWindow* const pGrid = GridWindow::Create(m_hHost, rows);
        pGrid->ShowHeader(bHeadings);
        pGrid->AddColumn(L"Heading", 50, bHeadings);
        pGrid->SetRowCount(3);
        pGrid->Move({0, 0, 100, 100});
        UpdateWindow(pGrid->List());
        {
            const Print picture(pGrid->List());
        }
        DestroyWindow(pGrid->Window());
        return rows.m_nClosed;
    };
    makeOne(true);
    makeOne(false);
    const unsigned nObjects = CountGdiObjects();
    const unsigned nWindows = CountWindows();
    for (int n = 0; n < 1000; ++n)
        ASSERT_EQ(1, makeOne(n % 2 == 0));
    EXPECT_EQ(nObjects, CountGdiObjects());
    EXPECT_EQ(nWindows, CountWindows());
}
