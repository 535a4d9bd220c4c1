// Fault: why a command can't go on. Thrown within the tool only; it never crosses a
// call of the component.
#pragma once

#include <string>

#include "tools/tabulex/system/ExitStatus.h"

namespace tabulex {

struct Fault
{
    ExitStatus status;
    std::string sMessage; // one sentence for the user: what is wrong, and what to do
};

// The message where memory runs out; the status is FileFault.
inline constexpr const char* kOutOfMemory =
    "memory ran out; close other programs, and run the command again";

} // namespace tabulex
