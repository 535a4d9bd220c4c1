// RowCounter: the receiving end of a conversion, which counts what it is given.
//
// The library calls it on the file's worker thread; Wait is for the thread that
// started the conversion. It lives by its reference count.
#pragma once

#include <atomic>
#include <condition_variable>
#include <cstdio>
#include <filesystem>
#include <mutex>

#include "interfaces/IDataParserEvents.h"
#include "platform/com_ptr.h"
#include "platform/values.h"

// A path is the standard library's short way from UTF-16 to UTF-8.
inline std::string Utf8(BSTR text)
{
    return std::filesystem::path(TextOf(text)).string();
}

class RowCounter final : public IQRL_TabulexConverter::IDataParserEvents
{
public:
    // Returns when the conversion is over: whether it went well.
    bool Wait()
    {
        std::unique_lock lock(m_mutex);
        m_changed.wait(lock, [this] { return m_bEnded; });
        return m_bGood;
    }

    unsigned long long Rows() const { return m_nRows; }
    unsigned long long BadLines() const { return m_nBadLines; }

    // ---- IDataParserEvents

    HRESULT STDMETHODCALLTYPE PutRecords(VARIANT vRecords, ULONGLONG) override
    {
        // Column by record, both from 0: the second dimension counts the rows. A batch
        // of rejected lines only has none.
        LONG nLast = -1;
        const HRESULT hr = SafeArrayGetUBound(vRecords.parray, 2, &nLast);
        if (SUCCEEDED(hr))
            m_nRows += static_cast<unsigned long long>(nLast + 1);
        return hr;
    }

    HRESULT STDMETHODCALLTYPE EndTransaction(VARIANT_BOOL bResult) override
    {
        std::lock_guard lock(m_mutex);
        m_bEnded = true;
        m_bGood = bResult != VARIANT_FALSE;
        m_changed.notify_all();
        return S_OK;
    }

    HRESULT STDMETHODCALLTYPE OnError(VARIANT Description) override
    {
        LONG nText = 1;
        Variant text;
        const HRESULT hr = SafeArrayGetElement(Description.parray, &nText, text.put());
        if (SUCCEEDED(hr))
            std::fprintf(stderr, "%s\n", Utf8(text.bstrVal).c_str());
        return hr;
    }

    HRESULT STDMETHODCALLTYPE GetResolutionName(LONG Resolution, BSTR* Name) override
    {
        if (!Name)
            return E_POINTER;
        *Name = NewBstr(Resolution == 5 ? OLESTR("Minutes") : OLESTR("this resolution"));
        return S_OK;
    }

    HRESULT STDMETHODCALLTYPE OnError2(LONG_PTR lptrLineNum, LONG, BSTR bsDescription) override
    {
        ++m_nBadLines;
        std::fprintf(stderr, "line %lld: %s\n", static_cast<long long>(lptrLineNum),
                     Utf8(bsDescription).c_str());
        return S_OK; // reject the line, go on
    }

    // ---- IUnknown

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID riid, void** ppv) override
    {
        if (!ppv)
            return E_POINTER;
        *ppv = nullptr;
        if (!(riid == iid_of<IUnknown>)&&!(riid == iid_of<IDispatch>)&&!(
                riid == iid_of<IQRL_TabulexConverter::IDataParserEvents>))
            return E_NOINTERFACE;
        *ppv = static_cast<IQRL_TabulexConverter::IDataParserEvents*>(this);
        AddRef();
        return S_OK;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return ++m_nRefs; }
    ULONG STDMETHODCALLTYPE Release() override
    {
        const ULONG nLeft = --m_nRefs;
        if (nLeft == 0)
            delete this;
        return nLeft;
    }

    // ---- IDispatch: the library calls sinks through the interface itself

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

private:
    std::atomic<ULONG> m_nRefs = 0;
    std::atomic<unsigned long long> m_nRows = 0;
    std::atomic<unsigned long long> m_nBadLines = 0;
    std::mutex m_mutex; // guards the two below
    bool m_bEnded = false;
    bool m_bGood = false;
    std::condition_variable m_changed;
};
