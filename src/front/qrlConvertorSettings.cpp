// The host's lists and numbers, and the fields and resolutions behind them.

#include <algorithm>

#include "diagnostics/FaultmereClient.h"
#include "module/Guarded.h"
#include "src/front/qrlTabulexConvertor.h"
#include "src/parsing/DataTypes.h"
#include "src/values/LockedArray.h"
#include "src/values/TextArray.h"

using namespace IQRL_TabulexConverter;
using FaultmereUtil::Assert;
using FaultmereUtil::AssertOk;

namespace Hesperon::specifics {

namespace {

HRESULT Append(CTemplateList& list, LONG nId, BSTR sName)
{
    if (!sName)
        return E_POINTER;
    if (list.FindName(TextOf(sName)))
        return E_UNEXPECTED;
    return Guarded([&] {
        list.Append(TextOf(sName), nId);
        return S_OK;
    });
}

HRESULT GetChoice(const CTemplateList& list, const string_t& sName, LONG* pVal)
{
    if (!pVal)
        return E_POINTER;
    const STemplateEntry* row = list.FindName(sName);
    *pVal = row ? row->nId : -1;
    return row ? S_OK : S_FALSE;
}

HRESULT PutChoice(const CTemplateList& list, LONG nId, string_t& sName)
{
    const STemplateEntry* row = list.FindId(nId);
    if (!row)
        return E_UNEXPECTED;
    return Guarded([&] {
        sName = row->sName;
        return S_OK;
    });
}

Variant IdsOf(const CTemplateList& list)
{
    SafeArray ids(SafeArrayCreateVector(VT_I4, 0, static_cast<ULONG>(list.Rows().size())));
    if (!ids)
        throw std::bad_alloc();
    const LockedArray<LONG> elements(ids.get());
    for (std::size_t i = 0; i < list.Rows().size(); ++i)
        elements.At(i) = list.Rows()[i].nId;
    return Variant::FromArray(ids.detach(), VT_I4);
}

Variant NamesOf(const CTemplateList& list)
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
    return Append(m_arFieldTemplates, Id, FieldName);
}

HRESULT CqrlTabulexConvertor::AddTimeZoneTemplate(LONG Id, BSTR TimeZoneName)
{
    return Append(m_arTimeZoneTemplates, Id, TimeZoneName);
}

// The host has one id for ticks and for bars of ticks, and offers it twice.
HRESULT CqrlTabulexConvertor::AddResolutionTemplate(LONG Id, BSTR ResolutionName)
{
    if (!ResolutionName)
        return E_POINTER;
    if (m_arResolutionTemplates.FindName(TextOf(ResolutionName)))
        return E_UNEXPECTED;
    LONG nSlot = ResolutionSlot(Id);
    if (nSlot == ResolutionTick && m_arResolutionTemplates.FindId(ResolutionTick))
        nSlot = ResolutionTickBars;
    return Guarded([&] {
        if (STemplateEntry* row = m_arResolutionTemplates.FindId(nSlot))
            row->sName = TextOf(ResolutionName);
        else
            m_arResolutionTemplates.Append(TextOf(ResolutionName), nSlot);
        return PublishResolutions();
    });
}

HRESULT CqrlTabulexConvertor::PublishResolutions()
{
    const com_ptr<IRecordParser> pRecordParser = RecordParser();
    if (!pRecordParser)
        return E_NOINTERFACE;
    const Variant ids = IdsOf(m_arResolutionTemplates);
    const Variant names = NamesOf(m_arResolutionTemplates);
    return pRecordParser->SetResolutionTemplates(ids, names);
}

HRESULT CqrlTabulexConvertor::get_FieldTemplate(LONG* pVal)
{
    return GetChoice(m_arFieldTemplates, m_sFieldTemplate, pVal);
}

HRESULT CqrlTabulexConvertor::put_FieldTemplate(LONG newVal)
{
    return PutChoice(m_arFieldTemplates, newVal, m_sFieldTemplate);
}

HRESULT CqrlTabulexConvertor::get_TimeZoneTemplate(LONG* pVal)
{
    return GetChoice(m_arTimeZoneTemplates, m_sTimeZoneTemplate, pVal);
}

HRESULT CqrlTabulexConvertor::put_TimeZoneTemplate(LONG newVal)
{
    return PutChoice(m_arTimeZoneTemplates, newVal, m_sTimeZoneTemplate);
}

// ---- resolutions

LONG CqrlTabulexConvertor::ChosenSlot(LONG nHostValue) const
{
    const LONG nSlot = ResolutionSlot(nHostValue);
    return nSlot == ResolutionTick && m_nResolutionSize != 1 ? LONG{ResolutionTickBars} : nSlot;
}

HRESULT CqrlTabulexConvertor::get_ResolutionTemplate(LONG* pVal)
{
    const HRESULT hr = GetChoice(m_arResolutionTemplates, m_sResolutionTemplate, pVal);
    if (hr == S_OK)
        *pVal = TabulexResolution2qrlResolution(*pVal);
    return hr;
}

HRESULT CqrlTabulexConvertor::put_ResolutionTemplate(LONG newVal)
{
    const LONG nSlot = ChosenSlot(newVal);
    if (!m_arResolutionTemplates.FindId(nSlot))
        return E_UNEXPECTED;
    const com_ptr<IRecordParser> pRecordParser = RecordParser();
    if (!pRecordParser)
        return PutChoice(m_arResolutionTemplates, nSlot, m_sResolutionTemplate);
    return Guarded([&] {
        const HRESULT hr = pRecordParser->put_Resolution(nSlot);
        TakeResolutionName(*pRecordParser.get());
        return hr;
    });
}

void CqrlTabulexConvertor::TakeResolutionName(IRecordParser& parser)
{
    LONG nResolution = 0;
    parser.get_Resolution(&nResolution);
    const STemplateEntry* row = m_arResolutionTemplates.FindId(nResolution);
    if (Assert(row != nullptr, "nIdx != nCount"))
        m_sResolutionTemplate = row->sName;
    else
        m_sResolutionTemplate.clear();
}

HRESULT CqrlTabulexConvertor::get_ResolutionSizeTemplate(LONG* pVal)
{
    if (!pVal)
        return E_POINTER;
    if (const com_ptr<IRecordParser> pRecordParser = RecordParser())
        pRecordParser->get_ResolutionSize(&m_nResolutionSize);
    *pVal = m_nResolutionSize;
    return S_OK;
}

// Ticks and bars of ticks are one choice, which the size divides.
HRESULT CqrlTabulexConvertor::put_ResolutionSizeTemplate(LONG newVal)
{
    m_nResolutionSize = newVal;
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
    *pVal = bValid ? VARIANT_TRUE : VARIANT_FALSE;
    return S_OK;
}

// Tried on a copy, so that a pair which doesn't fit leaves no trace.
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

string_view_t CqrlTabulexConvertor::TypeNameAt(LONG nPosition) const
{
    if (m_vTypeNames.vt != (VT_ARRAY | VT_BSTR) || nPosition < 0)
        return {};
    const LockedArray<BSTR> names(m_vTypeNames.parray);
    const auto n = static_cast<std::size_t>(nPosition);
    return n < names.Elements().size() ? TextOf(names.At(n)) : string_view_t();
}

LONG CqrlTabulexConvertor::Name2Type(BSTR bsName) const
{
    if (!Assert(bsName != nullptr, "bsName") || m_vTypeNames.vt != (VT_ARRAY | VT_BSTR))
        return 0;
    const LockedArray<BSTR> names(m_vTypeNames.parray);
    const auto elements = names.Elements();
    const auto at = std::ranges::find(elements, TextOf(bsName), TextOf);
    return at == elements.end() ? 0 : HostFieldId(static_cast<std::size_t>(at - elements.begin()));
}

Bstr CqrlTabulexConvertor::Type2Name(LONG nId) const
{
    const string_view_t sName = TypeNameAt(FieldPosition(nId));
    return sName.empty() ? Bstr() : Bstr(sName);
}

HRESULT CqrlTabulexConvertor::InitFieldsInfo()
{
    m_arFieldNames.clear();
    m_arFieldTypes.clear();
    const com_ptr<IRecordParser> pRecordParser = RecordParser();
    if (!pRecordParser)
        return E_NOINTERFACE;
    return Guarded([&] { return ReadFieldNames(*pRecordParser.get()); });
}

HRESULT CqrlTabulexConvertor::ReadFieldNames(IRecordParser& parser)
{
    ULONG nCount = 0;
    HRESULT hr = parser.get_FieldCount(&nCount);
    if (FAILED(hr))
        return AssertOk(hr);
    std::vector<Bstr> names(nCount);
    for (ULONG i = 0; i < nCount && SUCCEEDED(hr); ++i)
        hr = AssertOk(parser.GetFieldName(names[i].put(), i));
    for (const Bstr& sName : names) {
        m_arFieldNames.push_back(sName.str());
        m_arFieldTypes.push_back(sName ? Name2Type(sName.get()) : 0);
    }
    return hr;
}

HRESULT CqrlTabulexConvertor::get_FieldCount(LONG* pVal)
{
    if (!pVal)
        return E_POINTER;
    *pVal = static_cast<LONG>(m_arFieldNames.size());
    return S_OK;
}

HRESULT CqrlTabulexConvertor::GetField(LONG Index, LONG* Id, BSTR* FieldTemplate)
{
    const com_ptr<IRecordParser> pRecordParser = RecordParser();
    if (!pRecordParser)
        return E_NOINTERFACE;
    if (!Id || !FieldTemplate)
        return E_POINTER;
    const auto nField = static_cast<ULONG>(Index);
    if (nField >= m_arFieldNames.size())
        return E_INVALIDARG;
    *Id = m_arFieldTypes[nField];
    return pRecordParser->GetFieldTemplate(FieldTemplate, nField);
}

HRESULT CqrlTabulexConvertor::SetField(LONG Index, LONG Id, BSTR FieldTemplate)
{
    const com_ptr<IRecordParser> pRecordParser = RecordParser();
    if (!Assert(static_cast<bool>(pRecordParser), "pRecordParser"))
        return E_NOINTERFACE;
    return Guarded([&] {
        const auto nField = static_cast<ULONG>(Index);
        const HRESULT hr = pRecordParser->SetFieldName(nField, Type2Name(Id).get());
        if (FAILED(hr) || Id == 0)
            return hr;
        return pRecordParser->SetFieldTemplate(FieldTemplate, nField);
    });
}

} // namespace Hesperon::specifics
