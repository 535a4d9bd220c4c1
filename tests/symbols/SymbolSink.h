// A receiver that writes down the symbols that it hears. Safe to read once the walk has
// ended.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "interfaces/IDataParserEvents.h"
#include "module/ComObject.h"
#include "platform/threads/Event.h"
#include "tests/support/Objects.h"
#include "tests/support/Text.h"

class SymbolSink : public ComObject<SymbolSink, Dual<IQRL_TabulexConverter::IDataParserEvents>>
{
public:
    std::function<HRESULT(const std::string& sSymbol)> onSymbol;
    std::vector<std::string> symbols;
    std::vector<bool> ends;
    std::vector<std::string> faults; // calls that no walk makes
    Event ended{Event::Kind::ManualReset};

    HRESULT STDMETHODCALLTYPE PutRecords(VARIANT vRecords, ULONGLONG nCount) override
    {
        if (vRecords.vt != VT_BSTR || nCount != 0)
            faults.emplace_back("PutRecords");
        else
            symbols.push_back(Utf8(TextOf(vRecords.bstrVal)));
        return onSymbol ? onSymbol(symbols.back()) : S_OK;
    }
    HRESULT STDMETHODCALLTYPE EndTransaction(VARIANT_BOOL bResult) override
    {
        ends.push_back(bResult != VARIANT_FALSE);
        ended.Set();
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE OnError(VARIANT) override { return Fault("OnError"); }
    HRESULT STDMETHODCALLTYPE GetResolutionName(LONG, BSTR*) override
    {
        return Fault("GetResolutionName");
    }
    HRESULT STDMETHODCALLTYPE OnError2(LONG_PTR, LONG, BSTR) override { return Fault("OnError2"); }

private:
    HRESULT Fault(const char* szCall)
    {
        faults.emplace_back(szCall);
        return E_NOTIMPL;
    }
};
