#include "interfaces/NativeHost.h"
#include "tests/transcripts/Scenarios.h"

namespace transcripts {

namespace {

void Run(Host& host, const char* pszSample)
{
    host.Open(pszSample);
    host.DescribeLayout();
    host.Convert();
}

constexpr Scenario kSampleScenarios[] = {
    {"date-06.csv", [](Host& host) { Run(host, "date-06.csv"); }},
    {"date-20.csv", [](Host& host) { Run(host, "date-20.csv"); }},
    {"day-no-header.csv", [](Host& host) { Run(host, "day-no-header.csv"); }},
    {"descending.csv", [](Host& host) { Run(host, "descending.csv"); }},
    {"divider-blank.txt", [](Host& host) { Run(host, "divider-blank.txt"); }},
    {"divider-tab.txt", [](Host& host) { Run(host, "divider-tab.txt"); }},
    {"junk.csv", [](Host& host) { Run(host, "junk.csv"); }},
    {"minute-5.csv", [](Host& host) { Run(host, "minute-5.csv"); }},
    {"symbols.csv", [](Host& host) { Run(host, "symbols.csv"); }},
    {"time-06.csv", [](Host& host) { Run(host, "time-06.csv"); }},
    {"time-10.csv", [](Host& host) { Run(host, "time-10.csv"); }},
    {"week.csv", [](Host& host) { Run(host, "week.csv"); }},
    {"gbk-symbol.csv",
     [](Host& host) {
         TabulexSetEncoding("gbk");
         Run(host, "gbk-symbol.csv");
     }},
    {"gbk-symbol.csv, taken for Latin text", [](Host& host) { Run(host, "gbk-symbol.csv"); }},
};

} // namespace

std::span<const Scenario> SampleScenarios()
{
    return kSampleScenarios;
}

} // namespace transcripts
