// ParserSink: what the reader's sinks have in common. SettingsSink: hears why settings are refused.
//
// Called through their slots only; nobody finds their operations by name. They live by their
// reference counts.
#pragma once

#include <atomic>
#include <string>

#include "component/reader/ReadFailure.h"
#include "interfaces/IDataParserEvents.h"
#include "platform/values.h"

namespace Hesperon::reader {

class ParserSink : public IQRL_TabulexConverter::IDataParserEvents
{
public:
    virtual ~ParserSink() = default;

    // How many hold it.
    ULONG References() const { return m_nRefs; }

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID riid, void** ppv) override;
    ULONG STDMETHODCALLTYPE AddRef() override { return ++m_nRefs; }
    ULONG STDMETHODCALLTYPE Release() override;

    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override
    {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*,
                                     UINT*) override
    {
        return E_NOTIMPL;
    }

    HRESULT STDMETHODCALLTYPE PutRecords(VARIANT, ULONGLONG) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE EndTransaction(VARIANT_BOOL) override { return S_OK; }
    HRESULT STDMETHODCALLTYPE OnError(VARIANT) override { return S_OK; }
    HRESULT STDMETHODCALLTYPE GetResolutionName(LONG Resolution, BSTR* Name) override;
    HRESULT STDMETHODCALLTYPE OnError2(LONG_PTR, LONG, BSTR) override { return S_OK; }

private:
    std::atomic<ULONG> m_nRefs = 0;
};

class SettingsSink final : public ParserSink
{
public:
    // Empty if none was told.
    const std::string& Fault() const { return m_sFault; }

    HRESULT STDMETHODCALLTYPE OnError(VARIANT Description) override;

private:
    std::string m_sFault;
};

} // namespace Hesperon::reader
