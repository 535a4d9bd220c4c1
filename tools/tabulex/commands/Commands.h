// The commands. Each runs for one file (convert, environment: for all, template: for none), writes
// its result to standard output and throws Fault where it can't.
#pragma once

#include <string>

#include "tools/tabulex/options/Options.h"
#include "tools/tabulex/system/Console.h"

namespace tabulex {

// What commands share. All of it outlives the command.
struct Context
{
    const Options& options;
    const ResolutionOffers& offers;
    Console& console;
    bool bColour; // on standard output
};

// One command each, by their names; what they print stands in the help.
ExitStatus Inspect(const Context& context, const std::string& file);
ExitStatus Convert(const Context& context);
ExitStatus Preview(const Context& context, const std::string& file);
ExitStatus Check(const Context& context, const std::string& file);
ExitStatus Raw(const Context& context, const std::string& file);
ExitStatus Symbols(const Context& context, const std::string& file);
ExitStatus PrintEnvironment(const Context& context);
ExitStatus TryTemplate(const Context& context);

} // namespace tabulex
