// The list asks in phases: before anything is drawn, before each row, and, if that answer wants
// it, before each cell of the row. A row's colours are found once, in its own phase: finding out
// whether an import takes the row means parsing it.

#include "src/UIComponents/windows/grid/GridPainter.h"

namespace Hesperon::specifics::UILayer {

using namespace IQRL_TabulexConverter;

namespace {

constexpr LONG kMostCellText = 259; // units, with the terminator
constexpr LONG kMostRowText = 512;

void DrawTextIn(HDC hdc, const RECT& place, const OLECHAR* pszText)
{
    constexpr int kInset = 2;
    if (!*pszText)
        return;
    RECT text = place;
    InflateRect(&text, -kInset, -kInset);
    DrawTextW(hdc, pszText, -1, &text,
              DT_VCENTER | DT_SINGLELINE | DT_NOPREFIX | DT_EXPANDTABS | DT_END_ELLIPSIS);
}

// Limits what is drawn on to a place, and undoes all settings at the end.
class ClippedDrawing
{
public:
    ClippedDrawing(HDC hdc, const RECT& place) : m_hdc(hdc), m_nSaved(SaveDC(hdc))
    {
        IntersectClipRect(hdc, place.left, place.top, place.right, place.bottom);
    }
    ~ClippedDrawing() { RestoreDC(m_hdc, m_nSaved); }
    ClippedDrawing(const ClippedDrawing&) = delete;
    ClippedDrawing& operator=(const ClippedDrawing&) = delete;

    void Fill(const RECT& place, COLORREF nBack, COLORREF nText) const
    {
        SetDCBrushColor(m_hdc, nBack);
        FillRect(m_hdc, &place, static_cast<HBRUSH>(GetStockObject(DC_BRUSH)));
        SetTextColor(m_hdc, nText);
        SetBkMode(m_hdc, TRANSPARENT);
    }

private:
    const HDC m_hdc;
    const int m_nSaved;
};

// A bitmap as large as a window's client area, to be drawn on in its place.
class Offscreen
{
public:
    Offscreen(HDC hdc, const RECT& client)
        : m_hdc(CreateCompatibleDC(hdc)),
          m_hBitmap(CreateCompatibleBitmap(hdc, client.right, client.bottom)),
          m_hBefore(SelectObject(m_hdc, m_hBitmap))
    {}
    ~Offscreen()
    {
        SelectObject(m_hdc, m_hBefore);
        DeleteObject(m_hBitmap);
        DeleteDC(m_hdc);
    }
    Offscreen(const Offscreen&) = delete;
    Offscreen& operator=(const Offscreen&) = delete;

    explicit operator bool() const { return m_hBefore != nullptr; }
    HDC Context() const { return m_hdc; }

private:
    const HDC m_hdc;
    const HBITMAP m_hBitmap;
    const HGDIOBJ m_hBefore; // null where there is no bitmap
};

// The list draws on what it is given as on its own window, but for the background.
void PrintList(HWND hList, HDC hdc, const RECT& place)
{
    IntersectClipRect(hdc, place.left, place.top, place.right, place.bottom);
    FillRect(hdc, &place, GetSysColorBrush(COLOR_WINDOW));
    SendMessageW(hList, WM_PRINTCLIENT, reinterpret_cast<WPARAM>(hdc), PRF_CLIENT);
}

} // namespace

LRESULT GridPainter::OnCustomDraw(const NMLVCUSTOMDRAW& draw, IGridEvents& events, bool bHeadings)
{
    const auto nRow = static_cast<LONG>(draw.nmcd.dwItemSpec);
    switch (draw.nmcd.dwDrawStage) {
    case CDDS_PREPAINT:
        return CDRF_NOTIFYITEMDRAW;
    case CDDS_ITEMPREPAINT:
        BeginRow(nRow, events);
        if (bHeadings)
            return CDRF_NOTIFYSUBITEMDRAW;
        DrawRow(draw.nmcd.hdc, nRow, events);
        return CDRF_SKIPDEFAULT;
    case CDDS_ITEMPREPAINT | CDDS_SUBITEM:
        DrawCell(draw.nmcd.hdc, nRow, draw.iSubItem, events);
        return CDRF_SKIPDEFAULT;
    default:
        return CDRF_DODEFAULT;
    }
}

// The selection isn't searched for: the list would look at every row.
void GridPainter::BeginRow(LONG nRow, IGridEvents& events)
{
    if (!m_list.HasState(nRow, LVIS_SELECTED))
        m_row = {events.RowColour(nRow), GetSysColor(COLOR_WINDOWTEXT)};
    else if (m_bFocused)
        m_row = {GetSysColor(COLOR_HIGHLIGHT), GetSysColor(COLOR_HIGHLIGHTTEXT)};
    else
        m_row = {GetSysColor(COLOR_BTNFACE), GetSysColor(COLOR_WINDOWTEXT)};
}

void GridPainter::DrawCell(HDC hdc, LONG nRow, LONG nColumn, IGridEvents& events) const
{
    const RECT place = m_list.CellPlace(nRow, nColumn);
    const ClippedDrawing drawing(hdc, place);
    drawing.Fill(place, m_row.nBack, m_row.nText);
    OLECHAR szText[kMostCellText] = L"";
    events.CellText(nRow, nColumn, szText, kMostCellText);
    DrawTextIn(hdc, place, szText);
    if (m_list.HasState(nRow, LVIS_FOCUSED))
        DrawFocusRect(hdc, &place);
}

// Unlike a cell's, a line's frame shows that the keys go to the list.
void GridPainter::DrawRow(HDC hdc, LONG nRow, IGridEvents& events) const
{
    const RECT place = m_list.RowPlace(nRow);
    const ClippedDrawing drawing(hdc, place);
    drawing.Fill(place, m_row.nBack, m_row.nText);
    OLECHAR szText[kMostRowText] = L"";
    events.CellText(nRow, 0, szText, kMostRowText);
    DrawTextIn(hdc, place, szText);
    if (m_bFocused && m_list.HasState(nRow, LVIS_FOCUSED))
        DrawFocusRect(hdc, &place);
}

void GridPainter::PaintBuffered() const
{
    PAINTSTRUCT paint;
    const HDC hdc = BeginPaint(m_list.Window(), &paint);
    RECT client{};
    GetClientRect(m_list.Window(), &client);
    const RECT& place = paint.rcPaint;
    if (const Offscreen copy(hdc, client); copy) {
        PrintList(m_list.Window(), copy.Context(), place);
        BitBlt(hdc, place.left, place.top, place.right - place.left, place.bottom - place.top,
               copy.Context(), place.left, place.top, SRCCOPY);
    } else {
        PrintList(m_list.Window(), hdc, place);
    }
    EndPaint(m_list.Window(), &paint);
}

void GridPainter::PaintEmpty() const
{
    PAINTSTRUCT paint;
    const HDC hdc = BeginPaint(m_list.Window(), &paint);
    FillRect(hdc, &paint.rcPaint, GetSysColorBrush(COLOR_WINDOW));
    EndPaint(m_list.Window(), &paint);
}

} // namespace Hesperon::specifics::UILayer
