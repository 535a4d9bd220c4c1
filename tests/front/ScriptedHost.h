// A host as a script: an object of the component with the usual lists, and a sink that
// writes down every call that it hears and answers as told.
#pragma once

#include <chrono>
#include <functional>
#include <string>
#include <thread>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "interfaces/ClassIds.h"
#include "interfaces/IProgressView.h"
#include "interfaces/IqrlTabulexConvertor.h"
#include "interfaces/IqrlTabulexDataSink.h"
#include "interfaces/NativeHost.h"
#include "module/ComObject.h"
#include "platform/CodePage.h"
#include "platform/MessageWindow.h"
#include "platform/values.h"
#include "tests/data/TempFile.h"
#include "tests/data/Text.h"

using IQRL_TabulexConverter::IqrlTabulexConvertor;
using IQRL_TabulexConverter::IqrlTabulexDataSink;

class ScriptedSink : public ComObject<ScriptedSink, Dual<IqrlTabulexDataSink>>
{
public:
    // Called after the entry is written, with the number of the batch from 1.
    std::function<HRESULT(std::size_t nBatch)> onData;
    std::function<void()> onEnd;
    HRESULT hrOnError = S_OK;

    // "data 1000 rows", "symbol ABC", "error -1 TEXT", "commit", "rollback".
    std::vector<std::string> transcript;
    std::vector<std::string> rows; // cells by '|', each as kind:value
    std::size_t nBatches = 0;
    bool bEnded = false;
    std::thread::id owner = std::this_thread::get_id();

    HRESULT STDMETHODCALLTYPE DataChanged(VARIANT Data) override
    {
        ExpectOwnThread();
        ++nBatches;
        if (Data.vt == VT_BSTR)
            transcript.push_back("symbol " + Utf8(TextOf(Data.bstrVal)));
        else
            transcript.push_back("data " + std::to_string(ReadRows(Data)) + " rows");
        return onData ? onData(nBatches) : S_OK;
    }
    HRESULT STDMETHODCALLTYPE Commit() override { return End("commit"); }
    HRESULT STDMETHODCALLTYPE Rollback() override { return End("rollback"); }
    HRESULT STDMETHODCALLTYPE OnError(VARIANT Description) override
    {
        ExpectOwnThread();
        LONG i = 0;
        Variant code, text;
        SafeArrayGetElement(Description.parray, &i, code.put());
        SafeArrayGetElement(Description.parray, &++i, text.put());
        transcript.push_back("error " + std::to_string(code.lVal) + " " +
                             Utf8(TextOf(text.bstrVal)));
        return hrOnError;
    }

private:
    void ExpectOwnThread() const { EXPECT_EQ(owner, std::this_thread::get_id()); }

    HRESULT End(const char* pszHow)
    {
        ExpectOwnThread();
        transcript.push_back(pszHow);
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
};

class FrontFixture : public testing::Test
{
protected:
    using Strings = std::vector<std::string>;
    static constexpr auto kPatience = std::chrono::seconds(60);

    void SetUp() override
    {
        ASSERT_TRUE(SetAnsiCodePage(1252)); // whatever the locale of the environment is
        front = NewFront();
        sink = NewSink();
    }

    // The last objects go on the file's thread.
    void TearDown() override
    {
        sink.reset();
        front.reset();
        TabulexSetProgressViews(nullptr, nullptr);
        PumpUntil([] { return ModuleLockCount() == 0 && !OwnsWindows(); });
    }

    static com_ptr<IqrlTabulexConvertor> NewFront()
    {
        com_ptr<IqrlTabulexConvertor> object;
        EXPECT_EQ(CoCreateInstance(IQRL_TabulexConverter::CLSID_CqrlTabulexConvertor, nullptr,
                                   CLSCTX_INPROC_SERVER, iid_of<IqrlTabulexConvertor>,
                                   object.put_void()),
                  S_OK);
        const std::pair<LONG, string_view_t> offers[] = {
            {1, OLESTR("Ticks")},   {1, OLESTR("Tick Bars")}, {8, OLESTR("Count Bars")},
            {9, OLESTR("Seconds")}, {2, OLESTR("Minutes")},   {4, OLESTR("Days")},
            {5, OLESTR("Weeks")}};
        for (const auto& [nId, sName] : offers)
            EXPECT_EQ(object->AddResolutionTemplate(nId, Bstr(sName).get()), S_OK);
        return object;
    }

    static com_ptr<ScriptedSink> NewSink()
    {
        com_ptr<ScriptedSink> result;
        EXPECT_EQ(CreateObject(result), S_OK);
        return result;
    }

    static HRESULT Open(IqrlTabulexConvertor& object, const TempFile& file)
    {
        return object.put_FileName(Bstr(file.Name()).get());
    }

    // Pumps until `done` answers true; a failure if that takes too long.
    template <class Done>
    static void PumpUntil(Done done)
    {
        const auto tLast = std::chrono::steady_clock::now() + kPatience;
        while (!done() && std::chrono::steady_clock::now() < tLast)
            PumpMessages(std::chrono::milliseconds(5));
        EXPECT_TRUE(done());
    }
    void PumpToTheEnd()
    {
        PumpUntil([this] { return sink->bEnded; });
    }

    // One-minute bars from 1990-01-01 on, 1000 a day.
    static std::string Minutes(int nLines, const char* pszSymbol = nullptr)
    {
        using namespace std::chrono;
        std::string text;
        for (int i = 0; i < nLines; ++i) {
            const year_month_day date(sys_days(year(1990) / 1 / 1) + days(i / 1000));
            const int nMinute = i % 1000;
            char line[100];
            std::snprintf(line, sizeof line,
                          "%04d-%02u-%02u,%02d:%02d:00,%d.5,%d.75,%d.25,%d.5,%d\n",
                          int(date.year()), unsigned(date.month()), unsigned(date.day()),
                          nMinute / 60, nMinute % 60, 10, 10, 10, 10, 100 + i);
            text += pszSymbol ? pszSymbol + ("," + std::string(line)) : line;
        }
        return text;
    }

    com_ptr<IqrlTabulexConvertor> front;
    com_ptr<ScriptedSink> sink;
};

inline std::vector<std::string> DataEntries(std::size_t nFull, std::size_t nRest,
                                            const char* pszEnd)
{
    std::vector<std::string> entries(nFull, "data 1000 rows");
    if (nRest > 0)
        entries.push_back("data " + std::to_string(nRest) + " rows");
    entries.push_back(pszEnd);
    return entries;
}
