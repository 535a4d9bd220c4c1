// CellCutter: the cells of a line.
//
// Blanks and tabs at the ends of a cell are cut off, also inside of its quotation marks. Used by
// one thread.
#pragma once

#include <cstddef>
#include <deque>
#include <string>
#include <string_view>
#include <vector>

#include "intake/Recipe.h"

namespace tabulex::intake {

class CellCutter
{
public:
    // Bytes that must be readable behind a line.
    static constexpr std::size_t kPadding = 16;

    // `nMost` cells are cut; what is behind them is left out.
    CellCutter(bool bQuotes, std::size_t nMost);

    void SetDivider(char cDivider) { m_cDivider = cDivider; }
    // 0 until one is set.
    char Divider() const { return m_cDivider; }

    // False where a quotation mark is open at the end of the line; the cells are then those up to
    // the mark. The cells point into the line, or into this object until the next call.
    bool Cut(std::string_view line);
    // The same, with quotation marks taken for ordinary characters.
    void CutPlain(std::string_view line);

    const std::vector<std::string_view>& Cells() const { return m_cells; }

private:
    bool CutBlocks(std::string_view line, bool bQuotes);
    void CutAtBlanks(std::string_view line);
    bool CutQuoted(std::string_view line);
    bool TakeQuoted(std::string_view line, std::size_t& nAt);
    bool Add(std::string_view cell);

    const bool m_bQuotes;
    const std::size_t m_nMost;
    char m_cDivider = 0;
    std::vector<std::string_view> m_cells;
    // Cells with a pair of quotation marks for one; they never move.
    std::deque<std::string> m_unquoted;
    std::size_t m_nUnquoted = 0; // in use
};

} // namespace tabulex::intake
