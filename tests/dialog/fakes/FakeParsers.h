// The parsers under edit, without a file: they keep what is put, and write it down.
#pragma once

#include <functional>

#include "interfaces/IValueMultiplier.h"
#include "src/data/UnofferedRecordParser.h"
#include "src/values/TextArray.h"
#include "tests/dialog/fakes/Scripted.h"
#include "tests/support/UnusedDataParser.h"

namespace dialog_test {

class FakeMultiplier
    : public ComObject<FakeMultiplier, Dual<IQRL_TabulexConverter::IValueMultiplier>>
{
public:
    Script* m_pScript = nullptr;
    std::string m_sName; // "price" or "volume"
    std::string m_sCurrent = "1";

    HRESULT STDMETHODCALLTYPE ApplyTransform(VARIANT*) override { return S_OK; }
    HRESULT STDMETHODCALLTYPE get_TransformNames(VARIANT* pVal) override
    {
        const HRESULT hr = m_pScript->ResultOf("get " + m_sName + " names");
        constexpr string_view_t kNames[] = {OLESTR("10"), OLESTR("1/10"), OLESTR("1")};
        if (SUCCEEDED(hr))
            *pVal = Hesperon::specifics::TextArray(kNames).detach();
        return hr;
    }
    HRESULT STDMETHODCALLTYPE get_Current(BSTR* pVal) override
    {
        *pVal = NewBstr(Wide(m_sCurrent));
        return m_pScript->ResultOf("get " + m_sName);
    }
    HRESULT STDMETHODCALLTYPE put_Current(BSTR newVal) override
    {
        m_sCurrent = Utf8(TextOf(newVal));
        return m_pScript->Done(m_sName, m_sCurrent);
    }
};

class FakeRecords : public Hesperon::specifics::UnofferedRecordParser<FakeRecords>
{
public:
    Script* m_pScript = nullptr;
    LONG m_nResolution = 5, m_nSize = 1;
    ULONG m_nLinesToSkip = 0;
    ULONG m_nMostLines = 0xFFFFFFFF; // more are cut to this
    LONG m_nDividers = 4;
    VARIANT_BOOL m_bEndTime = VARIANT_FALSE;
    bool m_bForgetsLines = true; // when the columns are built anew
    com_ptr<FakeMultiplier> m_pPrice, m_pVolume;

    HRESULT STDMETHODCALLTYPE RecalcResolutionSize() override
    {
        return m_pScript->Done("recalculate size");
    }
    HRESULT STDMETHODCALLTYPE get_Resolution(LONG* pVal) override
    {
        return Give(m_pScript->ResultOf("get resolution"), pVal, m_nResolution);
    }
    HRESULT STDMETHODCALLTYPE put_Resolution(LONG newVal) override
    {
        m_nResolution = newVal;
        return m_pScript->Done("resolution", std::to_string(newVal));
    }
    HRESULT STDMETHODCALLTYPE get_ResolutionSize(LONG* pVal) override
    {
        return Give(m_pScript->ResultOf("get size"), pVal, m_nSize);
    }
    HRESULT STDMETHODCALLTYPE put_ResolutionSize(LONG newVal) override
    {
        m_nSize = newVal;
        return m_pScript->Done("size", std::to_string(newVal));
    }
    HRESULT STDMETHODCALLTYPE get_LinesToSkip(ULONG* pVal) override
    {
        return Give(m_pScript->ResultOf("get lines"), pVal, m_nLinesToSkip);
    }
    HRESULT STDMETHODCALLTYPE put_LinesToSkip(ULONG newVal) override
    {
        const HRESULT hr = m_pScript->Done("lines", std::to_string(newVal));
        if (hr == S_OK)
            m_nLinesToSkip = std::min(newVal, m_nMostLines);
        return hr;
    }
    HRESULT STDMETHODCALLTYPE get_FieldDividers(LONG* pVal) override
    {
        return Give(m_pScript->ResultOf("get dividers"), pVal, m_nDividers);
    }
    HRESULT STDMETHODCALLTYPE put_FieldDividers(LONG newVal) override
    {
        m_nDividers = newVal;
        return m_pScript->Done("dividers", std::to_string(newVal));
    }
    HRESULT STDMETHODCALLTYPE get_UseBarsEndTime(VARIANT_BOOL* pVal) override
    {
        return Give(m_pScript->ResultOf("get end time"), pVal, m_bEndTime);
    }
    HRESULT STDMETHODCALLTYPE put_UseBarsEndTime(VARIANT_BOOL newVal) override
    {
        m_bEndTime = newVal;
        return m_pScript->Done("end time", std::to_string(static_cast<USHORT>(newVal)));
    }
    HRESULT STDMETHODCALLTYPE get_PriceMultiplier(IDispatch** pVal) override
    {
        return GiveObject(m_pScript->ResultOf("get price multiplier"), pVal, m_pPrice);
    }
    HRESULT STDMETHODCALLTYPE get_VolumeMultiplier(IDispatch** pVal) override
    {
        return GiveObject(m_pScript->ResultOf("get volume multiplier"), pVal, m_pVolume);
    }
    HRESULT STDMETHODCALLTYPE RecreateFealds() override
    {
        const HRESULT hr = m_pScript->Done("recreate columns");
        if (SUCCEEDED(hr) && m_bForgetsLines)
            m_nLinesToSkip = 0;
        return hr;
    }
};

class FakeData : public UnusedDataParser<FakeData>
{
public:
    Script* m_pScript = nullptr;
    com_ptr<FakeRecords> m_pRecords;
    std::string m_sFile;
    VARIANT_BOOL m_bHeader = VARIANT_FALSE;
    ULONGLONG m_nCount = 100;
    VARIANT_BOOL m_bComplete = VARIANT_TRUE;
    DATE m_start = 40000, m_end = 40010, m_min = 39990, m_max = 40020;
    ULONG m_nCodePage = 1252;
    com_ptr<IDispatch> m_pHandler;

    std::function<void()> m_onCheck; // while a message is shown

    HRESULT STDMETHODCALLTYPE CheckConverterSettings(LONG_PTR hWnd, IDispatch*) override
    {
        if (m_onCheck)
            m_onCheck();
        return m_pScript->Done("check", std::to_string(hWnd));
    }
    HRESULT STDMETHODCALLTYPE GetCount(ULONGLONG* nCount, VARIANT_BOOL* bComplete) override
    {
        *bComplete = m_bComplete;
        return Give(m_pScript->ResultOf("get count"), nCount, m_nCount);
    }
    HRESULT STDMETHODCALLTYPE RefreshDateInfo(VARIANT_BOOL FindResolution) override
    {
        return m_pScript->Done("refresh dates", std::to_string(FindResolution));
    }
    HRESULT STDMETHODCALLTYPE AddFileEventHandler(IDispatch* pEventHandler) override
    {
        m_pHandler = com_ptr<IDispatch>(pEventHandler);
        return m_pScript->Done("add handler");
    }
    HRESULT STDMETHODCALLTYPE RemoveFileEventHandler(IDispatch* pEventHandler) override
    {
        if (m_pHandler.get() == pEventHandler)
            m_pHandler.reset();
        return m_pScript->Done("remove handler");
    }
    HRESULT STDMETHODCALLTYPE GetMinDateTime(VARIANT* vDate) override
    {
        return GiveDate(m_pScript->ResultOf("get min"), vDate, m_min);
    }
    HRESULT STDMETHODCALLTYPE GetMaxDateTime(VARIANT* vDate) override
    {
        return GiveDate(m_pScript->ResultOf("get max"), vDate, m_max);
    }
    HRESULT STDMETHODCALLTYPE get_FileName(BSTR* pVal) override
    {
        *pVal = NewBstr(Wide(m_sFile));
        return m_pScript->ResultOf("get file");
    }
    HRESULT STDMETHODCALLTYPE put_FileName(BSTR newVal) override
    {
        m_sFile = Utf8(TextOf(newVal));
        return m_pScript->Done("file", m_sFile);
    }
    HRESULT STDMETHODCALLTYPE get_RecordParser(IDispatch** pVal) override
    {
        return GiveObject(m_pScript->ResultOf("get records"), pVal, m_pRecords);
    }
    HRESULT STDMETHODCALLTYPE get_HasHeader(VARIANT_BOOL* pVal) override
    {
        return Give(m_pScript->ResultOf("get header"), pVal, m_bHeader);
    }
    HRESULT STDMETHODCALLTYPE put_HasHeader(VARIANT_BOOL newVal) override
    {
        m_bHeader = newVal;
        return m_pScript->Done("header", std::to_string(static_cast<USHORT>(newVal)));
    }
    HRESULT STDMETHODCALLTYPE get_StartDateTime(VARIANT* pVal) override
    {
        return GiveDate(m_pScript->ResultOf("get start"), pVal, m_start);
    }
    HRESULT STDMETHODCALLTYPE put_StartDateTime(VARIANT newVal) override
    {
        return m_pScript->Done("start", DateNumber(newVal));
    }
    HRESULT STDMETHODCALLTYPE get_EndDateTime(VARIANT* pVal) override
    {
        return GiveDate(m_pScript->ResultOf("get end"), pVal, m_end);
    }
    HRESULT STDMETHODCALLTYPE put_EndDateTime(VARIANT newVal) override
    {
        return m_pScript->Done("end", DateNumber(newVal));
    }
    HRESULT STDMETHODCALLTYPE get_Locale(ULONG* pVal) override
    {
        return Give(m_pScript->ResultOf("get code page"), pVal, m_nCodePage);
    }
    HRESULT STDMETHODCALLTYPE put_Locale(ULONG newVal) override
    {
        m_nCodePage = newVal;
        return m_pScript->Done("code page", std::to_string(newVal));
    }
};

// A data parser with its record parser and the multipliers of that.
inline void MakeParsers(Script& script, com_ptr<FakeData>& pData, com_ptr<FakeRecords>& pRecords)
{
    CreateObject(pData);
    CreateObject(pRecords);
    pData->m_pScript = pRecords->m_pScript = &script;
    pData->m_pRecords = pRecords;
    for (auto [pMultiplier, pszName] :
         {std::pair(&pRecords->m_pPrice, "price"), {&pRecords->m_pVolume, "volume"}}) {
        CreateObject(*pMultiplier);
        (*pMultiplier)->m_pScript = &script;
        (*pMultiplier)->m_sName = pszName;
    }
}

} // namespace dialog_test
