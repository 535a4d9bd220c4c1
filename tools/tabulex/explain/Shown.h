// Texts from files as they are shown in messages.
#pragma once

#include <string>
#include <string_view>

namespace tabulex {

// 'text' in quotes, cut to some forty characters, with control characters as \xNN. Takes UTF-8;
// what isn't becomes U+FFFD.
std::string Shown(std::string_view text);

// The same, and words for a text without characters.
std::string ShownCell(std::string_view text);

} // namespace tabulex
