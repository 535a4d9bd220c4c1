// Conversion: one run over one opened file, from its start to its summary.
//
// The caller's thread dispatches messages meanwhile: rows, questions and progress all come
// on it.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "tools/tabulex/account/Account.h"
#include "tools/tabulex/clean/CleanFile.h"
#include "tools/tabulex/host/Settings.h"
#include "tools/tabulex/run/ConversionSink.h"
#include "tools/tabulex/run/ProgressBar.h"
#include "tools/tabulex/run/RowShaping.h"
#include "tools/tabulex/system/ExitStatus.h"

namespace tabulex {

struct ConversionOptions
{
    OutputOptions output;
    std::optional<NameColumn> name;
    std::string sRangeOutside; // see Opening
    const CleanFile* pClean =
        nullptr;                    // what the host has open, if that isn't the user's file itself
    RejectsFile* rejects = nullptr; // null for none; must outlive the run
    RunReport* report = nullptr;    // the same
    bool bDryRun = false;           // everything is done, but no rows are written
    bool bStrict = false;           // a warning rolls the run back
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

    Counts& operator+=(const Counts& other);
};

const char* NameOf(RunResult result); // "commit", "rollback", "refused"

// How a run ended. The status is Done only with a commit; after a rollback it is that of the
// most serious reason.
struct Outcome
{
    RunResult result = RunResult::Refused;
    ExitStatus status = ExitStatus::Done;
    Counts counts;
    std::optional<Account> account; // empty where the file wasn't opened
    std::string sError;             // why a run that began failed; empty if it didn't
    bool bReaderGone = false;       // the rows weren't wanted to the end: a rollback, but no fault
    // Nothing was delivered since the range that was asked for holds no record: an empty result
    // that is no fault.
    bool bNothingNew = false;
};

// Doesn't check the settings. Throws Fault where the run never begins: an output that
// can't be written, or settings that the component refuses; nothing is left then. After a
// rollback only the rejects are left. A run that didn't read the whole of what was asked
// for is rolled back (see ReadCheck.h). One that is committed may still have a status other than
// Done: rows that are missing are said, and those that are there are kept.
//
// `file` is the name for the user, `settings` are those that the host was opened with.
Outcome RunConversion(Host& host, Console& console, const std::string& file,
                      const ConversionOptions& options, const Settings& settings,
                      Warnings& warnings);

// The account of a file that wasn't converted; empty where it wasn't opened either.
std::optional<Account> AccountOfUnread(const Host& host, const Settings& settings,
                                       Warnings& warnings);

} // namespace tabulex
