// LineMarks: the bytes that tell what a line is made of, a window of places at a time.
//
// A window has more bytes than places: rules look at the bytes around a place as well.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "tools/tabulex/account/ByteSets.h"

namespace tabulex {

// What a usual line of a file has.
struct UsualLine
{
    std::string sDividers;     // of the fields; empty where any number of them may stand together
    std::size_t nDividers = 0; // so many of them in a line
    bool bCommaDivides = true; // else it parts a number as the point does
    std::string sTexts;        // cells of a line that are no numbers, each behind a line end
};

enum LineMark
{
    LineEnds,
    Dividers,
    Digits,
    Marks, // that part a number
    Signs,
    Colons,
    Quotes,
    Zeros, // looked for where a comma parts a number
    kLineMarks
};

inline constexpr std::string_view kQuotes = "\"'()[]"; // the component drops them

using LineMarks = ByteSets<kLineMarks>;

inline constexpr std::size_t kBefore = 6; // bytes of a window ahead of its places
inline constexpr std::size_t kAfter = 4;  // and behind them
inline constexpr std::size_t kPlaces = kWindowBytes - kBefore - kAfter;

// The first n places of a window, at most kPlaces.
constexpr std::uint64_t FirstPlaces(std::size_t n)
{
    return ((std::uint64_t{1} << n) - 1) << kBefore;
}

inline LineMarks MarksOf(const UsualLine& line)
{
    return LineMarks({"\n\r", line.sDividers, "0123456789", line.bCommaDivides ? "." : ".,", "-+",
                      ":", kQuotes, line.bCommaDivides ? "" : "0"});
}

} // namespace tabulex
