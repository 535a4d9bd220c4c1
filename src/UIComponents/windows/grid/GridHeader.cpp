// The system's header keeps the cells, their widths and what is pressed; it asks its parent to draw
// the cells (WM_DRAWITEM), and gives no word of the mouse being over one, so that is followed here.

#include "src/UIComponents/windows/grid/GridHeader.h"

#include <commctrl.h>
#include <windowsx.h>

#include <utility>

#include "src/UIComponents/views/GuardedEvent.h"
#include "src/UIComponents/windows/WindowProcedure.h"

namespace Hesperon::specifics::UILayer {

namespace {

constexpr LONG kTextLeft = 4;  // pixels between a cell's border and its text
constexpr LONG kTextRight = 7; // where the triangle lies

// The cell at a point, -1 for none; a divider counts as none.
LONG CellAt(HWND hHeader, LPARAM lParam)
{
    HDHITTESTINFO hit{};
    hit.pt = {GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam)};
    SendMessageW(hHeader, HDM_HITTEST, 0, reinterpret_cast<LPARAM>(&hit));
    return hit.flags == HHT_ONHEADER ? hit.iItem : -1;
}

string_t HeadingText(HWND hHeader, UINT nColumn)
{
    wchar_t szText[260] = L"";
    HDITEMW item{};
    item.mask = HDI_TEXT;
    item.pszText = szText;
    item.cchTextMax = static_cast<int>(std::size(szText));
    SendMessageW(hHeader, HDM_GETITEMW, nColumn, reinterpret_cast<LPARAM>(&item));
    return item.pszText ? string_t(item.pszText) : string_t();
}

// Points to the right, at the right border of the cell.
void DrawTriangle(HDC hdc, const RECT& cell, COLORREF colour)
{
    const LONG nCentre = (cell.top + cell.bottom) / 2;
    const POINT corners[] = {
        {cell.right - 7, nCentre - 2}, {cell.right - 5, nCentre}, {cell.right - 7, nCentre + 2}};
    SetDCBrushColor(hdc, colour);
    SetDCPenColor(hdc, colour);
    SelectObject(hdc, GetStockObject(DC_BRUSH));
    SelectObject(hdc, GetStockObject(DC_PEN));
    Polygon(hdc, corners, static_cast<int>(std::size(corners)));
}

} // namespace

bool GridHeader::Attach(HWND hHeader)
{
    if (m_hHeader)
        return true;
    m_pfnHeader = ReplaceProcedure(hHeader, &Procedure, this);
    if (!m_pfnHeader)
        return false;
    m_hHeader = hHeader;
    m_theme.Open(hHeader);
    return true;
}

bool GridHeader::Detach()
{
    if (m_hHeader && !RestoreProcedure(m_hHeader, &Procedure, m_pfnHeader))
        return false;
    Forget();
    return true;
}

void GridHeader::Forget()
{
    m_hHeader = nullptr;
    m_nHot = -1;
    m_theme.Close();
}

// A press may end this object, so it is the last that is done with it.
LRESULT CALLBACK GridHeader::Procedure(HWND hWnd, UINT nMessage, WPARAM wParam, LPARAM lParam)
{
    auto* const pHeader = OwnerOfProcedure<GridHeader>(hWnd);
    const WNDPROC pfnHeader = pHeader->m_pfnHeader;
    if (nMessage == WM_NCDESTROY)
        pHeader->Forget();
    if (nMessage == WM_ERASEBKGND)
        return pHeader->DrawEmpty(reinterpret_cast<HDC>(wParam));
    const LRESULT nResult = CallWindowProcW(pfnHeader, hWnd, nMessage, wParam, lParam);
    if (nMessage == WM_MOUSEMOVE)
        pHeader->OnMouse(lParam);
    else if (nMessage == WM_MOUSELEAVE)
        pHeader->SetHot(-1);
    else if (nMessage == WM_LBUTTONDOWN)
        GuardedEvent([=] { pHeader->OnPress(lParam); });
    return nResult;
}

void GridHeader::OnPress(LPARAM lParam)
{
    const LONG nColumn = m_hHeader ? CellAt(m_hHeader, lParam) : -1;
    const Press fnPress = m_fnPress; // this object may end during the call
    if (nColumn >= 0)
        fnPress(nColumn);
}

// The header still waits for the button to be let go of, which the menu has heard instead of it.
// Far from the cell that is no click.
void GridHeader::Release()
{
    if (!m_hHeader)
        return;
    SendMessageW(m_hHeader, WM_LBUTTONUP, 0, MAKELPARAM(-1, -1));
    InvalidateRect(m_hHeader, nullptr, TRUE);
}

// The system reports the mouse's leaving once a request.
void GridHeader::OnMouse(LPARAM lParam)
{
    if (!m_hHeader)
        return;
    SetHot(CellAt(m_hHeader, lParam));
    TRACKMOUSEEVENT track = {sizeof track, TME_LEAVE, m_hHeader, 0};
    TrackMouseEvent(&track);
}

// Drawn without erasing: a cell fills its place.
void GridHeader::SetHot(LONG nColumn)
{
    if (std::exchange(m_nHot, nColumn) != nColumn)
        InvalidateRect(m_hHeader, nullptr, FALSE);
}

// The header itself draws what lies behind its last cell, but nothing where it has none.
bool GridHeader::DrawEmpty(HDC hdc) const
{
    RECT all{};
    GetClientRect(m_hHeader, &all);
    if (Header_GetItemCount(m_hHeader) == 0)
        m_theme.DrawFrame(hdc, all, HeadingLook::Normal);
    return true;
}

HeadingLook GridHeader::LookOf(const DRAWITEMSTRUCT& item) const
{
    if (item.itemState & ODS_SELECTED)
        return HeadingLook::Pressed;
    return static_cast<LONG>(item.itemID) == m_nHot ? HeadingLook::Hot : HeadingLook::Normal;
}

void GridHeader::DrawCell(const DRAWITEMSTRUCT& item) const
{
    const int nSaved = SaveDC(item.hDC);
    m_theme.DrawFrame(item.hDC, item.rcItem, LookOf(item));
    const bool bDisabled = !IsWindowEnabled(GetParent(item.hwndItem));
    const COLORREF colour = GetSysColor(bDisabled ? COLOR_GRAYTEXT : COLOR_BTNTEXT);
    SetTextColor(item.hDC, colour);
    SetBkMode(item.hDC, TRANSPARENT);
    RECT text = item.rcItem;
    text.left += kTextLeft;
    text.right -= kTextRight;
    DrawTextW(item.hDC, HeadingText(item.hwndItem, item.itemID).c_str(), -1, &text,
              DT_VCENTER | DT_SINGLELINE | DT_NOPREFIX | DT_END_ELLIPSIS);
    DrawTriangle(item.hDC, item.rcItem, colour);
    RestoreDC(item.hDC, nSaved);
}

LONG HeadingTextWidth(HWND hHeader, const OLECHAR* pszText)
{
    const HDC hdc = GetDC(hHeader);
    const auto hFont = reinterpret_cast<HGDIOBJ>(SendMessageW(hHeader, WM_GETFONT, 0, 0));
    const HGDIOBJ hBefore = hFont ? SelectObject(hdc, hFont) : nullptr;
    SIZE size{};
    GetTextExtentPoint32W(hdc, pszText, lstrlenW(pszText), &size);
    if (hBefore)
        SelectObject(hdc, hBefore);
    ReleaseDC(hHeader, hdc);
    return size.cx;
}

bool HeadingPlace(HWND hHeader, LONG nColumn, RECT& place)
{
    if (nColumn < 0 || !SendMessageW(hHeader, HDM_GETITEMRECT, static_cast<WPARAM>(nColumn),
                                     reinterpret_cast<LPARAM>(&place)))
        return false;
    MapWindowPoints(hHeader, nullptr, reinterpret_cast<POINT*>(&place), 2);
    return true;
}

} // namespace Hesperon::specifics::UILayer
