// Groups of options that commands share. An option has one name and one meaning in
// every command that takes it.
#pragma once

#include <CLI/CLI.hpp>

#include "tools/tabulex/options/Options.h"

namespace tabulex {

void AddGeneral(CLI::App& app, GeneralOptions& general);
void AddFiles(CLI::App& app, Options& options, bool bSeveral);
// What shapes the reading of the file.
void AddLayoutSettings(CLI::App& app, Settings& settings);
// A file of templates that take part in finding the layout.
CLI::Option* AddEnvironment(CLI::App& app, Settings& settings);
// Which of its records are imported.
void AddImportRange(CLI::App& app, Settings& settings);
// Records by number; `pszCount` describes --count.
void AddRecordRange(CLI::App& app, RangeOptions& range, const char* pszCount);
void AddOutput(CLI::App& app, ConvertOptions& convert);
void AddErrorHandling(CLI::App& app, ConvertOptions& convert);

} // namespace tabulex
