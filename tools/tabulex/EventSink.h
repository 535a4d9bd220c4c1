// EventSink: the part of an IDataParserEvents object that every run of the tool
// shares: counting, names of resolutions, and the text of a fault.
//
// Late-bound calls aren't offered. Calls come on the file's worker thread, or on the
// caller's during a settings check; the text is read after the run.
#pragma once

#include <atomic>
#include <string>

#include "interfaces/IDataParserEvents.h"
#include "tools/tabulex/ResolutionOffers.h"

namespace tabulex {

class EventSink : public IQRL_TabulexConverter::IDataParserEvents
{
public:
    // The offers must outlive the sink.
    explicit EventSink(const ResolutionOffers& offers) : m_offers(offers) {}
    virtual ~EventSink() = default;
    EventSink(const EventSink&) = delete;
    EventSink& operator=(const EventSink&) = delete;

    // Why the settings were refused, in the component's words; empty if they weren't.
    const std::string& FaultText() const { return m_sFault; }

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID riid, void** ppv) override;
    ULONG STDMETHODCALLTYPE AddRef() override;
    ULONG STDMETHODCALLTYPE Release() override;

    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* pctinfo) override;
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override;
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override;
    HRESULT STDMETHODCALLTYPE Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*,
                                     UINT*) override;

    // ---- what a sink without a conversion answers
    HRESULT STDMETHODCALLTYPE PutRecords(VARIANT, ULONGLONG) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE EndTransaction(VARIANT_BOOL) override { return S_OK; }
    HRESULT STDMETHODCALLTYPE OnError(VARIANT Description) override;
    HRESULT STDMETHODCALLTYPE GetResolutionName(LONG Resolution, BSTR* Name) override;
    HRESULT STDMETHODCALLTYPE OnError2(LONG_PTR, LONG, BSTR) override { return S_OK; }

private:
    const ResolutionOffers& m_offers;
    std::atomic<ULONG> m_nRefs = 0;
    std::string m_sFault;
};

} // namespace tabulex
