// The scenarios, by groups. Each runs on a host of its own.
#pragma once

#include <span>

#include "tests/transcripts/Host.h"

namespace transcripts {

struct Scenario
{
    const char* pszName;
    void (*pfnRun)(Host& host);
};

std::span<const Scenario> SampleScenarios();   // each sample from end to end
std::span<const Scenario> SessionScenarios();  // how sessions are answered and ended
std::span<const Scenario> SettingScenarios();  // what is chosen, and what is refused
std::span<const Scenario> DialogScenarios();   // a person imports samples through the dialog
std::span<const Scenario> DispatchScenarios(); // a host that calls by name

} // namespace transcripts
