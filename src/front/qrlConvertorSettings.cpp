// The host's lists, and the fields and resolutions of the record parser by the host's ids.
//
// A resolution that the host names by its id becomes a resolution of the record parser, and
// is read back afterwards: the parser may have chosen another one, and the object keeps the
// name of what is there.

#include <algorithm>

#include "diagnostics/FaultmereClient.h"
#include "module/Guarded.h"
#include "module/OutValue.h"
#include "src/front/qrlTabulexConvertor.h"
#include "src/parsing/DataTypes.h"
#include "src/values/LockedArray.h"
#include "src/values/TextArray.h"

using namespace IQRL_TabulexConverter;
using FaultmereUtil::Assert;
using FaultmereUtil::AssertOk;

namespace Hesperon::specifics {

namespace {

// The record parser takes the list as two arrays.
Variant IdsOf(const TemplateList& list)
{
    SafeArray ids(SafeArrayCreateVector(VT_I4, 0, static_cast<ULONG>(list.Rows().size())));
    if (!ids)
        throw std::bad_alloc();
    const LockedArray<LONG> elements(ids.get());
    for (std::size_t i = 0; i < list.Rows().size(); ++i)
        elements.At(i) = list.Rows()[i].nId;
    return Variant::FromArray(ids.detach(), VT_I4);
}

Variant NamesOf(const TemplateList& list)
{
    std::vector<string_view_t> names;
    for (const STemplateEntry& row : list.Rows())
        names.push_back(row.sName);
    return TextArray(names);
}

} // namespace

// ---- lists

HRESULT CqrlTabulexConvertor::AddFieldTemplate(LONG Id, BSTR FieldName)
{
    return m_settings.m_arFieldTemplates.Add(Id, FieldName);
}

HRESULT CqrlTabulexConvertor::AddTimeZoneTemplate(LONG Id, BSTR TimeZoneName)
{
    return m_settings.m_arTimeZoneTemplates.Add(Id, TimeZoneName);
}

HRESULT CqrlTabulexConvertor::AddResolutionTemplate(LONG Id, BSTR ResolutionName)
{
    const HRESULT hr = m_settings.AddResolutionTemplate(Id, ResolutionName);
    return FAILED(hr) ? hr : Guarded([&] { return PublishResolutions(); });
}

HRESULT CqrlTabulexConvertor::PublishResolutions()
{
    const com_ptr<IRecordParser> pRecordParser = RecordParser();
    if (!pRecordParser)
        return E_NOINTERFACE;
    const Variant ids = IdsOf(m_settings.m_arResolutionTemplates);
    const Variant names = NamesOf(m_settings.m_arResolutionTemplates);
    return pRecordParser->SetResolutionTemplates(ids, names);
}

HRESULT CqrlTabulexConvertor::get_FieldTemplate(LONG* pVal)
{
    return m_settings.m_arFieldTemplates.GetChoice(pVal);
}

HRESULT CqrlTabulexConvertor::put_FieldTemplate(LONG newVal)
{
    return m_settings.m_arFieldTemplates.PutChoice(newVal);
}

HRESULT CqrlTabulexConvertor::get_TimeZoneTemplate(LONG* pVal)
{
    return m_settings.m_arTimeZoneTemplates.GetChoice(pVal);
}

HRESULT CqrlTabulexConvertor::put_TimeZoneTemplate(LONG newVal)
{
    return m_settings.m_arTimeZoneTemplates.PutChoice(newVal);
}

// ---- resolutions

HRESULT CqrlTabulexConvertor::get_ResolutionTemplate(LONG* pVal)
{
    const HRESULT hr = m_settings.m_arResolutionTemplates.GetChoice(pVal);
    if (hr == S_OK)
        *pVal = TabulexResolution2qrlResolution(*pVal);
    return hr;
}

HRESULT CqrlTabulexConvertor::put_ResolutionTemplate(LONG newVal)
{
    const LONG nResolution = m_settings.ChosenResolution(newVal);
    if (!m_settings.m_arResolutionTemplates.FindId(nResolution))
        return E_UNEXPECTED;
    const com_ptr<IRecordParser> pRecordParser = RecordParser();
    if (!pRecordParser)
        return m_settings.m_arResolutionTemplates.PutChoice(nResolution);
    return Guarded([&] {
        const HRESULT hr = pRecordParser->put_Resolution(nResolution);
        TakeResolution(*pRecordParser.get());
        return hr;
    });
}

void CqrlTabulexConvertor::TakeResolution(IRecordParser& parser)
{
    LONG nResolution = ResolutionNone;
    parser.get_Resolution(&nResolution);
    if (!Assert(m_settings.ChooseResolution(nResolution), "nIdx != nCount"))
        m_settings.m_arResolutionTemplates.Choose({});
}

// The parser's inference may have changed the size since it was put.
HRESULT CqrlTabulexConvertor::get_ResolutionSizeTemplate(LONG* pVal)
{
    if (!pVal)
        return E_POINTER;
    if (const com_ptr<IRecordParser> pRecordParser = RecordParser())
        pRecordParser->get_ResolutionSize(&m_settings.m_nResolutionSize);
    *pVal = m_settings.m_nResolutionSize;
    return S_OK;
}

// Ticks and bars of ticks are one choice of the host; the size decides which of them it is.
HRESULT CqrlTabulexConvertor::put_ResolutionSizeTemplate(LONG newVal)
{
    m_settings.m_nResolutionSize = newVal;
    const com_ptr<IRecordParser> pRecordParser = RecordParser();
    if (!pRecordParser)
        return S_OK;
    LONG nResolution = 0;
    pRecordParser->get_Resolution(&nResolution);
    if (nResolution == ResolutionTick || nResolution == ResolutionTickBars)
        pRecordParser->put_Resolution(newVal == 1 ? ResolutionTick : ResolutionTickBars);
    pRecordParser->put_ResolutionSize(newVal);
    return S_OK;
}

HRESULT CqrlTabulexConvertor::get_ValidResolution(VARIANT_BOOL* pVal)
{
    if (!pVal)
        return E_POINTER;
    const com_ptr<IRecordParser> pRecordParser = RecordParser();
    const bool bValid = pRecordParser && pRecordParser->IsValidResolution() == S_OK;
    return GiveOut(pVal, bValid);
}

// Tried on a copy first, so that a pair that doesn't fit changes nothing here.
HRESULT CqrlTabulexConvertor::SelectResolution(LONG ResolutionSizeTemplate, LONG ResolutionTemplate)
{
    const auto choose = [&](IqrlTabulexConvertor& object) {
        const HRESULT hr = object.put_ResolutionSizeTemplate(ResolutionSizeTemplate);
        return FAILED(hr) ? hr : object.put_ResolutionTemplate(ResolutionTemplate);
    };
    com_ptr<IDispatch> pCopy;
    if (FAILED(Clone(pCopy.put())))
        return S_FALSE;
    const com_ptr<IqrlTabulexConvertor> pTrial = pCopy.as<IqrlTabulexConvertor>();
    VARIANT_BOOL bValid = VARIANT_FALSE;
    if (!pTrial || FAILED(choose(*pTrial.get())) || FAILED(pTrial->get_ValidResolution(&bValid)))
        return S_FALSE;
    return bValid == VARIANT_TRUE && SUCCEEDED(choose(*this)) ? S_OK : S_FALSE;
}

// ---- fields

HRESULT CqrlTabulexConvertor::InitFieldsInfo()
{
    m_settings.m_arFields.clear();
    const com_ptr<IRecordParser> pRecordParser = RecordParser();
    if (!pRecordParser)
        return E_NOINTERFACE;
    return Guarded([&] { return ReadFields(*pRecordParser.get()); });
}

// A name that can't be read ends the loop; that column and those after it have no type.
HRESULT CqrlTabulexConvertor::ReadFields(IRecordParser& parser)
{
    ULONG nCount = 0;
    HRESULT hr = parser.get_FieldCount(&nCount);
    if (FAILED(hr))
        return AssertOk(hr);
    std::vector<Bstr> names(nCount);
    for (ULONG i = 0; i < nCount && SUCCEEDED(hr); ++i)
        hr = AssertOk(parser.GetFieldName(names[i].put(), i));
    for (const Bstr& sName : names)
        m_settings.m_arFields.push_back(
            {sName.str(), sName ? m_typeNames.HostIdOf(sName.get()) : LONG{HostFieldUndefined}});
    return hr;
}

HRESULT CqrlTabulexConvertor::get_FieldCount(LONG* pVal)
{
    return GiveOut(pVal, static_cast<LONG>(m_settings.m_arFields.size()));
}

// The id is that of the last InitFieldsInfo, the template is the parser's of this moment.
HRESULT CqrlTabulexConvertor::GetField(LONG Index, LONG* Id, BSTR* FieldTemplate)
{
    const com_ptr<IRecordParser> pRecordParser = RecordParser();
    if (!pRecordParser)
        return E_NOINTERFACE;
    if (!Id || !FieldTemplate)
        return E_POINTER;
    const auto nField = static_cast<ULONG>(Index);
    if (nField >= m_settings.m_arFields.size())
        return E_INVALIDARG;
    *Id = m_settings.m_arFields[nField].nHostId;
    return pRecordParser->GetFieldTemplate(FieldTemplate, nField);
}

// A column without a type has no template, so id 0 leaves the template alone.
HRESULT CqrlTabulexConvertor::SetField(LONG Index, LONG Id, BSTR FieldTemplate)
{
    const com_ptr<IRecordParser> pRecordParser = RecordParser();
    if (!Assert(static_cast<bool>(pRecordParser), "pRecordParser"))
        return E_NOINTERFACE;
    return Guarded([&] {
        const auto nField = static_cast<ULONG>(Index);
        const HRESULT hr = pRecordParser->SetFieldName(nField, m_typeNames.NameOf(Id).get());
        if (FAILED(hr) || Id == HostFieldUndefined)
            return hr;
        return pRecordParser->SetFieldTemplate(FieldTemplate, nField);
    });
}

} // namespace Hesperon::specifics
