// CqrlDataParserEventsProxy: what an enumeration tells instead of a whole object; it
// hands everything to a sink window.
#pragma once

#include "interfaces/IDataParserEvents.h"
#include "module/ComObject.h"
#include "platform/MessageWindow.h"

namespace Hesperon::specifics {

class CqrlDataParserEventsProxy
    : public ComObject<CqrlDataParserEventsProxy, Dual<IQRL_TabulexConverter::IDataParserEvents>>
{
public:
    // Takes over the window: it goes with this object, if not before.
    void Attach(WindowHandle hWnd) { m_hWnd = hWnd; }
    void FinalRelease();

    HRESULT STDMETHODCALLTYPE PutRecords(VARIANT vRecords, ULONGLONG nRecCountWithSkeeped) override;
    HRESULT STDMETHODCALLTYPE EndTransaction(VARIANT_BOOL bResult) override;
    HRESULT STDMETHODCALLTYPE OnError(VARIANT) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetResolutionName(LONG, BSTR*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE OnError2(LONG_PTR, LONG, BSTR) override { return E_NOTIMPL; }

private:
    WindowHandle m_hWnd = 0;
};

} // namespace Hesperon::specifics
