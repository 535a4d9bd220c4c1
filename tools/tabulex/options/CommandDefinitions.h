// The commands with their options, arguments and help: all that a command line may say.
#pragma once

#include <CLI/CLI.hpp>

#include "tools/tabulex/options/Options.h"

namespace tabulex {

// Whatever is parsed by `app` goes to `options`, which must outlive it.
void DefineCommandLine(CLI::App& app, Options& options);

} // namespace tabulex
