#include "tools/tabulex/text/ShellWord.h"

#include <algorithm>
#include <iterator>

#include <fmt/format.h>

namespace tabulex {

namespace {

// In every shell, anywhere in a word. Bytes beyond ASCII are left to the quotes.
bool IsHarmless(char c)
{
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') ||
           std::string_view("_-./:=,+@%").find(c) != std::string_view::npos;
}

bool IsControl(char c)
{
    return static_cast<unsigned char>(c) < 0x20 || c == 0x7F;
}

// In the form of shells for texts with escapes.
std::string Escaped(std::string_view text)
{
    std::string result = "$'";
    for (const char c : text) {
        if (IsControl(c))
            fmt::format_to(std::back_inserter(result), "\\{:03o}", static_cast<unsigned char>(c));
        else if (c == '\'' || c == '\\')
            result.append(1, '\\').append(1, c);
        else
            result += c;
    }
    return result + '\'';
}

} // namespace

std::string QuoteForShell(std::string_view text)
{
    if (!text.empty() && std::ranges::all_of(text, IsHarmless))
        return std::string(text);
    if (std::ranges::any_of(text, IsControl))
        return Escaped(text);
    std::string result = "'";
    for (const char c : text)
        result += c == '\'' ? "'\\''" : std::string(1, c);
    return result + '\'';
}

} // namespace tabulex
