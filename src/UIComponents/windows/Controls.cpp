// Lists are combo boxes or list boxes, which take the same calls under two sets of numbers.

#include "src/UIComponents/windows/Controls.h"

#include <commctrl.h>

#include <utility>

namespace Hesperon::specifics::UILayer {

using namespace IQRL_TabulexConverter;

namespace {

bool IsOfClass(HWND hWnd, const wchar_t* pszClass)
{
    wchar_t szName[32] = L"";
    return hWnd && GetClassNameW(hWnd, szName, std::size(szName)) &&
           lstrcmpiW(szName, pszClass) == 0;
}

string_t WindowText(HWND hWnd)
{
    string_t sText(static_cast<std::size_t>(GetWindowTextLengthW(hWnd)) + 1, L'\0');
    sText.resize(static_cast<std::size_t>(
        GetWindowTextW(hWnd, sText.data(), static_cast<int>(sText.size()))));
    return sText;
}

ControlPlace PlaceOf(const RECT& rect)
{
    return {rect.left, rect.top, rect.right, rect.bottom};
}

// A closed combo box keeps the height that it was drawn with; what is set is that of its list.
LONG HeightToSet(HWND hWnd, const ControlPlace& place)
{
    RECT dropped{};
    if (IsOfClass(hWnd, L"COMBOBOX") &&
        SendMessageW(hWnd, CB_GETDROPPEDCONTROLRECT, 0, reinterpret_cast<LPARAM>(&dropped)))
        return dropped.bottom - dropped.top;
    return place.nBottom - place.nTop;
}

} // namespace

// ---- any control

HWND Controls::At(LONG nControl) const
{
    return nControl == kWholeView ? m_hWnd : GetDlgItem(m_hWnd, nControl);
}

LRESULT Controls::Send(LONG nControl, UINT nMessage, WPARAM wParam, LPARAM lParam) const
{
    const HWND hControl = At(nControl);
    return hControl ? SendMessageW(hControl, nMessage, wParam, lParam) : 0;
}

const OLECHAR* Controls::Keep(string_t sText)
{
    m_sText = std::move(sText);
    return m_sText.c_str();
}

void Controls::SetText(LONG nControl, const OLECHAR* pszText)
{
    if (const HWND hControl = At(nControl))
        SetWindowTextW(hControl, pszText);
}

const OLECHAR* Controls::Text(LONG nControl)
{
    const HWND hControl = At(nControl);
    return Keep(hControl ? WindowText(hControl) : string_t());
}

LONG Controls::TextWidth(LONG nControl)
{
    const HWND hControl = At(nControl);
    if (!hControl)
        return 0;
    const string_t sText = WindowText(hControl);
    const HDC hdc = GetDC(hControl);
    const auto hFont = reinterpret_cast<HFONT>(SendMessageW(hControl, WM_GETFONT, 0, 0));
    const HGDIOBJ hBefore = hFont ? SelectObject(hdc, hFont) : nullptr;
    SIZE size{};
    GetTextExtentPoint32W(hdc, sText.c_str(), static_cast<int>(sText.size()), &size);
    if (hBefore)
        SelectObject(hdc, hBefore);
    ReleaseDC(hControl, hdc);
    return size.cx;
}

// A disabled control that keeps the keyboard swallows all keys, Tab and Esc among them.
void Controls::SetEnabled(LONG nControl, bool bEnabled)
{
    const HWND hControl = At(nControl);
    if (!hControl)
        return;
    if (!bEnabled && hControl == GetFocus())
        SendMessageW(GetAncestor(m_hWnd, GA_ROOT), WM_NEXTDLGCTL, 0, FALSE);
    EnableWindow(hControl, bEnabled);
}

bool Controls::IsEnabled(LONG nControl) const
{
    const HWND hControl = At(nControl);
    return hControl && IsWindowEnabled(hControl);
}

void Controls::SetShown(LONG nControl, bool bShown)
{
    if (const HWND hControl = At(nControl))
        ShowWindow(hControl, bShown ? SW_SHOWNA : SW_HIDE);
}

// Of the control itself: the dialog may not be on show yet.
bool Controls::IsShown(LONG nControl) const
{
    const HWND hControl = At(nControl);
    return hControl && (GetWindowLongW(hControl, GWL_STYLE) & WS_VISIBLE);
}

ControlPlace Controls::Place(LONG nControl) const
{
    const HWND hControl = At(nControl);
    RECT rect{};
    if (!hControl || !GetWindowRect(hControl, &rect))
        return {};
    MapWindowPoints(nullptr, GetAncestor(hControl, GA_PARENT), reinterpret_cast<POINT*>(&rect), 2);
    return PlaceOf(rect);
}

void Controls::Move(LONG nControl, const ControlPlace& place)
{
    if (const HWND hControl = At(nControl))
        SetWindowPos(hControl, nullptr, place.nLeft, place.nTop, place.nRight - place.nLeft,
                     HeightToSet(hControl, place), SWP_NOZORDER | SWP_NOACTIVATE);
}

void Controls::Repaint(LONG nControl)
{
    const HWND hControl = At(nControl);
    RECT rect{};
    if (!hControl || !GetWindowRect(hControl, &rect))
        return;
    MapWindowPoints(nullptr, m_hWnd, reinterpret_cast<POINT*>(&rect), 2);
    RedrawWindow(m_hWnd, &rect, nullptr,
                 RDW_INVALIDATE | RDW_ERASE | RDW_ALLCHILDREN | RDW_UPDATENOW);
}

void Controls::SetFocus(LONG nControl)
{
    if (const HWND hControl = At(nControl))
        ::SetFocus(hControl);
}

LONG Controls::Focus() const
{
    const HWND hFocus = GetFocus();
    return hFocus && GetParent(hFocus) == m_hWnd ? GetDlgCtrlID(hFocus) : kWholeView;
}

ControlPlace Controls::ClientArea() const
{
    RECT rect{};
    GetClientRect(m_hWnd, &rect);
    return PlaceOf(rect);
}

// ---- lists

bool Controls::IsCombo(LONG nControl) const
{
    return IsOfClass(At(nControl), L"COMBOBOX");
}

LRESULT Controls::SendList(LONG nControl, UINT nBoxMessage, UINT nComboMessage, WPARAM wParam,
                           LPARAM lParam, LRESULT nNone) const
{
    if (!Exists(nControl))
        return nNone;
    return Send(nControl, IsCombo(nControl) ? nComboMessage : nBoxMessage, wParam, lParam);
}

LONG Controls::AddRow(LONG nControl, const OLECHAR* pszText, LONG_PTR nData)
{
    const LRESULT nRow = SendList(nControl, LB_ADDSTRING, CB_ADDSTRING, 0,
                                  reinterpret_cast<LPARAM>(pszText), LB_ERR);
    if (nRow < 0)
        return kNoRow;
    SendList(nControl, LB_SETITEMDATA, CB_SETITEMDATA, static_cast<WPARAM>(nRow), nData, 0);
    return static_cast<LONG>(nRow);
}

void Controls::RemoveRow(LONG nControl, LONG nRow)
{
    SendList(nControl, LB_DELETESTRING, CB_DELETESTRING, static_cast<WPARAM>(nRow), 0, 0);
}

void Controls::ClearRows(LONG nControl)
{
    SendList(nControl, LB_RESETCONTENT, CB_RESETCONTENT, 0, 0, 0);
}

LONG Controls::RowCount(LONG nControl) const
{
    const LRESULT nRows = SendList(nControl, LB_GETCOUNT, CB_GETCOUNT, 0, 0, 0);
    return nRows < 0 ? 0 : static_cast<LONG>(nRows);
}

const OLECHAR* Controls::RowText(LONG nControl, LONG nRow)
{
    const auto wRow = static_cast<WPARAM>(nRow);
    const LRESULT nUnits = SendList(nControl, LB_GETTEXTLEN, CB_GETLBTEXTLEN, wRow, 0, LB_ERR);
    if (nUnits < 0)
        return Keep({});
    string_t sText(static_cast<std::size_t>(nUnits) + 1, L'\0');
    SendList(nControl, LB_GETTEXT, CB_GETLBTEXT, wRow, reinterpret_cast<LPARAM>(sText.data()), 0);
    sText.resize(static_cast<std::size_t>(nUnits));
    return Keep(std::move(sText));
}

// The list's failure is a number like any other, so the row is looked for first.
LONG_PTR Controls::RowData(LONG nControl, LONG nRow) const
{
    if (nRow < 0 || nRow >= RowCount(nControl))
        return 0;
    return SendList(nControl, LB_GETITEMDATA, CB_GETITEMDATA, static_cast<WPARAM>(nRow), 0, 0);
}

bool Controls::Select(LONG nControl, LONG nRow)
{
    const bool bThere = nRow >= 0 && nRow < RowCount(nControl);
    SendList(nControl, LB_SETCURSEL, CB_SETCURSEL, static_cast<WPARAM>(bThere ? nRow : kNoRow), 0,
             0);
    return bThere;
}

LONG Controls::Selected(LONG nControl) const
{
    return static_cast<LONG>(SendList(nControl, LB_GETCURSEL, CB_GETCURSEL, 0, 0, kNoRow));
}

LONG Controls::RowHeight(LONG nControl) const
{
    return static_cast<LONG>(SendList(nControl, LB_GETITEMHEIGHT, CB_GETITEMHEIGHT, 0, 0, 0));
}

void Controls::SetRowHeight(LONG nControl, LONG nHeight)
{
    SendList(nControl, LB_SETITEMHEIGHT, CB_SETITEMHEIGHT, 0, MAKELPARAM(nHeight, 0), 0);
    if (const HWND hControl = At(nControl))
        InvalidateRect(hControl, nullptr, TRUE);
}

// ---- edits

void Controls::SetReadOnly(LONG nControl, bool bReadOnly)
{
    Send(nControl, EM_SETREADONLY, bReadOnly);
}

bool Controls::IsReadOnly(LONG nControl) const
{
    const HWND hControl = At(nControl);
    return hControl && (GetWindowLongW(hControl, GWL_STYLE) & ES_READONLY);
}

TextRange Controls::SelectedText(LONG nControl) const
{
    DWORD nFrom = 0;
    DWORD nTo = 0;
    Send(nControl, EM_GETSEL, reinterpret_cast<WPARAM>(&nFrom), reinterpret_cast<LPARAM>(&nTo));
    return {static_cast<LONG>(nFrom), static_cast<LONG>(nTo)};
}

void Controls::SelectText(LONG nControl, const TextRange& range)
{
    Send(nControl, EM_SETSEL, static_cast<WPARAM>(range.nFrom), range.nTo);
}

void Controls::ShowCaret(LONG nControl)
{
    Send(nControl, EM_SCROLLCARET);
}

// ---- check boxes

void Controls::SetCheck(LONG nControl, LONG nState)
{
    Send(nControl, BM_SETCHECK, static_cast<WPARAM>(nState));
}

LONG Controls::Check(LONG nControl) const
{
    return static_cast<LONG>(Send(nControl, BM_GETCHECK));
}

// ---- date pickers

void Controls::SetDate(LONG nControl, const SYSTEMTIME* pDate)
{
    Picker& picker = m_pickers[nControl];
    if (pDate)
        Send(nControl, DTM_SETSYSTEMTIME, GDT_VALID, reinterpret_cast<LPARAM>(pDate));
    if (picker.bDate == (pDate != nullptr))
        return;
    picker.bDate = pDate != nullptr;
    ShowFormat(nControl, picker);
}

bool Controls::Date(LONG nControl, SYSTEMTIME& date) const
{
    const auto picker = m_pickers.find(nControl);
    if (!Exists(nControl) || (picker != m_pickers.end() && !picker->second.bDate))
        return false;
    return Send(nControl, DTM_GETSYSTEMTIME, 0, reinterpret_cast<LPARAM>(&date)) == GDT_VALID;
}

void Controls::SetDateFormat(LONG nControl, const OLECHAR* pszFormat)
{
    Picker& picker = m_pickers[nControl];
    picker.sFormat = pszFormat;
    ShowFormat(nControl, picker);
}

// Two quotes are a picture that shows nothing.
void Controls::ShowFormat(LONG nControl, const Picker& picker)
{
    const wchar_t* pszFormat = picker.sFormat.empty() ? nullptr : picker.sFormat.c_str();
    Send(nControl, DTM_SETFORMATW, 0, reinterpret_cast<LPARAM>(picker.bDate ? pszFormat : L"''"));
}

void Controls::OnDateChosen(LONG nControl)
{
    Picker& picker = m_pickers[nControl];
    if (!std::exchange(picker.bDate, true))
        ShowFormat(nControl, picker);
}

// ---- events

bool Controls::OnMessage(UINT nMessage, WPARAM wParam, LPARAM lParam, IControlEvents& events)
{
    if (nMessage == WM_NOTIFY) {
        const auto& header = *reinterpret_cast<const NMHDR*>(lParam);
        if (header.code != DTN_DATETIMECHANGE)
            return false;
        const auto nControl = static_cast<LONG>(header.idFrom);
        OnDateChosen(nControl);
        events.OnDate(nControl);
        return true;
    }
    if (nMessage != WM_COMMAND)
        return false;
    const LONG nControl = LOWORD(wParam);
    const auto hControl = reinterpret_cast<HWND>(lParam);
    const WORD nCode = HIWORD(wParam);
    if (nCode == BN_CLICKED && (!hControl || IsOfClass(hControl, L"BUTTON")))
        events.OnClick(nControl);
    else if (nCode == EN_CHANGE && IsOfClass(hControl, L"EDIT"))
        events.OnText(nControl);
    else if (nCode == CBN_SELCHANGE && !IsOfClass(hControl, L"BUTTON"))
        events.OnSelect(nControl); // LBN_SELCHANGE has the same number
    else
        return false;
    return true;
}

} // namespace Hesperon::specifics::UILayer
