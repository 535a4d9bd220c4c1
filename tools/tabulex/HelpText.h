// What the help says beside the options: examples first, exit statuses last.
#pragma once

#include <CLI/CLI.hpp>

namespace tabulex {

// Sets the layout of the help, the footer and the examples of an app or a command.
// The examples stand before everything else.
void SetHelp(CLI::App& app, const char* pszExamples);

} // namespace tabulex
