// The commands. Each writes its result to standard output, and throws Fault where it can't.
#pragma once

#include <string>

#include "interfaces/NativeHost.h"
#include "tools/tabulex/clean/CleanFile.h"
#include "tools/tabulex/host/Host.h"
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
    TabulexLanguage language;
};

// Opens a file with the settings, and tells the warnings that this gives.
Opening OpenAsSet(const Context& context, Host& host, const CleanFile& input);

// One command each, by their names; what they print stands in the help.

// These run once for each file, on a host that has none yet. Whoever runs them looks
// whether all reads went well.
ExitStatus Inspect(const Context& context, Host& host, const CleanFile& input);
ExitStatus Preview(const Context& context, Host& host, const CleanFile& input);
ExitStatus Check(const Context& context, Host& host, const CleanFile& input);
ExitStatus Raw(const Context& context, Host& host, const CleanFile& input);
ExitStatus Symbols(const Context& context, Host& host, const CleanFile& input);

// These run once for all files, or need none.
ExitStatus Convert(const Context& context);
ExitStatus Import(const Context& context);
ExitStatus PrintEnvironment(const Context& context);
ExitStatus TryTemplate(const Context& context);

} // namespace tabulex
