// A question for a number, in the status line.
#pragma once

#include <optional>

#include "platform/component.h"
#include "tools/tabulex/import/terminal/Desk.h"

namespace tabulex {

// Enter answers; empty after Esc, and for no digits.
std::optional<ULONGLONG> AskNumber(Desk& desk, const std::string& sQuestion);

} // namespace tabulex
