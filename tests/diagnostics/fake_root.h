// A report library that notes all calls, and a client that uses it.
#pragma once

#include <atomic>
#include <map>
#include <string>
#include <vector>

#include "diagnostics/ReportClient.h"
#include "platform/values.h"

// The calls of a fake root and its bags, in order: "CREATE", "Line = UI4 12",
// "file()", "INIT()". Outlives them.
struct ReportDiary
{
    std::vector<std::string> lines;
    std::map<std::string, HRESULT> answers; // by command or value name; S_OK for the rest
    int nLiving = 0;                        // roots and bags

    HRESULT AnswerTo(const std::string& sWhat) const
    {
        const auto answer = answers.find(sWhat);
        return answer == answers.end() ? S_OK : answer->second;
    }
};

inline std::string Narrow(string_view_t sText)
{
    return {sText.begin(), sText.end()};
}

inline std::string Describe(const VARIANT& value)
{
    switch (value.vt) {
    case VT_EMPTY:
        return "empty";
    case VT_BSTR:
        return "text " + Narrow(TextOf(value.bstrVal));
    case VT_UI4:
        return "UI4 " + std::to_string(value.ulVal);
    case VT_UI8:
        return "UI8 " + std::to_string(value.ullVal);
    case VT_R8:
        return "R8 " + std::to_string(value.dblVal);
    case VT_BOOL:
        return value.boolVal == VARIANT_TRUE ? "true" : "false";
    case VT_ERROR:
        return "result " + std::to_string(value.scode);
    }
    return "kind " + std::to_string(value.vt);
}

template <class Interface>
class Recorder : public Interface
{
public:
    explicit Recorder(ReportDiary& diary) : m_diary(diary) { ++m_diary.nLiving; }
    virtual ~Recorder() { --m_diary.nLiving; }

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID, void**) override { return E_NOINTERFACE; }
    ULONG STDMETHODCALLTYPE AddRef() override { return ++m_nRefs; }
    ULONG STDMETHODCALLTYPE Release() override
    {
        const ULONG nLeft = --m_nRefs;
        if (nLeft == 0)
            delete this;
        return nLeft;
    }

protected:
    HRESULT Note(const std::string& sLine, const std::string& sWhat)
    {
        m_diary.lines.push_back(sLine);
        return m_diary.AnswerTo(sWhat);
    }

    ReportDiary& m_diary;

private:
    std::atomic<ULONG> m_nRefs = 0;
};

class FakeBag final : public Recorder<FaultmereUtil::IReportBag>
{
public:
    using Recorder::Recorder;
    HRESULT STDMETHODCALLTYPE SetValue(LPCOLESTR szName, const VARIANT* pValue) override
    {
        return Note(Narrow(szName) + " = " + Describe(*pValue), Narrow(szName));
    }
};

class FakeRoot final : public Recorder<FaultmereUtil::IReportRoot>
{
public:
    using Recorder::Recorder;
    HRESULT STDMETHODCALLTYPE Command(LPCOLESTR szCommand, FaultmereUtil::IReportBag* pBag,
                                      FaultmereUtil::IReportBag** ppNewBag) override
    {
        const std::string sCommand = *szCommand ? Narrow(szCommand) : "file";
        const HRESULT hr = Note(sCommand + (pBag ? "(bag)" : ""), sCommand);
        if (ppNewBag && SUCCEEDED(hr))
            *ppNewBag = com_ptr<FaultmereUtil::IReportBag>(new FakeBag(m_diary)).detach();
        return hr;
    }
    HRESULT STDMETHODCALLTYPE Fallback(LPCOLESTR szText) override
    {
        return Note("fallback " + Narrow(szText), "fallback");
    }
};

// With a diary its library is a fake, without one it looks for the real one.
class TestClient final : public FaultmereUtil::FaultmereClient
{
public:
    TestClient() = default;
    explicit TestClient(ReportDiary& diary) : m_pDiary(&diary) {}
    ~TestClient() { Shutdown(); }

    HRESULT Load() override
    {
        ++m_nLoads;
        if (!m_pDiary)
            return FaultmereClient::Load();
        m_pRoot = com_ptr<FaultmereUtil::IReportRoot>(new FakeRoot(*m_pDiary));
        return S_OK;
    }

    int m_nLoads = 0;
    int m_nBreaks = 0;
    int m_nEnds = 0;

protected:
    void Break() override { ++m_nBreaks; }
    void EndProcess() override { ++m_nEnds; }

private:
    ReportDiary* m_pDiary = nullptr;
};

// A client in session whose diary holds nothing yet.
struct OpenClient
{
    ReportDiary diary;
    TestClient client{diary};

    OpenClient()
    {
        client.Initialise();
        diary.lines.clear();
    }
};
