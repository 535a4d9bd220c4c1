// A drawing asks the component for the range in sight, then for each cell of it, column after
// column, since a column is as wide as its widest text so far. Rows are counted by the component
// only; a count that its worker posts is taken up in the next turn of the wait.

#include "tools/tabulex/import/GridView.h"

#include <algorithm>
#include <array>

#include <fmt/format.h>

#include "tools/tabulex/import/terminal/ImportTexts.h"
#include "tools/tabulex/import/terminal/Popup.h"
#include "tools/tabulex/import/terminal/Prompt.h"
#include "tools/tabulex/text/VisibleText.h"

namespace tabulex {

using namespace IQRL_TabulexConverter;

namespace {

constexpr int kLeastColumn = 8;  // cells
constexpr int kMostColumn = 40;  // cells; a longer text is cut
constexpr int kColumnGap = 2;    // between columns
constexpr int kTab = 8;          // stops of a line's tabs
constexpr int kSideStep = 8;     // cells that a line moves aside
constexpr LONG kCellUnits = 259; // of a decoded field, with its terminator
constexpr LONG kLineUnits = 513; // of a line

// A number stands at the right of its column.
bool IsNumber(std::string_view text)
{
    return !text.empty() && text.find_first_not_of("0123456789.,+-eE") == text.npos &&
           text.find_first_of("0123456789") != text.npos;
}

} // namespace

GridView::GridView(Desk& desk, IGridEvents& events) : m_desk(desk), m_pEvents(&events) {}

void GridView::Close()
{
    IGridEvents* const pEvents = std::exchange(m_pEvents, nullptr);
    if (pEvents)
        pEvents->OnClose();
}

// ---- rows

void GridView::SetRowCount(LONG nRows)
{
    m_nPosted = -1; // older than this
    m_nRows = std::max<LONG>(nRows, 0);
    GoTo(m_nCurrent);
}

bool GridView::TakePosted()
{
    const LONG nPosted = m_nPosted.exchange(-1);
    if (nPosted < 0 || nPosted == m_nRows)
        return false;
    m_nRows = nPosted;
    GoTo(m_nCurrent);
    return true;
}

void GridView::ScrollToTop()
{
    m_nFirst = 0;
    GoTo(0);
}

LONG GridView::RowsInSight() const
{
    return std::max(m_rect.nRows - (HasHeadings() ? 1 : 0), 1);
}

void GridView::GoTo(LONG nRow)
{
    m_nCurrent = std::clamp<LONG>(nRow, 0, std::max<LONG>(m_nRows - 1, 0));
    KeepInSight();
    m_desk.Invalidate();
}

void GridView::KeepInSight()
{
    const LONG nInSight = RowsInSight();
    m_nFirst = std::clamp(m_nFirst, std::max<LONG>(m_nCurrent - nInSight + 1, 0), m_nCurrent);
    m_nFirst = std::min(m_nFirst, std::max<LONG>(m_nRows - nInSight, 0));
}

void GridView::AskRow()
{
    const auto nRow = AskNumber(m_desk, TextOf(ImportText::GoTo));
    if (nRow && *nRow > 0)
        GoTo(static_cast<LONG>(std::min<ULONGLONG>(*nRow - 1, 0x7FFFFFFE)));
}

// ---- columns

bool GridView::ShowHeader(bool bShow)
{
    m_bHeader = bShow;
    m_desk.Invalidate();
    return true;
}

void GridView::ClearColumns()
{
    m_columns.clear();
    m_nFirstColumn = m_nColumn = m_nLastColumn = 0;
    m_desk.Invalidate();
}

// The width that the component asks for leaves room for a frame that there is not.
bool GridView::AddColumn(const OLECHAR* pszText, LONG, bool bHeading)
{
    m_columns.push_back({VisibleText(pszText), bHeading, kLeastColumn, {}});
    m_desk.Invalidate();
    return true;
}

void GridView::SetColumnText(LONG nColumn, const OLECHAR* pszText)
{
    if (nColumn < 0 || nColumn >= ColumnCount())
        return;
    m_columns[static_cast<std::size_t>(nColumn)].sText = VisibleText(pszText);
    m_desk.Invalidate();
}

LONG GridView::HeadingWidth(const OLECHAR* pszText)
{
    return CellsOf(VisibleText(pszText));
}

ULONG GridView::Colour(SystemColour colour)
{
    switch (colour) {
    case ColourHighlight:
        return 0x00A00000;
    case ColourWindowText:
        return 0x00000000;
    case ColourButtonFace:
        return 0x00C0C0C0;
    default:
        return 0x00FFFFFF;
    }
}

void GridView::MoveColumn(int nStep)
{
    if (!HasHeadings()) {
        m_nHidden = std::max(m_nHidden + nStep * kSideStep, 0);
        return;
    }
    const auto nLast = static_cast<int>(m_columns.size()) - 1;
    m_nColumn = static_cast<std::size_t>(std::clamp(static_cast<int>(m_nColumn) + nStep, 0, nLast));
    m_nFirstColumn = std::min(m_nFirstColumn, m_nColumn);
    if (m_nColumn > m_nLastColumn)
        m_nFirstColumn += m_nColumn - m_nLastColumn;
}

// ---- the user

bool GridView::Handle(const Input& input)
{
    const LONG nPage = RowsInSight();
    switch (input.key) {
    case Key::Up:
        GoTo(m_nCurrent - 1);
        return true;
    case Key::Down:
        GoTo(m_nCurrent + 1);
        return true;
    case Key::PageUp: // the row keeps its place on the screen
    case Key::WheelUp:
        m_nFirst = std::max<LONG>(m_nFirst - nPage, 0);
        GoTo(m_nCurrent - nPage);
        return true;
    case Key::PageDown:
    case Key::WheelDown:
        m_nFirst += std::min(nPage, 0x7FFFFFFF - m_nFirst);
        GoTo(m_nCurrent + std::min(nPage, 0x7FFFFFFF - m_nCurrent));
        return true;
    case Key::Home:
        GoTo(0);
        return true;
    case Key::End:
        GoTo(m_nRows - 1);
        return true;
    case Key::Left:
        MoveColumn(-1);
        return true;
    case Key::Right:
        MoveColumn(1);
        return true;
    case Key::Enter:
        return OpenMenu();
    case Key::Press:
        return Press(input);
    case Key::Text:
        if (input.Is(U'g'))
            AskRow();
        return input.Is(U'g') || (input.Is(U'h') && OpenMenu());
    default:
        return false;
    }
}

bool GridView::Press(const Input& input)
{
    for (std::size_t n = m_nFirstColumn; n < m_columns.size() && HasHeadings(); ++n)
        if (m_columns[n].heading.Has(input.nColumn, input.nRow)) {
            m_nColumn = n;
            return OpenMenu();
        }
    const int nRow = input.nRow - m_rect.nRow - (HasHeadings() ? 1 : 0);
    if (nRow >= 0)
        GoTo(m_nFirst + nRow);
    return true;
}

bool GridView::OpenMenu()
{
    if (!m_pEvents || !m_bEnabled || !HasHeadings() || !m_columns[m_nColumn].bMenu)
        return false;
    m_pEvents->OnHeaderPress(static_cast<LONG>(m_nColumn));
    m_desk.Invalidate();
    return true;
}

LONG GridView::TrackMenu(ViewMenu menu, LONG nColumn)
{
    if (nColumn < 0 || nColumn >= ColumnCount())
        return 0;
    return ChooseFromMenu(m_desk, menu, m_columns[static_cast<std::size_t>(nColumn)].heading,
                          TextOf(ImportText::LayoutAnew));
}

// ---- the picture

int GridView::NumberWidth() const
{
    const LONG nLast = m_nFirst + std::min<LONG>(m_rect.nRows, m_nRows - m_nFirst);
    return std::max(5, static_cast<int>(fmt::formatted_size("{}", nLast)));
}

void GridView::Draw(Canvas& canvas, const Rect& rect, bool bFocused)
{
    m_rect = rect;
    for (Column& column : m_columns)
        column.heading = {};
    if (!m_pEvents || rect.nRows <= 0)
        return;
    KeepInSight();
    DrawRows(canvas, bFocused);
}

// Column after column, since the texts of a column decide on its width.
void GridView::DrawRows(Canvas& canvas, bool bFocused)
{
    const LONG nRows = std::min(RowsInSight(), m_nRows - m_nFirst);
    if (nRows > 0)
        m_pEvents->OnRange(m_nFirst, m_nFirst + nRows - 1);
    std::vector<Look> looks;
    for (LONG nRow = m_nFirst; nRow < m_nFirst + nRows; ++nRow) {
        const bool bImported = HasHeadings() && m_pEvents->IsImported(nRow);
        const Look look = bImported ? Look::Tinted : Look::Normal;
        const Look chosen = bFocused ? Look::Focused : Look::Selected;
        looks.push_back(nRow == m_nCurrent && (bFocused || HasHeadings()) ? chosen : look);
        const int nLine = m_rect.nRow + (HasHeadings() ? 1 : 0) + static_cast<int>(nRow - m_nFirst);
        canvas.Fill({m_rect.nColumn, nLine, m_rect.nColumns, 1}, looks.back());
        canvas.Put(m_rect.nColumn, nLine, bImported ? "#" : " ", looks.back());
        DrawNumber(canvas, nRow, looks.back());
    }
    int nAt = m_rect.nColumn + NumberWidth() + 4;
    for (std::size_t n = m_nFirstColumn; n < m_columns.size(); ++n) {
        const int nUsed = DrawColumn(canvas, n, nAt, looks, bFocused);
        if (nAt + nUsed <= m_rect.nColumn + m_rect.nColumns || n == m_nFirstColumn)
            m_nLastColumn = n;
        nAt += nUsed + kColumnGap;
        if (nAt >= m_rect.nColumn + m_rect.nColumns)
            break;
    }
}

void GridView::DrawNumber(Canvas& canvas, LONG nRow, Look look)
{
    const int nLine = m_rect.nRow + (HasHeadings() ? 1 : 0) + static_cast<int>(nRow - m_nFirst);
    canvas.PutCell(m_rect.nColumn + 2, nLine, std::to_string(LONGLONG(nRow) + 1), look,
                   NumberWidth(), true);
}

// Gives the cells that the whole column would take.
int GridView::DrawColumn(Canvas& canvas, std::size_t nColumn, int nAt,
                         const std::vector<Look>& looks, bool bFocused)
{
    Column& column = m_columns[nColumn];
    const int nRoom = m_rect.nColumn + m_rect.nColumns - nAt;
    std::vector<std::string> texts;
    int nWidth = std::max(column.nWidth, CellsOf(column.sText) + (column.bMenu ? 2 : 0));
    for (std::size_t n = 0; n < looks.size(); ++n) {
        texts.push_back(CellText(m_nFirst + static_cast<LONG>(n), nColumn));
        nWidth = std::max(nWidth, CellsOf(texts.back()));
    }
    column.nWidth = HasHeadings() ? std::min(nWidth, kMostColumn) : nRoom;
    const int nCells = std::min(column.nWidth, nRoom);
    const int nTop = m_rect.nRow + (HasHeadings() ? 1 : 0);
    for (std::size_t n = 0; n < texts.size(); ++n) {
        const std::string_view text = HasHeadings() ? texts[n] : WithoutFront(texts[n], m_nHidden);
        canvas.PutCell(nAt, nTop + static_cast<int>(n), text, looks[n], nCells,
                       HasHeadings() && IsNumber(text));
    }
    if (HasHeadings())
        DrawHeading(canvas, nColumn, nAt, nCells, bFocused);
    return column.nWidth;
}

void GridView::DrawHeading(Canvas& canvas, std::size_t nColumn, int nAt, int nWidth, bool bFocused)
{
    Column& column = m_columns[nColumn];
    const bool bCurrent = bFocused && nColumn == m_nColumn;
    const Look look = bCurrent ? Look::Focused : Look::Title;
    column.heading = {nAt, m_rect.nRow, nWidth, 1};
    canvas.PutCell(nAt, m_rect.nRow, column.sText, look, column.bMenu ? nWidth - 2 : nWidth);
    if (column.bMenu)
        canvas.PutCell(nAt + nWidth - 2, m_rect.nRow, " v", look, 2);
}

std::string GridView::CellText(LONG nRow, std::size_t nColumn)
{
    std::array<OLECHAR, kLineUnits> text = {};
    m_pEvents->CellText(nRow, static_cast<LONG>(nColumn), text.data(),
                        HasHeadings() ? kCellUnits : kLineUnits);
    return VisibleText(text.data(), HasHeadings() ? 0 : kTab);
}

} // namespace tabulex
