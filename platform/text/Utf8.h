// UTF-8 and UTF-16, a character at a time: what paths, hosts and their terminals need.
//
// Decoding is strict: overlong forms, surrogates and numbers beyond U+10FFFF are malformed.
// What becomes of malformed bytes is the caller's choice. Header only, so that a host
// outside of the library has the same.
#pragma once

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <string>
#include <string_view>

#include "platform/component.h"

namespace Utf8 {

inline constexpr char32_t kReplacement = 0xFFFD;

constexpr bool IsHighSurrogate(char32_t c)
{
    return c >= 0xD800 && c < 0xDC00;
}
constexpr bool IsLowSurrogate(char32_t c)
{
    return c >= 0xDC00 && c < 0xE000;
}
constexpr bool IsSurrogate(char32_t c)
{
    return IsHighSurrogate(c) || IsLowSurrogate(c);
}

struct LeadByte
{
    unsigned char nMask, nValue; // which bytes these are
    unsigned char nBits;         // those of the character
    int nTail;                   // bytes that follow
    char32_t nLeast;             // smaller values in this form are overlong
};

// By the number of bytes that follow.
inline constexpr LeadByte kLeadBytes[] = {
    {0x80, 0x00, 0x7F, 0, 0x0},
    {0xE0, 0xC0, 0x1F, 1, 0x80},
    {0xF0, 0xE0, 0x0F, 2, 0x800},
    {0xF8, 0xF0, 0x07, 3, 0x10000},
};

// Decodes the character at the front of a text that isn't empty, and gives its length in
// bytes; 0, and nothing of use in `c`, where it is malformed.
inline std::size_t DecodeFront(std::string_view bytes, char32_t& c)
{
    const auto nFirst = static_cast<unsigned char>(bytes[0]);
    const auto* lead = std::ranges::find_if(
        kLeadBytes, [&](const LeadByte& row) { return (nFirst & row.nMask) == row.nValue; });
    if (lead == std::end(kLeadBytes) || bytes.size() <= static_cast<std::size_t>(lead->nTail))
        return 0;
    c = nFirst & lead->nBits;
    for (int i = 1; i <= lead->nTail; ++i) {
        const auto n = static_cast<unsigned char>(bytes[static_cast<std::size_t>(i)]);
        if ((n & 0xC0) != 0x80)
            return 0;
        c = (c << 6) | (n & 0x3F);
    }
    return c < lead->nLeast || c > 0x10FFFF || IsSurrogate(c) ? 0 : std::size_t(lead->nTail) + 1;
}

// Appends a character as UTF-8; a surrogate goes out in the same way as any other number.
inline void Append(std::string& out, char32_t c)
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

// Appends a character as UTF-16: as a pair of surrogates where it doesn't fit one unit.
inline void Append(string_t& out, char32_t c)
{
    if (c < 0x10000) {
        out += static_cast<OLECHAR>(c);
        return;
    }
    out += static_cast<OLECHAR>(0xD7C0 + (c >> 10));
    out += static_cast<OLECHAR>(0xDC00 | (c & 0x3FF));
}

// Takes the character at the front of a text that isn't empty. A surrogate that is part of
// no pair comes as it is.
inline char32_t TakeFront(string_view_t& text)
{
    char32_t c = static_cast<char16_t>(text[0]);
    const char32_t next = text.size() > 1 ? static_cast<char16_t>(text[1]) : 0;
    const bool bPair = IsHighSurrogate(c) && IsLowSurrogate(next);
    text.remove_prefix(bPair ? 2 : 1);
    return bPair ? 0x10000 + ((c - 0xD800) << 10) + (next - 0xDC00) : c;
}

// UTF-8 as UTF-16. `malformed` gives the unit that stands for a byte of no character.
template <class Malformed>
string_t Decode(std::string_view bytes, Malformed malformed)
{
    string_t result;
    result.reserve(bytes.size());
    while (!bytes.empty()) {
        char32_t c = 0;
        const std::size_t nLength = DecodeFront(bytes, c);
        Append(result, nLength ? c : malformed(static_cast<unsigned char>(bytes[0])));
        bytes.remove_prefix(std::max<std::size_t>(nLength, 1));
    }
    return result;
}

} // namespace Utf8
