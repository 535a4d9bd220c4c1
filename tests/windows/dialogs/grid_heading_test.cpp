// Presses on the headings of a grid, and the menus that they open. Menus are driven by keys,
// which are posted to the window that owns them.

#include "src/UIComponents/windows/PopupMenu.h"
#include "tests/windows/SystemObjects.h"
#include "tests/windows/dialogs/GridFixture.h"
#include "tests/windows/dialogs/MenuSteps.h"

using namespace grid_test;

namespace {

HMENU MenuOf(HWND hMenuWindow)
{
    return reinterpret_cast<HMENU>(SendMessageW(hMenuWindow, MN_GETHMENU, 0, 0));
}

// A menu as a line: "text", "text*" for one that is checked, "text(...)" for one with items, "|"
// for a line between items.
std::wstring Described(HMENU hMenu)
{
    std::wstring sText;
    for (int n = 0; n < GetMenuItemCount(hMenu); ++n) {
        wchar_t szItem[64] = L"";
        GetMenuStringW(hMenu, static_cast<UINT>(n), szItem, 64, MF_BYPOSITION);
        const UINT nState = GetMenuState(hMenu, static_cast<UINT>(n), MF_BYPOSITION);
        const HMENU hSub = GetSubMenu(hMenu, n);
        sText += n ? L" " : L"";
        if (!hSub && (nState & MF_SEPARATOR))
            sText += L"|";
        else
            sText += szItem + std::wstring(!hSub && (nState & MF_CHECKED) ? L"*" : L"");
        if (hSub)
            sText += L"(" + Described(hSub) + L")";
    }
    return sText;
}

const ViewMenuItem kDates[] = {
    {L"*y/*m/*d", 2200}, {L"*d&*m", 2201, true}, {}, {L"Custom...", 2202}};
const ViewMenuItem kTypes[] = {
    {L"Undefined", 2000}, {L"Symbol", 2001, true}, {}, {L"Date", 0, false, kDates}, {},
    {L"Open", 2003}};

class GridHeading : public GridWindowTest
{
protected:
    GridHeading() { ShowRows(3); }

    static bool IsOpen() { return MenuWindows().size() == 1; }
    MenuSteps::Step Keys(std::vector<UINT> keys, std::size_t nMenus = 1) const
    {
        return MenuKeys(m_hGrid, std::move(keys), nMenus);
    }
    RECT HeadingOnScreen(LONG nColumn) const
    {
        RECT place{};
        SendMessageW(m_hHeader, HDM_GETITEMRECT, static_cast<WPARAM>(nColumn),
                     reinterpret_cast<LPARAM>(&place));
        MapWindowPoints(m_hHeader, nullptr, reinterpret_cast<POINT*>(&place), 2);
        return place;
    }
    void PressHeading(LONG x, LONG y = 5) const
    {
        SendMessageW(m_hHeader, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(x, y));
    }
    bool IsPressed(LONG nColumn) const
    {
        const Print picture(m_hHeader);
        const LONG x = nColumn == 0 ? 40 : 110;
        return picture.At(x, 3) != picture.At(nColumn == 0 ? 110 : 40, 3);
    }
};

} // namespace

// ---- presses

TEST_F(GridHeading, APressIsReportedWithItsColumn)
{
    PressHeading(30);
    PressHeading(100);
    EXPECT_EQ((std::vector<LONG>{0, 1}), m_rows.m_pressed);
}

TEST_F(GridHeading, APressOnADividerOrBesideTheHeadingsIsNone)
{
    PressHeading(80); // where the first column ends
    SendMessageW(m_hHeader, WM_LBUTTONUP, 0, MAKELPARAM(80, 5));
    PressHeading(200);
    SendMessageW(m_hHeader, WM_LBUTTONUP, 0, MAKELPARAM(200, 5));
    EXPECT_TRUE(m_rows.m_pressed.empty());
}

TEST_F(GridHeading, TheHeadingIsPressedWhileThePressIsHandled)
{
    bool bPressed = false;
    m_rows.m_onPress = [&](LONG nColumn) {
        UpdateWindow(m_hHeader);
        bPressed = IsPressed(nColumn);
    };
    PressHeading(30);
    EXPECT_TRUE(bPressed);
    EXPECT_TRUE(GetUpdateRect(m_hHeader, nullptr, FALSE));
    EXPECT_FALSE(IsPressed(0));
    EXPECT_NE(m_hHeader, GetCapture());
}

TEST_F(GridHeading, APressIsNoneInTextMode)
{
    m_pGrid->ClearColumns();
    ShowLines(3);
    PressHeading(30);
    EXPECT_TRUE(m_rows.m_pressed.empty());
}

TEST_F(GridHeading, TheWindowMayEndDuringAPress)
{
    m_rows.m_onPress = [this](LONG) { DestroyWindow(m_hHost); };
    PressHeading(30);
    EXPECT_EQ(1, m_rows.m_nClosed);
    EXPECT_FALSE(IsWindow(m_hHeader));
}

// ---- menus

// As before a file is picked.
TEST_F(GridHeading, ARowWithoutHeadingsIsDrawnToo)
{
    constexpr COLORREF kUntouched = RGB(255, 0, 255);
    m_pGrid->ClearColumns();
    const HDC hScreen = GetDC(nullptr);
    const HDC hdc = CreateCompatibleDC(hScreen);
    const HBITMAP hBitmap = CreateCompatibleBitmap(hScreen, 20, 20);
    const HGDIOBJ hBefore = SelectObject(hdc, hBitmap);
    SetPixel(hdc, 8, 8, kUntouched);
    EXPECT_TRUE(SendMessageW(m_hHeader, WM_ERASEBKGND, reinterpret_cast<WPARAM>(hdc), 0));
    EXPECT_NE(GetPixel(hdc, 8, 8), kUntouched);
    SelectObject(hdc, hBefore);
    DeleteObject(hBitmap);
    DeleteDC(hdc);
    ReleaseDC(nullptr, hScreen);
}

TEST_F(GridHeading, AMenuHasTheItemsTold)
{
    std::wstring sMenu;
    const MenuSteps steps({[&] {
                               if (!IsOpen())
                                   return false;
                               sMenu = Described(MenuOf(MenuWindows()[0]));
                               return true;
                           },
                           Keys({VK_ESCAPE})});
    EXPECT_EQ(0, m_pGrid->TrackMenu(kTypes, 1));
    EXPECT_TRUE(steps.AllRan());
    EXPECT_EQ(L"Undefined Symbol* | Date(*y/*m/*d *d&&*m* | Custom...) | Open", sMenu);
}

TEST_F(GridHeading, AnItemIsChosenByKeys)
{
    const MenuSteps steps({Keys({VK_DOWN, VK_DOWN, VK_RETURN})});
    EXPECT_EQ(2001, m_pGrid->TrackMenu(kTypes, 0));
}

TEST_F(GridHeading, AnItemOfAMenuWithinTheMenuIsChosenByKeys)
{
    const MenuSteps steps(
        {Keys({VK_DOWN, VK_DOWN, VK_DOWN, VK_RIGHT}), Keys({VK_DOWN, VK_RETURN}, 2)});
    EXPECT_EQ(2201, m_pGrid->TrackMenu(kTypes, 0));
    EXPECT_TRUE(steps.AllRan());
}

TEST_F(GridHeading, AMenuOpensBelowItsHeadingWithTheRightBordersFlush)
{
    m_pGrid->ClearColumns();
    ShowRows(3, {260, 20});
    RECT menu{};
    const MenuSteps steps(
        {[&] { return IsOpen() && GetWindowRect(MenuWindows()[0], &menu); }, Keys({VK_ESCAPE})});
    m_pGrid->TrackMenu(kTypes, 0);
    const RECT heading = HeadingOnScreen(0);
    EXPECT_EQ(heading.right, menu.right);
    EXPECT_EQ(heading.bottom, menu.top);
}

TEST_F(GridHeading, AMenusEdgeIsPulledIntoTheWorkArea)
{
    RECT work{}, menu{};
    SystemParametersInfoW(SPI_GETWORKAREA, 0, &work, 0);
    SetWindowPos(m_hHost, nullptr, work.right - 40, 40, 0, 0, SWP_NOSIZE | SWP_NOZORDER);
    const MenuSteps steps(
        {[&] { return IsOpen() && GetWindowRect(MenuWindows()[0], &menu); }, Keys({VK_ESCAPE})});
    ASSERT_GT(HeadingOnScreen(0).right, work.right);
    m_pGrid->TrackMenu(kTypes, 0);
    EXPECT_LE(menu.right, work.right);
    EXPECT_GT(menu.right, menu.left);
}

TEST_F(GridHeading, NothingIsChosenFromAMenuWithoutItemsOrAColumn)
{
    EXPECT_EQ(0, m_pGrid->TrackMenu({}, 0));
    EXPECT_EQ(0, m_pGrid->TrackMenu(kTypes, 2));
    EXPECT_EQ(0, m_pGrid->TrackMenu(kTypes, -1));
}

TEST_F(GridHeading, TheWindowMayEndWhileItsMenuIsOpen)
{
    LONG nId = -1;
    m_rows.m_onPress = [&](LONG nColumn) { nId = m_pGrid->TrackMenu(kTypes, nColumn); };
    const MenuSteps steps({[&] { return IsOpen() && DestroyWindow(m_hHost); }});
    PressHeading(30);
    EXPECT_EQ(0, nId);
    EXPECT_EQ(1, m_rows.m_nClosed);
    EXPECT_TRUE(MenuWindows().empty());
}

TEST_F(GridHeading, MenusLeaveNoObjects)
{
    const auto open = [this] {
        const MenuSteps steps({Keys({VK_ESCAPE})});
        m_pGrid->TrackMenu(kTypes, 0);
    };
    open();
    const unsigned nObjects = CountGdiObjects();
    const unsigned nMenus = CountUserObjects();
    for (int n = 0; n < 10; ++n)
        open();
    EXPECT_EQ(nObjects, CountGdiObjects());
    EXPECT_EQ(nMenus, CountUserObjects());
}
