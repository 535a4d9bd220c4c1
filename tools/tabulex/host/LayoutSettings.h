// Settings of where the data of a file begin, and what divides their fields.
#pragma once

#include <string_view>

#include "tools/tabulex/host/Host.h"
#include "tools/tabulex/host/Settings.h"

namespace tabulex {

// Applies --dividers, --lines-to-skip and --header: the component finds the columns anew. Throws
// Fault for what is refused; a header whose words are of no use adds a warning. The file's dates
// are to be read afterwards.
void ApplyStart(Host& host, const Settings& settings, std::vector<std::string>& warnings);

// Throws Fault for a result of the component that is no success, with the option that was given.
void RequireAccepted(HRESULT hr, std::string_view option);

} // namespace tabulex
