// A number is a sign, digits, a mark and digits; all but one digit may be missing. An apostrophe
// may part thousands, unless two or three digits behind it look like parts of a price: in 118'16
// they are 32nds, and in 118'165 the last one stands for a half of them.

#include "tools/tabulex/review/CellFaults.h"

#include <algorithm>
#include <utility>

namespace tabulex {

namespace {

constexpr std::string_view kDropped = "'\"()[]";
constexpr std::string_view kDigits = "0123456789";
constexpr std::string_view kNumberCharacters = "0123456789.,+-";
constexpr std::string_view kLastOfThirtySeconds = "0257"; // for none, a quarter, a half, three

bool IsDigitIn(std::string_view text, std::size_t n)
{
    return n < text.size() && kDigits.find(text[n]) != kDigits.npos;
}

bool IsMarkIn(std::string_view text, std::size_t n)
{
    return n < text.size() && (text[n] == '.' || text[n] == ',');
}

std::size_t SkipDigits(std::string_view text, std::size_t n)
{
    return std::min(text.find_first_not_of(kDigits, n), text.size());
}

// Behind sign, digits, mark and digits.
std::size_t EndOfNumber(std::string_view text)
{
    std::size_t n = text.starts_with('-') || text.starts_with('+') ? 1 : 0;
    n = SkipDigits(text, n);
    return IsMarkIn(text, n) ? SkipDigits(text, n + 1) : n;
}

// As the component looks at whole numbers: other digits than 0 behind the mark make them bad.
bool HasFraction(std::string_view text)
{
    auto mark = text.find('.');
    if (mark == text.npos)
        mark = text.find(',');
    return mark != text.npos && text.find_first_not_of('0', mark + 1) != text.npos;
}

bool AreThirtySeconds(std::string_view digits)
{
    return digits.substr(0, 2) < "32" &&
           kLastOfThirtySeconds.find(digits.back()) != kLastOfThirtySeconds.npos;
}

// "1'234.5" and "-12'345'678".
bool HasThousandsMarks(std::string_view cell, bool bWhole)
{
    std::size_t n = cell.starts_with('-') || cell.starts_with('+') ? 1 : 0;
    const std::size_t nFirst = SkipDigits(cell, n) - n;
    if (nFirst < 1 || nFirst > 3)
        return false;
    std::size_t nGroups = 0;
    for (n += nFirst; n < cell.size() && cell[n] == '\''; n += 4, ++nGroups)
        if (SkipDigits(cell, n + 1) != n + 4)
            return false;
    if (n == cell.size() && nGroups == 1 && !bWhole && AreThirtySeconds(cell.substr(n - 3)))
        return false;
    return nGroups > 0 && cell.find_first_of(kDropped, n) == cell.npos;
}

bool IsTwoMarksAtDigits(std::string_view text)
{
    const auto nMarks = std::ranges::count_if(text, [](char c) { return c == '.' || c == ','; });
    return nMarks > 1 && text.find_first_of("+-", 1) == text.npos;
}

std::string_view WithoutEdges(std::string_view text, std::string_view edges)
{
    const std::size_t nFirst = std::min(text.find_first_not_of(edges), text.size());
    return text.substr(nFirst, text.find_last_not_of(edges) + 1 - nFirst);
}

bool IsBlankOrTab(char c)
{
    return c == ' ' || c == '\t';
}

} // namespace

NumberFault FaultInNumber(std::string_view cell, bool bWhole)
{
    cell = WithoutEdges(cell, "'\"");
    const std::string text = Bare(cell);
    if (text.empty() || text.find_first_not_of(kNumberCharacters) != text.npos ||
        (bWhole && HasFraction(text)))
        return NumberFault::None;
    const std::size_t nEnd = EndOfNumber(text);
    if (text.substr(0, nEnd).find_first_of(kDigits) == text.npos)
        return NumberFault::NoNumber;
    if (nEnd < text.size())
        return IsTwoMarksAtDigits(text) ? NumberFault::TwoMarks : NumberFault::Other;
    if (text.size() != cell.size() && !HasThousandsMarks(cell, bWhole))
        return NumberFault::Other;
    const auto comma = text.find(',');
    const bool bThousands = bWhole && comma != text.npos && text.size() - comma == 4;
    return bThousands ? NumberFault::Other : NumberFault::None;
}

bool HasOddFraction(std::string_view cell)
{
    for (std::size_t n = 4; n < cell.size(); ++n) {
        if (cell[n - 3] != ':' || !IsDigitIn(cell, n - 1) || !IsDigitIn(cell, n + 1))
            continue;
        const std::string_view digits = cell.substr(n + 1, SkipDigits(cell, n + 1) - n - 1);
        const bool bSeconds = n >= 6 && cell[n - 6] == ':';
        const bool bPart = IsMarkIn(cell, n) || (bSeconds && (cell[n] == ':' || cell[n] == '-'));
        const bool bRead = cell[n] == '.' && digits.size() == 3;
        if (bPart && !bRead)
            return digits.find_first_not_of('0') != digits.npos;
    }
    return false;
}

std::string_view Trimmed(std::string_view cell)
{
    return WithoutEdges(cell, " \t\"");
}

std::string Bare(std::string_view text)
{
    std::string bare(text);
    std::erase_if(bare, [](char c) { return kDropped.find(c) != kDropped.npos; });
    return bare;
}

std::optional<std::string_view> NextCell(std::string_view& line, std::string_view dividers)
{
    if (!line.data())
        return std::nullopt;
    for (std::size_t n = 0; n < line.size(); ++n) {
        const bool bFurther = n > 0 && IsBlankOrTab(line[n]) && IsBlankOrTab(line[n - 1]);
        if (bFurther || dividers.find(line[n]) == dividers.npos)
            continue;
        const std::string_view cell = line.substr(0, n);
        line.remove_prefix(n + 1);
        return cell;
    }
    return std::exchange(line, std::string_view());
}

std::optional<std::size_t> CellsAheadOfGap(std::string_view line, std::string_view dividers)
{
    line = line.substr(0, line.find_last_not_of(dividers) + 1);
    // Tabs are blanks to a person where something else divides.
    if (line.find_first_of(dividers.substr(0, dividers.find('\t'))) != line.npos)
        dividers = dividers.substr(0, dividers.find('\t'));
    std::size_t nCells = 0;
    for (std::size_t i = 0; i < line.size(); ++i) {
        if (dividers.find(line[i]) == dividers.npos)
            continue;
        if (i == 0 || line[i - 1] == line[i])
            return nCells;
        ++nCells;
    }
    return std::nullopt;
}

} // namespace tabulex
