#include "src/front/qrlHelperStructs.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "diagnostics/FaultmereClient.h"

namespace Hesperon::specifics {

namespace {

// In the order of the record parser's type names: undefined, Symbol, Date, Time, Open,
// High, Low, Close, Price, the five volumes, the four ticks, Open Interest.
constexpr LONG kHostFieldIds[] = {0,   31,  421, 422, 232, 233, 234, 235, 235, 249,
                                  238, 239, 248, 249, 321, 322, 323, 324, 253};

// In the order of the resolutions.
constexpr LONG qrlResolutions[] = {0, 1, 1, 8, 9, 2, 4, 5};

} // namespace

const STemplateEntry* CTemplateList::FindName(string_view_t sName) const
{
    const auto row = std::ranges::find(m_rows, sName, &STemplateEntry::sName);
    return row == m_rows.end() ? nullptr : &*row;
}

const STemplateEntry* CTemplateList::FindId(LONG nId) const
{
    const auto row = std::ranges::find(m_rows, nId, &STemplateEntry::nId);
    return row == m_rows.end() ? nullptr : &*row;
}

STemplateEntry* CTemplateList::FindId(LONG nId)
{
    return const_cast<STemplateEntry*>(std::as_const(*this).FindId(nId));
}

LONG HostFieldId(std::size_t nPosition)
{
    return nPosition < std::size(kHostFieldIds) ? kHostFieldIds[nPosition] : 0;
}

LONG FieldPosition(LONG nHostId)
{
    const auto at = std::ranges::find(kHostFieldIds, nHostId);
    return at == std::end(kHostFieldIds) ? -1 : static_cast<LONG>(at - kHostFieldIds);
}

LONG TabulexResolution2qrlResolution(LONG nResolution)
{
    const auto n = static_cast<std::size_t>(nResolution);
    const bool bKnown = FaultmereUtil::Assert(
        n < std::size(qrlResolutions), "nResolution < sizeof(*__countof_helper(qrlResolutions))");
    return bKnown ? qrlResolutions[n] : 0;
}

LONG ResolutionSlot(LONG nHostValue)
{
    const auto at = std::ranges::find(qrlResolutions, nHostValue);
    return at == std::end(qrlResolutions) ? 0 : static_cast<LONG>(at - qrlResolutions);
}

} // namespace Hesperon::specifics
