// Values, texts and errors of the record last parsed.
//
// Parsing only fills the variables of the columns; a value is computed when it is first asked for,
// and its text is cut out of the record again where there is no value. The multipliers see the
// value on its way out, so the column keeps the unscaled one.

#include "Simples/interface/ResourceStrings.h"
#include "platform/values.h"
#include "src/parsing/ColumnParsing.h"
#include "src/parsing/RecordParser.h"
#include "src/parsing/RecordText.h"
#include "src/parsing/templates/TextTests.h"

namespace Hesperon::specifics {

using IQRL_TabulexConverter::IValueMultiplier;

namespace {

void Apply(const com_ptr<IValueMultiplier>& multiplier, VARIANT* value)
{
    if (multiplier)
        multiplier->ApplyTransform(value);
}

// A number with a fraction is a fault of its own in a volume: its text would do elsewhere.
string_t FaultText(const CDataField& field, string_view_t sText)
{
    if (IsVolumeType(field.GetType()) && IsFloatText(sText))
        return FormatResourceString(IDS_MUST_BE,
                                    {LocalizedTypeName(field.GetType()), OLESTR("integer"), sText});
    return FormatResourceString(IDS_TEMPLATE_REFUSES, {sText, field.GetTemplate()});
}

// The field's text in the record last parsed; empty where the record lacks it.
string_view_t CurrentText(const ParserState& state, std::size_t nField)
{
    return FilledFieldAt(state.m_sCurrentRecord, state.m_dividers, nField)
        .value_or(string_view_t());
}

HRESULT HandOut(const com_ptr<IValueMultiplier>& multiplier, IDispatch** pVal)
{
    if (!pVal)
        return E_POINTER;
    *pVal = com_ptr<IDispatch>(multiplier.get()).detach();
    return multiplier ? S_OK : E_NOINTERFACE;
}

HRESULT Take(IDispatch* object, com_ptr<IValueMultiplier>& multiplier)
{
    com_ptr<IValueMultiplier> given;
    const HRESULT hr = query(object, given);
    if (SUCCEEDED(hr))
        multiplier = given;
    return hr;
}

} // namespace

HRESULT CRecordParser::GetFieldValue(VARIANT* Value, ULONG nField)
{
    if (!Value)
        return E_POINTER;
    return WithColumn(nField, E_FAIL, [&](CDataField&) { return ValueOf(nField, Value); });
}

// A symbol is its text. Any other column that has no value gives its text with S_FALSE.
HRESULT CRecordParser::ValueOf(std::size_t nField, VARIANT* pValue)
{
    CDataField& field = m_state.m_fields[nField];
    const unsigned uiType = field.GetType();
    if (uiType != TypeSymbol && SUCCEEDED(ColumnValue(m_state, field, pValue))) {
        if (IsPriceType(uiType))
            Apply(m_pPriceMultiplier, pValue);
        else if (IsVolumeType(uiType))
            Apply(m_pVolumeMultiplier, pValue);
        return S_OK;
    }
    *pValue = Variant::FromText(CurrentText(m_state, nField)).detach();
    return uiType == TypeSymbol ? S_OK : S_FALSE;
}

HRESULT CRecordParser::SampleValue(std::size_t nColumn, VARIANT* pValue)
{
    // A sample may be the first record after a reset, which builds the columns anew.
    return nColumn < m_state.m_fields.size() ? ValueOf(nColumn, pValue) : E_FAIL;
}

HRESULT CRecordParser::GetFieldError(BSTR* bsError, ULONG nField)
{
    if (!bsError)
        return E_POINTER;
    return WithColumn(nField, E_INVALIDARG, [&](const CDataField& field) {
        if (field.IsValid()) {
            *bsError = NewBstr(LoadResourceString(IDS_FIELD_IS_GOOD));
            return S_FALSE;
        }
        *bsError = NewBstr(FaultText(field, CurrentText(m_state, nField)));
        return S_OK;
    });
}

HRESULT CRecordParser::GetFieldText(BSTR bsRecord, ULONG nField, BSTR* bsField)
{
    if (!bsField)
        return E_POINTER;
    return WithColumn(nField, E_FAIL, [&](CDataField&) {
        const string_t sRecord = NormalisedRecord(TextOf(bsRecord));
        *bsField =
            NewBstr(FilledFieldAt(sRecord, m_state.m_dividers, nField).value_or(string_view_t()));
        return S_OK;
    });
}

HRESULT CRecordParser::get_CurrentDateTime(VARIANT* pVal)
{
    if (!pVal)
        return E_POINTER;
    return Locked([&] {
        DATE date = 0;
        const HRESULT hr = RecordDateTime(m_state, date);
        if (SUCCEEDED(hr))
            *pVal = Variant::FromDate(date).detach();
        return hr;
    });
}

HRESULT CRecordParser::get_PriceMultiplier(IDispatch** pVal)
{
    return Locked([&] { return HandOut(m_pPriceMultiplier, pVal); });
}

HRESULT CRecordParser::put_PriceMultiplier(IDispatch* newVal)
{
    return Locked([&] { return Take(newVal, m_pPriceMultiplier); });
}

HRESULT CRecordParser::get_VolumeMultiplier(IDispatch** pVal)
{
    return Locked([&] { return HandOut(m_pVolumeMultiplier, pVal); });
}

HRESULT CRecordParser::put_VolumeMultiplier(IDispatch* newVal)
{
    return Locked([&] { return Take(newVal, m_pVolumeMultiplier); });
}

} // namespace Hesperon::specifics
