#include "tools/tabulex/host/ResolutionOffers.h"

#include <algorithm>

#include "platform/values.h"
#include "tools/tabulex/text/Text.h"

namespace tabulex {

namespace {

// Host ids in the order of the component's resolutions.
constexpr LONG kHostIds[] = {0, 1, 1, 8, 9, 2, 4, 5};
// Two resolutions that the host knows under one id.
constexpr LONG kTick = 1;
constexpr LONG kTickBars = 2;

LONG SlotOf(LONG nHostId)
{
    const auto* at = std::ranges::find(kHostIds, nHostId);
    return at == std::end(kHostIds) ? 0 : static_cast<LONG>(at - kHostIds);
}

} // namespace

const std::vector<HostResolution>& DefaultResolutions()
{
    static const std::vector<HostResolution> resolutions = {
        {1, "Ticks"},   {1, "Tick Bars"}, {8, "Count Bars"}, {9, "Seconds"},
        {2, "Minutes"}, {4, "Days"},      {5, "Weeks"},
    };
    return resolutions;
}

ResolutionOffers::ResolutionOffers(std::string sNone) : m_rows{{0, std::move(sNone)}} {}

bool ResolutionOffers::Add(const HostResolution& resolution)
{
    if (std::ranges::find(m_rows, resolution.sName, &Row::sName) != m_rows.end())
        return false;
    m_offered.push_back(resolution);
    LONG nSlot = SlotOf(resolution.nHostId);
    if (nSlot == kTick && FindId(kTick))
        nSlot = kTickBars;
    const auto row = std::ranges::find(m_rows, nSlot, &Row::nId);
    if (row != m_rows.end())
        row->sName = resolution.sName;
    else
        m_rows.push_back({nSlot, resolution.sName});
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
