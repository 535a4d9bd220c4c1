// ErrorReporter: tells the bad lines of one conversion, decides whether it goes on,
// and keeps the rejects.
//
// Error lines are gathered and written a batch at a time. Used by one thread.
#pragma once

#include <optional>
#include <string>

#include "tools/tabulex/run/BadLineText.h"
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

struct BadLine
{
    ULONGLONG nLine; // from 1, as the component reports it
    LONG nField;     // from 1; kWholeRecord where no field is to blame
    std::string sMessage;
};

using IQRL_TabulexConverter::kWholeRecord;

class ErrorReporter
{
public:
    struct Options
    {
        OnBadLine action = OnBadLine::Skip;
        std::optional<ULONGLONG> nMost; // bad lines that are borne
    };

    // `file` is the name as the user gave it, `rejects` null where none are kept. All
    // of these must outlive this.
    ErrorReporter(const Host& host, Console& console, std::string file, const Options& options,
                  RejectsFile* rejects);

    // Tells the line, and asks about it where that is the action; an answer may take as
    // long as the user does. False: the conversion is to end.
    bool Tell(const BadLine& bad);
    // A batch of so many lines is behind us: writes what was gathered.
    void EndBatch(ULONGLONG nLines);
    // Writes what was gathered since.
    void Flush();

    // More were told than are borne.
    bool HasTooMany() const { return m_options.nMost && m_nTold > *m_options.nMost; }

private:
    bool Decide(const std::string& text);
    bool Ask(const std::string& text);
    void AppendReject(const BadLine& bad, const std::string& text);

    const Host& m_host;
    Console& m_console;
    std::string m_sFile;
    Options m_options;
    std::optional<BadLineText> m_texts; // only where the texts are wanted
    RejectsFile* m_rejects;
    std::string m_sLines;   // error lines not written yet
    std::string m_sRejects; // the same for rejects
    ULONGLONG m_nTold = 0;
    ULONGLONG m_nBatchStart = 0; // position
};

} // namespace tabulex
