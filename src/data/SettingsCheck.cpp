// Whether the settings of a data parser can be converted at all. The state of the
// parser is looked at, never the file.

#include "Simples/interface/ResourceStrings.h"
#include "diagnostics/FaultmereClient.h"
#include "platform/MessageBox.h"
#include "src/data/DataParser.h"
#include "src/data/ErrorDescription.h"
#include "src/parsing/DataTypes.h"
#include "src/values/LockedArray.h"

using FaultmereUtil::AssertOk;

namespace Hesperon::specifics {

namespace {

// Tells the fault to the sink or, where that fails, to the person at the window.
HRESULT ReportFault(LONG_PTR hWnd, IQRL_TabulexConverter::IDataParserEvents& events,
                    const string_t& sMessage)
{
    constexpr LONG kNoLine = -1;
    Variant description;
    const HRESULT hr = MakeErrorDescription(kNoLine, sMessage, description);
    if (FAILED(hr))
        return hr;
    if (FAILED(events.OnError(description)))
        ShowWarning(hWnd, sMessage);
    return S_FALSE;
}

string_t QuotedList(const LockedArray<BSTR>& names)
{
    string_t sList;
    for (BSTR sName : names.Elements()) {
        if (!sList.empty())
            sList += OLESTR(", ");
        sList.append(OLESTR("\"")).append(TextOf(sName)).append(OLESTR("\""));
    }
    return sList;
}

} // namespace

HRESULT CDataParser::CheckConverterSettings(LONG_PTR hWnd, IDispatch* pEventSink)
{
    return Locked([&] { return CheckSettings(hWnd, pEventSink); });
}

HRESULT CDataParser::CheckSettings(LONG_PTR hWnd, IDispatch* pEventSink)
{
    com_ptr<IDataParserEvents> pEvents;
    if (FAILED(query(pEventSink, pEvents)))
        return E_NOINTERFACE;
    const auto Fault = [&](unsigned nId, std::initializer_list<string_view_t> args = {}) {
        return ReportFault(hWnd, *pEvents.get(), FormatResourceString(nId, args));
    };

    if (LowDayBits(m_dtStart.date) == 0 || LowDayBits(m_dtEnd.date) == 0)
        return Fault(IDS_BAD_DATE_RANGE);
    if (!m_pRecordParser)
        return E_FAIL;
    LONG nResolution = ResolutionNone;
    m_pRecordParser->get_Resolution(&nResolution);
    if (nResolution == ResolutionNone)
        return Fault(IDS_NO_RESOLUTION);

    Bstr sHostName;
    const HRESULT hrName = pEvents->GetResolutionName(nResolution, sHostName.put());
    if (FAILED(hrName))
        return hrName;
    const string_view_t sName = WithoutSize(sHostName.view());
    LONG nSize = 0;
    if (nResolution == ResolutionMinutes) {
        m_pRecordParser->get_ResolutionSize(&nSize);
        if (nSize == 0)
            return Fault(IDS_NO_RESOLUTION_SIZE, {sName});
    }

    // A check that can't be made doesn't stand against the settings.
    if (m_pRecordParser->IsValidResolution() != S_FALSE)
        return hrName;
    if (const string_t sFields = LackedFieldList(); !sFields.empty())
        return Fault(IDS_LACKED_FIELDS, {sName, sFields});
    if (const string_t sField = DuplicatedField(); !sField.empty())
        return Fault(IDS_DUPLICATED_FIELD, {sField});
    return hrName;
}

// Empty, with a report, where the record parser doesn't give an array of names.
string_t CDataParser::LackedFieldList()
{
    Variant vFields;
    const HRESULT hr = m_pRecordParser->get_LackedFields(vFields.put());
    const bool bNames =
        SUCCEEDED(hr) && vFields.vt == (VT_ARRAY | VT_BSTR) && SafeArrayGetDim(vFields.parray) >= 1;
    if (!bNames) {
        AssertOk(FAILED(hr) ? hr : E_INVALIDARG);
        return {};
    }
    return QuotedList(LockedArray<BSTR>(vFields.parray));
}

string_t CDataParser::DuplicatedField()
{
    Bstr sField;
    AssertOk(m_pRecordParser->get_DuplicatedField(sField.put()));
    return sField.str();
}

} // namespace Hesperon::specifics
