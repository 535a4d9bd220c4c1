// Text that is shown loses what isn't UTF-8, and each bad byte becomes U+FFFD. Names of files
// mustn't lose anything, so there a bad byte becomes half a surrogate, which no good name has, and
// turns back into the same byte. Letters beyond ASCII have no case here: no name of a type or an
// option has any.

#include "tools/tabulex/text/Text.h"

#include <algorithm>

#include <fmt/format.h>

#include "platform/text/Utf8.h"
#include "tools/tabulex/text/CellWidth.h"

namespace tabulex {

namespace {

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
        nWidth += nLength ? static_cast<std::size_t>(std::max(CellWidth(c), 0)) : 1;
        utf8.remove_prefix(std::max<std::size_t>(nLength, 1));
    }
    return nWidth;
}

std::string Bold(std::string_view text, bool bColour)
{
    return bColour ? fmt::format("{}{}{}", kBold, text, kNotBold) : std::string(text);
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
