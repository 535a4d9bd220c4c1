// Consoles have no question for it, so blocks of characters that they draw two cells wide are
// listed here: Hangul, kana, ideographs, full-width forms, pictographs. What stands on another
// character takes none.

#include "tools/tabulex/text/CellWidth.h"

#include <algorithm>

namespace tabulex {

namespace {

struct WidthRange
{
    char32_t nFirst, nLast;
};

constexpr WidthRange kWide[] = {
    {0x1100, 0x115F}, {0x2E80, 0x303E}, {0x3041, 0xA4CF}, {0xAC00, 0xD7A3},   {0xF900, 0xFAFF},
    {0xFE30, 0xFE6F}, {0xFF00, 0xFF60}, {0xFFE0, 0xFFE6}, {0x1F300, 0x1F64F}, {0x20000, 0x3FFFD},
};

// Combining marks, joiners and selectors.
constexpr WidthRange kOnOthers[] = {
    {0x300, 0x36F},   {0x483, 0x489},   {0x591, 0x5BD},   {0x64B, 0x65F},
    {0x1AB0, 0x1AFF}, {0x1DC0, 0x1DFF}, {0x200B, 0x200F}, {0x20D0, 0x20FF},
    {0x302A, 0x302D}, {0xFE00, 0xFE0F}, {0xFE20, 0xFE2F}, {0xE0100, 0xE01EF},
};

} // namespace

int CellWidth(char32_t c)
{
    if (c < 0x20 || (c >= 0x7F && c < 0xA0))
        return -1;
    const auto holds = [c](const WidthRange& range) {
        return c >= range.nFirst && c <= range.nLast;
    };
    if (std::ranges::any_of(kOnOthers, holds))
        return 0;
    return std::ranges::any_of(kWide, holds) ? 2 : 1;
}

} // namespace tabulex
