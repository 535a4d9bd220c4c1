// Characters of UTF-8, one at a time. What is malformed counts as U+FFFD, a byte each.
#pragma once

#include <string>
#include <string_view>

namespace tabulex {

// Takes the first character off the text, which must not be empty.
char32_t TakeCharacter(std::string_view& text);

void AppendCharacter(std::string& out, char32_t c);

} // namespace tabulex
