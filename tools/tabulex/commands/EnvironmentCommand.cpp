#include <fmt/format.h>

#include "tools/tabulex/commands/Commands.h"
#include "tools/tabulex/host/Environment.h"
#include "tools/tabulex/output/Results.h"
#include "tools/tabulex/system/Fault.h"

namespace tabulex {

// One object reads all files, each adding to what the others brought.
ExitStatus PrintEnvironment(const Context& context)
{
    Host host(context.offers);
    for (const std::string& file : context.options.files)
        ReadEnvironment(host, file);
    Results results;
    results.Add(EnvironmentText(host));
    results.Finish();
    return ExitStatus::Done;
}

} // namespace tabulex
