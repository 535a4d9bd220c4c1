// The tests run in a fixed order: range of dates, resolution chosen, its name, its size, the
// fields that it needs, fields that occur twice. The first fault ends the check.

#include "src/data/SettingsCheck.h"

#include "Simples/interface/ResourceStrings.h"
#include "diagnostics/FaultmereClient.h"
#include "platform/MessageBox.h"
#include "src/data/ErrorDescription.h"
#include "src/parsing/DataTypes.h"
#include "src/values/LockedArray.h"

using namespace IQRL_TabulexConverter;
using FaultmereUtil::AssertOk;

namespace Hesperon::specifics {

namespace {

// Reports to the sink or, if it refuses, to the person at the window.
HRESULT ReportFault(LONG_PTR hWnd, IDataParserEvents& events, const string_t& sMessage)
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

// Empty, with a report, if the record parser doesn't give an array of names.
string_t LackedFieldList(IRecordParser& parser)
{
    Variant vFields;
    const HRESULT hr = parser.get_LackedFields(vFields.put());
    const bool bNames =
        SUCCEEDED(hr) && vFields.vt == (VT_ARRAY | VT_BSTR) && SafeArrayGetDim(vFields.parray) >= 1;
    if (!bNames) {
        AssertOk(FAILED(hr) ? hr : E_INVALIDARG);
        return {};
    }
    return QuotedList(LockedArray<BSTR>(vFields.parray));
}

string_t DuplicatedField(IRecordParser& parser)
{
    Bstr sField;
    AssertOk(parser.get_DuplicatedField(sField.put()));
    return sField.str();
}

// The check with its window and sink.
class CheckRun
{
public:
    CheckRun(LONG_PTR hWnd, IDataParserEvents& events) : m_hWnd(hWnd), m_events(events) {}

    HRESULT Run(const CheckedSettings& settings)
    {
        if (LowDayBits(settings.dtStart.date) == 0 || LowDayBits(settings.dtEnd.date) == 0)
            return Fault(IDS_BAD_DATE_RANGE);
        return settings.pRecordParser ? CheckResolution(*settings.pRecordParser) : E_FAIL;
    }

private:
    HRESULT Fault(unsigned nId, std::initializer_list<string_view_t> args = {})
    {
        return ReportFault(m_hWnd, m_events, FormatResourceString(nId, args));
    }

    // The sink names the resolution for the texts of faults, and can refuse the conversion here.
    HRESULT CheckResolution(IRecordParser& parser)
    {
        LONG nResolution = ResolutionNone;
        parser.get_Resolution(&nResolution);
        if (nResolution == ResolutionNone)
            return Fault(IDS_NO_RESOLUTION);
        Bstr sHostName;
        const HRESULT hrName = m_events.GetResolutionName(nResolution, sHostName.put());
        if (FAILED(hrName))
            return hrName;
        const string_view_t sName = WithoutSize(sHostName.view());
        LONG nSize = 0;
        if (nResolution == ResolutionMinutes) {
            parser.get_ResolutionSize(&nSize);
            if (nSize == 0)
                return Fault(IDS_NO_RESOLUTION_SIZE, {sName});
        }
        // A check that can't be made doesn't count against the settings.
        return parser.IsValidResolution() == S_FALSE ? CheckFields(parser, sName, hrName) : hrName;
    }

    HRESULT CheckFields(IRecordParser& parser, string_view_t sName, HRESULT hrGood)
    {
        if (const string_t sFields = LackedFieldList(parser); !sFields.empty())
            return Fault(IDS_LACKED_FIELDS, {sName, sFields});
        if (const string_t sField = DuplicatedField(parser); !sField.empty())
            return Fault(IDS_DUPLICATED_FIELD, {sField});
        return hrGood;
    }

    const LONG_PTR m_hWnd;
    IDataParserEvents& m_events;
};

} // namespace

HRESULT CheckSettings(const CheckedSettings& settings, LONG_PTR hWnd, IDispatch* pEventSink)
{
    com_ptr<IDataParserEvents> pEvents;
    if (FAILED(query(pEventSink, pEvents)))
        return E_NOINTERFACE;
    return CheckRun(hWnd, *pEvents.get()).Run(settings);
}

} // namespace Hesperon::specifics
