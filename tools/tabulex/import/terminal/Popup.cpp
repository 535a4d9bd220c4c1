// A list is drawn as a layer of its own, and runs a loop of its own: whoever opened it waits in a
// call. A menu within a menu is one more list, run while the first one stays on the screen.

#include "tools/tabulex/import/terminal/Popup.h"

#include <algorithm>

#include "platform/text/Utf8.h"
#include "tools/tabulex/text/Text.h"
#include "tools/tabulex/text/VisibleText.h"

namespace tabulex {

using IQRL_TabulexConverter::ViewMenu;
using IQRL_TabulexConverter::ViewMenuItem;

Popup::Popup(Desk& desk, std::vector<PopupRow> rows, const Rect& anchor, std::size_t nSelected)
    : m_desk(desk), m_rows(std::move(rows)), m_anchor(anchor),
      m_nSelected(nSelected < m_rows.size() ? nSelected : 0)
{}

std::optional<std::size_t> Popup::Run()
{
    if (m_rows.empty())
        return std::nullopt;
    Answer answer = Answer::Wait;
    while (answer == Answer::Wait) {
        ShowHint();
        answer = Handle(m_desk.Next());
    }
    m_desk.SetHint({});
    return answer == Answer::Chosen ? std::optional(m_nSelected) : std::nullopt;
}

void Popup::SetHint(std::string hint, bool bAlways)
{
    m_sHint = std::move(hint);
    m_bAlwaysHint = bAlways;
}

void Popup::ShowHint()
{
    m_desk.SetHint(m_bAlwaysHint || m_rows[m_nSelected].bMore ? m_sHint : std::string());
}

Popup::Answer Popup::Handle(const Input& input)
{
    const int nPage = std::max(m_place.nRows - 3, 1);
    const auto nAll = static_cast<int>(m_rows.size());
    switch (input.key) {
    case Key::Up:
        Move(-1);
        break;
    case Key::Down:
        Move(1);
        break;
    case Key::PageUp:
    case Key::WheelUp:
        Move(-nPage);
        break;
    case Key::PageDown:
    case Key::WheelDown:
        Move(nPage);
        break;
    case Key::Home:
        Move(-nAll);
        break;
    case Key::End:
        Move(nAll);
        break;
    case Key::Right:
        return m_rows[m_nSelected].bMore ? Answer::Chosen : Answer::Wait;
    case Key::Enter:
    case Key::Accept:
        return Answer::Chosen;
    case Key::Press:
        return Press(input);
    case Key::Left:
    case Key::Escape:
    case Key::Interrupt:
    case Key::Gone:
        return Answer::Closed;
    case Key::Text:
        if (input.c == U' ')
            return Answer::Chosen;
        Find(input.c);
        break;
    default:
        break;
    }
    return Answer::Wait;
}

Popup::Answer Popup::Press(const Input& input)
{
    if (!m_place.Has(input.nColumn, input.nRow))
        return Answer::Closed;
    const int nRow = input.nRow - m_place.nRow - 1 + static_cast<int>(m_nFirst);
    if (nRow < 0 || nRow >= static_cast<int>(m_rows.size()) ||
        IsLine(static_cast<std::size_t>(nRow)))
        return Answer::Wait;
    m_nSelected = static_cast<std::size_t>(nRow);
    return Answer::Chosen;
}

// Lines between rows are stepped over; where one stands at the end, the way back is gone.
void Popup::Move(int nRows)
{
    const int nLast = static_cast<int>(m_rows.size()) - 1;
    int nAt = std::clamp(static_cast<int>(m_nSelected) + nRows, 0, nLast);
    const int nStep = nRows < 0 ? -1 : 1;
    while (nAt >= 0 && nAt <= nLast && IsLine(static_cast<std::size_t>(nAt)))
        nAt += nStep;
    if (nAt >= 0 && nAt <= nLast)
        m_nSelected = static_cast<std::size_t>(nAt);
}

// The next row that begins with the character; letters of any case are the same.
void Popup::Find(char32_t c)
{
    std::string letter;
    Utf8::Append(letter, c);
    for (std::size_t n = 1; n <= m_rows.size(); ++n) {
        const std::size_t nRow = (m_nSelected + n) % m_rows.size();
        const std::string_view text = m_rows[nRow].sText;
        if (!text.empty() && EqualIgnoringCase(text.substr(0, letter.size()), letter)) {
            m_nSelected = nRow;
            return;
        }
    }
}

Rect Popup::PlaceIn(Size size) const
{
    int nWidth = m_anchor.nColumns - 2;
    for (const PopupRow& row : m_rows)
        nWidth = std::max(nWidth, CellsOf(row.sText) + 4);
    // As wide as the longest row, and never narrower than what it drops down from.
    nWidth = std::min(nWidth + 2, size.nColumns);
    const int nWanted = static_cast<int>(m_rows.size()) + 2;
    const int nBelow = size.nRows - (m_anchor.nRow + m_anchor.nRows);
    const bool bBelow = nBelow >= std::min(nWanted, m_anchor.nRow);
    const int nRows = std::max(std::min(nWanted, bBelow ? nBelow : m_anchor.nRow), 3);
    const int nRow = bBelow ? m_anchor.nRow + m_anchor.nRows : m_anchor.nRow - nRows;
    return {std::clamp(m_anchor.nColumn, 0, size.nColumns - nWidth),
            std::clamp(nRow, 0, size.nRows - nRows), nWidth, nRows};
}

Rect Popup::SelectedPlace() const
{
    const int nRow = m_place.nRow + 1 + static_cast<int>(m_nSelected - m_nFirst);
    return {m_place.nColumn + m_place.nColumns - 1, nRow - 2, 1, 1};
}

void Popup::Draw(Canvas& canvas)
{
    m_place = PlaceIn(canvas.GetSize());
    canvas.Box(m_place, "");
    const auto nInSight = static_cast<std::size_t>(m_place.nRows - 2);
    m_nFirst = std::min(m_nFirst, m_nSelected);
    if (m_nSelected >= m_nFirst + nInSight)
        m_nFirst = m_nSelected - nInSight + 1;
    for (std::size_t n = 0; n < nInSight && m_nFirst + n < m_rows.size(); ++n) {
        const PopupRow& row = m_rows[m_nFirst + n];
        const int nLine = m_place.nRow + 1 + static_cast<int>(n);
        const Look look = m_nFirst + n == m_nSelected ? Look::Focused : Look::Normal;
        const int nWidth = m_place.nColumns - 2;
        if (row.sText.empty()) {
            canvas.Fill({m_place.nColumn + 1, nLine, nWidth, 1}, Look::Title, '-');
            continue;
        }
        canvas.PutCell(m_place.nColumn + 1, nLine, (row.bChecked ? "* " : "  ") + row.sText, look,
                       nWidth);
        if (row.bMore)
            canvas.Put(m_place.nColumn + nWidth - 1, nLine, ">", look);
    }
}

namespace {

std::vector<PopupRow> RowsOf(ViewMenu menu)
{
    std::vector<PopupRow> rows;
    for (const ViewMenuItem& item : menu)
        rows.push_back({item.pszText ? VisibleText(item.pszText) : std::string(), item.bChecked,
                        !item.items.empty()});
    return rows;
}

bool HasCheck(const ViewMenuItem& item)
{
    return item.bChecked || std::ranges::any_of(item.items, HasCheck);
}

// Items with items of their own open a list beside theirs; without a choice there, this one goes
// on.
LONG ChooseFrom(Desk& desk, ViewMenu menu, const Rect& anchor, const std::string& sHint,
                bool bWithin)
{
    const auto checked = std::ranges::find_if(menu, HasCheck);
    Popup popup(desk, RowsOf(menu), anchor, static_cast<std::size_t>(checked - menu.begin()));
    popup.SetHint(sHint, bWithin);
    const Layered layered(desk, popup);
    while (const auto nRow = popup.Run()) {
        const ViewMenuItem& item = menu[*nRow];
        if (item.items.empty())
            return item.nId;
        if (const LONG nId = ChooseFrom(desk, item.items, popup.SelectedPlace(), sHint, true))
            return nId;
    }
    return 0;
}

} // namespace

LONG ChooseFromMenu(Desk& desk, ViewMenu menu, const Rect& anchor, const std::string& sHint)
{
    return ChooseFrom(desk, menu, anchor, sHint, false);
}

} // namespace tabulex
