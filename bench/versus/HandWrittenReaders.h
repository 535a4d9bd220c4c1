// The yardsticks of a conversion: readers written by hand, each for the layout of one made file
// and no other. They split at commas, read numbers with from_chars and dates by fixed places, and
// fill plain columns, a thousand rows at a time, over which a sum is made. They check nothing.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace bench {

struct HandReading
{
    std::uint64_t nRows = 0;
    // Of all cells: the days of a date since 1970, with the time as their fraction; the characters
    // of a symbol.
    double fSum = 0;
};

// The names of the layouts that there is a reader for; see QuoteLayouts.h.
std::vector<std::string> HandReadLayouts();

// Throws std::runtime_error for a layout without a reader and a file that can't be read. What a
// file of another layout gives is undefined.
HandReading ReadByHand(const std::string& sLayout, const std::string& sPath);

} // namespace bench
