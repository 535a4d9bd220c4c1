// Lines are filled from left to right in the order of Tab. A control that doesn't fit begins a
// new line; its label stands before it, and is never apart from it. Nothing is kept but the
// places: texts, rows and states are read from the view at each drawing.

#include "tools/tabulex/import/Form.h"

#include <algorithm>

#include "interfaces/NativeHost.h"
#include "tools/tabulex/import/terminal/Popup.h"
#include "tools/tabulex/text/Text.h"
#include "tools/tabulex/text/VisibleText.h"

namespace tabulex {

using namespace IQRL_TabulexConverter;

namespace {

constexpr int kGap = 2; // between controls of a line

// Labels of panes stand in their borders, or before the controls that they are for.
bool IsPaneLabel(const ControlRow& row)
{
    return row.kind == ControlKind::Label && row.dialog != DialogDelimiters;
}

bool HasLabel(ControlKind kind)
{
    return kind == ControlKind::Edit || kind == ControlKind::DropList ||
           kind == ControlKind::ListBox || kind == ControlKind::Date;
}

} // namespace

Form::Form(Desk& desk, DialogId dialog, IControlsView& view, const IDateFormats& formats,
           IControlEvents& events)
    : m_desk(desk), m_dialog(dialog), m_view(view), m_formats(formats), m_events(events)
{
    for (const ControlRow& row : ControlsOf(dialog))
        if (!IsPaneLabel(row))
            m_items.push_back({&row, {}, {}});
}

// ---- where they lie

std::string Form::LabelOf(const ControlRow& row) const
{
    if (!HasLabel(row.kind))
        return {};
    std::string label =
        VisibleText(TabulexDialogText(m_dialog, row.nLabel ? row.nLabel : row.nControl));
    if (label.empty() && row.nLabel)
        label = VisibleText(TabulexDialogText(m_dialog, row.nControl));
    return label;
}

// What the component has written to a button or box, or else its label.
std::string Form::CaptionOf(LONG nControl) const
{
    const string_t text = m_view.Text(nControl);
    return VisibleText(text.empty() ? string_view_t(TabulexDialogText(m_dialog, nControl)) : text);
}

int Form::WidthOf(const Item& item) const
{
    const ControlRow& row = *item.pRow;
    switch (row.kind) {
    case ControlKind::Label:
        return CellsOf(CaptionOf(row.nControl));
    case ControlKind::Button:
        return CellsOf(CaptionOf(row.nControl)) + 4;
    case ControlKind::Check:
        return std::max(CellsOf(CaptionOf(row.nControl)) + 4, row.nWidth);
    case ControlKind::Date:
        return DateEdit::WidthOf(m_formats.ShowsTime(row.nControl)) + 2;
    case ControlKind::DropList:
        return row.nWidth + 4;
    default:
        return row.nWidth + 2;
    }
}

// A list that is always open takes lines of its own, below its label.
int Form::Arrange(int nColumns)
{
    int nColumn = 0, nRow = 0, nHeight = 1;
    for (Item& item : m_items) {
        item.place = {};
        if (!m_view.IsShown(item.pRow->nControl))
            continue;
        item.sLabel = LabelOf(*item.pRow);
        const bool bTall = item.pRow->kind == ControlKind::ListBox;
        const int nLabel = item.sLabel.empty() || bTall ? 0 : CellsOf(item.sLabel) + 1;
        // A control that is wider than a line is cut at its right.
        const int nWidth = bTall ? nColumns : nLabel + WidthOf(item);
        if (nColumn > 0 && (item.pRow->bNewLine || nColumn + nWidth > nColumns)) {
            nRow += nHeight;
            nColumn = 0;
            nHeight = 1;
        }
        const int nRows = bTall ? kListRows + 1 : 1;
        item.place = {nColumn, nRow, std::min(nWidth, nColumns), nRows};
        nColumn += nWidth + kGap;
        nHeight = std::max(nHeight, nRows);
    }
    return nRow + nHeight;
}

// The size of bars and their kind have one label, and stand side by side without it.
Rect Form::PlaceOf(const Item& item) const
{
    return {m_rect.nColumn + item.place.nColumn, m_rect.nRow + item.place.nRow, item.place.nColumns,
            item.place.nRows};
}

// ---- focus

bool Form::CanFocus(const Item& item) const
{
    return item.pRow->kind != ControlKind::Label && m_view.IsEnabled(item.pRow->nControl) &&
           m_view.IsShown(item.pRow->nControl);
}

Form::Item* Form::ItemOf(LONG nControl)
{
    const auto find = [&](const Item& item) { return item.pRow->nControl == nControl; };
    const auto at = std::ranges::find_if(m_items, find);
    return at == m_items.end() ? nullptr : &*at;
}

ControlKind Form::FocusKind() const
{
    return KindOf(m_dialog, m_view.Focus());
}

// What is typed replaces the whole text at first.
void Form::Focus(LONG nControl)
{
    m_view.SetFocus(nControl);
    if (KindOf(m_dialog, nControl) == ControlKind::Edit)
        m_view.SelectText(nControl, {0, static_cast<LONG>(string_t(m_view.Text(nControl)).size())});
    m_dates.erase(nControl); // what was typed there and is no date is gone
    m_desk.Invalidate();
}

bool Form::MoveFocus(int nStep)
{
    const Item* pFocus = ItemOf(m_view.Focus());
    const auto nCount = static_cast<int>(m_items.size());
    int nAt = pFocus ? static_cast<int>(pFocus - m_items.data()) : nStep > 0 ? -1 : nCount;
    for (nAt += nStep; nAt >= 0 && nAt < nCount; nAt += nStep)
        if (const Item& item = m_items[static_cast<std::size_t>(nAt)]; CanFocus(item)) {
            Focus(item.pRow->nControl);
            return true;
        }
    return false;
}

bool Form::IsTyping() const
{
    const LONG nFocus = m_view.Focus();
    switch (FocusKind()) {
    case ControlKind::Edit:
        return m_view.IsEnabled(nFocus) && !m_view.IsReadOnly(nFocus);
    case ControlKind::Date:
        return m_view.IsEnabled(nFocus);
    default:
        return false;
    }
}

// ---- the picture

void Form::Draw(Canvas& canvas, const Rect& rect, bool bFocused)
{
    m_rect = rect;
    for (const Item& item : m_items)
        if (item.place.nRows > 0 && item.place.nRow < rect.nRows)
            DrawItem(canvas, item, bFocused && m_view.Focus() == item.pRow->nControl);
}

void Form::DrawItem(Canvas& canvas, const Item& item, bool bFocused)
{
    const LONG nControl = item.pRow->nControl;
    Rect place = PlaceOf(item);
    const Look off = m_view.IsEnabled(nControl) ? Look::Normal : Look::Disabled;
    const Look look = bFocused ? Look::Focused : off;
    if (item.pRow->kind == ControlKind::ListBox) {
        canvas.PutCell(place.nColumn, place.nRow, item.sLabel, off, place.nColumns);
        DrawList(canvas, item, {place.nColumn, place.nRow + 1, place.nColumns, place.nRows - 1},
                 bFocused);
        return;
    }
    const int nLabel = canvas.Put(place.nColumn, place.nRow, item.sLabel, off, place.nColumns);
    const int nUsed = nLabel ? nLabel + 1 : 0;
    place.nColumn += nUsed;
    place.nColumns = std::min(WidthOf(item), place.nColumns - nUsed);
    switch (item.pRow->kind) {
    case ControlKind::Edit:
        return DrawEdit(canvas, item, place, look, bFocused);
    case ControlKind::Date:
        return DrawDate(canvas, item, place, look, bFocused);
    case ControlKind::DropList: {
        const auto text = VisibleText(m_view.RowText(nControl, m_view.Selected(nControl)));
        canvas.Put(place.nColumn, place.nRow, "[", look);
        canvas.PutCell(place.nColumn + 1, place.nRow, text, look, place.nColumns - 4);
        canvas.Put(place.nColumn + place.nColumns - 3, place.nRow, " v]", look);
        return;
    }
    case ControlKind::Check:
        canvas.PutCell(place.nColumn, place.nRow,
                       (m_view.Check(nControl) ? "[x] " : "[ ] ") + CaptionOf(nControl), look,
                       place.nColumns);
        return;
    case ControlKind::Label:
        canvas.PutCell(place.nColumn, place.nRow, CaptionOf(nControl), look, place.nColumns);
        return;
    default:
        canvas.PutCell(place.nColumn, place.nRow, "[ " + CaptionOf(nControl) + " ]", look,
                       place.nColumns);
    }
}

// The caret is kept in sight; a text that is being edited begins at the left.
void Form::DrawEdit(Canvas& canvas, const Item& item, const Rect& place, Look look, bool bFocused)
{
    const LONG nControl = item.pRow->nControl;
    const string_t text = m_view.Text(nControl);
    const std::string visible = VisibleText(text);
    const int nInner = place.nColumns - 2;
    const auto nCaret =
        std::min(static_cast<std::size_t>(std::max<LONG>(m_view.SelectedText(nControl).nTo, 0)),
                 text.size());
    const int nCaretCell = CellsOf(VisibleText(string_view_t(text).substr(0, nCaret)));
    const int nHidden = std::max(0, nCaretCell - (nInner - 1));
    const bool bTyping = bFocused && IsTyping();
    canvas.Put(place.nColumn, place.nRow, "[", look);
    canvas.PutCell(place.nColumn + 1, place.nRow,
                   bTyping ? WithoutFront(visible, nHidden) : std::string_view(visible), look,
                   nInner, !bTyping && item.pRow->nWidth < 10);
    canvas.Put(place.nColumn + place.nColumns - 1, place.nRow, "]", look);
    if (bTyping)
        canvas.cursor = Point{place.nColumn + 1 + nCaretCell - nHidden, place.nRow};
}

void Form::DrawDate(Canvas& canvas, const Item& item, const Rect& place, Look look, bool bFocused)
{
    const LONG nControl = item.pRow->nControl;
    std::string text;
    if (bFocused && m_view.IsEnabled(nControl)) {
        const DateEdit& edit = EditOf(nControl);
        text = edit.Text();
        canvas.cursor = Point{place.nColumn + 1 + edit.Caret(), place.nRow};
    } else if (const auto date = DateOf(nControl)) {
        text = DateEdit::TextOf(date, m_formats.ShowsTime(nControl));
    }
    canvas.Put(place.nColumn, place.nRow, "[", look);
    canvas.PutCell(place.nColumn + 1, place.nRow, text, look, place.nColumns - 2);
    canvas.Put(place.nColumn + place.nColumns - 1, place.nRow, "]", look);
}

// In sight, of a list that is always open.
LONG Form::FirstRow(LONG nControl) const
{
    return std::max<LONG>(0, m_view.Selected(nControl) - kListRows + 1);
}

void Form::DrawList(Canvas& canvas, const Item& item, const Rect& place, bool bFocused)
{
    const LONG nControl = item.pRow->nControl;
    const LONG nSelected = m_view.Selected(nControl);
    const LONG nFirst = FirstRow(nControl);
    for (int n = 0; n < place.nRows; ++n) {
        const LONG nRow = nFirst + n;
        const Look chosen = bFocused ? Look::Focused : Look::Selected;
        const bool bChosen = nRow == nSelected && nSelected != kNoRow;
        canvas.PutCell(place.nColumn, place.nRow + n,
                       "| " + VisibleText(m_view.RowText(nControl, nRow)),
                       bChosen ? chosen : Look::Normal, place.nColumns);
    }
    if (bFocused && nSelected == kNoRow)
        canvas.Put(place.nColumn, place.nRow, ">", Look::Focused);
}

} // namespace tabulex
