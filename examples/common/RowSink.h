// RowSink: the receiving end of a session. It counts rows, adds up a column, prints
// symbols, and remembers how the session ended.
//
// The library calls it through its slots and on the thread that started the session, so
// there is nothing to lock. It lives by its reference count.
#pragma once

#include <atomic>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include "interfaces/FieldsAndResolutions.h"
#include "interfaces/IqrlTabulexDataSink.h"
#include "platform/com_ptr.h"
#include "platform/values.h"

// A path is the standard library's short way from UTF-16 to UTF-8.
inline std::string Utf8(string_view_t text)
{
    return std::filesystem::path(text).string();
}

class RowSink final : public IQRL_TabulexConverter::IqrlTabulexDataSink
{
public:
    // With the ids of the file's fields, as GetField gives them.
    explicit RowSink(const std::vector<LONG>& fieldIds = {})
    {
        // A batch has the fields with an id, in the order of the file.
        LONG nColumn = 0;
        for (const LONG nId : fieldIds)
            if (nId != IQRL_TabulexConverter::HostFieldUndefined)
                m_columns.emplace(nId, nColumn++);
    }

    // Called after each batch. It may end the session: Unadvise(this).
    std::function<void()> m_onBatch;

    bool HasEnded() const { return m_pszEnd != nullptr; }
    bool IsCommitted() const { return m_bCommitted; }
    unsigned Batches() const { return m_nBatches; }

    void PrintResult() const
    {
        if (!m_sFirst.empty())
            std::printf("first row %s\n", m_sFirst.c_str());
        std::printf("rows %llu, batches %u, volume %lld, %s\n", m_nRows, m_nBatches, m_nVolume,
                    m_pszEnd);
    }

    // ---- IqrlTabulexDataSink

    HRESULT STDMETHODCALLTYPE DataChanged(VARIANT Data) override
    {
        if (Data.vt == VT_BSTR) { // from an enumeration
            std::printf("symbol %s\n", Utf8(TextOf(Data.bstrVal)).c_str());
            return S_OK;
        }
        // The second dimension counts the rows. A batch of rejected lines has none.
        LONG nLast = -1;
        const HRESULT hr = SafeArrayGetUBound(Data.parray, 2, &nLast);
        if (FAILED(hr))
            return hr;
        if (m_nRows == 0 && nLast >= 0)
            m_sFirst = Moment(Data.parray, 0);
        for (LONG nRow = 0; nRow <= nLast; ++nRow)
            m_nVolume += Cell(Data.parray, kVolume, nRow).llVal;
        m_nRows += static_cast<unsigned long long>(nLast + 1);
        ++m_nBatches;
        if (m_onBatch)
            m_onBatch();
        return S_OK;
    }

    HRESULT STDMETHODCALLTYPE Commit() override
    {
        m_bCommitted = true;
        m_pszEnd = "committed";
        return S_OK;
    }

    HRESULT STDMETHODCALLTYPE Rollback() override
    {
        m_pszEnd = "rolled back";
        return S_OK;
    }

    HRESULT STDMETHODCALLTYPE OnError(VARIANT Description) override
    {
        LONG nText = 1;
        Variant text;
        const HRESULT hr = SafeArrayGetElement(Description.parray, &nText, text.put());
        if (SUCCEEDED(hr))
            std::fprintf(stderr, "%s\n", Utf8(TextOf(text.bstrVal)).c_str());
        return hr;
    }

    // ---- IUnknown

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID riid, void** ppv) override
    {
        if (!ppv)
            return E_POINTER;
        const bool bKnown = riid == iid_of<IUnknown> || riid == iid_of<IDispatch> ||
                            riid == iid_of<IQRL_TabulexConverter::IqrlTabulexDataSink>;
        *ppv = bKnown ? this : nullptr;
        if (!bKnown)
            return E_NOINTERFACE;
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

    // ---- IDispatch: the library calls a sink by its slots

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
    ~RowSink() = default;

    static constexpr LONG kDate = IQRL_TabulexConverter::HostFieldDate;
    static constexpr LONG kTime = IQRL_TabulexConverter::HostFieldTime;
    static constexpr LONG kVolume = IQRL_TabulexConverter::HostFieldVolume;

    // 0 where the file has no such field.
    Variant Cell(SAFEARRAY* batch, LONG nId, LONG nRow) const
    {
        Variant cell;
        cell.llVal = 0;
        if (const auto column = m_columns.find(nId); column != m_columns.end()) {
            LONG at[] = {column->second, nRow};
            SafeArrayGetElement(batch, at, cell.put());
        }
        return cell;
    }

    std::string Moment(SAFEARRAY* batch, LONG nRow) const
    {
        using namespace std::chrono;
        // Days since 1899-12-30. From 1989-09-17 on they are negative as a signed number,
        // so they are read as an unsigned one.
        const auto nDays = static_cast<USHORT>(Cell(batch, kDate, nRow).iVal);
        const year_month_day date(sys_days(year(1899) / 12 / 30) + days(nDays));
        const int nSeconds = static_cast<int>(Cell(batch, kTime, nRow).lVal / 1000); // from ms
        char text[64];
        std::snprintf(text, sizeof text, "%d-%02u-%02u %02d:%02d:%02d",
                      static_cast<int>(date.year()), static_cast<unsigned>(date.month()),
                      static_cast<unsigned>(date.day()), nSeconds / 3600, nSeconds / 60 % 60,
                      nSeconds % 60);
        return text;
    }

    std::atomic<ULONG> m_nRefs = 0;
    std::map<LONG, LONG> m_columns; // by id of the field
    std::string m_sFirst;
    unsigned long long m_nRows = 0;
    long long m_nVolume = 0;
    unsigned m_nBatches = 0;
    bool m_bCommitted = false;
    const char* m_pszEnd = nullptr;
};
