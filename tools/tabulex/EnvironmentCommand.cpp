#include <fmt/format.h>

#include "tools/tabulex/Commands.h"
#include "tools/tabulex/Environment.h"
#include "tools/tabulex/Fault.h"
#include "tools/tabulex/Results.h"

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
