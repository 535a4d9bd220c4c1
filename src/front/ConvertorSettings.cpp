// The host's ids of resolutions become the component's here, and only here: a list of
// resolutions holds the component's own.

#include "src/front/ConvertorSettings.h"

#include "Simples/interface/ResourceStrings.h"
#include "diagnostics/FaultmereClient.h"
#include "module/Guarded.h"
#include "module/OutValue.h"

using namespace IQRL_TabulexConverter;
using FaultmereUtil::Assert;

namespace Hesperon::specifics {

// A host's object never gets here with an empty list of resolutions, since it begins with a
// row for none.
void ConvertorSettings::AddDefaultTemplates()
{
    constexpr unsigned kTexts[] = {IDS_TEMPLATE1, IDS_TEMPLATE2, IDS_TEMPLATE3};
    TemplateList* const lists[] = {&m_arFieldTemplates, &m_arResolutionTemplates,
                                   &m_arTimeZoneTemplates};
    for (const TemplateList* list : lists)
        if (!list->IsEmpty())
            return;
    for (TemplateList* list : lists) {
        for (LONG nId = 0; const unsigned nText : kTexts)
            list->Append(LoadResourceString(nText), nId++);
        list->Choose(list->Rows().front().sName);
    }
}

// The host has one id for ticks and for bars of ticks. The first name that it gives for this id is
// that of ticks, a second one that of bars.
HRESULT ConvertorSettings::AddResolutionTemplate(LONG nHostValue, BSTR sName)
{
    const HRESULT hr = m_arResolutionTemplates.CheckNewName(sName);
    if (FAILED(hr))
        return hr;
    LONG nSlot = ResolutionSlot(nHostValue);
    if (nSlot == ResolutionTick && m_arResolutionTemplates.FindId(ResolutionTick))
        nSlot = ResolutionTickBars;
    return Guarded([&] {
        if (STemplateEntry* row = m_arResolutionTemplates.FindId(nSlot))
            row->sName = TextOf(sName);
        else
            m_arResolutionTemplates.Append(TextOf(sName), nSlot);
        return S_OK;
    });
}

LONG ConvertorSettings::ChosenResolution(LONG nHostValue) const
{
    const LONG nSlot = ResolutionSlot(nHostValue);
    return nSlot == ResolutionTick && m_nResolutionSize != 1 ? LONG{ResolutionTickBars} : nSlot;
}

bool ConvertorSettings::ChooseResolution(LONG nResolution)
{
    const STemplateEntry* row = m_arResolutionTemplates.FindId(nResolution);
    if (row)
        m_arResolutionTemplates.Choose(row->sName);
    return row != nullptr;
}

HRESULT ConvertorSettings::GetResolutionName(LONG nResolution, BSTR* pName) const
{
    return Guarded([&] {
        return GiveOut(pName, [&] {
            const STemplateEntry* row = m_arResolutionTemplates.FindId(nResolution);
            Assert(row != nullptr, "nIdx != nCount");
            return row ? string_view_t(row->sName) : LoadResourceString(IDS_UNKNOWN);
        });
    });
}

std::vector<LONG> ConvertorSettings::DeliveredIds() const
{
    std::vector<LONG> ids;
    for (const NamedField& field : m_arFields)
        if (field.nHostId != HostFieldUndefined)
            ids.push_back(field.nHostId);
    return ids;
}

} // namespace Hesperon::specifics
