// A data parser on files on disk, with the real pool, workers and record parser.
#pragma once

#include <chrono>
#include <thread>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "src/data/DataParser.h"
#include "tests/data/RecordingSink.h"
#include "tests/support/ReportLog.h"
#include "tests/support/TempFile.h"
#include "tests/support/Waits.h"

class RealFileFixture : public testing::Test
{
protected:
    using CDataParser = Hesperon::specifics::CDataParser;

    void SetUp() override
    {
        // Whatever the locale of the environment is.
        ASSERT_TRUE(SetAnsiCodePage(kLatinCodePage));
        parser = NewParser();
        ASSERT_EQ(CreateObject(sink), S_OK);
    }

    // Days and minutes are offered as resolutions.
    static com_ptr<CDataParser> NewParser()
    {
        com_ptr<CDataParser> result;
        EXPECT_EQ(CreateObject(result), S_OK);
        com_ptr<IDispatch> pObject;
        EXPECT_EQ(result->get_RecordParser(pObject.put()), S_OK);
        const auto pRecordParser = pObject.as<IQRL_TabulexConverter::IRecordParser>();
        Variant ids = Variant::FromArray(SafeArrayCreateVector(VT_I4, 0, 2), VT_I4);
        Variant names = Variant::FromArray(SafeArrayCreateVector(VT_BSTR, 0, 2), VT_BSTR);
        const std::pair<LONG, string_view_t> offered[] = {{5, OLESTR("Minutes")},
                                                          {6, OLESTR("Days")}};
        for (LONG i = 0; i < 2; ++i) {
            LONG nId = offered[i].first;
            SafeArrayPutElement(ids.parray, &i, &nId);
            SafeArrayPutElement(names.parray, &i, Bstr(offered[i].second).get());
        }
        EXPECT_EQ(pRecordParser->SetResolutionTemplates(ids, names), S_OK);
        return result;
    }

    // Daily bars from 2000-01-01 on, a line a day; from the last one if descending.
    static std::string Daily(int nLines, bool bDescending = false)
    {
        using namespace std::chrono;
        std::string text;
        for (int i = 0; i < nLines; ++i) {
            const auto day = sys_days(year(2000) / 1 / 1) + days(bDescending ? nLines - 1 - i : i);
            const year_month_day date(day);
            char line[80];
            std::snprintf(line, sizeof line, "%04d-%02u-%02u,%d.5,%d.75,%d.25,%d.5,%d\n",
                          int(date.year()), unsigned(date.month()), unsigned(date.day()), i + 10,
                          i + 10, i + 10, i + 10, i * 100);
            text += line;
        }
        return text;
    }

    static HRESULT Open(CDataParser& p, const TempFile& file)
    {
        return p.put_FileName(Bstr(file.Name()).get());
    }

    // Runs a whole conversion; false if it doesn't end in time.
    bool Convert(CDataParser& p, ULONG_PTR nTransaction = 1)
    {
        EXPECT_EQ(p.StartConversion(sink.get(), nTransaction), S_OK);
        return sink->ended.Wait(kPatience);
    }

    bool Inverted(CDataParser& p)
    {
        VARIANT_BOOL b = VARIANT_FALSE;
        p.get_InvertedDirection(&b);
        return b != VARIANT_FALSE;
    }
    DATE Start(CDataParser& p)
    {
        Variant v;
        p.get_StartDateTime(v.put());
        return v.date;
    }
    DATE End(CDataParser& p)
    {
        Variant v;
        p.get_EndDateTime(v.put());
        return v.date;
    }

    com_ptr<RecordingSink> sink;
    com_ptr<CDataParser> parser;
};

inline constexpr DATE kFirstDay = 36526; // 2000-01-01
