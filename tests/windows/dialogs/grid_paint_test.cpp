// What a grid draws: rows of cells in the colours told, rows of text without headings, and the
// headings. Pictures are taken in memory.

#include "src/UIComponents/windows/grid/HeaderTheme.h"
#include "tests/windows/dialogs/GridFixture.h"

using namespace grid_test;
using Hesperon::specifics::UILayer::HeaderTheme;
using Hesperon::specifics::UILayer::HeadingLook;

namespace {

// Beside the text and the focus rectangle of a place.
POINT Corner(const RECT& place)
{
    return {place.right - 2, place.top + 1};
}

RECT Inner(RECT place, int nInset)
{
    InflateRect(&place, -nInset, -nInset);
    return place;
}

class GridPaint : public GridWindowTest
{
protected:
    // The background of a cell, and whether something is drawn on it.
    COLORREF Background(const Print& picture, LONG nRow, LONG nColumn)
    {
        const POINT at = Corner(CellPlace(nRow, nColumn));
        return picture.At(at.x, at.y);
    }
    bool HasText(const Print& picture, LONG nRow, LONG nColumn)
    {
        return picture.HasOther(Inner(CellPlace(nRow, nColumn), 2),
                                Background(picture, nRow, nColumn));
    }
    void PressAt(UINT nMessage, LONG x, LONG y) const { Send(nMessage, 0, MAKELPARAM(x, y)); }
    LONG Middle(LONG nRow) const { return (RowPlace(nRow).top + RowPlace(nRow).bottom) / 2; }
};

} // namespace

// ---- what is asked for

TEST_F(GridPaint, TellsTheRangeOnceAPaint)
{
    ShowRows(300);
    for (const LONG nFirst : {0L, 120L}) {
        Send(LVM_ENSUREVISIBLE, 299);
        Send(LVM_ENSUREVISIBLE, static_cast<WPARAM>(nFirst));
        UpdateWindow(m_hList);
        m_rows.m_ranges.clear();
        const Print picture(m_hList);
        ASSERT_EQ(1u, m_rows.m_ranges.size());
        EXPECT_EQ(nFirst, m_rows.m_ranges[0].first);
        EXPECT_NEAR(nFirst + PerPage(), m_rows.m_ranges[0].second, 1);
    }
}

TEST_F(GridPaint, AsksForTheCellsInSightOnly)
{
    ShowRows(300);
    Send(LVM_ENSUREVISIBLE, 200);
    UpdateWindow(m_hList);
    m_rows.m_asked.clear();
    const Print picture(m_hList);
    ASSERT_FALSE(m_rows.m_asked.empty());
    for (const auto& [nRow, nColumn] : m_rows.m_asked) {
        EXPECT_GE(nRow, First());
        EXPECT_LE(nRow, First() + PerPage());
    }
    for (LONG nRow = First(); nRow < First() + PerPage(); ++nRow)
        for (const LONG nColumn : {0L, 1L})
            EXPECT_TRUE(m_rows.m_asked.contains({nRow, nColumn})) << nRow << ',' << nColumn;
}

TEST_F(GridPaint, ARealPaintAsksToo)
{
    ShowRows(300);
    m_pGrid->Invalidate(true);
    m_rows.m_ranges.clear();
    UpdateWindow(m_hList);
    ASSERT_EQ(1u, m_rows.m_ranges.size());
    EXPECT_EQ(0, m_rows.m_ranges[0].first);
    EXPECT_GE(m_rows.m_ranges[0].second, PerPage() - 1);
}

// The system can't draw them, and would look for those in sight among all of them.
TEST_F(GridPaint, MoreRowsThanTheSystemCanPlaceAreNotAskedFor)
{
    ShowRows(0x7FFFFFFF);
    m_rows.m_ranges.clear();
    m_pGrid->Invalidate(true);
    UpdateWindow(m_hList);
    EXPECT_FALSE(GetUpdateRect(m_hList, nullptr, FALSE));
    {
        const Print picture(m_hList);
    }
    EXPECT_TRUE(m_rows.m_ranges.empty());
    m_pGrid->SetRowCount(100'000'000);
    UpdateWindow(m_hList);
    EXPECT_FALSE(m_rows.m_ranges.empty());
}

// ---- cells

TEST_F(GridPaint, ARowHasTheColourTold)
{
    ShowRows(10);
    m_rows.m_tinted = {2, 3};
    const Print picture(m_hList);
    for (LONG nRow = 0; nRow < 6; ++nRow)
        for (const LONG nColumn : {0L, 1L}) {
            EXPECT_EQ(nRow == 2 || nRow == 3 ? kTint : GetSysColor(COLOR_WINDOW),
                      Background(picture, nRow, nColumn))
                << nRow << ',' << nColumn;
            EXPECT_TRUE(HasText(picture, nRow, nColumn)) << nRow << ',' << nColumn;
        }
    EXPECT_EQ(GetSysColor(COLOR_WINDOW), picture.At(200, Middle(2))) << "beside the cells";
}

TEST_F(GridPaint, TheSelectedRowShowsWhetherTheListHasTheKeyboard)
{
    ShowRows(10);
    m_rows.m_tinted = {3};
    Choose(3);
    for (const bool bFocused : {true, false}) {
        Send(bFocused ? WM_SETFOCUS : WM_KILLFOCUS);
        EXPECT_TRUE(GetUpdateRect(m_hList, nullptr, FALSE));
        const Print picture(m_hList);
        const COLORREF colour = GetSysColor(bFocused ? COLOR_HIGHLIGHT : COLOR_BTNFACE);
        EXPECT_EQ(colour, Background(picture, 3, 0)) << bFocused;
        EXPECT_EQ(colour, Background(picture, 3, 1)) << bFocused;
        EXPECT_EQ(GetSysColor(COLOR_WINDOW), Background(picture, 4, 0));
    }
}

TEST_F(GridPaint, EachCellOfTheFocusedRowHasAFrame)
{
    ShowRows(10);
    m_rows.m_text = [](auto) { return string_t(); };
    m_rows.m_tinted = {1, 2};
    LVITEMW item{};
    item.state = item.stateMask = LVIS_FOCUSED;
    Send(LVM_SETITEMSTATE, 2, reinterpret_cast<LPARAM>(&item));
    const Print picture(m_hList);
    for (const LONG nColumn : {0L, 1L}) {
        EXPECT_TRUE(picture.HasOther(CellPlace(2, nColumn), kTint)) << nColumn;
        EXPECT_FALSE(picture.HasOther(Inner(CellPlace(2, nColumn), 1), kTint)) << nColumn;
        EXPECT_FALSE(picture.HasOther(CellPlace(1, nColumn), kTint)) << nColumn;
    }
}

TEST_F(GridPaint, ATextStaysInItsCell)
{
    ShowRows(10, {80, 60, 50});
    m_rows.m_tinted = {0, 1};
    for (const LONG nText : {0L, 1L}) {
        m_rows.m_text = [=](Rows::Cell cell) {
            return cell.second == nText ? string_t(400, L'W') : string_t();
        };
        const Print picture(m_hList);
        for (const LONG nColumn : {0L, 1L, 2L})
            EXPECT_EQ(nColumn == nText, picture.HasOther(CellPlace(1, nColumn), kTint)) << nColumn;
        // Two pixels around the text stay free, also where it was cut.
        const RECT cell = CellPlace(1, nText);
        EXPECT_FALSE(picture.HasOther({cell.left, cell.top, cell.left + 2, cell.bottom}, kTint));
        EXPECT_FALSE(picture.HasOther({cell.right - 2, cell.top, cell.right, cell.bottom}, kTint));
    }
}

TEST_F(GridPaint, ACellAsksForOneTextOfBoundedLength)
{
    ShowRows(1);
    {
        const Print picture(m_hList);
    }
    EXPECT_GE(m_rows.m_nMost, 259);
    EXPECT_LE(m_rows.m_nMost, 512);
}

TEST_F(GridPaint, AmpersandsAreCharacters)
{
    ShowRows(3);
    m_rows.m_text = [](Rows::Cell cell) {
        return string_t(cell.first == 0 ? L"&&" : cell.first == 1 ? L"&" : L"");
    };
    const Print picture(m_hList);
    const auto widthOf = [&](LONG nRow) {
        RECT place = Inner(CellPlace(nRow, 1), 2);
        const LONG nLeft = place.left;
        while (place.right > nLeft &&
               !picture.HasOther({place.right - 1, place.top, place.right, place.bottom},
                                 GetSysColor(COLOR_WINDOW)))
            --place.right;
        return place.right - nLeft;
    };
    EXPECT_GT(widthOf(1), 0);
    EXPECT_GT(widthOf(0), widthOf(1));
    EXPECT_EQ(0, widthOf(2));
}

// ---- rows without headings

TEST_F(GridPaint, ALineIsDrawnAcrossTheList)
{
    ShowLines(10);
    Choose(2);
    const LONG nRight = m_pGrid->ClientWidth() - 3;
    for (const bool bFocused : {true, false}) {
        Send(bFocused ? WM_SETFOCUS : WM_KILLFOCUS);
        const Print picture(m_hList);
        EXPECT_EQ(GetSysColor(bFocused ? COLOR_HIGHLIGHT : COLOR_BTNFACE),
                  picture.At(nRight, Middle(2)));
        EXPECT_EQ(GetSysColor(COLOR_WINDOW), picture.At(nRight, Middle(3)));
        EXPECT_TRUE(picture.HasOther(RowPlace(3), GetSysColor(COLOR_WINDOW)));
    }
}

TEST_F(GridPaint, ALineIsDrawnWhateverRoomItsColumnGot)
{
    EXPECT_TRUE(m_pGrid->ShowHeader(false));
    EXPECT_TRUE(m_pGrid->AddColumn(L"", -20, false));
    m_pGrid->SetRowCount(10);
    const Print picture(m_hList);
    RECT row = RowPlace(3);
    row.right = m_pGrid->ClientWidth();
    EXPECT_TRUE(picture.HasOther(row, GetSysColor(COLOR_WINDOW)));
}

TEST_F(GridPaint, ALineHasAFrameOnlyWhileTheListHasTheKeyboard)
{
    ShowLines(10);
    m_rows.m_text = [](auto) { return string_t(); };
    Choose(2);
    for (const bool bFocused : {true, false}) {
        Send(bFocused ? WM_SETFOCUS : WM_KILLFOCUS);
        const Print picture(m_hList);
        RECT row = RowPlace(2);
        row.right = m_pGrid->ClientWidth();
        EXPECT_EQ(bFocused,
                  picture.HasOther(row, GetSysColor(bFocused ? COLOR_HIGHLIGHT : COLOR_BTNFACE)));
    }
}

TEST_F(GridPaint, LinesArePaintedThroughABitmap)
{
    ShowLines(10);
    constexpr COLORREF kMark = RGB(10, 20, 30);
    const HDC hdc = GetDC(m_hList);
    SetPixel(hdc, 20, 20, kMark);
    EXPECT_EQ(TRUE, Send(WM_ERASEBKGND, reinterpret_cast<WPARAM>(hdc)));
    EXPECT_EQ(kMark, GetPixel(hdc, 20, 20)) << "nothing is erased on the screen";
    ReleaseDC(m_hList, hdc);
    m_pGrid->Invalidate(true);
    m_rows.m_ranges.clear();
    m_rows.m_asked.clear();
    UpdateWindow(m_hList);
    EXPECT_EQ(1u, m_rows.m_ranges.size());
    EXPECT_TRUE(m_rows.m_asked.contains({9, 0}));
    EXPECT_FALSE(GetUpdateRect(m_hList, nullptr, FALSE));
}

TEST_F(GridPaint, AChangeOfALinesStateDrawsTheWholeList)
{
    ShowLines(10);
    UpdateWindow(m_hList);
    Choose(2);
    RECT dirty{}, client{};
    GetUpdateRect(m_hList, &dirty, FALSE);
    GetClientRect(m_hList, &client);
    EXPECT_TRUE(EqualRect(&client, &dirty));
}

TEST_F(GridPaint, APressChoosesALineAnywhereOnIt)
{
    ShowLines(300);
    const LONG nBeside = m_pGrid->ClientWidth() - 3; // of the column
    LONG nRow = 1;
    for (const UINT nMessage : {WM_LBUTTONDOWN, WM_LBUTTONUP, WM_RBUTTONDOWN, WM_RBUTTONUP})
        for (const LONG x : {5L, nBeside}) {
            PressAt(nMessage, x, Middle(++nRow));
            EXPECT_TRUE(Has(nRow, LVIS_SELECTED)) << nMessage << ' ' << x;
            EXPECT_TRUE(Has(nRow, LVIS_FOCUSED)) << nMessage << ' ' << x;
        }
    EXPECT_EQ(m_hList, GetFocus());
}

TEST_F(GridPaint, APressScrollsALineIntoSight)
{
    ShowLines(300);
    const LONG nCut = PerPage(); // the row that the lower border cuts
    RECT client{};
    GetClientRect(m_hList, &client);
    const LONG y = client.bottom - 1;
    if (RowPlace(nCut).top > y)
        m_pGrid->Move({10, 10, 310, 215}); // none was cut
    GetClientRect(m_hList, &client);
    ASSERT_GT(RowPlace(PerPage()).bottom, client.bottom);
    PressAt(WM_LBUTTONDOWN, 5, client.bottom - 1);
    EXPECT_TRUE(Has(nCut, LVIS_SELECTED));
    EXPECT_EQ(1, First());
}

TEST_F(GridPaint, APressBelowTheLinesIsTheLists)
{
    ShowLines(3);
    Choose(1);
    PressAt(WM_LBUTTONDOWN, 5, RowPlace(2).bottom + 20);
    PressAt(WM_LBUTTONUP, 5, RowPlace(2).bottom + 20);
    EXPECT_FALSE(Has(0, LVIS_SELECTED) || Has(2, LVIS_SELECTED));
}

// ---- headings

TEST_F(GridPaint, AHeadingHasItsTextAndATriangle)
{
    m_pGrid->AddColumn(L"", 80, true);
    m_pGrid->AddColumn(L"Open", 80, true);
    const Print picture(m_hHeader);
    RECT first{}, second{};
    SendMessageW(m_hHeader, HDM_GETITEMRECT, 0, reinterpret_cast<LPARAM>(&first));
    SendMessageW(m_hHeader, HDM_GETITEMRECT, 1, reinterpret_cast<LPARAM>(&second));
    const auto looksLikeTheFirst = [&](LONG x) {
        for (LONG y = second.top; y < second.bottom; ++y)
            if (picture.At(second.left + x, y) != picture.At(first.left + x, y))
                return false;
        return true;
    };
    for (const LONG x : {0L, 1L, 2L, 3L, 60L, 73L, 79L})
        EXPECT_TRUE(looksLikeTheFirst(x)) << x;
    bool bText = false;
    for (LONG x = 4; x < 40; ++x)
        bText = bText || !looksLikeTheFirst(x);
    EXPECT_TRUE(bText);
    const LONG nCentre = (first.top + first.bottom) / 2;
    const COLORREF colour = GetSysColor(COLOR_BTNTEXT);
    EXPECT_EQ(colour, picture.At(first.right - 7, nCentre - 2));
    EXPECT_EQ(colour, picture.At(first.right - 7, nCentre + 2));
    EXPECT_EQ(colour, picture.At(first.right - 6, nCentre));
    EXPECT_EQ(colour, picture.At(first.right - 5, nCentre));
    EXPECT_NE(colour, picture.At(first.right - 5, nCentre - 2));
}

TEST_F(GridPaint, ADisabledGridsHeadingsAreGrey)
{
    m_pGrid->AddColumn(L"Open", 80, true);
    m_pGrid->SetEnabled(false);
    const Print picture(m_hHeader);
    RECT cell{};
    SendMessageW(m_hHeader, HDM_GETITEMRECT, 0, reinterpret_cast<LPARAM>(&cell));
    EXPECT_EQ(GetSysColor(COLOR_GRAYTEXT),
              picture.At(cell.right - 6, (cell.top + cell.bottom) / 2));
}

TEST_F(GridPaint, TheHeadingUnderTheMouseIsDrawnAnew)
{
    ShowRows(0);
    UpdateWindow(m_hHeader);
    ASSERT_FALSE(GetUpdateRect(m_hHeader, nullptr, FALSE));
    SendMessageW(m_hHeader, WM_MOUSEMOVE, 0, MAKELPARAM(30, 5));
    EXPECT_TRUE(GetUpdateRect(m_hHeader, nullptr, FALSE));
    UpdateWindow(m_hHeader);
    SendMessageW(m_hHeader, WM_MOUSEMOVE, 0, MAKELPARAM(31, 5));
    EXPECT_FALSE(GetUpdateRect(m_hHeader, nullptr, FALSE)) << "the same heading";
    SendMessageW(m_hHeader, WM_MOUSELEAVE, 0, 0);
    EXPECT_TRUE(GetUpdateRect(m_hHeader, nullptr, FALSE));
}

TEST_F(GridPaint, WithoutAThemeAHeadingIsAClassicButton)
{
    const HDC hdc = CreateCompatibleDC(nullptr);
    const HBITMAP hBitmap = CreateBitmap(40, 20, 1, 32, nullptr);
    const HGDIOBJ hBefore = SelectObject(hdc, hBitmap);
    const HeaderTheme none;
    const RECT cell = {0, 0, 40, 20};
    none.DrawFrame(hdc, cell, HeadingLook::Normal);
    EXPECT_EQ(GetSysColor(COLOR_BTNFACE), GetPixel(hdc, 20, 10));
    const COLORREF nRaised = GetPixel(hdc, 0, 10);
    none.DrawFrame(hdc, cell, HeadingLook::Pressed);
    EXPECT_NE(nRaised, GetPixel(hdc, 0, 10));
    SelectObject(hdc, hBefore);
    DeleteObject(hBitmap);
    DeleteDC(hdc);
}
