// Words of a command line.
#pragma once

#include <string>
#include <string_view>

namespace tabulex {

// A word for a shell: quoted where it holds more than letters, digits and harmless marks.
// Characters that would do something to a terminal are written as escapes.
std::string QuoteForShell(std::string_view text);

} // namespace tabulex
