// TextTable: rows of text in aligned columns.
//
// Widths only grow, so a table may be written in pieces.
#pragma once

#include <string>
#include <vector>

namespace tabulex {

class TextTable
{
public:
    // Texts are aligned to the left, numbers to the right.
    struct Heading
    {
        std::string sText;
        bool bRight = false;
    };

    // The line of headings is bold if `bColour` is set.
    TextTable(std::vector<Heading> headings, bool bColour);

    // As many cells as headings.
    void Add(std::vector<std::string> cells);

    // The rows added since the last call, in the first call after the headings; each line
    // begins with `indent`.
    std::string Take(std::string_view indent = "");

private:
    std::string Line(const std::vector<std::string>& cells) const;

    std::vector<Heading> m_headings;
    std::vector<std::size_t> m_widths;
    std::vector<std::vector<std::string>> m_rows;
    bool m_bColour;
    bool m_bHeadingsDue = true;
};

} // namespace tabulex
