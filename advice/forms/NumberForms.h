// How numbers are written: the decimal mark, the mark between thousands, and what may stand around
// the digits. Facts about a text, not guesses: whether it is a number of a style.
#pragma once

#include <optional>
#include <span>
#include <string_view>

namespace tabulex::advice {

struct NumberStyle
{
    char cDecimal = '.';
    char cThousands = 0; // 0: none; ' ' also stands for the narrow and the unbreakable blank

    bool operator==(const NumberStyle&) const = default;
};

// Those in use, the plainest first.
std::span<const NumberStyle> NumberStyles();

// What stands at a number.
enum NumberMark : unsigned
{
    MarkThousands = 1, // at least one between thousands
    MarkDecimal = 2,
    MarkExponent = 4,
    MarkSuffix = 8, // K, M, B: times a thousand, a million, a milliard
    MarkPercent = 16,
    MarkCurrency = 32,
};

struct NumberRead
{
    double dValue = 0;
    int nDecimals = 0;   // without zeros at the end, and after a suffix or exponent
    int nGroup = 0;      // digits behind the last mark of any kind; 0 without one
    unsigned uMarks = 0; // of NumberMark
};

// Empty for what isn't a number of that style. Thousands are groups of three digits.
std::optional<NumberRead> ReadNumber(std::string_view cell, const NumberStyle& style);

// Whether the text stands for a value that isn't there: nothing, "-", "N/A", "null".
bool IsMissing(std::string_view cell);

} // namespace tabulex::advice
