#include "tools/tabulex/text/Text.h"

#include <algorithm>

#include <fmt/format.h>

#include "platform/text/Utf8.h"

namespace tabulex {

namespace {

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
    while (!text.empty()) {
        const char32_t c = Utf8::TakeFront(text);
        Utf8::Append(out, Utf8::IsSurrogate(c) ? Utf8::kReplacement : c);
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
    return Utf8::Decode(bytes, [](unsigned char) { return Utf8::kReplacement; });
}

string_t PathFromBytes(std::string_view bytes)
{
    return Utf8::Decode(bytes, [](unsigned char n) { return char32_t(0xDC00) + n; });
}

std::string BytesFromPath(string_view_t path)
{
    constexpr char32_t kFirstByte = 0xDC80, kLastByte = 0xDCFF;
    std::string result;
    while (!path.empty()) {
        const char32_t c = Utf8::TakeFront(path);
        if (c >= kFirstByte && c <= kLastByte)
            result += static_cast<char>(c & 0xFF);
        else
            Utf8::Append(result, c);
    }
    return result;
}

std::size_t DisplayWidth(std::string_view utf8)
{
    std::size_t nWidth = 0;
    while (!utf8.empty()) {
        char32_t c = 0;
        const std::size_t nLength = Utf8::DecodeFront(utf8, c);
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
