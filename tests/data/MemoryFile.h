// A file handler over lines in memory. A test can make its calls fail, look at the calls that
// came, and step a conversion as the worker of a file would.
#pragma once

#include <algorithm>
#include <cstdlib>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include "interfaces/IFileHandlerEvents.h"
#include "module/ComObject.h"
#include "platform/values.h"
#include "src/files/IFileConsumer.h"
#include "src/files/IFileHandler.h"
#include "src/files/ILineReader.h"
#include "tests/support/Text.h"

class MemoryFile : public ComObject<MemoryFile, IFileHandler, ILineSource, ILineReader>
{
public:
    std::vector<std::string> lines;
    string_t sName = OLESTR("memory");
    bool bNullName = false;
    bool bComplete = true;
    HRESULT hrGetCount = S_OK;
    HRESULT hrQueueConversion = S_OK;
    HRESULT hrInvalidate = S_OK;
    std::function<void(ULONGLONG nLine)> onGetRecord; // may throw
    std::function<void()> onGetFileName;              // may throw
    std::vector<ULONGLONG> linesRead;
    std::vector<ULONG> codePages;
    std::vector<std::string> calls;
    int nCountEvents = 0;
    com_ptr<IUnknown> pQueued;
    // Steps that a run takes in one call; TABULEX_STEPS sets it for all tests.
    ULONGLONG nMostSteps = FromEnvironment();

    static ULONGLONG FromEnvironment()
    {
        const char* pszSteps = std::getenv("TABULEX_STEPS");
        return pszSteps ? std::strtoull(pszSteps, nullptr, 10) : 1;
    }

    // One step of the conversion that is queued at the given position.
    HRESULT Step(ULONGLONG nIndex)
    {
        const auto pEvents = pQueued.as<IQRL_TabulexConverter::IFileHandlerEvents>();
        return pEvents->ProcessRecord(nIndex, nullptr, VARIANT_TRUE);
    }

    // Steps until the run ends; gives the result of the last step.
    HRESULT RunConversion()
    {
        ULONGLONG nIndex = 0;
        if (const auto pStart = pQueued.as<IQRL_TabulexConverter::IFileHandlerEvents2>())
            pStart->get_StartPosition(&nIndex);
        HRESULT hr = S_OK;
        const auto pSteps = pQueued.as<IRecordSteps>();
        for (ULONGLONG nTaken = 1; hr == S_OK; nIndex += nTaken)
            hr = nMostSteps == 1 || !pSteps ? Step(nIndex)
                                            : pSteps->ProcessRecords(nIndex, nMostSteps, nTaken);
        pQueued.reset();
        return hr;
    }

    HRESULT STDMETHODCALLTYPE GetFileName(BSTR* bsName) override
    {
        if (onGetFileName)
            onGetFileName();
        *bsName = bNullName ? nullptr : NewBstr(sName);
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE GetCount(ULONGLONG* nCount, VARIANT_BOOL* pComplete) override
    {
        calls.push_back("GetCount");
        if (FAILED(hrGetCount))
            return hrGetCount;
        *nCount = lines.size();
        if (pComplete)
            *pComplete = bComplete ? VARIANT_TRUE : VARIANT_FALSE;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE GetRecord(ULONGLONG nIndex, ULONG nLocale, BSTR* bsRecord) override
    {
        linesRead.push_back(nIndex);
        codePages.push_back(nLocale);
        if (onGetRecord)
            onGetRecord(nIndex);
        if (nIndex >= lines.size())
            return E_FAIL;
        *bsRecord = NewBstr(Wide(lines[nIndex]));
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE OpenLines(ILineReader** ppLines) override
    {
        *ppLines = com_ptr<ILineReader>(this).detach();
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE AppendRecords(const LineRange& range, ULONG nLocale,
                                            Hesperon::specifics::LineBuffer& buffer) override
    {
        HRESULT hr = S_OK;
        for (ULONGLONG n = 0; n < range.nCount && SUCCEEDED(hr); ++n)
            hr = AppendRecord(range.At(n), nLocale, buffer);
        return hr;
    }
    HRESULT AppendRecord(ULONGLONG nIndex, ULONG nLocale, Hesperon::specifics::LineBuffer& buffer)
    {
        Bstr sRecord;
        const HRESULT hr = GetRecord(nIndex, nLocale, sRecord.put());
        if (FAILED(hr))
            return hr;
        const string_view_t sText = sRecord.view();
        if (std::ranges::all_of(sText, [](OLECHAR c) { return c < 0x80; }))
            buffer.AddBytes(std::string(sText.begin(), sText.end()));
        else
            buffer.Add(sText);
        return hr;
    }
    HRESULT STDMETHODCALLTYPE SeekRecord(ULONGLONG nIndex) override
    {
        calls.push_back(nIndex == ~0ull ? "SeekRecord end" : "SeekRecord");
        return nIndex < lines.size() ? S_OK : E_FAIL;
    }
    HRESULT STDMETHODCALLTYPE QueueFirstRecord(IUnknown*, ULONGLONG) override { return S_OK; }
    HRESULT STDMETHODCALLTYPE CancelRequests(ULONGLONG) override
    {
        calls.push_back("CancelRequests");
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE QueueCountEvents(IUnknown* pObject, ULONGLONG) override
    {
        nCountEvents += pObject != nullptr;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE QueueConversion(IUnknown* pObject, ULONGLONG) override
    {
        if (SUCCEEDED(hrQueueConversion))
            pQueued = pObject;
        return hrQueueConversion;
    }
    HRESULT STDMETHODCALLTYPE GetRelativePos(ULONGLONG nIndex, FLOAT* fRelative) override
    {
        *fRelative = static_cast<FLOAT>(nIndex) / static_cast<FLOAT>(lines.size());
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE GetLastRecord(ULONG, BSTR* bsRecord) override
    {
        if (lines.empty())
            return E_FAIL;
        *bsRecord = NewBstr(Wide(lines.back()));
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE GetLastRecordHead(ULONG nLocale, BSTR* bsRecord) override
    {
        return GetLastRecord(nLocale, bsRecord);
    }
    HRESULT STDMETHODCALLTYPE RefreshFileSize() override { return S_OK; }
    HRESULT STDMETHODCALLTYPE Invalidate(VARIANT_BOOL bErase) override
    {
        calls.push_back(bErase ? "Invalidate erase" : "Invalidate");
        return hrInvalidate;
    }
    HRESULT STDMETHODCALLTYPE GetApproxCount(ULONGLONG* nCount) override
    {
        *nCount = lines.size() + 1;
        return S_OK;
    }
};
