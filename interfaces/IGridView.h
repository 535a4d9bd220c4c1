// IGridView: a list of many rows of which a view draws those in sight.
//
// The view holds no rows. It tells the range that it is about to draw, and then asks for the
// text and the colour of each cell. Rows and columns count from 0. Unless a call says
// otherwise it comes on the thread of the dialog.
#pragma once

#include <span>

#include "interfaces/IControlsView.h"

namespace IQRL_TabulexConverter {

// A row of a menu. The texts and items belong to the caller.
struct ViewMenuItem
{
    const OLECHAR* pszText = nullptr; // null for a line between items
    LONG nId = 0;                     // of an item without items of its own
    bool bChecked = false;
    std::span<const ViewMenuItem> items; // of a menu within the menu
};
using ViewMenu = std::span<const ViewMenuItem>;

// Colours of the system, by its own numbers.
enum SystemColour : LONG
{
    ColourWindow = 5,
    ColourWindowText = 8,
    ColourHighlight = 13,
    ColourHighlightText = 14,
    ColourButtonFace = 15,
};

struct IGridEvents
{
    // The rows from nFrom to nTo, both of them, are about to be drawn.
    virtual void OnRange(LONG nFrom, LONG nTo) = 0;
    // Writes a cell's text with a terminator, at most nMost units in all.
    virtual void CellText(LONG nRow, LONG nColumn, OLECHAR* pszText, LONG nMost) = 0;
    // Background of a row that isn't selected: 0x00BBGGRR.
    virtual ULONG RowColour(LONG nRow) = 0;
    // Whether an import would take the row; RowColour is tinted then.
    virtual bool IsImported(LONG nRow) = 0;
    // The user pressed a column's heading; the view may ask for a menu meanwhile.
    virtual void OnHeaderPress(LONG nColumn) = 0;
    // The view goes; it isn't called again, and calls nothing again.
    virtual void OnClose() = 0;

protected:
    ~IGridEvents() = default;
};

struct IGridView
{
    virtual void Move(const ControlPlace& place) = 0; // in the pane that holds it
    virtual void SetEnabled(bool bEnabled) = 0;

    // ---- rows

    virtual void SetRowCount(LONG nRows) = 0; // what is in sight stays there
    // The same at the next dispatch of the grid's thread; from any thread. It may neither wait
    // nor call back.
    virtual void PostRowCount(LONG nRows) = 0;
    virtual void ScrollToTop() = 0;
    virtual void Invalidate(bool bErase) = 0; // draws all rows in sight anew, later

    // ---- columns

    // With or without a row of headings; false if the view can't.
    virtual bool ShowHeader(bool bShow) = 0;
    virtual void ClearColumns() = 0;
    // After the last one; bHeading says that the heading has a menu. False if that was refused.
    virtual bool AddColumn(const OLECHAR* pszText, LONG nWidth, bool bHeading) = 0;
    virtual LONG ColumnCount() = 0;
    virtual void SetColumnText(LONG nColumn, const OLECHAR* pszText) = 0;

    // ---- sizes

    virtual LONG HeadingWidth(const OLECHAR* pszText) = 0; // of the text in the heading's font
    virtual LONG EdgeWidth() = 0;                          // of the system's borders
    virtual LONG ClientWidth() = 0;

    // ---- looks

    virtual ULONG Colour(SystemColour colour) = 0; // 0x00BBGGRR
    // Opens a menu below a heading and gives the id of the item that was chosen; 0 for none.
    virtual LONG TrackMenu(ViewMenu menu, LONG nColumn) = 0;

protected:
    ~IGridView() = default;
};

} // namespace IQRL_TabulexConverter
