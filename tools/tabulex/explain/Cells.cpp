// Text that is data is told by its characters alone, as the component does: digits with the signs
// of numbers, or with those of dates and times and the letters of AM and PM. So "-" is data too,
// and a date that names its month isn't. A line is cut at each divider before anything is cleaned,
// since quotes protect nothing.

#include "tools/tabulex/explain/Cells.h"

#include <algorithm>

#include <fmt/format.h>
#include <fmt/ranges.h>

namespace tabulex {

namespace {

// In the order of the bits of a mask.
struct DividerWord
{
    char c;
    const char* pszName;
    const char* pszOption;
};
constexpr DividerWord kDividerWords[] = {{':', "colon", ":"}, {' ', "blank", " "},
                                         {',', "comma", ","}, {';', "semicolon", ";"},
                                         {'|', "bar", "|"},   {'\t', "tab", "\\t"}};

constexpr std::string_view kQuotes = "'\"()[]";
constexpr std::string_view kBlanks = " \t";

std::string DividersIn(LONG nMask)
{
    std::string dividers;
    for (std::size_t i = 0; i < std::size(kDividerWords); ++i)
        if (nMask & (1 << i))
            dividers += kDividerWords[i].c;
    return dividers;
}

bool ConsistsOf(std::string_view text, std::string_view characters)
{
    return text.find_first_not_of(characters) == std::string_view::npos;
}

bool IsOneOf(std::string_view characters, char c)
{
    return characters.find(c) != std::string_view::npos;
}

std::string Cleaned(std::string_view cell)
{
    std::string text;
    for (const char c : cell)
        if (!IsOneOf(kQuotes, c) &&
            !(IsOneOf(kBlanks, c) && !text.empty() && IsOneOf(kBlanks, text.back())))
            text += c;
    const std::size_t nFirst = text.find_first_not_of(kBlanks);
    if (nFirst == std::string::npos)
        return {};
    return text.substr(nFirst, text.find_last_not_of(kBlanks) - nFirst + 1);
}

} // namespace

std::vector<std::string> CellsOf(std::string_view line, LONG nDividers)
{
    const std::string dividers = DividersIn(nDividers);
    std::vector<std::string> cells;
    while (!line.empty()) {
        const std::size_t nEnd = std::min(line.find_first_of(dividers), line.size());
        std::string cell = Cleaned(line.substr(0, nEnd));
        if (!cell.empty())
            cells.push_back(std::move(cell));
        line.remove_prefix(std::min(nEnd + 1, line.size()));
    }
    return cells;
}

std::size_t CountCells(std::string_view line, LONG nDividers)
{
    const std::string dividers = DividersIn(nDividers);
    return 1 + static_cast<std::size_t>(std::ranges::count_if(
                   line, [&](char c) { return dividers.find(c) != std::string::npos; }));
}

bool LooksLikeData(std::string_view cell)
{
    return !cell.empty() &&
           (ConsistsOf(cell, "0123456789.,-+") || ConsistsOf(cell, "0123456789./:apmAPM"));
}

bool HasData(const std::vector<std::string>& cells)
{
    return std::ranges::any_of(cells, LooksLikeData);
}

std::string DividerNames(LONG nDividers)
{
    std::vector<const char*> names;
    for (std::size_t i = 0; i < std::size(kDividerWords); ++i)
        if (nDividers & (1 << i))
            names.push_back(kDividerWords[i].pszName);
    return names.empty() ? "none" : fmt::format("{}", fmt::join(names, ", "));
}

std::string DividerOption(LONG nDividers)
{
    std::string text;
    for (std::size_t i = 0; i < std::size(kDividerWords); ++i)
        if (nDividers & (1 << i))
            text += kDividerWords[i].pszOption;
    return fmt::format("--dividers '{}'", text);
}

} // namespace tabulex
