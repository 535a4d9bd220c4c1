// DividerFinder: holds the first lines back until they tell what divides their cells.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "intake/CellCutter.h"
#include "intake/LineCutter.h"
#include "intake/Recipe.h"

namespace tabulex::intake {

class DividerFinder : public LineTaker
{
public:
    // Sets the cutter's divider if it has none, and hands all lines on. Both must outlive this.
    DividerFinder(const Recipe& recipe, CellCutter& cells, LineTaker& next);

    void Take(std::string_view line, bool bCut) override;
    // Hands on what is held back.
    void Finish();

private:
    struct Line
    {
        std::string text;
        bool bCut;
    };
    void Decide();

    const LinesOut m_rules;
    const bool m_bQuotes;
    CellCutter& m_cells;
    LineTaker& m_next;
    std::vector<Line> m_lines;
    std::size_t m_nBytes = 0; // of these
};

// The divider that most of the lines have; of several the strongest, in the order of tab, '|', ';',
// ',' and blank. Those between quotation marks don't count where bQuotes is set. A comma if there
// is none.
char DividerOf(const std::vector<std::string_view>& lines, bool bQuotes);

} // namespace tabulex::intake
