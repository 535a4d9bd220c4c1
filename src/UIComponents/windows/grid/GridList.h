// GridList: the system's list of a grid: rows that it doesn't hold, in columns.
//
// Plain calls on one window. Rows and columns count from 0; places are in pixels of the list's
// client area. What the system refuses has no effect. All calls but PostRowCount come on the
// window's thread.
#pragma once

#include "platform/component.h"

namespace Hesperon::specifics::UILayer {

class GridList
{
public:
    // Fills no room yet. It has the font of the parent's parent. False if it can't be made.
    bool Create(HWND hParent);
    HWND Window() const { return m_hList; }
    HWND Header() const { return m_hHeader; }

    // ---- rows

    void SetRowCount(LONG nRows) const; // what is in sight stays there
    void PostRowCount(LONG nRows) const;
    void ScrollToTop() const;
    void Invalidate(bool bErase) const { InvalidateRect(m_hList, nullptr, bErase); }
    bool HasState(LONG nRow, UINT nState) const; // LVIS_SELECTED or LVIS_FOCUSED
    // Selects a row, gives it the focus among the rows, and scrolls it into sight.
    void ChooseRow(LONG nRow) const;
    LONG RowAt(LONG nTop) const; // that lies at this height; -1 for none

    // False for more rows than the system can place: it draws none of them, and looks at every
    // one at each attempt, which takes half a minute.
    bool CanDraw() const;

    // ---- columns

    void ShowHeader(bool bShow) const;
    void ClearColumns();
    // After the last one; an owner-drawn heading is drawn by whom follows the list's messages.
    bool AddColumn(const OLECHAR* pszText, LONG nWidth, bool bOwnerDrawn);
    LONG ColumnCount() const { return m_nColumns; }
    void SetColumnText(LONG nColumn, const OLECHAR* pszText) const;

    // ---- places

    LONG ClientWidth() const;
    RECT RowPlace(LONG nRow) const; // as wide as the client area
    RECT CellPlace(LONG nRow, LONG nColumn) const;

private:
    LRESULT Send(UINT nMessage, WPARAM wParam = 0, LPARAM lParam = 0) const
    {
        return SendMessageW(m_hList, nMessage, wParam, lParam);
    }

    HWND m_hList = nullptr;
    LONG m_nColumns = 0;
    HWND m_hHeader = nullptr; // hidden where no headings are shown
};

} // namespace Hesperon::specifics::UILayer
