#include "tools/tabulex/text/Text.h"

#include <algorithm>

#include <fmt/format.h>

namespace tabulex {

namespace {

constexpr char32_t kReplacement = 0xFFFD;

bool IsHighSurrogate(char32_t c)
{
    return c >= 0xD800 && c < 0xDC00;
}

bool IsLowSurrogate(char32_t c)
{
    return c >= 0xDC00 && c < 0xE000;
}

void AppendCodePoint(std::string& out, char32_t c)
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

struct LeadByte
{
    unsigned char nMask, nValue; // which bytes these are
    unsigned char nBits;         // those of the character
    int nTail;                   // bytes that follow
    char32_t nLeast;             // smaller values in this form are overlong
};

// By the number of bytes that follow.
constexpr LeadByte kLeadBytes[] = {
    {0x80, 0x00, 0x7F, 0, 0x0},
    {0xE0, 0xC0, 0x1F, 1, 0x80},
    {0xF0, 0xE0, 0x0F, 2, 0x800},
    {0xF8, 0xF0, 0x07, 3, 0x10000},
};

// Decodes the character at the front; gives its length, 0 where it is malformed.
std::size_t DecodeOne(std::string_view bytes, char32_t& c)
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
    const bool bSurrogate = c >= 0xD800 && c < 0xE000;
    return c < lead->nLeast || c > 0x10FFFF || bSurrogate ? 0 : std::size_t(lead->nTail) + 1;
}

// Writes a pair of surrogates for what doesn't fit one unit.
void AppendUtf16(string_t& out, char32_t c)
{
    if (c < 0x10000) {
        out += static_cast<OLECHAR>(c);
        return;
    }
    out += static_cast<OLECHAR>(0xD7C0 + (c >> 10));
    out += static_cast<OLECHAR>(0xDC00 | (c & 0x3FF));
}

// `malformed` gives the unit that stands for a byte outside UTF-8.
template <class Malformed>
string_t Decode(std::string_view bytes, Malformed malformed)
{
    string_t result;
    result.reserve(bytes.size());
    while (!bytes.empty()) {
        char32_t c = 0;
        const std::size_t nLength = DecodeOne(bytes, c);
        AppendUtf16(result, nLength ? c : malformed(static_cast<unsigned char>(bytes[0])));
        bytes.remove_prefix(std::max<std::size_t>(nLength, 1));
    }
    return result;
}

struct Range
{
    char32_t nFirst, nLast;
};

// Blocks of characters that terminals draw two columns wide: Hangul, kana, ideographs,
// full-width forms, pictographs.
constexpr Range kWide[] = {
    {0x1100, 0x115F}, {0x2E80, 0x303E}, {0x3041, 0xA4CF}, {0xAC00, 0xD7A3},   {0xF900, 0xFAFF},
    {0xFE30, 0xFE6F}, {0xFF00, 0xFF60}, {0xFFE0, 0xFFE6}, {0x1F300, 0x1F64F}, {0x20000, 0x3FFFD},
};

bool IsWide(char32_t c)
{
    return std::ranges::any_of(
        kWide, [c](const Range& range) { return c >= range.nFirst && c <= range.nLast; });
}

char LowerLetter(char c)
{
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c + ('a' - 'A')) : c;
}

} // namespace

void AppendUtf8(std::string& out, string_view_t text)
{
    for (std::size_t i = 0; i < text.size(); ++i) {
        char32_t c = static_cast<char16_t>(text[i]);
        if (c < 0x80) {
            out += static_cast<char>(c);
            continue;
        }
        const char32_t next = i + 1 < text.size() ? static_cast<char16_t>(text[i + 1]) : 0;
        if (IsHighSurrogate(c) && IsLowSurrogate(next)) {
            c = 0x10000 + ((c - 0xD800) << 10) + (next - 0xDC00);
            ++i;
        }
        AppendCodePoint(out, c >= 0xD800 && c < 0xE000 ? kReplacement : c);
    }
}

std::string ToUtf8(string_view_t text)
{
    std::string result;
    AppendUtf8(result, text);
    return result;
}

string_t FromUtf8(std::string_view bytes)
{
    return Decode(bytes, [](unsigned char) { return kReplacement; });
}

string_t PathFromBytes(std::string_view bytes)
{
    return Decode(bytes, [](unsigned char n) { return char32_t(0xDC00) + n; });
}

std::size_t DisplayWidth(std::string_view utf8)
{
    std::size_t nWidth = 0;
    while (!utf8.empty()) {
        char32_t c = 0;
        const std::size_t nLength = DecodeOne(utf8, c);
        nWidth += nLength && IsWide(c) ? 2 : 1;
        utf8.remove_prefix(std::max<std::size_t>(nLength, 1));
    }
    return nWidth;
}

std::string Bold(std::string_view text, bool bColour)
{
    return bColour ? fmt::format("\033[1m{}\033[0m", text) : std::string(text);
}

bool EqualIgnoringCase(std::string_view a, std::string_view b)
{
    return std::ranges::equal(a, b, {}, LowerLetter, LowerLetter);
}

std::string LowerCase(std::string_view text)
{
    std::string result(text);
    std::ranges::transform(result, result.begin(), LowerLetter);
    return result;
}

} // namespace tabulex
