// The columns of a record parser: reading and changing their types and templates,
// and the dividers between them.

#include <algorithm>

#include "diagnostics/FaultmereClient.h"
#include "platform/values.h"
#include "src/parsing/RecordParser.h"
#include "src/values/CaseFold.h"

namespace Hesperon::specifics {
namespace {

// Close and Price are one column seen from two resolutions.
unsigned SuitedTo(LONG nResolution, unsigned uiType)
{
    if (uiType != TypeClose && uiType != TypePrice)
        return uiType;
    return nResolution == ResolutionTick ? TypePrice : TypeClose;
}

bool HasFile(IQRL_TabulexConverter::IDataParser* pDataParser)
{
    Bstr name;
    return pDataParser && SUCCEEDED(pDataParser->get_FileName(name.put())) && !name.view().empty();
}

} // namespace

HRESULT CRecordParser::GetFieldIndex(LONG DataType, ULONG* Index)
{
    if (!Index)
        return E_POINTER;
    return Locked([&] {
        const std::size_t i = m_state.Index(static_cast<unsigned>(DataType));
        *Index = static_cast<ULONG>(i);
        return i == kNoColumn ? S_FALSE : S_OK;
    });
}

HRESULT CRecordParser::GetFieldName(BSTR* bsName, ULONG nIndex)
{
    if (!bsName)
        return E_POINTER;
    return WithColumn(nIndex, E_FAIL, [&](const CDataField& field) {
        *bsName = NewBstr(TypeName(field.GetType()));
        return S_OK;
    });
}

HRESULT CRecordParser::GetFieldNameLocalized(BSTR* bsName, ULONG nIndex)
{
    if (!bsName)
        return E_POINTER;
    return WithColumn(nIndex, E_FAIL, [&](const CDataField& field) {
        *bsName = NewBstr(LocalizedTypeName(field.GetType()));
        return S_OK;
    });
}

HRESULT CRecordParser::SetFieldName(ULONG nField, BSTR bsName)
{
    return LockedWithLink([&] {
        const unsigned uiType = bsName ? FindType(TextOf(bsName)) : kNoType;
        const HRESULT hr = SetFieldType(nField, static_cast<LONG>(uiType));
        if (SUCCEEDED(hr))
            Detect(DetectionCause::Stamps);
        return hr;
    });
}

HRESULT CRecordParser::GetFieldTemplate(BSTR* bsTemplate, ULONG nField)
{
    if (!bsTemplate)
        return E_POINTER;
    return WithColumn(nField, E_FAIL, [&](const CDataField& field) {
        *bsTemplate = NewBstr(field.GetTemplate());
        return S_OK;
    });
}

// A template that a person chose is the base for what detection finds next, and so are the
// other dates and times: all are fixed as they stand.
HRESULT CRecordParser::SetFieldTemplate(BSTR bsTemplate, ULONG nField)
{
    const auto change = [&](CDataField& field) -> HRESULT {
        const string_view_t sTemplate = TextOf(bsTemplate);
        const unsigned uiType = field.GetType();
        if (uiType != TypeDate && uiType != TypeTime)
            return S_OK;
        if (EqualIgnoringCase(sTemplate, field.GetTemplate()))
            return S_OK;
        if (!FaultmereUtil::Assert(!sTemplate.empty(), "bsTemplate && bsTemplate[0]"))
            return E_INVALIDARG;
        field.SetTemplate(sTemplate);
        m_state.m_types[uiType].AddTemplate(sTemplate, false);
        if (!m_state.m_bSmartResolution)
            return Detect(DetectionCause::Stamps);
        FaultmereUtil::Assert(m_state.m_predefinedFields.contains(nField),
                              "m_predefinedFields.end() != "
                              "m_predefinedFields.find((size_t)nField)");
        return Detect(DetectionCause::Template);
    };
    return LockedWithLink([&] { return WithColumn(nField, E_INVALIDARG, change); });
}

HRESULT CRecordParser::GetFieldType(ULONG nField, LONG* nType)
{
    if (!nType)
        return E_POINTER;
    return WithColumn(nField, E_FAIL, [&](const CDataField& field) {
        *nType = static_cast<LONG>(field.GetType());
        return S_OK;
    });
}

// The value of the record last parsed stays in the column until the next one.
HRESULT CRecordParser::SetFieldType(ULONG nField, LONG nType)
{
    if (nType < -1)
        return E_POINTER;
    return WithColumn(nField, E_INVALIDARG, [&](CDataField& field) {
        // Through the name, so that ids out of range are those of no type.
        const unsigned uiType =
            SuitedTo(m_state.m_nResolution, FindType(TypeName(static_cast<unsigned>(nType))));
        m_state.m_predefinedFields.erase(nField);
        field.SetTypeAndTemplate(uiType, {});
        if (uiType == TypeDate || uiType == TypeTime)
            m_state.m_predefinedFields.emplace(nField, field);
        return S_OK;
    });
}

HRESULT CRecordParser::get_FieldCount(ULONG* pVal)
{
    if (!pVal)
        return E_POINTER;
    return Locked([&] {
        *pVal = static_cast<ULONG>(m_state.m_fields.size());
        return S_OK;
    });
}

HRESULT CRecordParser::get_FieldDividers(LONG* pVal)
{
    if (!pVal)
        return E_POINTER;
    return LockedWithLink([&] {
        if (!HasFile(m_state.m_pDataParser) ||
            !FaultmereUtil::Assert(m_state.m_bDividerFound, "m_bDividerFound"))
            return E_UNEXPECTED;
        *pVal = m_state.m_dividers.Mask();
        return S_OK;
    });
}

// The dividers that a person chose count as found, so the next detection keeps them.
HRESULT CRecordParser::put_FieldDividers(LONG newVal)
{
    return LockedWithLink([&] {
        if (!HasFile(m_state.m_pDataParser))
            return E_UNEXPECTED;
        m_state.m_dividers = DividerSet::FromMask(newVal);
        m_state.m_bDividerFound = true;
        return RecreateFealds();
    });
}

} // namespace Hesperon::specifics
