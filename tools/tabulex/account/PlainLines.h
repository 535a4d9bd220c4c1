// PlainLines: lines that need no closer look, many at a time.
//
// A plain line has 2 to kMostPlainBytes bytes, of which the first one is no divider and none is
// zero, and ends with LF or CR LF.
#pragma once

#include <cstddef>
#include <string_view>

namespace tabulex {

inline constexpr std::size_t kMostPlainBytes = 512;

struct PlainLines
{
    std::size_t nLines = 0;
    std::size_t nEnd = 0; // behind the last byte of the last one, ahead of its line end
};

// Those that stand at the beginning of the bytes, one behind the other, at most nMost of them.
// Some may be left out for being near the end of the bytes.
PlainLines FindPlainLines(std::string_view bytes, std::size_t nMost);

} // namespace tabulex
