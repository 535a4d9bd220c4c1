#include "tools/tabulex/host/Multipliers.h"

#include <algorithm>

#include "interfaces/IValueMultiplier.h"
#include "tools/tabulex/host/Properties.h"

namespace tabulex {

namespace {

constexpr const char* kNoScaling = "1";

// Of "100" it is 2, of "1/1000" -3.
int ExponentOfName(const std::string& name)
{
    const auto nZeros = static_cast<int>(std::ranges::count(name, '0'));
    return name.starts_with("1/") ? -nZeros : nZeros;
}

} // namespace

Multipliers::Multipliers(const Host& host)
    : m_host(host), m_sPrice(Exchange(&IRecordParser::get_PriceMultiplier, kNoScaling)),
      m_sVolume(Exchange(&IRecordParser::get_VolumeMultiplier, kNoScaling))
{}

Multipliers::~Multipliers()
{
    Exchange(&IRecordParser::get_PriceMultiplier, m_sPrice);
    Exchange(&IRecordParser::get_VolumeMultiplier, m_sVolume);
}

int Multipliers::ExponentOf(unsigned uiType) const
{
    if (IQRL_TabulexConverter::IsPriceType(uiType))
        return ExponentOfName(m_sPrice);
    return IQRL_TabulexConverter::IsVolumeType(uiType) ? ExponentOfName(m_sVolume) : 0;
}

// Gives the name from before. An object without the multiplier counts as one at "1".
std::string Multipliers::Exchange(HRESULT (STDMETHODCALLTYPE IRecordParser::*get)(IDispatch**),
                                  const std::string& name) const
{
    com_ptr<IDispatch> object;
    com_ptr<IQRL_TabulexConverter::IValueMultiplier> multiplier;
    if (FAILED((m_host.Records().*get)(object.put())) || FAILED(query(object.get(), multiplier)))
        return kNoScaling;
    std::string old =
        ToUtf8(GetText(*multiplier.get(), &IQRL_TabulexConverter::IValueMultiplier::get_Current));
    if (old != name)
        multiplier->put_Current(Bstr(FromUtf8(name)).get());
    return old;
}

} // namespace tabulex
