// The text is copied without its marks into a buffer of digits with a point, which one call reads.
#include "advice/forms/NumberForms.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <string>

namespace tabulex::advice {

namespace {

constexpr NumberStyle kStyles[] = {{'.', 0},   {'.', ','}, {',', 0},    {',', '.'},
                                   {',', ' '}, {'.', ' '}, {'.', '\''}, {',', '\''}};

constexpr std::string_view kMissing[] = {
    "",     "-",    "--",  "---",     "—",      "–",   "n/a", "na",  "#n/a",
    "n.a.", "null", "nan", "none",    "nil",    ".",   "?",   "*",   "missing",
    "inf",  "-inf", "#na", "#value!", "(null)", "\\n", "x",   "n.d."};

struct SuffixRow
{
    std::string_view sSuffix;
    int nPower;
};

constexpr SuffixRow kSuffixes[] = {{"K", 3},   {"k", 3},  {"M", 6},   {"m", 6},   {"B", 9},
                                   {"b", 9},   {"T", 12}, {"Mio", 6}, {"Mrd", 9}, {"Mln", 6},
                                   {"mln", 6}, {"Bn", 9}, {"bn", 9}};

constexpr std::string_view kCurrencies[] = {"$", "€", "£", "¥", "₹", "R$", "₽", "₩", "US$"};
constexpr std::string_view kThinBlanks[] = {" ", "\xC2\xA0", "\xE2\x80\xAF", "\xE2\x80\x89"};
constexpr std::size_t kMostDigits = 40;

bool IsDigit(char c)
{
    return c >= '0' && c <= '9';
}

// Takes one of the texts off the beginning.
template <class Texts>
bool TakePrefix(std::string_view& cell, const Texts& texts)
{
    for (const std::string_view text : texts)
        if (cell.starts_with(text)) {
            cell.remove_prefix(text.size());
            return true;
        }
    return false;
}

// Of either side of the digits, with the blank between.
bool TakeCurrency(std::string_view& cell)
{
    if (TakePrefix(cell, kCurrencies)) {
        cell.remove_prefix(std::min(cell.find_first_not_of(' '), cell.size()));
        return true;
    }
    for (const std::string_view text : kCurrencies)
        if (cell.ends_with(text)) {
            cell.remove_suffix(text.size());
            cell = cell.substr(0, cell.find_last_not_of(' ') + 1);
            return true;
        }
    return false;
}

// The power of ten that a suffix stands for; it must stand behind a digit, or it is a word.
int TakeSuffix(std::string_view& cell)
{
    for (const SuffixRow& row : kSuffixes)
        if (cell.size() > row.sSuffix.size() && cell.ends_with(row.sSuffix)) {
            const auto rest = cell.substr(0, cell.size() - row.sSuffix.size());
            const auto nLast = rest.find_last_not_of(' ');
            if (nLast == std::string_view::npos || !IsDigit(rest[nLast]))
                continue;
            cell = rest.substr(0, nLast + 1);
            return row.nPower;
        }
    return 0;
}

bool TakeThousands(std::string_view& cell, char cThousands)
{
    if (cThousands == ' ')
        return TakePrefix(cell, kThinBlanks);
    if (cell.empty() || cell.front() != cThousands)
        return false;
    cell.remove_prefix(1);
    return true;
}

struct Digits
{
    std::array<char, kMostDigits + 8> text{};
    std::size_t nSize = 0;

    bool Add(char c)
    {
        if (nSize >= kMostDigits)
            return false;
        text[nSize++] = c;
        return true;
    }
};

std::size_t AddRun(std::string_view& cell, Digits& digits, bool& bFits)
{
    std::size_t n = 0;
    for (; !cell.empty() && IsDigit(cell.front()); cell.remove_prefix(1), ++n)
        bFits = digits.Add(cell.front()) && bFits;
    return n;
}

// The digits ahead of the decimal mark; false where groups aren't of three.
bool TakeWhole(std::string_view& cell, const NumberStyle& style, Digits& digits, NumberRead& read)
{
    bool bFits = true;
    const bool bZero = cell.starts_with('0');
    std::size_t nGroup = AddRun(cell, digits, bFits);
    bool bFirst = true;
    while (style.cThousands != 0 && nGroup > 0) {
        std::string_view rest = cell;
        if (!TakeThousands(rest, style.cThousands) || rest.empty() || !IsDigit(rest.front()))
            break;
        if (bFirst && (nGroup > 3 || bZero))
            return false;
        cell = rest;
        bFirst = false;
        read.uMarks |= MarkThousands;
        nGroup = AddRun(cell, digits, bFits);
        read.nGroup = static_cast<int>(nGroup);
        if (nGroup != 3)
            return false;
    }
    return bFits;
}

// Zeros at the end say nothing of how many decimals a column has.
bool TakeFraction(std::string_view& cell, char cDecimal, Digits& digits, NumberRead& read)
{
    if (cell.empty() || cell.front() != cDecimal)
        return true;
    cell.remove_prefix(1);
    bool bFits = digits.Add('.');
    const std::size_t nFrom = digits.nSize;
    read.nGroup = static_cast<int>(AddRun(cell, digits, bFits));
    read.uMarks |= MarkDecimal;
    std::size_t nEnd = digits.nSize;
    while (nEnd > nFrom && digits.text[nEnd - 1] == '0')
        --nEnd;
    read.nDecimals = static_cast<int>(nEnd - nFrom);
    return bFits;
}

// The power of ten behind an e; false where something else stands there.
bool TakeExponent(std::string_view& cell, int& nPower, NumberRead& read)
{
    if (cell.empty() || (cell.front() != 'e' && cell.front() != 'E'))
        return true;
    cell.remove_prefix(cell.size() > 1 && cell[1] == '+' ? 2 : 1);
    int nExponent = 0;
    const auto [end, error] = std::from_chars(cell.data(), cell.data() + cell.size(), nExponent);
    if (error != std::errc() || nExponent > 99 || nExponent < -99)
        return false;
    cell.remove_prefix(static_cast<std::size_t>(end - cell.data()));
    nPower += nExponent;
    read.uMarks |= MarkExponent;
    return true;
}

} // namespace

std::span<const NumberStyle> NumberStyles()
{
    return kStyles;
}

std::optional<NumberRead> ReadNumber(std::string_view cell, const NumberStyle& style)
{
    NumberRead read;
    Digits digits;
    if (TakeCurrency(cell))
        read.uMarks |= MarkCurrency;
    if (!cell.empty() && (cell.front() == '-' || cell.front() == '+')) {
        if (cell.front() == '-')
            digits.Add('-');
        cell.remove_prefix(1);
    }
    if (cell.ends_with('%')) {
        read.uMarks |= MarkPercent;
        cell.remove_suffix(1);
        cell = cell.substr(0, cell.find_last_not_of(' ') + 1);
    }
    int nPower = TakeSuffix(cell);
    if (nPower != 0)
        read.uMarks |= MarkSuffix;
    if (cell.find_first_of("0123456789") == std::string_view::npos ||
        !TakeWhole(cell, style, digits, read) ||
        !TakeFraction(cell, style.cDecimal, digits, read) || !TakeExponent(cell, nPower, read) ||
        !cell.empty())
        return std::nullopt;
    digits.text[digits.nSize] = 0;
    std::string text(digits.text.data(), digits.nSize);
    if (nPower != 0)
        text += 'e' + std::to_string(nPower);
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), read.dValue);
    if (error != std::errc() || end != text.data() + text.size())
        return std::nullopt;
    read.nDecimals = std::max(0, read.nDecimals - nPower);
    return read;
}

bool IsMissing(std::string_view cell)
{
    if (cell.size() > 8)
        return false;
    std::string small(cell);
    for (char& c : small)
        if (c >= 'A' && c <= 'Z')
            c = static_cast<char>(c | 0x20);
    return std::ranges::find(kMissing, small) != std::end(kMissing);
}

} // namespace tabulex::advice
