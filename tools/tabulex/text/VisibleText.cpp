// Names of files and lines of text come from strangers. What isn't plainly printable is written
// out, so that it neither moves the cursor nor hides.

#include "tools/tabulex/text/VisibleText.h"

#include <algorithm>

#include <fmt/format.h>

#include "platform/text/Utf8.h"
#include "tools/tabulex/text/CellWidth.h"
#include "tools/tabulex/text/Text.h"

namespace tabulex {

namespace {

struct CharacterRange
{
    char32_t nFirst, nLast;
};

// Marks that are invisible and turn the direction of what follows, or hide in a name.
constexpr CharacterRange kInvisible[] = {
    {0x00AD, 0x00AD}, {0x061C, 0x061C}, {0x200B, 0x200F},   {0x2028, 0x202E},
    {0x2060, 0x206F}, {0xFEFF, 0xFEFF}, {0xE0000, 0xE007F},
};

void AppendEscaped(std::string& out, char32_t c)
{
    constexpr char32_t kFirstByte = 0xDC80, kLastByte = 0xDCFF;
    if (c < 0x20 || c == 0x7F)
        fmt::format_to(std::back_inserter(out), "^{}", static_cast<char>(c ^ 0x40));
    else if (c >= kFirstByte && c <= kLastByte)
        fmt::format_to(std::back_inserter(out), "\\x{:02X}", static_cast<unsigned>(c & 0xFF));
    else if (c < 0xA0)
        fmt::format_to(std::back_inserter(out), "\\x{:02X}", static_cast<unsigned>(c));
    else
        fmt::format_to(std::back_inserter(out), "\\u{{{:04X}}}", static_cast<unsigned>(c));
}

} // namespace

bool IsPrintable(char32_t c)
{
    const auto holds = [c](const CharacterRange& range) {
        return c >= range.nFirst && c <= range.nLast;
    };
    return !Utf8::IsSurrogate(c) && std::ranges::none_of(kInvisible, holds) && CellWidth(c) >= 0;
}

int CellsOf(std::string_view text)
{
    return static_cast<int>(DisplayWidth(text));
}

std::string VisibleText(string_view_t text, int nTab)
{
    std::string result;
    int nColumn = 0; // of the next character, where tabs count
    while (!text.empty()) {
        const char32_t c = Utf8::TakeFront(text);
        const std::size_t nBefore = result.size();
        if (c == '\t' && nTab > 0)
            result.append(static_cast<std::size_t>(nTab - nColumn % nTab), ' ');
        else if (IsPrintable(c))
            Utf8::Append(result, c);
        else
            AppendEscaped(result, c);
        if (nTab > 0)
            nColumn += CellsOf(std::string_view(result).substr(nBefore));
    }
    return result;
}

std::string VisibleUtf8(std::string_view text)
{
    return VisibleText(PathFromBytes(text));
}

std::string VisibleLines(std::string_view text)
{
    constexpr std::string_view kKept = "\n\t";
    std::string result;
    while (!text.empty()) {
        const std::size_t nLength = std::min(text.find_first_of(kKept), text.size());
        result += VisibleUtf8(text.substr(0, nLength));
        result += text.substr(nLength, 1);
        text.remove_prefix(std::min(nLength + 1, text.size()));
    }
    return result;
}

std::string_view WithoutFront(std::string_view text, int nCells)
{
    while (!text.empty() && nCells > 0) {
        char32_t c = 0;
        const std::size_t nLength = std::max<std::size_t>(Utf8::DecodeFront(text, c), 1);
        nCells -= std::max(CellWidth(c), 0);
        text.remove_prefix(nLength);
    }
    return text;
}

} // namespace tabulex
