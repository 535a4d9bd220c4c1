// A data parser over a file in memory and a fake record parser.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Simples/interface/ResourceStrings.h"
#include "src/data/DataParser.h"
#include "src/data/DeliveredFields.h"
#include "tests/data/FakeRecordParser.h"
#include "tests/data/MemoryFile.h"
#include "tests/data/RecordingSink.h"
#include "tests/support/ReportLog.h"

namespace Hesperon::specifics {

struct DataParserTestAccess
{
    static void PutFile(CDataParser& parser, IFileHandler* pFile)
    {
        LockGuard lock(parser.m_lock);
        parser.RebindFile(com_ptr<IFileHandler>(pFile));
    }
    static void PutDates(CDataParser& parser, DATE start, DATE end)
    {
        LockGuard lock(parser.m_lock);
        parser.m_dtStart = {start, 0};
        parser.m_dtEnd = {end, 0};
    }
    static void PutLastDate(CDataParser& parser, DATE last)
    {
        LockGuard lock(parser.m_lock);
        parser.m_run.m_order.dtLast = {last, 0};
    }
    static bool HasSink(CDataParser& parser)
    {
        LockGuard lock(parser.m_lock);
        return parser.m_run.HasSink();
    }
    static LONG TypeOf(CDataParser& parser, BSTR bsName)
    {
        return Name2Type(parser.m_vTypeNames, bsName);
    }
};

} // namespace Hesperon::specifics

class DataParserFixture : public testing::Test
{
protected:
    using CDataParser = Hesperon::specifics::CDataParser;
    using Access = Hesperon::specifics::DataParserTestAccess;

    static constexpr ULONG_PTR kTransaction = 77;

    void SetUp() override
    {
        ASSERT_EQ(CreateObject(file), S_OK);
        ASSERT_EQ(CreateObject(records), S_OK);
        ASSERT_EQ(CreateObject(sink), S_OK);
        ASSERT_EQ(CreateObject(parser), S_OK);
        ASSERT_EQ(parser->put_RecordParser(records.get()), S_OK);
        Access::PutFile(*parser.get(), file.get());
    }

    void TearDown() override
    {
        if (file)
            file->pQueued.reset();
    }

    // Gives the file these lines, and the parser the dates and direction that it would find on
    // opening it.
    void Open(std::vector<std::string> lines)
    {
        file->lines = std::move(lines);
        ASSERT_EQ(parser->RefreshDateInfo(VARIANT_FALSE), S_OK);
        file->calls.clear();
        file->linesRead.clear();
        records->parsed.clear();
    }

    // The same, but the file is read forwards whatever its dates, and no date is out of range.
    void OpenForwards(std::vector<std::string> lines)
    {
        Open(std::move(lines));
        parser->put_InvertedDirection(VARIANT_FALSE);
        Access::PutDates(*parser.get(), 1, 1e6);
    }

    // Lines "first,price" to "last,price" with a step of a day.
    static std::vector<std::string> Days(int nFirst, int nLast)
    {
        std::vector<std::string> lines;
        const int nStep = nFirst <= nLast ? 1 : -1;
        for (int n = nFirst; n != nLast + nStep; n += nStep)
            lines.push_back(std::to_string(n) + "," + std::to_string(n) + ".5");
        return lines;
    }

    HRESULT Start() { return parser->StartConversion(sink.get(), kTransaction); }
    HRESULT Convert()
    {
        const HRESULT hr = Start();
        return hr == S_OK ? file->RunConversion() : hr;
    }
    HRESULT ConvertPortion(ULONGLONG nStart, ULONGLONG nCount)
    {
        const HRESULT hr = parser->StartConvertPortion(0, sink.get(), nStart, nCount, kTransaction);
        return hr == S_OK && file->pQueued ? file->RunConversion() : hr;
    }

    bool Inverted()
    {
        VARIANT_BOOL bInverted = VARIANT_FALSE;
        parser->get_InvertedDirection(&bInverted);
        return bInverted != VARIANT_FALSE;
    }

    com_ptr<MemoryFile> file;
    com_ptr<FakeRecordParser> records;
    com_ptr<RecordingSink> sink;
    com_ptr<CDataParser> parser;
};
