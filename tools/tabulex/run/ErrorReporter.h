// ErrorReporter: reports the bad lines of one conversion, decides whether it goes on, and
// writes the rejects.
//
// Error lines are gathered and written a batch at a time. Used by one thread.
#pragma once

#include <optional>
#include <string>

#include "tools/tabulex/run/BadLineText.h"
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

using IQRL_TabulexConverter::kWholeRecord;

class ErrorReporter
{
public:
    struct Options
    {
        OnBadLine action = OnBadLine::Skip;
        std::optional<ULONGLONG> nMost;   // bad lines that are allowed; empty for any number
        IConversionView* pView = nullptr; // who asks; null for the console. Outlives the reporter
    };

    // `file` is the name as the user gave it, `rejects` is null where none are kept. What is
    // handed in must outlive this object.
    ErrorReporter(const Host& host, Console& console, std::string file, const Options& options,
                  RejectsFile* rejects);

    // Reports the line, and asks the user about it where that is the action, for as long as
    // the answer takes. False: the conversion is to end.
    bool Report(const BadLine& bad);
    // A batch of nLines lines has been delivered: writes what was gathered.
    void EndBatch(ULONGLONG nLines);
    // Writes what was gathered since.
    void Flush();

    // More lines were reported than are allowed.
    bool HasTooMany() const { return m_options.nMost && m_nReported > *m_options.nMost; }
    // The last call of Report gave false.
    bool HasStopped() const { return m_bStopped; }

private:
    bool Decide(const BadLine& bad, const std::string& text);
    BadLineAnswer AskOnConsole(const std::string& text);
    void AppendReject(const BadLine& bad, const std::string& text);

    const Host& m_host;
    Console& m_console;
    std::string m_sFile;
    Options m_options;
    std::optional<BadLineText> m_texts; // empty where no texts are wanted
    RejectsFile* m_rejects;
    std::string m_sLines;   // error lines not written yet
    std::string m_sRejects; // the same for rejects
    ULONGLONG m_nReported = 0;
    bool m_bStopped = false;
    ULONGLONG m_nBatchStart = 0; // position
};

} // namespace tabulex
