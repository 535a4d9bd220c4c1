#include "tools/tabulex/commands/Commands.h"

namespace tabulex {

Opening OpenAsSet(const Context& context, Host& host, const CleanFile& input)
{
    host.SetSource(input.Source());
    Opening opening =
        OpenWithSettings(host, input.Path(), input.SettingsOf(context.options.settings));
    for (const std::string& warning : opening.warnings)
        context.console.FileWarning(input.Name(), warning);
    return opening;
}

} // namespace tabulex
