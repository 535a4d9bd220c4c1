// DataSink: what all sinks of the tool have in common: how the session ended, and the text
// of a fault.
//
// Late-bound calls aren't offered. All calls come on the thread that started the
// session, while it pumps.
#pragma once

#include <functional>
#include <string>

#include "interfaces/IqrlTabulexDataSink.h"

namespace tabulex {

class Host;

class DataSink : public IQRL_TabulexConverter::IqrlTabulexDataSink
{
public:
    DataSink() = default;
    virtual ~DataSink() = default;
    DataSink(const DataSink&) = delete;
    DataSink& operator=(const DataSink&) = delete;

    // Why the settings were refused, in the component's words; empty if they were accepted.
    const std::string& FaultText() const { return m_sFault; }

    bool HasEnded() const { return m_end != End::None; }
    // Ended, and well.
    bool IsCommitted() const { return m_end == End::Commit; }
    // Nobody but the tool holds the sink any more.
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

// How soon PumpToTheEnd notices an interrupt; calls of the session end its wait at once.
inline constexpr unsigned kPumpMilliseconds = 50;

// Dispatches messages until the session of this sink is over; an interrupt cancels it. A
// session that has let go of its sink without an end won't report one any more. `between` is
// called after each dispatch, and more often than once in kPumpMilliseconds.
void PumpToTheEnd(const Host& host, DataSink& sink, const std::function<void()>& between = {});

} // namespace tabulex
