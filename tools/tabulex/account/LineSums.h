// LineSums: whether each line has as many dividers, and signs and marks within numbers, as the
// lines of its file usually have.
//
// A date may have a dash between digits and a price may not, and bytes alone don't tell one from
// the other; but a line with one too many shows.
#pragma once

#include <cstdint>
#include <span>

#include "tools/tabulex/account/LineMarks.h"

namespace tabulex {

class LineSums
{
public:
    void Expect(const UsualLine& line);

    // The next windows, with the same of their places that count in each. Whether one of the lines
    // that end in them is odd.
    bool HasOddLine(std::span<const LineMarks::Masks> windows, std::uint64_t places);

private:
    std::size_t m_nUsual = 0; // sum of a line
    std::size_t m_nSum = 0;   // since the last line end
};

} // namespace tabulex
