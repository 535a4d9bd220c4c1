// DataSink: the part of a session's sink that all of the tool's sinks share: its end,
// and the text of a fault.
//
// Late-bound calls aren't offered. All calls come on the thread that started the
// session, while it pumps.
#pragma once

#include <string>

#include "interfaces/IqrlTabulexDataSink.h"

namespace tabulex {

class DataSink : public IQRL_TabulexConverter::IqrlTabulexDataSink
{
public:
    DataSink() = default;
    virtual ~DataSink() = default;
    DataSink(const DataSink&) = delete;
    DataSink& operator=(const DataSink&) = delete;

    // Why the settings were refused, in the component's words; empty if they weren't.
    const std::string& FaultText() const { return m_sFault; }

    bool HasEnded() const { return m_end != End::None; }
    // Ended, and well.
    bool IsCommitted() const { return m_end == End::Commit; }
    // Only the tool holds the sink: no session does any more.
    bool IsLetGoOf() const { return m_nRefs == 1; }

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID riid, void** ppv) override;
    ULONG STDMETHODCALLTYPE AddRef() override;
    ULONG STDMETHODCALLTYPE Release() override;

    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* pctinfo) override;
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override;
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override;
    HRESULT STDMETHODCALLTYPE Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*,
                                     UINT*) override;

    HRESULT STDMETHODCALLTYPE DataChanged(VARIANT) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Commit() override;
    HRESULT STDMETHODCALLTYPE Rollback() override;
    HRESULT STDMETHODCALLTYPE OnError(VARIANT Description) override;

private:
    enum class End
    {
        None,
        Commit,
        Rollback
    };

    ULONG m_nRefs = 0;
    End m_end = End::None;
    std::string m_sFault;
};

} // namespace tabulex
