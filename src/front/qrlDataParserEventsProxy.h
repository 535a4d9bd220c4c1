// CqrlDataParserEventsProxy: the events of an enumeration, which go to a sink window.
//
// An enumeration that is cancelled ends without a call; then the last release of this
// object, on any thread, lets the window go.
#pragma once

#include "interfaces/IDataParserEvents.h"
#include "module/ComObject.h"
#include "src/front/SinkLink.h"

namespace Hesperon::specifics {

class CqrlDataParserEventsProxy
    : public ComObject<CqrlDataParserEventsProxy, Dual<IQRL_TabulexConverter::IDataParserEvents>>
{
public:
    SinkLink& Link() { return m_link; }

    HRESULT STDMETHODCALLTYPE PutRecords(VARIANT vRecords, ULONGLONG nRecCountWithSkeeped) override;
    HRESULT STDMETHODCALLTYPE EndTransaction(VARIANT_BOOL bResult) override;
    HRESULT STDMETHODCALLTYPE OnError(VARIANT) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetResolutionName(LONG, BSTR*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE OnError2(LONG_PTR, LONG, BSTR) override { return E_NOTIMPL; }

private:
    SinkLink m_link;
};

} // namespace Hesperon::specifics
