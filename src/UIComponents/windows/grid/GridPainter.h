// GridPainter: draws the rows of a grid's list, when the list asks for it.
//
// With headings a row is drawn cell by cell, without them as one text across the list. Neither
// keeps anything: texts and colours are asked for at each paint. Used on the window's thread.
#pragma once

#include "interfaces/IGridView.h"
#include "src/UIComponents/windows/grid/GridList.h"

#include <commctrl.h>

namespace Hesperon::specifics::UILayer {

class GridPainter
{
public:
    // Of a list that outlives this object.
    explicit GridPainter(const GridList& list) : m_list(list) {}
    GridPainter(const GridPainter&) = delete;
    GridPainter& operator=(const GridPainter&) = delete;

    // Whether the list has the keyboard; the selected row looks accordingly.
    void SetFocused(bool bFocused) { m_bFocused = bFocused; }

    // Draws what an NM_CUSTOMDRAW of the list is about, and gives the answer to it.
    LRESULT OnCustomDraw(const NMLVCUSTOMDRAW& draw, IQRL_TabulexConverter::IGridEvents& events,
                         bool bHeadings);
    // Paints the list into a bitmap, and that onto the screen, so that nothing flickers.
    void PaintBuffered() const;
    // Paints nothing but the background.
    void PaintEmpty() const;

private:
    using IGridEvents = IQRL_TabulexConverter::IGridEvents;
    struct Colours
    {
        COLORREF nBack;
        COLORREF nText;
    };

    void BeginRow(LONG nRow, IGridEvents& events);
    void DrawCell(HDC hdc, LONG nRow, LONG nColumn, IGridEvents& events) const;
    void DrawRow(HDC hdc, LONG nRow, IGridEvents& events) const;

    const GridList& m_list;
    bool m_bFocused = false;
    Colours m_row{}; // of the row that is being drawn
};

} // namespace Hesperon::specifics::UILayer
