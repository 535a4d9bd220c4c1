// Lists are short, so rows are found by walking from the first: where two rows share an id,
// the first one counts. The same holds for types and resolutions that share a host id.

#include "src/front/qrlHelperStructs.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "diagnostics/FaultmereClient.h"
#include "module/Guarded.h"
#include "module/OutValue.h"
#include "src/values/LockedArray.h"

namespace Hesperon::specifics {

using namespace IQRL_TabulexConverter;
using FaultmereUtil::Assert;

const STemplateEntry* TemplateList::FindName(string_view_t sName) const
{
    const auto row = std::ranges::find(m_rows, sName, &STemplateEntry::sName);
    return row == m_rows.end() ? nullptr : &*row;
}

const STemplateEntry* TemplateList::FindId(LONG nId) const
{
    const auto row = std::ranges::find(m_rows, nId, &STemplateEntry::nId);
    return row == m_rows.end() ? nullptr : &*row;
}

STemplateEntry* TemplateList::FindId(LONG nId)
{
    // The row is this object's own, which isn't const here.
    return const_cast<STemplateEntry*>(std::as_const(*this).FindId(nId));
}

HRESULT TemplateList::CheckNewName(BSTR sName) const
{
    if (!sName)
        return E_POINTER;
    return FindName(TextOf(sName)) ? E_UNEXPECTED : S_OK;
}

HRESULT TemplateList::Add(LONG nId, BSTR sName)
{
    const HRESULT hr = CheckNewName(sName);
    if (FAILED(hr))
        return hr;
    return Guarded([&] {
        Append(TextOf(sName), nId);
        return S_OK;
    });
}

HRESULT TemplateList::GetChoice(LONG* pVal) const
{
    const STemplateEntry* row = FindName(m_sChoice);
    const HRESULT hr = GiveOut(pVal, row ? row->nId : -1);
    // A choice may name a row that was renamed since: that is no choice.
    return hr == S_OK && !row ? S_FALSE : hr;
}

HRESULT TemplateList::PutChoice(LONG nId)
{
    const STemplateEntry* row = FindId(nId);
    if (!row)
        return E_UNEXPECTED;
    return Guarded([&] {
        m_sChoice = row->sName;
        return S_OK;
    });
}

// The undefined type comes first in the list of names. Its position, 0, wraps here and so is no
// type.
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

// A column that the record parser leaves without a type has the first name of the list, or
// one that isn't in it; both count as undefined.
LONG HostTypeNames::HostIdOf(BSTR bsName) const
{
    if (!Assert(bsName != nullptr, "bsName") || m_vTypeNames.vt != (VT_ARRAY | VT_BSTR))
        return HostFieldUndefined;
    const LockedArray<BSTR> names(m_vTypeNames.parray);
    const auto elements = names.Elements();
    const auto at = std::ranges::find(elements, TextOf(bsName), TextOf);
    return at == elements.end() ? LONG{HostFieldUndefined}
                                : HostFieldId(static_cast<std::size_t>(at - elements.begin()));
}

Bstr HostTypeNames::NameOf(LONG nHostId) const
{
    const LONG nPosition = FieldPosition(nHostId);
    if (m_vTypeNames.vt != (VT_ARRAY | VT_BSTR) || nPosition < 0)
        return {};
    const LockedArray<BSTR> names(m_vTypeNames.parray);
    const auto n = static_cast<std::size_t>(nPosition);
    const auto elements = names.Elements();
    const string_view_t sName = n < elements.size() ? TextOf(elements[n]) : string_view_t();
    return sName.empty() ? Bstr() : Bstr(sName);
}

LONG TabulexResolution2qrlResolution(LONG nResolution)
{
    const auto n = static_cast<std::size_t>(nResolution);
    const bool bKnown =
        Assert(n < RESOLUTIONS_COUNT, "nResolution < sizeof(*__countof_helper(qrlResolutions))");
    return bKnown ? kHostResolutions[n] : HostResolutionNone;
}

LONG ResolutionSlot(LONG nHostValue)
{
    const auto at = std::ranges::find(kHostResolutions, nHostValue);
    return at == std::end(kHostResolutions) ? ResolutionNone
                                            : static_cast<LONG>(at - kHostResolutions);
}

} // namespace Hesperon::specifics
