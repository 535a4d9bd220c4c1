// A wide character is a cell with its text and one with none. Whatever is written over one of the
// two halves, the other becomes a blank, so that a row always has as many cells as it is wide.

#include "tools/tabulex/import/terminal/Canvas.h"

#include <algorithm>

#include "platform/text/Utf8.h"
#include "tools/tabulex/text/CellWidth.h"
#include "tools/tabulex/text/VisibleText.h"

namespace tabulex {

Canvas::Canvas(Size size)
    : m_size(size),
      m_cells(static_cast<std::size_t>(size.nColumns) * static_cast<std::size_t>(size.nRows))
{}

// A cell of one half of a wide character takes the other half with it, which a terminal couldn't
// draw by itself.
void Canvas::Set(int nColumn, int nRow, std::string text, Look look)
{
    Cell& cell = m_cells[Index(nColumn, nRow)];
    if (cell.sText.empty() && nColumn > 0 && !text.empty())
        m_cells[Index(nColumn - 1, nRow)].sText = " ";
    cell = {std::move(text), look};
    if (!cell.sText.empty() && nColumn + 1 < m_size.nColumns) {
        Cell& next = m_cells[Index(nColumn + 1, nRow)];
        if (next.sText.empty())
            next.sText = " ";
    }
}

int Canvas::Put(int nColumn, int nRow, std::string_view text, Look look, int nMost)
{
    int nUsed = 0;
    while (!text.empty()) {
        char32_t c = 0;
        const std::size_t nLength = std::max<std::size_t>(Utf8::DecodeFront(text, c), 1);
        const int nWidth = CellWidth(c);
        const int nAt = nColumn + nUsed;
        if (nUsed + nWidth > nMost)
            break;
        const bool bFits = Holds(nAt, nRow) && (nWidth < 2 || Holds(nAt + 1, nRow));
        if (nWidth > 0 && bFits) {
            if (nWidth > 1)
                Set(nAt + 1, nRow, "", look);
            Set(nAt, nRow, std::string(text.substr(0, nLength)), look);
            if (nWidth > 1) // the first half took the second one for a leftover
                m_cells[Index(nAt + 1, nRow)] = {"", look};
        } else if (nWidth == 0 && nUsed > 0 && Holds(nAt - 1, nRow)) {
            m_cells[Index(nAt - 1, nRow)].sText += text.substr(0, nLength);
        }
        nUsed += std::max(nWidth, 0);
        text.remove_prefix(nLength);
    }
    return nUsed;
}

void Canvas::PutCell(int nColumn, int nRow, std::string_view text, Look look, int nCells,
                     bool bRight)
{
    if (nCells <= 0)
        return;
    Fill({nColumn, nRow, nCells, 1}, look);
    const int nWidth = CellsOf(text);
    if (nWidth > nCells) {
        const int nUsed = Put(nColumn, nRow, text, look, nCells - 1);
        Put(nColumn + nUsed, nRow, "~", look);
        return;
    }
    Put(bRight ? nColumn + nCells - nWidth : nColumn, nRow, text, look);
}

void Canvas::Fill(const Rect& rect, Look look, char c)
{
    for (int nRow = rect.nRow; nRow < rect.nRow + rect.nRows; ++nRow)
        for (int n = rect.nColumn; n < rect.nColumn + rect.nColumns; ++n)
            if (Holds(n, nRow))
                Set(n, nRow, std::string(1, c), look);
}

void Canvas::Box(const Rect& rect, std::string_view title)
{
    Fill(rect, Look::Normal);
    const int nRight = rect.nColumn + rect.nColumns - 1;
    const int nBottom = rect.nRow + rect.nRows - 1;
    Fill({rect.nColumn, rect.nRow, rect.nColumns, 1}, Look::Title, '-');
    Fill({rect.nColumn, nBottom, rect.nColumns, 1}, Look::Title, '-');
    Fill({rect.nColumn, rect.nRow, 1, rect.nRows}, Look::Title, '|');
    Fill({nRight, rect.nRow, 1, rect.nRows}, Look::Title, '|');
    for (const Point corner : {Point{rect.nColumn, rect.nRow}, Point{nRight, rect.nRow},
                               Point{rect.nColumn, nBottom}, Point{nRight, nBottom}})
        Fill({corner.nColumn, corner.nRow, 1, 1}, Look::Title, '+');
    if (!title.empty())
        PutCell(rect.nColumn + 2, rect.nRow, std::string(title) + " ", Look::Title,
                std::min(rect.nColumns - 4, CellsOf(title) + 1));
}

std::string Canvas::Row(int nRow) const
{
    std::string text;
    for (int n = 0; n < m_size.nColumns; ++n)
        text += At(n, nRow).sText;
    text.erase(text.find_last_not_of(' ') + 1);
    return text;
}

} // namespace tabulex
