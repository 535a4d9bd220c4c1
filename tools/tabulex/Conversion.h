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
    std::string sOutput = "-"; // a path, or "-" for standard output
    OutputFormat format = OutputFormat::Csv;
    std::string sRejects; // empty for none
    bool bDryRun = false; // all is done, nothing is written
    ErrorReporter::Options errors;
    When progress = When::Auto;
};

enum class RunResult
{
    Commit,
    Rollback,
    Refused // never began
};

// How a run ended. The status is Done with a commit only; a rollback has the reason
// that weighs most.
struct Outcome
{
    RunResult result = RunResult::Refused;
    ExitStatus status = ExitStatus::Done;
    Counts counts;
};

// Checks nothing beforehand. Throws Fault where the run never begins: an output that
// can't be written, or settings that the component refuses. Nothing is left then, and
// nothing after a rollback but the rejects.
Outcome RunConversion(Host& host, Console& console, const std::string& file,
                      const ConversionOptions& options, const std::optional<Portion>& portion);

} // namespace tabulex
