// Exit statuses of the tool: what scripts may rely on.
#pragma once

#include <algorithm>

namespace tabulex {

enum class ExitStatus
{
    Done = 0,      // the work was done; a conversion was committed
    Refused = 1,   // the data or the settings don't allow the work
    Usage = 2,     // the command line can't be understood
    FileFault = 3, // a file can't be opened, read or written
    // What shells give for a program that a signal ended.
    HungUp = 129,      // its terminal was closed
    Interrupted = 130, // Ctrl-C
    Terminated = 143,  // it was asked to end
};

// Several files end with the highest status of all.
inline ExitStatus Worse(ExitStatus a, ExitStatus b)
{
    return std::max(a, b);
}

} // namespace tabulex
