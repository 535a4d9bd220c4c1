// GridView: the component's list of a file's lines or records, a screenful at a time.
//
// Each screenful is one OnRange and then the texts of its cells, which decide how wide the
// columns are; a column only grows until the component makes the columns anew. The number of a
// row stands before it, and in a grid with headings "#" marks the rows that will be imported.
//
// One row is the current one, and one column, whose heading opens a menu. All calls on one
// thread but PostRowCount.
#pragma once

#include <atomic>
#include <string>
#include <vector>

#include "interfaces/IGridView.h"
#include "tools/tabulex/import/terminal/Desk.h"

namespace tabulex {

class GridView final : public IQRL_TabulexConverter::IGridView
{
public:
    // Both outlive the grid, the events until Close.
    GridView(Desk& desk, IQRL_TabulexConverter::IGridEvents& events);
    ~GridView() = default;

    // Tells the end, after which the grid stays empty.
    void Close();

    void Draw(Canvas& canvas, const Rect& rect, bool bFocused);
    // False for a key that means nothing in a grid.
    bool Handle(const Input& input);
    // Opens the menu of the current column; false where it has none.
    bool OpenMenu();
    // Takes the count that was posted last.
    bool TakePosted();

    LONG RowCount() const { return m_nRows; }
    LONG CurrentRow() const { return m_nCurrent; }
    bool HasHeadings() const { return m_bHeader && !m_columns.empty(); }

    // ---- IGridView

    void Move(const IQRL_TabulexConverter::ControlPlace&) override {}
    void SetEnabled(bool bEnabled) override { m_bEnabled = bEnabled; }
    void SetRowCount(LONG nRows) override;
    void PostRowCount(LONG nRows) override { m_nPosted = nRows; }
    void ScrollToTop() override;
    void Invalidate(bool) override { m_desk.Invalidate(); }
    bool ShowHeader(bool bShow) override;
    void ClearColumns() override;
    bool AddColumn(const OLECHAR* pszText, LONG nWidth, bool bHeading) override;
    LONG ColumnCount() override { return static_cast<LONG>(m_columns.size()); }
    void SetColumnText(LONG nColumn, const OLECHAR* pszText) override;
    LONG HeadingWidth(const OLECHAR* pszText) override;
    LONG EdgeWidth() override { return 0; }
    LONG ClientWidth() override { return m_rect.nColumns; }
    ULONG Colour(IQRL_TabulexConverter::SystemColour colour) override;
    LONG TrackMenu(IQRL_TabulexConverter::ViewMenu menu, LONG nColumn) override;

private:
    struct Column
    {
        std::string sText;
        bool bMenu;
        int nWidth;   // cells, the widest so far
        Rect heading; // where it was drawn last
    };

    LONG RowsInSight() const;
    void GoTo(LONG nRow);
    void AskRow();
    bool Press(const Input& input);
    void MoveColumn(int nStep);
    void KeepInSight();
    void DrawRows(Canvas& canvas, bool bFocused);
    void DrawNumber(Canvas& canvas, LONG nRow, Look look);
    int DrawColumn(Canvas& canvas, std::size_t nColumn, int nAt, const std::vector<Look>& looks,
                   bool bFocused);
    void DrawHeading(Canvas& canvas, std::size_t nColumn, int nAt, int nWidth, bool bFocused);
    std::string CellText(LONG nRow, std::size_t nColumn);
    int NumberWidth() const;

    Desk& m_desk;
    IQRL_TabulexConverter::IGridEvents* m_pEvents; // null after Close
    std::vector<Column> m_columns;
    bool m_bHeader = true;
    bool m_bEnabled = true;
    LONG m_nRows = 0;
    std::atomic<LONG> m_nPosted = -1; // -1 for none
    LONG m_nFirst = 0;                // in sight
    LONG m_nCurrent = 0;
    std::size_t m_nFirstColumn = 0; // in sight
    std::size_t m_nColumn = 0;      // the current one
    std::size_t m_nLastColumn = 0;  // the last one that was drawn whole
    int m_nHidden = 0;              // cells at the left of lines, without headings
    Rect m_rect;                    // where it was drawn last
};

} // namespace tabulex
