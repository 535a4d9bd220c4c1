// What the program is given by its surroundings.
#pragma once

#include <string>
#include <vector>

namespace tabulex {

// The command line in UTF-8, the program's name first. Takes the arguments of main.
std::vector<std::string> CommandLineArguments(int argc, char** argv);

// Whether the user reads Chinese, as far as the system knows it without the variables of
// a locale.
bool IsSystemChinese();

// The encoding of the locale, by a name or number that TabulexSetEncoding takes: what the component
// starts with. Empty for a locale that doesn't name it.
std::string LocaleEncoding();

// The processors that this process may use.
unsigned ProcessorCount();

} // namespace tabulex
