// The command line: its commands, options, help and usage errors.
#pragma once

#include <optional>

#include "tools/tabulex/options/Options.h"

namespace tabulex {

// Takes UTF-8, the program's name first. Empty if nothing is left to do: help or the version
// was printed (status Done), or a usage error was reported (status Usage).
std::optional<Options> ReadCommandLine(const std::vector<std::string>& arguments,
                                       ExitStatus& status);

} // namespace tabulex
