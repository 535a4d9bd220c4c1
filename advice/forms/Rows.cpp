// A cell that begins with a quotation mark goes on to the divider behind the closing one; a mark
// within is doubled, which leaves the count even. A mark that is never closed divides as if it
// weren't there, so that one bad line doesn't swallow others.
#include "advice/forms/Rows.h"

#include <algorithm>

namespace tabulex::advice {

namespace {

constexpr std::string_view kBlanks = " \t";

std::string_view Unquoted(std::string_view cell)
{
    cell = WithoutBlanks(cell);
    return cell.size() >= 2 && cell.front() == '"' && cell.back() == '"'
               ? WithoutBlanks(cell.substr(1, cell.size() - 2))
               : cell;
}

// Behind the cell that begins at nFrom.
std::size_t CellEnd(std::string_view line, std::size_t nFrom, const Dialect& dialect)
{
    const std::size_t nText = line.find_first_not_of(' ', nFrom);
    if (dialect.bQuotes && nText != std::string_view::npos && line[nText] == '"') {
        bool bInside = false;
        for (std::size_t i = nText; i < line.size(); ++i) {
            bInside ^= line[i] == '"';
            if (!bInside && line[i] == dialect.cDivider)
                return i;
        }
        if (!bInside)
            return line.size();
    }
    return std::min(line.find(dialect.cDivider, nFrom), line.size());
}

} // namespace

std::string_view WithoutBlanks(std::string_view text)
{
    const std::size_t nFrom = text.find_first_not_of(kBlanks);
    if (nFrom == std::string_view::npos)
        return {};
    return text.substr(nFrom, text.find_last_not_of(kBlanks) - nFrom + 1);
}

std::vector<std::string_view> CellsOf(std::string_view line, const Dialect& dialect)
{
    std::vector<std::string_view> cells;
    if (dialect.cDivider == ' ')
        line = WithoutBlanks(line);
    for (std::size_t nAt = 0; cells.size() < kMostCells;) {
        const std::size_t nEnd = CellEnd(line, nAt, dialect);
        cells.push_back(Unquoted(line.substr(nAt, nEnd - nAt)));
        if (nEnd >= line.size())
            break;
        nAt = nEnd + 1;
        if (dialect.cDivider == ' ')
            nAt = std::min(line.find_first_not_of(kBlanks, nAt), line.size());
    }
    return cells;
}

} // namespace tabulex::advice
