// The list is the system's, in report mode and without rows of its own: it knows a count, and which
// row is selected. Its header is a window of the system, too, which is only hidden without
// headings.

#include "src/UIComponents/windows/grid/GridList.h"

#include <commctrl.h>

#include <algorithm>
#include <limits>

#include "platform/Module_win32.h"

namespace Hesperon::specifics::UILayer {

// Children are clipped, or a picture of the list would be copied over its headings.
bool GridList::Create(HWND hParent)
{
    constexpr DWORD kStyle = WS_CHILD | WS_VISIBLE | WS_TABSTOP | WS_CLIPCHILDREN | LVS_REPORT |
                             LVS_OWNERDATA | LVS_SHOWSELALWAYS | LVS_SINGLESEL;
    constexpr DWORD kListStyle = LVS_EX_FULLROWSELECT | LVS_EX_DOUBLEBUFFER;
    m_hList = CreateWindowExW(WS_EX_CLIENTEDGE, WC_LISTVIEWW, L"", kStyle, 0, 0, 0, 0, hParent,
                              nullptr, ThisModule(), nullptr);
    if (!m_hList)
        return false;
    Send(LVM_SETEXTENDEDLISTVIEWSTYLE, kListStyle, kListStyle);
    if (const LRESULT hFont = SendMessageW(GetParent(hParent), WM_GETFONT, 0, 0))
        Send(WM_SETFONT, static_cast<WPARAM>(hFont));
    m_hHeader = reinterpret_cast<HWND>(Send(LVM_GETHEADER));
    return m_hHeader != nullptr;
}

// ---- rows

void GridList::SetRowCount(LONG nRows) const
{
    Send(LVM_SETITEMCOUNT, static_cast<WPARAM>(nRows), LVSICF_NOSCROLL);
}

void GridList::PostRowCount(LONG nRows) const
{
    PostMessageW(m_hList, LVM_SETITEMCOUNT, static_cast<WPARAM>(nRows), LVSICF_NOSCROLL);
}

void GridList::ScrollToTop() const
{
    Send(LVM_ENSUREVISIBLE, 0, FALSE);
}

bool GridList::HasState(LONG nRow, UINT nState) const
{
    return (static_cast<UINT>(Send(LVM_GETITEMSTATE, static_cast<WPARAM>(nRow), nState)) &
            nState) != 0;
}

void GridList::ChooseRow(LONG nRow) const
{
    LVITEMW item{};
    item.state = item.stateMask = LVIS_SELECTED | LVIS_FOCUSED;
    Send(LVM_SETITEMSTATE, static_cast<WPARAM>(nRow), reinterpret_cast<LPARAM>(&item));
    Send(LVM_ENSUREVISIBLE, static_cast<WPARAM>(nRow), FALSE);
}

// The system finds rows only where a column is, but they are drawn beside it, too.
LONG GridList::RowAt(LONG nTop) const
{
    const auto nFirst = static_cast<LONG>(Send(LVM_GETTOPINDEX));
    const auto nRows = static_cast<LONG>(Send(LVM_GETITEMCOUNT));
    if (nFirst >= nRows)
        return -1;
    const RECT place = RowPlace(nFirst);
    const LONG nHeight = place.bottom - place.top;
    if (nHeight <= 0 || nTop < place.top)
        return -1;
    const LONG nBelow = (nTop - place.top) / nHeight;
    return nBelow < nRows - nFirst ? nFirst + nBelow : -1;
}

// Places are 32-bit numbers of pixels.
bool GridList::CanDraw() const
{
    const RECT first = RowPlace(0);
    return Send(LVM_GETITEMCOUNT) * (first.bottom - first.top) <= std::numeric_limits<LONG>::max();
}

// ---- columns

void GridList::ShowHeader(bool bShow) const
{
    const LONG_PTR nStyle = GetWindowLongPtrW(m_hList, GWL_STYLE);
    const LONG_PTR nNew = bShow ? nStyle & ~LVS_NOCOLUMNHEADER : nStyle | LVS_NOCOLUMNHEADER;
    if (nNew != nStyle)
        SetWindowLongPtrW(m_hList, GWL_STYLE, nNew);
}

void GridList::ClearColumns()
{
    while (m_nColumns > 0)
        Send(LVM_DELETECOLUMN, static_cast<WPARAM>(--m_nColumns));
}

// Rows without width are not drawn, and a list that is yet to get its place has little of it.
bool GridList::AddColumn(const OLECHAR* pszText, LONG nWidth, bool bOwnerDrawn)
{
    LVCOLUMNW column{};
    column.mask = LVCF_FMT | LVCF_TEXT | LVCF_WIDTH;
    column.fmt = bOwnerDrawn ? LVCFMT_CENTER : LVCFMT_LEFT;
    column.pszText = const_cast<OLECHAR*>(pszText);
    column.cx = std::max(nWidth, 1L);
    if (Send(LVM_INSERTCOLUMNW, static_cast<WPARAM>(m_nColumns),
             reinterpret_cast<LPARAM>(&column)) < 0)
        return false;
    const auto nColumn = static_cast<WPARAM>(m_nColumns++);
    if (!bOwnerDrawn)
        return true;
    HDITEMW item{};
    item.mask = HDI_FORMAT;
    item.fmt = HDF_STRING | HDF_OWNERDRAW;
    return SendMessageW(m_hHeader, HDM_SETITEMW, nColumn, reinterpret_cast<LPARAM>(&item)) != FALSE;
}

void GridList::SetColumnText(LONG nColumn, const OLECHAR* pszText) const
{
    HDITEMW item{};
    item.mask = HDI_TEXT;
    item.pszText = const_cast<OLECHAR*>(pszText);
    SendMessageW(m_hHeader, HDM_SETITEMW, static_cast<WPARAM>(nColumn),
                 reinterpret_cast<LPARAM>(&item));
}

// ---- places

LONG GridList::ClientWidth() const
{
    RECT client{};
    GetClientRect(m_hList, &client);
    return client.right;
}

RECT GridList::RowPlace(LONG nRow) const
{
    RECT place{};
    place.left = LVIR_BOUNDS;
    Send(LVM_GETITEMRECT, static_cast<WPARAM>(nRow), reinterpret_cast<LPARAM>(&place));
    place.left = 0;
    place.right = ClientWidth();
    return place;
}

// The system's bounds of the first cell are those of the whole row.
RECT GridList::CellPlace(LONG nRow, LONG nColumn) const
{
    RECT place{};
    place.left = LVIR_BOUNDS;
    place.top = nColumn;
    Send(LVM_GETSUBITEMRECT, static_cast<WPARAM>(nRow), reinterpret_cast<LPARAM>(&place));
    if (nColumn == 0)
        place.right = place.left + static_cast<LONG>(Send(LVM_GETCOLUMNWIDTH));
    return place;
}

} // namespace Hesperon::specifics::UILayer
