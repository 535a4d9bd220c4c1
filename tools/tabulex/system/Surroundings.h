// What the surroundings hand to the program.
#pragma once

#include <string>
#include <vector>

namespace tabulex {

// The command line in UTF-8, the program's name first. Takes what main was given.
std::vector<std::string> CommandLineArguments(int argc, char** argv);

// Whether the user reads Chinese, as far as the system knows it without the variables of
// a locale.
bool IsSystemChinese();

} // namespace tabulex
