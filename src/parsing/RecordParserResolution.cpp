// The resolution of a record parser: finding it, choosing it, and checking that a record
// follows the one before it as the resolution asks. The time between the two, rounded to
// half a second, is counted in whole units of the resolution, and must be one step at least.

#include <cmath>

#include "Simples/interface/ResourceStrings.h"
#include "diagnostics/FaultmereClient.h"
#include "interfaces/IDataParserEvents.h"
#include "src/parsing/ColumnParsing.h"
#include "src/parsing/RecordParser.h"
#include "src/parsing/ResolutionStep.h"
#include "src/parsing/detection/ResolutionFit.h"
#include "src/values/TextArray.h"

namespace Hesperon::specifics {

using IQRL_TabulexConverter::IDataParserEvents;

namespace {

constexpr double kMinWeek = 7;

// Units per day of the step that a resolution demands; 0 if it demands none.
constexpr double kUnitsPerDay[RESOLUTIONS_COUNT] = {0, 0, 0, 0, 86400, 1440, 1, 1};

HRESULT ResolutionErrorText(IDispatch* pHost, LONG nResolution, BSTR* pText)
{
    com_ptr<IDataParserEvents> events;
    if (!pHost || FAILED(query(pHost, events)))
        return E_NOINTERFACE;
    Bstr name;
    if (const HRESULT hr = events->GetResolutionName(nResolution, name.put()); FAILED(hr))
        return hr;
    *pText = NewBstr(FormatResourceString(IDS_RESOLUTION_BROKEN, {WithoutSize(name.view())}));
    return S_OK;
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

// S_FALSE with the reason for a step that the resolution doesn't have.
HRESULT CheckStep(const ParserState& state, double fStep, BSTR* pError, IDispatch* pHost)
{
    if (fStep < 0) {
        *pError = NewBstr(LoadResourceString(IDS_NEGATIVE_INCREMENT));
        return S_FALSE;
    }
    if (!StepRuleOf(state).IsBrokenBy(fStep))
        return S_OK;
    const HRESULT hr = ResolutionErrorText(pHost, state.m_nResolution, pError);
    return FAILED(hr) ? hr : S_FALSE;
}

} // namespace

StepRule StepRuleOf(const ParserState& state)
{
    return {kUnitsPerDay[state.m_nResolution],
            state.m_nResolution == ResolutionWeeks ? kMinWeek : state.m_nResolutionSize};
}

HRESULT CRecordParser::FindResolution(BSTR bsRecord)
{
    return LockedWithLink([&] { return Detect(DetectionCause::Request, TextOf(bsRecord)); });
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
        return CheckStep(m_state, current - LastDateTime.date, ResolutionError, pHost);
    });
}

HRESULT CRecordParser::RecalcResolutionSize()
{
    return S_FALSE;
}

HRESULT CRecordParser::IsValidResolution()
{
    return Locked([&] {
        const bool bValid = m_state.m_nResolution != ResolutionNone &&
                            LackingType(m_state, m_state.m_nResolution) == kNoType &&
                            DuplicatedType(m_state) == kNoType;
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
        const unsigned uiType = DuplicatedType(m_state);
        *pVal = NewBstr(uiType == kNoType ? string_view_t() : TypeName(uiType));
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

// The columns come from the file again, so a record that was parsed before is gone.
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
        return FAILED(Detect(DetectionCause::Resolution)) ? S_FALSE : S_OK;
    });
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

// The stamps of minute bars change, and with them the first and the last date.
HRESULT CRecordParser::put_UseBarsEndTime(VARIANT_BOOL newVal)
{
    return LockedWithLink([&] {
        const bool bUse = newVal != VARIANT_FALSE;
        const bool bChanged = bUse != m_state.m_bUseBarsEndTime;
        m_state.m_bUseBarsEndTime = bUse;
        if (bChanged && m_state.m_nResolution == ResolutionMinutes)
            Detect(DetectionCause::Stamps);
        return S_OK;
    });
}

} // namespace Hesperon::specifics
