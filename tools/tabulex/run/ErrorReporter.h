// ErrorReporter: reports the bad lines of one conversion, decides whether it goes on, and
// writes the rejects.
//
// Error lines are gathered and written a batch at a time. Used by one thread.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "tools/tabulex/account/ReportedLine.h"
#include "tools/tabulex/account/RunReport.h"
#include "tools/tabulex/run/ConversionView.h"
#include "tools/tabulex/run/RejectsFile.h"
#include "tools/tabulex/system/Console.h"

namespace tabulex {

// What to do with a bad line that the limit still allows.
enum class OnBadLine
{
    Ask,
    Skip,
    Stop
};

// How a line is numbered for the user.
enum class LineNumbers
{
    File,     // as an editor counts, from 1
    Component // as the component reports it
};

using IQRL_TabulexConverter::kWholeRecord;

class ErrorReporter
{
public:
    struct Options
    {
        OnBadLine action = OnBadLine::Skip;
        LineNumbers numbers = LineNumbers::File;
        std::optional<ULONGLONG> nMost;   // bad lines that are allowed; empty for any number
        IConversionView* pView = nullptr; // who asks; null for the console. Outlives the reporter
    };

    // `file` is the name as the user gave it; `rejects` and `report` are null where none are kept.
    // What is handed in must outlive this object.
    ErrorReporter(const Host& host, Console& console, std::string file, const Options& options,
                  LineMap& lines, RejectsFile* rejects, RunReport* report);

    // What is called each time before lines are written; empty for nothing.
    void BeforeLines(std::function<void()> before) { m_before = std::move(before); }

    // Reports the line, and asks the user about it where that is the action, for as long as
    // the answer takes. False: the conversion is to end.
    bool Report(const BadLine& bad);
    // A batch of nLines lines has been delivered: writes what was gathered.
    void EndBatch(ULONGLONG nLines);
    // Writes what was gathered since.
    void Flush();

    ULONGLONG Reported() const { return m_nReported; }
    // Those of the batch that came last, by their places among the lines with content; their
    // batch begins at this position.
    const std::vector<ULONGLONG>& LastBatch() const { return m_lastBatch; }
    ULONGLONG LastBatchStart() const { return m_nLastBatchStart; }

    // More lines were reported than are allowed.
    bool HasTooMany() const { return m_options.nMost && m_nReported > *m_options.nMost; }
    // The last call of Report gave false.
    bool HasStopped() const { return m_bStopped; }

private:
    bool IsBehindLastLine(const BadLine& bad);
    bool Decide(const BadLine& bad, const std::string& text);
    BadLineAnswer AskOnConsole(const std::string& text);
    BadLineRecord RecordOf(const BadLine& bad);
    void AppendReject(const BadLineRecord& bad);

    const Host& m_host;
    Console& m_console;
    std::string m_sFile;
    Options m_options;
    LineMap& m_map;
    ReportedLine m_places;
    RejectsFile* m_rejects;
    RunReport* m_report;
    std::function<void()> m_before;
    std::string m_sLines;   // error lines not written yet
    std::string m_sRejects; // the same for rejects
    ULONGLONG m_nReported = 0;
    bool m_bStopped = false;
    ULONGLONG m_nBatchStart = 0; // position
    ULONGLONG m_nLastBatchStart = 0;
    std::vector<ULONGLONG> m_batch, m_lastBatch;
};

} // namespace tabulex
