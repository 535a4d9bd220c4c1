// Whether a file can be converted with the settings that stand.
#pragma once

#include <string>

#include "tools/tabulex/host/Host.h"

namespace tabulex {

// What the check finds wrong, in the component's words; empty if nothing. Throws
// Fault where the check itself fails.
std::string CheckSettings(const Host& host);

// What the check doesn't look at, but no run can do without; empty if nothing.
std::string WhyNotRunnable(const Host& host);

// Of both the first.
std::string WhyNotConvertible(const Host& host);

} // namespace tabulex
