// Conversion: one run over one opened file, from its start to its summary.
//
// The caller's thread dispatches messages meanwhile: rows, questions and progress all come
// on it.
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
    bool bDryRun = false;           // everything is done, but nothing is written
    ErrorReporter::Options errors;
    When progress = When::Auto;
    IConversionView* pView = nullptr; // of progress; null for standard error. Outlives the run
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
    ULONGLONG nSkipped = 0;   // lines that were read but not delivered
};

// How a run ended. The status is Done only with a commit; after a rollback it is that of the
// most serious reason.
struct Outcome
{
    RunResult result = RunResult::Refused;
    ExitStatus status = ExitStatus::Done;
    Counts counts;
};

// Doesn't check the settings. Throws Fault where the run never begins: an output that
// can't be written, or settings that the component refuses; nothing is left then. After a
// rollback only the rejects are left. A run that didn't read the whole of what was asked
// for is rolled back (see ReadCheck.h).
Outcome RunConversion(Host& host, Console& console, const std::string& file,
                      const ConversionOptions& options, const std::optional<Portion>& portion);

} // namespace tabulex
