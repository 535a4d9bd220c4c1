// A sink that writes down every call that it hears and answers as told.
#pragma once

#include <functional>
#include <string>
#include <thread>
#include <vector>

#include "interfaces/IqrlTabulexDataSink.h"
#include "module/ComObject.h"
#include "platform/values.h"
#include "tests/support/Text.h"

using IQRL_TabulexConverter::IqrlTabulexDataSink;

class ScriptedSink : public ComObject<ScriptedSink, Dual<IqrlTabulexDataSink>>
{
public:
    // Called after the entry is written, with the number of the batch from 1.
    std::function<HRESULT(std::size_t nBatch)> onData;
    std::function<void()> onEnd;
    HRESULT hrOnError = S_OK;

    // "data 1000 rows", "symbol ABC", "error -1 TEXT", "commit", "rollback"; a call on another
    // thread than the sink's has the entry "on another thread" before its own.
    std::vector<std::string> transcript;
    std::function<void(const std::string&)> onEntry;
    std::vector<std::string> rows; // cells by '|', each as kind:value
    std::size_t nBatches = 0;
    bool bEnded = false;

    HRESULT STDMETHODCALLTYPE DataChanged(VARIANT Data) override
    {
        ++nBatches;
        if (Data.vt == VT_BSTR)
            Note("symbol " + Utf8(TextOf(Data.bstrVal)));
        else
            Note("data " + std::to_string(ReadRows(Data)) + " rows");
        return onData ? onData(nBatches) : S_OK;
    }
    HRESULT STDMETHODCALLTYPE Commit() override { return End("commit"); }
    HRESULT STDMETHODCALLTYPE Rollback() override { return End("rollback"); }
    HRESULT STDMETHODCALLTYPE OnError(VARIANT Description) override
    {
        LONG i = 0;
        Variant code, text;
        SafeArrayGetElement(Description.parray, &i, code.put());
        SafeArrayGetElement(Description.parray, &++i, text.put());
        Note("error " + std::to_string(code.lVal) + " " + Utf8(TextOf(text.bstrVal)));
        return hrOnError;
    }

private:
    void Note(const std::string& entry)
    {
        if (m_owner != std::this_thread::get_id())
            Write("on another thread");
        Write(entry);
    }
    void Write(const std::string& entry)
    {
        transcript.push_back(entry);
        if (onEntry)
            onEntry(entry);
    }

    HRESULT End(const char* pszHow)
    {
        Note(pszHow);
        bEnded = true;
        if (onEnd)
            onEnd();
        return S_OK;
    }

    std::size_t ReadRows(const VARIANT& data)
    {
        LONG nLastColumn = -1, nLastRow = -1;
        if (data.vt != (VT_ARRAY | VT_VARIANT) || SafeArrayGetDim(data.parray) != 2)
            return 0;
        SafeArrayGetUBound(data.parray, 1, &nLastColumn);
        SafeArrayGetUBound(data.parray, 2, &nLastRow);
        for (LONG n = 0; n <= nLastRow; ++n) {
            std::string row;
            for (LONG k = 0; k <= nLastColumn; ++k) {
                LONG at[] = {k, n};
                Variant cell, text;
                SafeArrayGetElement(data.parray, at, cell.put());
                VariantChangeType(&text, &cell, 0, VT_BSTR);
                row += (k ? "|" : "") + std::to_string(cell.vt) + ":" +
                       Utf8(TextOf(text.vt == VT_BSTR ? text.bstrVal : nullptr));
            }
            rows.push_back(row);
        }
        return static_cast<std::size_t>(nLastRow + 1);
    }

    const std::thread::id m_owner = std::this_thread::get_id();
};
