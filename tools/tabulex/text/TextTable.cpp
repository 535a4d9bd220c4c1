#include "tools/tabulex/text/TextTable.h"

#include <algorithm>

#include "tools/tabulex/system/Terminal.h"
#include "tools/tabulex/text/Text.h"
#include "tools/tabulex/text/VisibleText.h"

namespace tabulex {

namespace {

constexpr std::string_view kGap = "  ";

// What a file holds must not act on a terminal; anywhere else it stays as it is.
std::string Cell(const std::string& text)
{
    static const bool bTerminal = IsTerminal(Stream::Output);
    return bTerminal ? VisibleUtf8(text) : text;
}

} // namespace

TextTable::TextTable(std::vector<Heading> headings, bool bColour)
    : m_headings(std::move(headings)), m_bColour(bColour)
{
    for (Heading& heading : m_headings) {
        heading.sText = Cell(heading.sText);
        m_widths.push_back(DisplayWidth(heading.sText));
    }
}

void TextTable::Add(std::vector<std::string> cells)
{
    for (std::size_t i = 0; i < cells.size(); ++i) {
        cells[i] = Cell(cells[i]);
        m_widths[i] = std::max(m_widths[i], DisplayWidth(cells[i]));
    }
    m_rows.push_back(std::move(cells));
}

// A table that is taken in pieces gets wider as longer cells come; what was taken keeps its widths.
std::string TextTable::Take(std::string_view indent)
{
    std::string result;
    if (m_bHeadingsDue) {
        std::vector<std::string> cells;
        for (const Heading& heading : m_headings)
            cells.push_back(heading.sText);
        result.append(indent).append(Bold(Line(cells), m_bColour)) += '\n';
    }
    for (const auto& row : m_rows)
        result.append(indent).append(Line(row)) += '\n';
    m_rows.clear();
    m_bHeadingsDue = false;
    return result;
}

std::string TextTable::Line(const std::vector<std::string>& cells) const
{
    std::string line;
    for (std::size_t i = 0; i < cells.size(); ++i) {
        const std::string pad(m_widths[i] - DisplayWidth(cells[i]), ' ');
        line.append(i > 0 ? kGap : "");
        line.append(m_headings[i].bRight ? pad + cells[i] : cells[i] + pad);
    }
    line.erase(line.find_last_not_of(' ') + 1);
    return line;
}

} // namespace tabulex
