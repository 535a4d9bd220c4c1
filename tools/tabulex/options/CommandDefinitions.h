// The commands with their options, arguments and help: everything that a command line may
// contain.
#pragma once

#include <CLI/CLI.hpp>

#include "tools/tabulex/options/Options.h"

namespace tabulex {

// What `app` parses goes to `options`, which must outlive it.
void DefineCommandLine(CLI::App& app, Options& options);

} // namespace tabulex
