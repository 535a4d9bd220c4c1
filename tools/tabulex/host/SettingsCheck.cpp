#include "tools/tabulex/host/SettingsCheck.h"

#include <fmt/format.h>

#include "tools/tabulex/host/DataSink.h"
#include "tools/tabulex/host/Properties.h"
#include "tools/tabulex/system/Fault.h"

namespace tabulex {

std::string CheckSettings(const Host& host)
{
    const com_ptr<DataSink> sink(new DataSink);
    const HRESULT hr = host.Front().CheckConverterSettings(0, sink.get());
    if (FAILED(hr))
        throw Fault{ExitStatus::Refused, fmt::format("the settings check failed: {}", HexOf(hr))};
    return sink->FaultText();
}

// Without a Date column a run would end without a result.
std::string WhyNotRunnable(const Host& host)
{
    constexpr DATE kLastDay = 0xFFFF; // records are delivered with days of 16 bits
    if (!host.HasColumn(TypeDate))
        return "no column holds a date, so nothing can be converted; name it by --column N=Date";
    if (GetDate(host.Data(), &IDataParser::get_EndDateTime) >= kLastDay + 1)
        return "the file has dates after 2079-06-04, the last day that can be delivered; end the "
               "range there by --to 2079-06-04";
    return {};
}

std::string WhyNotConvertible(const Host& host)
{
    const std::string fault = CheckSettings(host);
    return fault.empty() ? WhyNotRunnable(host) : fault;
}

} // namespace tabulex
