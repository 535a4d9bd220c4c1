#include "intake/DividerFinder.h"

#include <algorithm>
#include <utility>

#include "intake/Intake.h"
#include "intake/LineRules.h"

namespace tabulex::intake {

namespace {

constexpr char kDividers[] = {'\t', '|', ';', ',', ' '};

// Blanks at the ends divide nothing, and tabs there neither.
std::string OutsideOfQuotes(std::string_view line, bool bQuotes)
{
    const std::size_t nBegin = std::min(line.find_first_not_of(" \t"), line.size());
    std::string outside;
    bool bWithin = false;
    for (const char c : line.substr(nBegin)) {
        bWithin = bWithin != (bQuotes && c == '"');
        if (!bWithin)
            outside += c;
    }
    while (outside.ends_with(' ') || outside.ends_with('\t'))
        outside.pop_back();
    return outside;
}

} // namespace

char DividerOf(const std::vector<std::string_view>& lines, bool bQuotes)
{
    std::size_t counts[std::size(kDividers)] = {};
    for (const std::string_view line : lines) {
        const std::string outside = OutsideOfQuotes(line, bQuotes);
        for (std::size_t n = 0; n < std::size(kDividers); ++n)
            counts[n] += outside.find(kDividers[n]) != std::string::npos ? 1 : 0;
    }
    const auto most = std::ranges::max_element(counts);
    return *most == 0 ? ',' : kDividers[most - std::begin(counts)];
}

DividerFinder::DividerFinder(const Recipe& recipe, CellCutter& cells, LineTaker& next)
    : m_rules(recipe.linesOut), m_bQuotes(recipe.cells.bQuotes), m_cells(cells), m_next(next)
{}

void DividerFinder::Take(std::string_view line, bool bCut)
{
    if (m_cells.Divider() != 0) {
        m_next.Take(line, bCut);
        return;
    }
    m_nBytes += line.size();
    m_lines.push_back({std::string(line), bCut});
    if (m_lines.size() == kDividerLines || m_nBytes > kMostLineBytes)
        Decide();
}

void DividerFinder::Finish()
{
    if (m_cells.Divider() == 0)
        Decide();
}

void DividerFinder::Decide()
{
    LineRules rules(m_rules);
    std::vector<std::string_view> lines;
    for (std::size_t n = 0; n < m_lines.size(); ++n)
        if (!rules.LeavesOut(m_lines[n].text, n + 1))
            lines.push_back(m_lines[n].text);
    m_cells.SetDivider(DividerOf(lines, m_bQuotes));
    for (Line& line : std::exchange(m_lines, {})) {
        const std::size_t nSize = line.text.size();
        line.text.append(kLinePadding, '\0');
        m_next.Take(std::string_view(line.text).substr(0, nSize), line.bCut);
    }
}

} // namespace tabulex::intake
