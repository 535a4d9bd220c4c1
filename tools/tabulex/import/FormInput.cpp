// What the user does with the controls of a form. A text, a row and a state are written to the
// view first, and told after; a text is told by the view itself.

#include <algorithm>

#include "platform/text/Utf8.h"
#include "tools/tabulex/import/Form.h"
#include "tools/tabulex/import/terminal/Popup.h"
#include "tools/tabulex/text/Text.h"
#include "tools/tabulex/text/VisibleText.h"

namespace tabulex {

using namespace IQRL_TabulexConverter;

bool Form::Handle(const Input& input)
{
    const LONG nControl = m_view.Focus();
    const Item* pItem = ItemOf(nControl);
    if (!pItem || !CanFocus(*pItem))
        return false;
    switch (pItem->pRow->kind) {
    case ControlKind::Edit:
        return HandleEdit(nControl, input);
    case ControlKind::Date:
        return HandleDate(nControl, input);
    case ControlKind::DropList:
        return HandleDropList(nControl, input);
    case ControlKind::ListBox:
        return HandleListBox(nControl, input);
    default:
        return input.Is(U' ') && Activate(nControl);
    }
}

bool Form::Press(const Input& input)
{
    for (const Item& item : m_items) {
        if (item.place.nRows == 0 || !PlaceOf(item).Has(input.nColumn, input.nRow) ||
            !CanFocus(item))
            continue;
        const LONG nControl = item.pRow->nControl;
        Focus(nControl);
        const int nListRow = input.nRow - PlaceOf(item).nRow - 1;
        if (item.pRow->kind == ControlKind::ListBox && nListRow >= 0)
            ChooseRow(nControl, FirstRow(nControl) + nListRow);
        else
            Activate(nControl);
        return true;
    }
    return false;
}

bool Form::Activate(LONG nControl)
{
    if (!m_view.IsEnabled(nControl) || !m_view.IsShown(nControl))
        return false;
    switch (KindOf(m_dialog, nControl)) {
    case ControlKind::DropList:
        OpenList(nControl);
        return true;
    case ControlKind::Check:
        m_view.SetCheck(nControl, m_view.Check(nControl) ? 0 : 1);
        m_events.OnClick(nControl);
        return true;
    case ControlKind::Button:
        m_events.OnClick(nControl);
        return true;
    default:
        return false;
    }
}

// ---- edits

namespace {

// The selection of an edit, within its text and from left to right.
TextRange RangeIn(const string_t& text, const TextRange& range)
{
    const auto nSize = static_cast<LONG>(text.size());
    const LONG nFrom = std::clamp<LONG>(range.nFrom, 0, nSize);
    const LONG nTo = std::clamp<LONG>(range.nTo, 0, nSize);
    return {std::min(nFrom, nTo), std::max(nFrom, nTo)};
}

} // namespace

// A caret doesn't go between the halves of a pair of surrogates; such characters are rare enough
// in templates and numbers that it jumps over one half only.
bool Form::HandleEdit(LONG nControl, const Input& input)
{
    const auto nSize = static_cast<LONG>(string_t(m_view.Text(nControl)).size());
    const LONG nCaret = std::clamp<LONG>(m_view.SelectedText(nControl).nTo, 0, nSize);
    LONG nTo = 0;
    switch (input.key) {
    case Key::Left:
        nTo = std::max<LONG>(nCaret - 1, 0);
        break;
    case Key::Right:
        nTo = std::min<LONG>(nCaret + 1, nSize);
        break;
    case Key::Home:
        break;
    case Key::End:
        nTo = nSize;
        break;
    default:
        return Type(nControl, input);
    }
    m_view.SelectText(nControl, {nTo, nTo});
    return true;
}

bool Form::Type(LONG nControl, const Input& input)
{
    if (!IsTyping())
        return false;
    string_t text = m_view.Text(nControl);
    TextRange range = RangeIn(text, m_view.SelectedText(nControl));
    string_t typed;
    if (input.key == Key::Text)
        Utf8::Append(typed, input.c);
    else if (input.key == Key::Backspace && range.nFrom == range.nTo)
        range.nFrom = std::max<LONG>(range.nFrom - 1, 0);
    else if (input.key == Key::Delete && range.nFrom == range.nTo)
        range.nTo = std::min<LONG>(range.nTo + 1, static_cast<LONG>(text.size()));
    else if (input.key != Key::Backspace && input.key != Key::Delete)
        return false;
    if (typed.empty() && range.nFrom == range.nTo)
        return true;
    text.replace(static_cast<std::size_t>(range.nFrom),
                 static_cast<std::size_t>(range.nTo - range.nFrom), typed);
    const LONG nCaret = range.nFrom + static_cast<LONG>(typed.size());
    // The component may look at the caret when it is told of the text.
    m_view.SelectText(nControl, {nCaret, nCaret});
    m_view.SetText(nControl, text.c_str());
    return true;
}

// ---- dates

std::optional<SYSTEMTIME> Form::DateOf(LONG nControl) const
{
    SYSTEMTIME date{};
    return m_view.Date(nControl, date) ? std::optional(date) : std::nullopt;
}

DateEdit& Form::EditOf(LONG nControl)
{
    DateEdit& edit = m_dates[nControl];
    edit.Load(DateOf(nControl), m_formats.ShowsTime(nControl));
    return edit;
}

// A date is told as soon as the text says another one.
bool Form::HandleDate(LONG nControl, const Input& input)
{
    DateEdit& edit = EditOf(nControl);
    const std::string before = edit.Text();
    if (!edit.Handle(input))
        return false;
    const auto date = edit.Value();
    if (edit.Text() == before || !date || IsSameMoment(date, DateOf(nControl)))
        return true;
    edit.Keep(*date);
    m_view.SetDate(nControl, &*date);
    m_events.OnDate(nControl);
    return true;
}

// ---- lists

void Form::ChooseRow(LONG nControl, LONG nRow)
{
    if (nRow == m_view.Selected(nControl) || nRow < 0 || nRow >= m_view.RowCount(nControl))
        return;
    m_view.Select(nControl, nRow);
    m_events.OnSelect(nControl);
}

void Form::OpenList(LONG nControl)
{
    std::vector<PopupRow> rows;
    for (LONG n = 0; n < m_view.RowCount(nControl); ++n) {
        std::string text = VisibleText(m_view.RowText(nControl, n));
        rows.push_back({text.empty() ? " " : std::move(text)});
    }
    const Item* pItem = ItemOf(nControl);
    const Rect place = pItem ? PlaceOf(*pItem) : Rect{};
    const int nWidth = pItem ? WidthOf(*pItem) : 0;
    const Rect anchor{place.nColumn + std::max(place.nColumns - nWidth, 0), place.nRow, nWidth, 1};
    Popup popup(m_desk, std::move(rows), anchor,
                static_cast<std::size_t>(std::max<LONG>(m_view.Selected(nControl), 0)));
    std::optional<std::size_t> nRow;
    { // the list goes from the screen before the choice is told, which may open a dialog
        const Layered layered(m_desk, popup);
        nRow = popup.Run();
    }
    if (nRow)
        ChooseRow(nControl, static_cast<LONG>(*nRow));
}

// Letters and digits choose the next row that begins with them, without opening the list.
bool Form::HandleDropList(LONG nControl, const Input& input)
{
    if (input.key != Key::Text)
        return false;
    if (input.c == U' ') {
        OpenList(nControl);
        return true;
    }
    string_t letter;
    Utf8::Append(letter, input.c);
    const LONG nCount = m_view.RowCount(nControl);
    for (LONG n = 1; n <= nCount; ++n) {
        const LONG nRow = (std::max<LONG>(m_view.Selected(nControl), -1) + n) % nCount;
        const string_t text = m_view.RowText(nControl, nRow);
        if (EqualIgnoringCase(ToUtf8(string_view_t(text).substr(0, letter.size())),
                              ToUtf8(letter))) {
            ChooseRow(nControl, nRow);
            break;
        }
    }
    return true;
}

bool Form::HandleListBox(LONG nControl, const Input& input)
{
    const LONG nSelected = m_view.Selected(nControl);
    const LONG nLast = m_view.RowCount(nControl) - 1;
    switch (input.key) {
    case Key::Up:
        ChooseRow(nControl, std::max<LONG>(nSelected - 1, 0));
        return true;
    case Key::Down:
        ChooseRow(nControl, std::min<LONG>(nSelected + 1, nLast));
        return true;
    case Key::Home:
        ChooseRow(nControl, 0);
        return true;
    case Key::End:
        ChooseRow(nControl, nLast);
        return true;
    default:
        return false;
    }
}

} // namespace tabulex
