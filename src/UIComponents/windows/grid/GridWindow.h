// GridWindow: a grid as a window of the system, which holds a list and fills itself with it.
//
//   GridWindow* const pView = GridWindow::Create(hPane, grid.Events());
//   ...                     // pView may be used until the grid's OnClose
//
// With headings the cells are drawn one by one, and a press on a heading is reported; without
// them the list shows one text a row. The messages of the system's list and header are followed,
// too: what a heading looks like, and mouse presses on rows without columns, are no matter of
// notifications.
//
// Threads: all calls come on the window's thread but PostRowCount.
//
// Lifetime: the object belongs to its window and goes with it, after OnClose. Any event may end
// the window. A procedure that runs then keeps the object until it returns.
#pragma once

#include <memory>
#include <optional>

#include "interfaces/IGridView.h"
#include "src/UIComponents/windows/grid/GridHeader.h"
#include "src/UIComponents/windows/grid/GridList.h"
#include "src/UIComponents/windows/grid/GridPainter.h"

namespace Hesperon::specifics::UILayer {

inline constexpr wchar_t kGridClassName[] = L"TabulexGrid";

class GridWindow final : public IQRL_TabulexConverter::IGridView
{
public:
    using ControlPlace = IQRL_TabulexConverter::ControlPlace;
    using IGridEvents = IQRL_TabulexConverter::IGridEvents;

    // A visible child of the parent, of no size yet and in the parent's font; null if it can't be
    // made, of which the events hear nothing.
    static GridWindow* Create(HWND hParent, IGridEvents& events);
    HWND Window() const { return m_hWnd; }
    HWND List() const { return m_list.Window(); }

    ~GridWindow() = default;
    GridWindow(const GridWindow&) = delete;
    GridWindow& operator=(const GridWindow&) = delete;

    // ---- IGridView

    void Move(const ControlPlace& place) override;
    void SetEnabled(bool bEnabled) override { EnableWindow(m_list.Window(), bEnabled); }

    void SetRowCount(LONG nRows) override { m_list.SetRowCount(nRows); }
    void PostRowCount(LONG nRows) override { m_list.PostRowCount(nRows); }
    void ScrollToTop() override { m_list.ScrollToTop(); }
    void Invalidate(bool bErase) override { m_list.Invalidate(bErase); }

    bool ShowHeader(bool bShow) override;
    void ClearColumns() override { m_list.ClearColumns(); }
    bool AddColumn(const OLECHAR* pszText, LONG nWidth, bool bHeading) override
    {
        return m_list.AddColumn(pszText, nWidth, bHeading);
    }
    LONG ColumnCount() override { return m_list.ColumnCount(); }
    void SetColumnText(LONG nColumn, const OLECHAR* pszText) override
    {
        m_list.SetColumnText(nColumn, pszText);
    }

    LONG HeadingWidth(const OLECHAR* pszText) override
    {
        return HeadingTextWidth(m_list.Header(), pszText);
    }
    LONG EdgeWidth() override { return GetSystemMetrics(SM_CXEDGE); }
    LONG ClientWidth() override { return m_list.ClientWidth(); }

    ULONG Colour(IQRL_TabulexConverter::SystemColour colour) override
    {
        return GetSysColor(colour);
    }
    LONG TrackMenu(IQRL_TabulexConverter::ViewMenu menu, LONG nColumn) override;

private:
    GridWindow();

    static LRESULT CALLBACK Procedure(HWND hWnd, UINT nMessage, WPARAM wParam, LPARAM lParam);
    static LRESULT CALLBACK ListProcedure(HWND hWnd, UINT nMessage, WPARAM wParam, LPARAM lParam);
    bool MakeWindows(HWND hParent, const std::shared_ptr<GridWindow>& pSelf);

    // ---- messages of the window itself

    LRESULT OnMessage(UINT nMessage, WPARAM wParam, LPARAM lParam);
    LRESULT OnNotify(NMHDR& header);
    void OnDisplayInfo(LVITEMW& item);
    void OnStateChange();
    void OnLooksChange(UINT nMessage, WPARAM wParam, LPARAM lParam);
    void OnFocus();
    void OnDestroy();

    // ---- messages of the list; nothing for one that the list itself handles

    std::optional<LRESULT> OnListMessage(UINT nMessage, WPARAM wParam, LPARAM lParam);
    LRESULT OnRowCount(WPARAM nRows, LPARAM nFlags);
    std::optional<LRESULT> OnPaint();
    std::optional<LRESULT> OnLineMessage(UINT nMessage, WPARAM wParam, LPARAM lParam);
    bool ChooseRowAt(LONG nTop);
    void OnListFocus(bool bFocused);
    void OnHeaderPress(LONG nColumn);

    std::shared_ptr<GridWindow> m_pSelf; // while the window lives
    HWND m_hWnd = nullptr;
    IGridEvents* m_pEvents = nullptr; // null before creation has succeeded, and after OnClose
    GridList m_list;
    WNDPROC m_pfnList = nullptr; // the list's own procedure
    GridPainter m_painter;
    GridHeader m_header;
    bool m_bHeadings = true;
    bool m_bInMenu = false;
};

} // namespace Hesperon::specifics::UILayer
