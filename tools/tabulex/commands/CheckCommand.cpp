#include "tools/tabulex/commands/Commands.h"
#include "tools/tabulex/explain/Refusal.h"
#include "tools/tabulex/system/Fault.h"

namespace tabulex {

ExitStatus Check(const Context& context, Host& host, const CleanFile& input)
{
    OpenAsSet(context, host, input);
    const std::string fault = WhyRefused(host, context.options.settings);
    if (!fault.empty())
        throw Fault{ExitStatus::Refused, fault};
    return ExitStatus::Done;
}

} // namespace tabulex
