// The resolution of a record parser: finding it, choosing it, holding records
// against it.

#include <cmath>

#include "Simples/interface/ResourceStrings.h"
#include "diagnostics/FaultmereClient.h"
#include "interfaces/IDataParserEvents.h"
#include "src/parsing/ColumnParsing.h"
#include "src/parsing/RecordParser.h"
#include "src/parsing/detection/FieldConstructor.h"
#include "src/parsing/detection/FieldTypeRefinement.h"
#include "src/values/TextArray.h"

namespace Hesperon::specifics {

using IQRL_TabulexConverter::IDataParserEvents;

namespace {

constexpr double kHalfSecond = 5.787037037037037e-6; // in days
constexpr double kMinWeek = 7;

// Units a day of the step that a resolution demands; 0 where it demands none.
constexpr double kUnitsPerDay[RESOLUTIONS_COUNT] = {0, 0, 0, 0, 86400, 1440, 1, 1};

// Whole units in a span of days, to the nearest half second.
double WholeUnits(double fSpan, double fUnitsPerDay)
{
    return std::trunc((fSpan + std::copysign(kHalfSecond, fSpan)) * fUnitsPerDay);
}

bool IsVector(const VARIANT& value, VARTYPE vt)
{
    return value.vt == (VT_ARRAY | vt) && value.parray && SafeArrayGetDim(value.parray) == 1;
}

HRESULT ReadResolutionTemplate(SAFEARRAY* ids, SAFEARRAY* names, LONG i, ResolutionTemplate& out)
{
    Bstr name;
    HRESULT hr = SafeArrayGetElement(ids, &i, &out.nId);
    if (SUCCEEDED(hr))
        hr = SafeArrayGetElement(names, &i, name.put());
    if (FAILED(hr))
        return hr;
    if (!name)
        return E_INVALIDARG;
    out.sName = name.view();
    return S_OK;
}

} // namespace

HRESULT CRecordParser::FindResolution(BSTR bsRecord)
{
    return LockedWithLink(
        [&] { return specifics::FindResolution(m_state, *this, TextOf(bsRecord), 1); });
}

HRESULT CRecordParser::CheckResolution(VARIANT LastDateTime, BSTR* ResolutionError,
                                       IDispatch* pHost)
{
    if (!ResolutionError)
        return E_POINTER;
    return Locked([&]() -> HRESULT {
        if (m_state.m_nResolution == ResolutionNone)
            return E_UNEXPECTED;
        if (LastDateTime.vt != VT_DATE)
            return E_INVALIDARG;
        DATE current = 0;
        if (const HRESULT hr = RecordDateTime(m_state, current); FAILED(hr))
            return hr;
        if (m_state.m_nResolution >= RESOLUTIONS_COUNT)
            return E_UNEXPECTED;
        if (current < LastDateTime.date) {
            *ResolutionError = NewBstr(LoadResourceString(IDS_NEGATIVE_INCREMENT));
            return S_FALSE;
        }
        if (!BreaksResolution(current - LastDateTime.date))
            return S_OK;
        const HRESULT hr = ResolutionErrorText(pHost, ResolutionError);
        return FAILED(hr) ? hr : S_FALSE;
    });
}

bool CRecordParser::BreaksResolution(double fSpan) const
{
    const double fUnitsPerDay = kUnitsPerDay[m_state.m_nResolution];
    if (fUnitsPerDay == 0)
        return false;
    const double fLeast =
        m_state.m_nResolution == ResolutionWeeks ? kMinWeek : m_state.m_nResolutionSize;
    return WholeUnits(fSpan, fUnitsPerDay) < fLeast;
}

HRESULT CRecordParser::ResolutionErrorText(IDispatch* pHost, BSTR* pText) const
{
    com_ptr<IDataParserEvents> events;
    if (!pHost || FAILED(query(pHost, events)))
        return E_NOINTERFACE;
    Bstr name;
    if (const HRESULT hr = events->GetResolutionName(m_state.m_nResolution, name.put()); FAILED(hr))
        return hr;
    *pText = NewBstr(FormatResourceString(IDS_RESOLUTION_BROKEN, {WithoutSize(name.view())}));
    return S_OK;
}

HRESULT CRecordParser::RecalcResolutionSize()
{
    return S_FALSE;
}

HRESULT CRecordParser::IsValidResolution()
{
    return Locked([&] {
        const bool bValid = m_state.m_nResolution != ResolutionNone &&
                            HasRequiredTypes(m_state, RequiredTypes(m_state.m_nResolution)) &&
                            !HasDuplicates(m_state);
        return bValid ? S_OK : S_FALSE;
    });
}

HRESULT CRecordParser::SetResolutionTemplates(VARIANT vIDs, VARIANT vNames)
{
    return Locked([&]() -> HRESULT {
        if (!IsVector(vIDs, VT_I4) || !IsVector(vNames, VT_BSTR))
            return FaultmereUtil::AssertOk(E_INVALIDARG);
        m_state.m_resolutionTemplates.clear();
        LONG nFirst = 0;
        LONG nLast = -1;
        SafeArrayGetLBound(vIDs.parray, 1, &nFirst);
        SafeArrayGetUBound(vIDs.parray, 1, &nLast);
        for (LONG i = nFirst; i <= nLast; ++i) {
            ResolutionTemplate row{};
            if (const HRESULT hr = ReadResolutionTemplate(vIDs.parray, vNames.parray, i, row);
                FAILED(hr))
                return FaultmereUtil::AssertOk(hr);
            m_state.m_resolutionTemplates.push_back(std::move(row));
        }
        return S_OK;
    });
}

HRESULT CRecordParser::get_LackedFields(VARIANT* pVal)
{
    if (!pVal)
        return E_POINTER;
    return Locked([&] {
        std::vector<string_view_t> names;
        for (unsigned uiType : RequiredTypes(m_state.m_nResolution))
            if (m_state.Index(uiType) == kNoColumn)
                names.push_back(TypeName(uiType));
        *pVal = TextArray(names).detach();
        return S_OK;
    });
}

HRESULT CRecordParser::get_DuplicatedField(BSTR* pVal)
{
    if (!pVal)
        return E_POINTER;
    return Locked([&] {
        string_view_t sName;
        for (std::size_t i = 0; i < m_state.m_fields.size() && sName.empty(); ++i) {
            const unsigned uiType = m_state.m_fields[i].GetType();
            for (std::size_t j = i + 1; j < m_state.m_fields.size() && uiType != kNoType; ++j)
                if (m_state.m_fields[j].GetType() == uiType)
                    sName = TypeName(uiType);
        }
        *pVal = NewBstr(sName);
        return S_OK;
    });
}

HRESULT CRecordParser::get_Resolution(LONG* pVal)
{
    if (!pVal)
        return E_POINTER;
    return Locked([&] {
        *pVal = m_state.m_nResolution;
        return S_OK;
    });
}

HRESULT CRecordParser::put_Resolution(LONG newVal)
{
    return LockedWithLink([&]() -> HRESULT {
        if (newVal < 0 || newVal >= RESOLUTIONS_COUNT)
            return E_INVALIDARG;
        if (newVal == m_state.m_nResolution)
            return S_OK;
        m_state.m_bAutoHeader = false;
        m_state.m_nResolution = newVal;
        m_state.m_nResolutionSize = 0;
        if (FAILED(DetectFromFirstRecord()))
            return S_FALSE;
        Steps steps;
        if (newVal == ResolutionMinutes && SampleSteps(m_state, *this, steps))
            m_state.m_nResolutionSize = steps.wMinute;
        return S_OK;
    });
}

// Builds the columns anew under the resolution that stands, keeping date and time.
HRESULT CRecordParser::DetectFromFirstRecord()
{
    RecordSource source(m_state.m_pDataParser);
    string_t sRecord;
    if (source.Seek(0))
        source.Read(sRecord);
    m_state.m_predefinedFields.clear();
    m_state.PredefineDatesAndTimes();
    const HRESULT hr = CFieldConstructor(m_state).ProcessRecord(sRecord, true, 0);
    if (SUCCEEDED(hr))
        RefineFieldTypes(m_state, 0);
    return hr;
}

HRESULT CRecordParser::get_ResolutionSize(LONG* pVal)
{
    if (!pVal)
        return E_POINTER;
    return Locked([&] {
        switch (m_state.m_nResolution) {
        case ResolutionNone:
            *pVal = 0;
            break;
        case ResolutionTick:
        case ResolutionDays:
        case ResolutionWeeks:
            *pVal = 1;
            break;
        default:
            *pVal = m_state.m_nResolutionSize;
        }
        return S_OK;
    });
}

HRESULT CRecordParser::put_ResolutionSize(LONG newVal)
{
    return Locked([&] {
        m_state.m_nResolutionSize = newVal;
        return S_OK;
    });
}

HRESULT CRecordParser::get_SmartResolutionEnabled(VARIANT_BOOL* pVal)
{
    if (!pVal)
        return E_POINTER;
    return Locked([&] {
        *pVal = m_state.m_bSmartResolution ? VARIANT_TRUE : VARIANT_FALSE;
        return S_OK;
    });
}

HRESULT CRecordParser::put_SmartResolutionEnabled(VARIANT_BOOL newVal)
{
    return Locked([&] {
        m_state.m_bSmartResolution = newVal != VARIANT_FALSE;
        return S_OK;
    });
}

HRESULT CRecordParser::get_UseBarsEndTime(VARIANT_BOOL* pVal)
{
    if (!pVal)
        return E_POINTER;
    return Locked([&] {
        *pVal = m_state.m_bUseBarsEndTime ? VARIANT_TRUE : VARIANT_FALSE;
        return S_OK;
    });
}

HRESULT CRecordParser::put_UseBarsEndTime(VARIANT_BOOL newVal)
{
    return LockedWithLink([&] {
        const bool bUse = newVal != VARIANT_FALSE;
        const bool bChanged = bUse != m_state.m_bUseBarsEndTime;
        m_state.m_bUseBarsEndTime = bUse;
        if (bChanged && m_state.m_nResolution == ResolutionMinutes)
            RefreshDates();
        return S_OK;
    });
}

} // namespace Hesperon::specifics
