#include "tools/tabulex/host/ResolutionOffers.h"

#include <algorithm>

#include "interfaces/FieldsAndResolutions.h"
#include "platform/values.h"
#include "tools/tabulex/text/Text.h"

namespace tabulex {

using namespace IQRL_TabulexConverter;

namespace {

// Of the two that a host knows under one id, the first.
LONG ResolutionOf(LONG nHostId)
{
    const auto* at = std::ranges::find(kHostResolutions, nHostId);
    return at == std::end(kHostResolutions) ? ResolutionNone
                                            : static_cast<LONG>(at - kHostResolutions);
}

} // namespace

const std::vector<ResolutionOffer>& DefaultResolutions()
{
    static const std::vector<ResolutionOffer> resolutions = {
        {HostResolutionTicks, "Ticks"},          {HostResolutionTicks, "Tick Bars"},
        {HostResolutionCountBars, "Count Bars"}, {HostResolutionSeconds, "Seconds"},
        {HostResolutionMinutes, "Minutes"},      {HostResolutionDays, "Days"},
        {HostResolutionWeeks, "Weeks"},
    };
    return resolutions;
}

ResolutionOffers::ResolutionOffers(std::string sNone) : m_rows{{ResolutionNone, std::move(sNone)}}
{}

// Does what the component does with each offer, to know the list that it has in the end: a second
// name for ticks is that of bars of ticks, and a later name replaces an earlier one.
bool ResolutionOffers::Add(const ResolutionOffer& offer)
{
    if (std::ranges::find(m_rows, offer.sName, &Row::sName) != m_rows.end())
        return false;
    m_offered.push_back(offer);
    LONG nId = ResolutionOf(offer.nHostId);
    if (nId == ResolutionTick && FindId(ResolutionTick))
        nId = ResolutionTickBars;
    const auto row = std::ranges::find(m_rows, nId, &Row::nId);
    if (row != m_rows.end())
        row->sName = offer.sName;
    else
        m_rows.push_back({nId, offer.sName});
    return true;
}

const ResolutionOffers::Row* ResolutionOffers::FindId(LONG nId) const
{
    const auto row = std::ranges::find(m_rows, nId, &Row::nId);
    return row == m_rows.end() ? nullptr : &*row;
}

const ResolutionOffers::Row* ResolutionOffers::FindName(std::string_view name) const
{
    const auto find = [&](auto part) {
        const auto row = std::ranges::find_if(
            m_rows, [&](const Row& r) { return EqualIgnoringCase(part(r.sName), name); });
        return row == m_rows.end() ? nullptr : &*row;
    };
    const Row* row = find([](std::string_view s) { return s; });
    return row ? row : find(WithoutSize);
}

std::string_view WithoutSize(std::string_view name)
{
    return name.substr(0, name.rfind('|'));
}

} // namespace tabulex
