// A sequence is taken whole or not at all: where a byte that must follow doesn't, its first byte
// alone counts as malformed, and the next one may begin a character of its own.
#include "advice/headings/Utf8.h"

#include <cstddef>

namespace tabulex {

namespace {

constexpr char32_t kMalformed = 0xFFFD;

// How many bytes the sequence has that begins with this one; 0 for none.
std::size_t LengthFrom(unsigned char c)
{
    return c < 0x80 ? 1 : c < 0xC2 ? 0 : c < 0xE0 ? 2 : c < 0xF0 ? 3 : c < 0xF5 ? 4 : 0;
}

} // namespace

char32_t TakeCharacter(std::string_view& text)
{
    const auto first = static_cast<unsigned char>(text.front());
    const std::size_t nLength = LengthFrom(first);
    char32_t c = nLength == 1 ? first : first & (0xFFu >> (nLength + 1));
    for (std::size_t i = 1; i < nLength; ++i) {
        const auto next = i < text.size() ? static_cast<unsigned char>(text[i]) : 0u;
        if ((next & 0xC0u) != 0x80u) {
            text.remove_prefix(1);
            return kMalformed;
        }
        c = (c << 6) | (next & 0x3Fu);
    }
    text.remove_prefix(nLength == 0 ? 1 : nLength);
    return nLength == 0 ? kMalformed : c;
}

void AppendCharacter(std::string& out, char32_t c)
{
    const auto tail = [&](int nShift) { out += static_cast<char>(0x80 | ((c >> nShift) & 0x3F)); };
    if (c < 0x80) {
        out += static_cast<char>(c);
    } else if (c < 0x800) {
        out += static_cast<char>(0xC0 | (c >> 6));
        tail(0);
    } else if (c < 0x10000) {
        out += static_cast<char>(0xE0 | (c >> 12));
        tail(6);
        tail(0);
    } else {
        out += static_cast<char>(0xF0 | (c >> 18));
        tail(12);
        tail(6);
        tail(0);
    }
}

} // namespace tabulex
