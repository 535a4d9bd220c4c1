#include "tools/tabulex/commands/Commands.h"
#include "tools/tabulex/host/SettingsCheck.h"
#include "tools/tabulex/system/Fault.h"

namespace tabulex {

ExitStatus Check(const Context& context, Host& host, const std::string& file)
{
    OpenWithSettings(host, file, context.options.settings, context.console);
    const std::string fault = WhyNotConvertible(host);
    if (!fault.empty())
        throw Fault{ExitStatus::Refused, fault};
    return ExitStatus::Done;
}

} // namespace tabulex
