// Text between the component's UTF-16 and the UTF-8 of terminals and files.
#pragma once

#include <string>
#include <string_view>

#include "platform/component.h"

namespace tabulex {

// Appends UTF-16 as UTF-8; a lone surrogate becomes U+FFFD.
void AppendUtf8(std::string& out, string_view_t text);
std::string ToUtf8(string_view_t text);

// Malformed bytes become U+FFFD.
string_t FromUtf8(std::string_view bytes);

// The form in which the component takes paths: a byte that isn't UTF-8 is carried
// as a lone low surrogate U+DC80 to U+DCFF, so that every name can be opened.
string_t PathFromBytes(std::string_view bytes);

// The bytes of such a path.
std::string BytesFromPath(string_view_t path);

// The number of terminal columns that the text takes: two for a wide character, none for one that
// stands on the character before or can't be printed.
std::size_t DisplayWidth(std::string_view utf8);

// The escape sequences that Bold uses.
inline constexpr std::string_view kBold = "\033[1m";
inline constexpr std::string_view kNotBold = "\033[0m";

// The text between escape sequences for bold if `bColour` is set, else the text alone.
std::string Bold(std::string_view text, bool bColour);

bool EqualIgnoringCase(std::string_view a, std::string_view b);
std::string LowerCase(std::string_view text); // ASCII letters only

} // namespace tabulex
