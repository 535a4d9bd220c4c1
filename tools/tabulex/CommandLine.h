// The command line: its commands, options, help and usage errors.
#pragma once

#include <optional>

#include "tools/tabulex/Options.h"

namespace tabulex {

// Empty where nothing is left to do: help or the version was printed (status Done),
// or a usage error was told (status Usage).
std::optional<Options> ReadCommandLine(int argc, const char* const* argv, ExitStatus& status);

} // namespace tabulex
