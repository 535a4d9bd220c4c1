// transcripts GROUP SAMPLES: runs the scenarios of a group over the samples, and prints
// what an observer of the host and of its component would have written down.

#include <algorithm>
#include <cstdio>
#include <string_view>

#include "tests/transcripts/Scenarios.h"

using namespace transcripts;

namespace {

struct Group
{
    std::string_view sName;
    std::span<const Scenario> (*pfnScenarios)();
};

constexpr Group kGroups[] = {
    {"samples", SampleScenarios}, {"sessions", SessionScenarios},  {"settings", SettingScenarios},
    {"dialogs", DialogScenarios}, {"dispatch", DispatchScenarios},
};

} // namespace

int main(int argc, char** argv)
{
    const auto* group =
        argc == 3 ? std::ranges::find(kGroups, argv[1], &Group::sName) : std::end(kGroups);
    if (group == std::end(kGroups)) {
        std::fputs("usage: transcripts GROUP SAMPLES\n", stderr);
        return 2;
    }
    for (const Scenario& scenario : group->pfnScenarios()) {
        std::printf("%s\n", scenario.pszName);
        Host host(argv[2]);
        scenario.pfnRun(host);
    }
}
