// The yardstick of the conversion: a reader written by hand for the layout of the
// benchmark's file and no other. It splits at commas, reads numbers with from_chars and dates
// by their fixed places, and keeps plain columns.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

struct PlainColumns
{
    std::vector<std::int32_t> days;    // year * 10000 + month * 100 + day
    std::vector<std::int32_t> minutes; // since midnight
    std::vector<double> open, high, low, close;
    std::vector<std::int64_t> volume;
};

// Throws std::runtime_error for a file that can't be read or a row of another layout.
PlainColumns ReadMinuteBars(const std::string& sPath);
