// The component's own judgement of the settings.
#pragma once

#include <string>

#include "tools/tabulex/Host.h"

namespace tabulex {

// What the check finds wrong, in the component's words; empty if nothing. Throws
// Fault where the check itself fails.
std::string CheckSettings(const Host& host);

} // namespace tabulex
