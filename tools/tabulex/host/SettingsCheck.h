// Whether a file can be converted with the settings as they are.
#pragma once

#include <string>

#include "tools/tabulex/host/Host.h"

namespace tabulex {

// What the check finds wrong, in the component's words; empty if nothing. Throws
// Fault where the check itself fails.
std::string CheckSettings(const Host& host);

// Faults that the check doesn't look for, though no run can do with them; empty if none.
std::string WhyNotRunnable(const Host& host);

// What CheckSettings finds, or else what WhyNotRunnable does; empty if neither finds a fault.
std::string WhyNotConvertible(const Host& host);

} // namespace tabulex
