// The parts of the help beside the options: examples come first, exit statuses last.
#pragma once

#include <span>
#include <string>

#include <CLI/CLI.hpp>

#include "tools/tabulex/system/ExitStatus.h"

namespace tabulex {

// Sets the layout of the help, the footer and the examples of an app or a command.
// The examples come before everything else, each on a line of its own.
void SetHelp(CLI::App& app, const char* pszExamples);
// The examples that SetHelp was given.
std::string ExamplesOf(const CLI::App& app);

struct ExitStatusText
{
    ExitStatus status;
    const char* pszMeaning;
};

// In ascending order.
std::span<const ExitStatusText> ExitStatusTexts();

} // namespace tabulex
