// Conversion: one run over one opened file, from its start to its summary.
//
// The caller's thread pumps meanwhile: rows, questions and progress all come on it.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "tools/tabulex/host/Settings.h"
#include "tools/tabulex/run/ConversionSink.h"
#include "tools/tabulex/run/ProgressBar.h"
#include "tools/tabulex/system/ExitStatus.h"

namespace tabulex {

struct ConversionOptions
{
    OutputOptions output;
    RejectsFile* rejects = nullptr; // null for none; must outlive the run
    bool bDryRun = false;           // all is done, nothing is written
    ErrorReporter::Options errors;
    When progress = When::Auto;
};

enum class RunResult
{
    Commit,
    Rollback,
    Refused // never began
};

struct Counts
{
    ULONGLONG nBatches = 0;
    ULONGLONG nDelivered = 0; // rows
    ULONGLONG nSkipped = 0;   // lines counted but not delivered
};

// How a run ended. The status is Done with a commit only; a rollback has the reason
// that weighs most.
struct Outcome
{
    RunResult result = RunResult::Refused;
    ExitStatus status = ExitStatus::Done;
    Counts counts;
};

// Doesn't check the settings. Throws Fault where the run never begins: an output that
// can't be written, or settings that the component refuses. Nothing is left then, and
// nothing after a rollback but the rejects.
Outcome RunConversion(Host& host, Console& console, const std::string& file,
                      const ConversionOptions& options, const std::optional<Portion>& portion);

} // namespace tabulex
