// An open list reports that a row was chosen, or that none was, and then that it closes. Some
// versions report a choice for each arrow key too, so the last report before it closes counts.

#include "src/UIComponents/windows/shell/LookInList.h"

#include <algorithm>
#include <utility>

#include <commctrl.h>

namespace Hesperon::specifics::UILayer {

namespace {

constexpr int kGap = 2; // pixels around pictures and texts

bool IsEnter(LPARAM lParam)
{
    const auto* pMessage = reinterpret_cast<const MSG*>(lParam);
    return pMessage && pMessage->message == WM_KEYDOWN && pMessage->wParam == VK_RETURN;
}

// nCommand is the number of the subclass, and what Enter in the closed list posts.
LRESULT CALLBACK OnComboMessage(HWND hWnd, UINT nMessage, WPARAM wParam, LPARAM lParam,
                                UINT_PTR nCommand, DWORD_PTR nTarget)
{
    switch (nMessage) {
    case WM_GETDLGCODE:
        return DefSubclassProc(hWnd, nMessage, wParam, lParam) |
               (IsEnter(lParam) ? DLGC_WANTMESSAGE : 0);
    case WM_KEYDOWN:
        if (wParam == VK_RETURN && !SendMessageW(hWnd, CB_GETDROPPEDSTATE, 0, 0)) {
            PostMessageW(reinterpret_cast<HWND>(nTarget), WM_COMMAND, nCommand, 0);
            return 0;
        }
        break;
    case WM_CHAR:
        if (wParam == VK_RETURN)
            return 0;
        break;
    case WM_NCDESTROY:
        RemoveWindowSubclass(hWnd, &OnComboMessage, nCommand);
        break;
    }
    return DefSubclassProc(hWnd, nMessage, wParam, lParam);
}

string_t RowTextOf(HWND hCombo, UINT nRow)
{
    const LRESULT nUnits = SendMessageW(hCombo, CB_GETLBTEXTLEN, nRow, 0);
    if (nUnits < 0)
        return {};
    string_t sText(static_cast<std::size_t>(nUnits) + 1, L'\0');
    SendMessageW(hCombo, CB_GETLBTEXT, nRow, reinterpret_cast<LPARAM>(sText.data()));
    sText.resize(static_cast<std::size_t>(nUnits));
    return sText;
}

bool IsOpenList(const DRAWITEMSTRUCT& item)
{
    return !(item.itemState & ODS_COMBOBOXEDIT);
}

int TextColour(UINT nState)
{
    if (nState & ODS_DISABLED)
        return COLOR_GRAYTEXT;
    return nState & ODS_SELECTED ? COLOR_HIGHLIGHTTEXT : COLOR_WINDOWTEXT;
}

int BackColour(UINT nState)
{
    if (nState & ODS_DISABLED)
        return COLOR_BTNFACE;
    return nState & ODS_SELECTED ? COLOR_HIGHLIGHT : COLOR_WINDOW;
}

} // namespace

void LookInList::Attach(HWND hCombo, HWND hCommands, LONG nCommandOfEnter)
{
    m_hCombo = hCombo;
    const int nHeight = HeightOfRow();
    for (const int nPart : {-1, 0}) // the closed list, and the rows of the open one
        SendMessageW(hCombo, CB_SETITEMHEIGHT, static_cast<WPARAM>(nPart), nHeight);
    SetWindowSubclass(hCombo, &OnComboMessage, static_cast<UINT_PTR>(nCommandOfEnter),
                      reinterpret_cast<DWORD_PTR>(hCommands));
}

int LookInList::HeightOfRow() const
{
    const HDC hdc = GetDC(m_hCombo);
    const auto hFont = reinterpret_cast<HFONT>(SendMessageW(m_hCombo, WM_GETFONT, 0, 0));
    const HGDIOBJ hBefore = hFont ? SelectObject(hdc, hFont) : nullptr;
    TEXTMETRICW metrics{};
    GetTextMetricsW(hdc, &metrics);
    if (hBefore)
        SelectObject(hdc, hBefore);
    ReleaseDC(m_hCombo, hdc);
    return std::max<int>(metrics.tmHeight, GetSystemMetrics(SM_CYSMICON)) + kGap;
}

void LookInList::SetFolder(const ItemIds& folder)
{
    m_icons.clear();
    for (ItemIds item = folder.Clone(); item; item = item.Parent())
        m_icons.insert(m_icons.begin(), SmallIconOf(item));
}

void LookInList::Draw(const DRAWITEMSTRUCT& item) const
{
    RECT rect = item.rcItem;
    FillRect(item.hDC, &rect, GetSysColorBrush(BackColour(item.itemState)));
    if (static_cast<int>(item.itemID) < 0)
        return;
    const int nStep = GetSystemMetrics(SM_CXSMICON) / 2;
    rect.left += kGap + (IsOpenList(item) ? nStep * static_cast<int>(item.itemID) : 0);
    const int nPicture = GetSystemMetrics(SM_CYSMICON);
    DrawPicture(item, {rect.left, rect.top + (rect.bottom - rect.top - nPicture) / 2});
    rect.left += GetSystemMetrics(SM_CXSMICON) + 2 * kGap;
    SetBkMode(item.hDC, TRANSPARENT);
    SetTextColor(item.hDC, GetSysColor(TextColour(item.itemState)));
    const string_t sText = RowTextOf(m_hCombo, item.itemID);
    DrawTextW(item.hDC, sText.c_str(), static_cast<int>(sText.size()), &rect,
              DT_SINGLELINE | DT_VCENTER | DT_NOPREFIX | DT_END_ELLIPSIS);
    if ((item.itemState & ODS_FOCUS) && !(item.itemState & ODS_NOFOCUSRECT))
        DrawFocusRect(item.hDC, &item.rcItem);
}

void LookInList::DrawPicture(const DRAWITEMSTRUCT& item, POINT at) const
{
    const auto nRows = static_cast<std::size_t>(SendMessageW(m_hCombo, CB_GETCOUNT, 0, 0));
    const std::size_t nFromEnd = nRows - item.itemID; // 1 for the last row
    if (nFromEnd <= m_icons.size())
        ImageList_Draw(SmallIcons(), m_icons[m_icons.size() - nFromEnd], item.hDC, at.x, at.y,
                       ILD_TRANSPARENT);
}

bool LookInList::IsChosenBy(WORD nNotice)
{
    switch (nNotice) {
    case CBN_DROPDOWN:
    case CBN_SELENDCANCEL:
        m_bChosen = false;
        break;
    case CBN_SELENDOK:
        m_bChosen = true;
        break;
    case CBN_CLOSEUP:
        return std::exchange(m_bChosen, false);
    }
    return false;
}

} // namespace Hesperon::specifics::UILayer
