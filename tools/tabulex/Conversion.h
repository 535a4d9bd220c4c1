// Conversion: one run over one opened file, from its start to its summary.
//
// Runs on the caller's thread; the component works on the file's worker thread
// meanwhile, and the waiting side draws progress and hears interrupts.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "tools/tabulex/ConversionSink.h"
#include "tools/tabulex/ExitStatus.h"
#include "tools/tabulex/ProgressBar.h"
#include "tools/tabulex/Settings.h"

namespace tabulex {

struct ConversionOptions
{
    std::string sOutput = "-";
    OutputFormat format = OutputFormat::Csv;
    std::string sRejects; // empty for none
    bool bDryRun = false;
    ErrorReporter::Options errors;
    When progress = When::Auto;
};

enum class RunResult
{
    Commit,
    Rollback,
    Refused // never began
};

struct Outcome
{
    RunResult result = RunResult::Refused;
    ExitStatus status = ExitStatus::Done;
    Counts counts;
};

// Throws Fault where the run never begins.
Outcome RunConversion(Host& host, Console& console, const std::string& file,
                      const ConversionOptions& options, const std::optional<Portion>& portion);

} // namespace tabulex
