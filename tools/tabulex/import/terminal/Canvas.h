// Canvas: a picture of the terminal, made of cells.
//
// Places count cells from the upper left corner. A wide character takes two cells, a combining
// one none. What lies outside of the canvas isn't drawn; a wide character that would be cut is
// left out. Texts are those of VisibleText.h: they hold nothing that moves a cursor.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tabulex {

// What a text is; the screen knows how each looks.
enum class Look : unsigned char
{
    Normal,
    Title, // borders and headings
    Selected,
    Focused, // where the keyboard goes
    Disabled,
    Tinted, // a row that will be imported
    Error,
};

struct Size
{
    int nColumns = 0;
    int nRows = 0;

    bool operator==(const Size&) const = default;
};

struct Point
{
    int nColumn = 0;
    int nRow = 0;
};

struct Rect
{
    int nColumn = 0;
    int nRow = 0;
    int nColumns = 0;
    int nRows = 0;

    bool Has(int nAtColumn, int nAtRow) const
    {
        return nAtColumn >= nColumn && nAtColumn < nColumn + nColumns && nAtRow >= nRow &&
               nAtRow < nRow + nRows;
    }
};

class Canvas
{
public:
    struct Cell
    {
        std::string sText = " "; // UTF-8; empty in the second cell of a wide character
        Look look = Look::Normal;
    };

    Canvas() = default;
    explicit Canvas(Size size);

    Size GetSize() const { return m_size; }
    const Cell& At(int nColumn, int nRow) const { return m_cells[Index(nColumn, nRow)]; }

    // Writes at most nMost cells of a text, and gives how many it took.
    int Put(int nColumn, int nRow, std::string_view text, Look look, int nMost = 0x7FFF);
    // The same, and fills the rest of nCells with blanks. A text that is too long ends in "~".
    void PutCell(int nColumn, int nRow, std::string_view text, Look look, int nCells,
                 bool bRight = false);
    void Fill(const Rect& rect, Look look, char c = ' ');
    // The border of a box with blanks in it, and a title on its upper side.
    void Box(const Rect& rect, std::string_view title);

    // Where the terminal's cursor stands; empty for none.
    std::optional<Point> cursor;

    // A row as text, without the blanks at its end.
    std::string Row(int nRow) const;

private:
    std::size_t Index(int nColumn, int nRow) const
    {
        return static_cast<std::size_t>(nRow) * static_cast<std::size_t>(m_size.nColumns) +
               static_cast<std::size_t>(nColumn);
    }
    bool Holds(int nColumn, int nRow) const
    {
        return Rect{0, 0, m_size.nColumns, m_size.nRows}.Has(nColumn, nRow);
    }
    void Set(int nColumn, int nRow, std::string text, Look look);

    Size m_size;
    std::vector<Cell> m_cells; // row after row
};

} // namespace tabulex
