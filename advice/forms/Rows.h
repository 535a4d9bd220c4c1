// How a line is cut into cells.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tabulex::advice {

struct Dialect
{
    char cDivider = ',';  // a blank stands for a run of them
    bool bQuotes = false; // a divider between quotation marks divides nothing

    bool operator==(const Dialect&) const = default;
};

// More cells than any layout has; a line isn't cut further.
inline constexpr std::size_t kMostCells = 1000;

// The cells without quotation marks and without blanks around them, as parts of the line; doubled
// marks within a cell stay doubled.
std::vector<std::string_view> CellsOf(std::string_view line, const Dialect& dialect);

std::string_view WithoutBlanks(std::string_view text);

} // namespace tabulex::advice
