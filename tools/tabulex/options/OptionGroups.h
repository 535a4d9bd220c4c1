// Groups of options that commands share. An option has one name and one meaning in
// every command that takes it.
#pragma once

#include <CLI/CLI.hpp>

#include "tools/tabulex/options/Options.h"

namespace tabulex {

void AddGeneral(CLI::App& app, GeneralOptions& general);
void AddFiles(CLI::App& app, Options& options, bool bSeveral);
// Settings of how the file is read.
void AddLayoutSettings(CLI::App& app, Settings& settings);
// What is done to the lines before they are read.
void AddRecipe(CLI::App& app, intake::Recipe& recipe);
// A file of templates that are known before the layout is found.
CLI::Option* AddEnvironment(CLI::App& app, Settings& settings);
// Which records are converted.
void AddImportRange(CLI::App& app, Settings& settings);
// A range of records by number; `pszCount` describes --count.
void AddRecordRange(CLI::App& app, RangeOptions& range, const char* pszCount);
void AddOutput(CLI::App& app, ConvertOptions& convert);
// A symbol that the name of a file gives to its rows.
void AddNaming(CLI::App& app, ConvertOptions& convert);
// A file for the account as JSON.
void AddReport(CLI::App& app, ConvertOptions& convert);
void AddErrorHandling(CLI::App& app, ConvertOptions& convert);
// Reading files as advised.
void AddAdvice(CLI::App& app, ConvertOptions& convert);
void AddNoCheck(CLI::App& app, ConvertOptions& convert);

} // namespace tabulex
