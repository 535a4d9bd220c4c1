#include "tools/tabulex/SettingsCheck.h"

#include <fmt/format.h>

#include "tools/tabulex/EventSink.h"
#include "tools/tabulex/Fault.h"
#include "tools/tabulex/Properties.h"

namespace tabulex {

std::string CheckSettings(const Host& host)
{
    const com_ptr<EventSink> sink(new EventSink(host.Offers()));
    const HRESULT hr = host.Data().CheckConverterSettings(0, sink.get());
    if (FAILED(hr))
        throw Fault{ExitStatus::Refused, fmt::format("the settings check failed: {}", HexOf(hr))};
    return sink->FaultText();
}

} // namespace tabulex
