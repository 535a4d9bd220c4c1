// SettingsCheck: the events of one check of a host's settings, which go to a sink.
//
// It has copies of what it needs, so the host's object stays as it is during the check, and
// the sink may change that object's settings.
//
// For one thread, the host's. Nobody else keeps it after the check.
#pragma once

#include "interfaces/IDataParserEvents.h"
#include "module/ComObject.h"
#include "src/front/ConversionSession.h"

namespace Hesperon::specifics {

class SettingsCheck
    : public ComObject<SettingsCheck, Dual<IQRL_TabulexConverter::IDataParserEvents>>
{
public:
    using IDataParser = IQRL_TabulexConverter::IDataParser;

    // Once, before the check. False where no sink window can be made.
    bool Open(com_ptr<IDataParser> pDataParser, const ConvertorSettings& settings,
              CqrlSinkWindow::Sink pSink)
    {
        m_pDataParser = std::move(pDataParser);
        m_settings = settings;
        m_session.BeQuiet();
        return m_session.OpenSink(std::move(pSink));
    }

    // What the check's events do, for an object that is asked for them itself meanwhile.
    ConversionSession& Session() { return m_session; }

    HRESULT STDMETHODCALLTYPE PutRecords(VARIANT vRecords, ULONGLONG nRecCountWithSkeeped) override
    {
        return m_session.PutRecords(vRecords, nRecCountWithSkeeped);
    }
    HRESULT STDMETHODCALLTYPE EndTransaction(VARIANT_BOOL bResult) override
    {
        return m_session.EndTransaction(bResult != VARIANT_FALSE);
    }
    HRESULT STDMETHODCALLTYPE OnError(VARIANT Description) override
    {
        return m_session.OnError(Description);
    }
    HRESULT STDMETHODCALLTYPE GetResolutionName(LONG Resolution, BSTR* Name) override
    {
        return m_session.GetResolutionName(Resolution, Name);
    }
    HRESULT STDMETHODCALLTYPE OnError2(LONG_PTR lptrLineNum, LONG lptrFieldNum,
                                       BSTR bsDescription) override
    {
        return m_session.OnError2(lptrLineNum, lptrFieldNum, bsDescription);
    }

private:
    com_ptr<IDataParser> m_pDataParser;
    ConvertorSettings m_settings;
    ConversionSession m_session{m_pDataParser, m_settings};
};

} // namespace Hesperon::specifics
