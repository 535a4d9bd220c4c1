// A grid's window over rows that a test makes up, and pictures of it in memory.
#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <set>
#include <utility>
#include <vector>

#include <commctrl.h>
#include <windows.h>

#include "src/UIComponents/windows/grid/GridWindow.h"

namespace grid_test {

using namespace IQRL_TabulexConverter;
using Hesperon::specifics::UILayer::GridWindow;

inline constexpr COLORREF kTint = RGB(200, 230, 250);

// Rows with a text in each cell, some of them tinted; writes down what is asked for.
class Rows final : public IGridEvents
{
public:
    using Cell = std::pair<LONG, LONG>; // row, column

    std::function<string_t(Cell)> m_text = [](Cell cell) {
        return L"r" + std::to_wstring(cell.first) + L"c" + std::to_wstring(cell.second);
    };
    std::set<LONG> m_tinted;
    std::function<void(LONG)> m_onPress; // may be empty

    std::vector<std::pair<LONG, LONG>> m_ranges;
    std::set<Cell> m_asked;
    std::vector<LONG> m_pressed;
    LONG m_nMost = 0; // the largest text that was asked for
    int m_nClosed = 0;

    void OnRange(LONG nFrom, LONG nTo) override { m_ranges.emplace_back(nFrom, nTo); }
    void CellText(LONG nRow, LONG nColumn, OLECHAR* pszText, LONG nMost) override
    {
        m_asked.insert({nRow, nColumn});
        m_nMost = std::max(m_nMost, nMost);
        lstrcpynW(pszText, m_text({nRow, nColumn}).c_str(), nMost);
    }
    ULONG RowColour(LONG nRow) override
    {
        return m_tinted.contains(nRow) ? kTint : GetSysColor(COLOR_WINDOW);
    }
    bool IsImported(LONG nRow) override { return m_tinted.contains(nRow); }
    void OnHeaderPress(LONG nColumn) override
    {
        m_pressed.push_back(nColumn);
        if (m_onPress)
            m_onPress(nColumn);
    }
    void OnClose() override { ++m_nClosed; }
};

// What a window draws of itself, on the window's colour and where no child covers it. It needs
// no screen.
class Print
{
public:
    explicit Print(HWND hWnd)
    {
        RECT client{};
        GetClientRect(hWnd, &client);
        m_hdc = CreateCompatibleDC(nullptr);
        BITMAPINFO info{};
        info.bmiHeader = {sizeof info.bmiHeader, client.right, -client.bottom, 1, 32, BI_RGB};
        void* pBits = nullptr;
        m_hBitmap = CreateDIBSection(m_hdc, &info, DIB_RGB_COLORS, &pBits, nullptr, 0);
        m_hBefore = SelectObject(m_hdc, m_hBitmap);
        FillRect(m_hdc, &client, GetSysColorBrush(COLOR_WINDOW));
        LeaveOutChildren(hWnd);
        SendMessageW(hWnd, WM_PRINTCLIENT, reinterpret_cast<WPARAM>(m_hdc), PRF_CLIENT);
        SelectClipRgn(m_hdc, nullptr); // or its pixels couldn't be read there
        GdiFlush();
    }
    ~Print()
    {
        SelectObject(m_hdc, m_hBefore);
        DeleteObject(m_hBitmap);
        DeleteDC(m_hdc);
    }
    Print(const Print&) = delete;
    Print& operator=(const Print&) = delete;

    COLORREF At(LONG x, LONG y) const { return GetPixel(m_hdc, x, y); }
    // Whether a place has a pixel of another colour.
    bool HasOther(const RECT& place, COLORREF colour) const
    {
        for (LONG y = place.top; y < place.bottom; ++y)
            for (LONG x = place.left; x < place.right; ++x)
                if (At(x, y) != colour)
                    return true;
        return false;
    }

private:
    void LeaveOutChildren(HWND hWnd) const
    {
        for (HWND h = GetWindow(hWnd, GW_CHILD); h; h = GetWindow(h, GW_HWNDNEXT)) {
            RECT place{};
            GetWindowRect(h, &place);
            MapWindowPoints(nullptr, hWnd, reinterpret_cast<POINT*>(&place), 2);
            if (IsWindowVisible(h))
                ExcludeClipRect(m_hdc, place.left, place.top, place.right, place.bottom);
        }
    }

    HDC m_hdc;
    HBITMAP m_hBitmap;
    HGDIOBJ m_hBefore;
};

// A grid of 300 by 200 pixels with headings, in a window of its own that isn't in front.
class GridWindowTest : public testing::Test
{
protected:
    GridWindowTest()
    {
        m_hHost = CreateWindowExW(0, L"STATIC", L"", WS_POPUP | WS_VISIBLE | WS_CLIPCHILDREN, 40,
                                  40, 320, 220, nullptr, nullptr, nullptr, nullptr);
        m_pGrid = GridWindow::Create(m_hHost, m_rows);
        m_hGrid = m_pGrid->Window();
        m_hList = m_pGrid->List();
        m_hHeader = reinterpret_cast<HWND>(SendMessageW(m_hList, LVM_GETHEADER, 0, 0));
        m_pGrid->Move({10, 10, 310, 210});
        EXPECT_TRUE(m_pGrid->ShowHeader(true));
    }
    ~GridWindowTest() override { DestroyWindow(m_hHost); }

    // As a presenter of records does it.
    void ShowRows(LONG nRows, std::vector<LONG> widths = {80, 60})
    {
        for (const LONG nWidth : widths)
            EXPECT_TRUE(m_pGrid->AddColumn(L"Heading", nWidth, true));
        m_pGrid->SetRowCount(nRows);
    }
    // As a presenter of lines does it.
    void ShowLines(LONG nRows)
    {
        EXPECT_TRUE(m_pGrid->ShowHeader(false));
        EXPECT_TRUE(m_pGrid->AddColumn(L"", m_pGrid->ClientWidth() - 20, false));
        m_pGrid->SetRowCount(nRows);
    }
    LRESULT Send(UINT nMessage, WPARAM wParam = 0, LPARAM lParam = 0) const
    {
        return SendMessageW(m_hList, nMessage, wParam, lParam);
    }
    LONG Count() const { return static_cast<LONG>(Send(LVM_GETITEMCOUNT)); }
    LONG First() const { return static_cast<LONG>(Send(LVM_GETTOPINDEX)); }
    LONG PerPage() const { return static_cast<LONG>(Send(LVM_GETCOUNTPERPAGE)); }
    bool Has(LONG nRow, UINT nState) const
    {
        return Send(LVM_GETITEMSTATE, static_cast<WPARAM>(nRow), nState) != 0;
    }
    void Choose(LONG nRow) const
    {
        LVITEMW item{};
        item.state = item.stateMask = LVIS_SELECTED | LVIS_FOCUSED;
        Send(LVM_SETITEMSTATE, static_cast<WPARAM>(nRow), reinterpret_cast<LPARAM>(&item));
    }
    // Of a row in the list, and of one of its cells.
    RECT RowPlace(LONG nRow) const
    {
        RECT place{};
        place.left = LVIR_BOUNDS;
        Send(LVM_GETITEMRECT, static_cast<WPARAM>(nRow), reinterpret_cast<LPARAM>(&place));
        return place;
    }
    RECT CellPlace(LONG nRow, LONG nColumn) const
    {
        RECT heading{};
        SendMessageW(m_hHeader, HDM_GETITEMRECT, static_cast<WPARAM>(nColumn),
                     reinterpret_cast<LPARAM>(&heading));
        const RECT row = RowPlace(nRow);
        return {heading.left, row.top, heading.right, row.bottom};
    }

    Rows m_rows;
    HWND m_hHost = nullptr;
    GridWindow* m_pGrid = nullptr;
    HWND m_hGrid = nullptr;
    HWND m_hList = nullptr;
    HWND m_hHeader = nullptr;
};

} // namespace grid_test
