// ConversionView: who shows a conversion's progress and asks about its bad lines, in place of
// the lines of standard error.
#pragma once

#include <string>

#include "tools/tabulex/run/ProgressBar.h"

namespace tabulex {

struct BadLine
{
    ULONGLONG nLine; // from 1, as the component reports it
    LONG nField;     // from 1; kWholeRecord where no field is to blame
    std::string sMessage;
};

// What the user wants done about a bad line.
enum class BadLineAnswer
{
    Skip,
    SkipAll, // and ask no more
    Cancel
};

// All calls come on the thread of the run.
struct IConversionView
{
    virtual void ShowProgress(const Progress& progress) = 0;
    // sText is the line as it stands in the file. Blocks until the user has answered.
    virtual BadLineAnswer AskAbout(const BadLine& bad, const std::string& sText) = 0;
    // Called a few times a second while the run goes on. True: the user wants it to end.
    virtual bool IsCancelled() = 0;

protected:
    ~IConversionView() = default;
};

} // namespace tabulex
