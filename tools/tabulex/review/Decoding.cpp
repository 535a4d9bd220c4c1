// Lead bytes that no character has are refused, and those that must follow are counted; some forms
// that are too long and halves of surrogates pass. That is enough to tell UTF-8 from one-byte
// pages, in whose words such a row of bytes hardly occurs.

#include "tools/tabulex/review/Decoding.h"

#include <algorithm>

namespace tabulex {

namespace {

// How many bytes the sequence has that begins with this one; 0 for none.
std::size_t SequenceLength(unsigned char c)
{
    if (c < 0x80)
        return 1;
    if (c >= 0xC2 && c <= 0xDF)
        return 2;
    if (c >= 0xE0 && c <= 0xEF)
        return 3;
    return c >= 0xF0 && c <= 0xF4 ? 4 : 0;
}

} // namespace

bool IsUtf8(std::string_view bytes)
{
    while (!bytes.empty()) {
        const std::size_t nLength = SequenceLength(static_cast<unsigned char>(bytes[0]));
        if (nLength == 0)
            return false;
        const auto rest = bytes.substr(1, nLength - 1);
        if (!std::ranges::all_of(rest, [](char c) { return (c & 0xC0) == 0x80; }))
            return false;
        bytes.remove_prefix(std::min(nLength, bytes.size()));
    }
    return true;
}

bool IsAscii(std::string_view bytes)
{
    return std::ranges::all_of(bytes, [](char c) { return (c & 0x80) == 0; });
}

} // namespace tabulex
