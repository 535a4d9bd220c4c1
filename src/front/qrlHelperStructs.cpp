#include "src/front/qrlHelperStructs.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "diagnostics/FaultmereClient.h"

namespace Hesperon::specifics {

using namespace IQRL_TabulexConverter;

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

// The undefined type comes first in the list of names.
LONG HostFieldId(std::size_t nPosition)
{
    return nPosition - 1 < TYPES_COUNT ? kFieldTypes[nPosition - 1].nHostId : HostFieldUndefined;
}

LONG FieldPosition(LONG nHostId)
{
    if (nHostId == HostFieldUndefined)
        return 0;
    const auto row = std::ranges::find(kFieldTypes, nHostId, &FieldTypeRow::nHostId);
    return row == std::end(kFieldTypes) ? -1 : static_cast<LONG>(row - kFieldTypes) + 1;
}

LONG TabulexResolution2qrlResolution(LONG nResolution)
{
    const auto n = static_cast<std::size_t>(nResolution);
    const bool bKnown = FaultmereUtil::Assert(
        n < RESOLUTIONS_COUNT, "nResolution < sizeof(*__countof_helper(qrlResolutions))");
    return bKnown ? kHostResolutions[n] : HostResolutionNone;
}

LONG ResolutionSlot(LONG nHostValue)
{
    const auto at = std::ranges::find(kHostResolutions, nHostValue);
    return at == std::end(kHostResolutions) ? ResolutionNone
                                            : static_cast<LONG>(at - kHostResolutions);
}

} // namespace Hesperon::specifics
