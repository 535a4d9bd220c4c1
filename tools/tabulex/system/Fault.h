// Fault: why a command can't go on. Thrown within the tool only; it never crosses a
// call of the component.
#pragma once

#include <string>

#include "tools/tabulex/system/ExitStatus.h"

namespace tabulex {

struct Fault
{
    ExitStatus status;
    std::string sMessage; // one sentence for the user; may be empty when all is said
};

} // namespace tabulex
