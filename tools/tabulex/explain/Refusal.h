// Refusal: why a file isn't converted, in words that its owner can check and act on.
#pragma once

#include <string>

#include "tools/tabulex/host/Settings.h"

namespace tabulex {

// What stands against a conversion of the host's file with the settings as they are; empty if
// nothing does. First what the settings check says, in the component's language, then the cause
// with the line and the text that show it, and one step to take. `settings` are those that were
// applied, so that a step can be tried together with them. Without bCheck the settings check
// isn't asked. Reads the first mebibyte and the last line of the file at most.
std::string WhyRefused(const Host& host, const Settings& settings, bool bCheck = true);

} // namespace tabulex
