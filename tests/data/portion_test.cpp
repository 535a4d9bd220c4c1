// Conversions of a part of a file.

#include "tests/data/DataParserFixture.h"

#include "src/files/AsyncTransactionPool.h"

using namespace Hesperon::specifics;

namespace {

class PortionTest : public DataParserFixture
{};

TEST_F(PortionTest, PartsOfAFileInBothDirections)
{
    struct
    {
        const char* szWhat;
        bool bInverted;
        ULONGLONG nStart, nCount;
        std::vector<std::string> rows;
        bool bReadsPastItsEnd;
    } const rows[] = {
        {"middle", false, 2, 3, {"3|3.5", "4|4.5", "5|5.5"}, false},
        {"from the start", false, 0, 2, {"1|1.5", "2|2.5"}, false},
        {"one", false, 5, 1, {"6|6.5"}, false},
        {"up to the end", false, 4, 2, {"5|5.5", "6|6.5"}, false},
        {"beyond the end", false, 4, 9, {"5|5.5", "6|6.5"}, true},
        {"inverted, middle", true, 2, 3, {"3|3.5", "4|4.5", "5|5.5"}, false},
        {"inverted, beyond the end", true, 4, 9, {"5|5.5", "6|6.5"}, false},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.szWhat);
        CreateObject(sink);
        Open(row.bInverted ? Days(6, 1) : Days(1, 6));
        ASSERT_EQ(Inverted(), row.bInverted);
        file->linesRead.clear();
        EXPECT_EQ(ConvertPortion(row.nStart, row.nCount), S_FALSE);
        EXPECT_EQ(sink->AllRows(), row.rows);
        EXPECT_EQ(sink->ends, std::vector<bool>{true});
        EXPECT_EQ(file->linesRead.size(), row.rows.size() + row.bReadsPastItsEnd);
    }
}

TEST_F(PortionTest, InvertedPortionStopsBeforeTheHeader)
{
    Open({"Date,Close", "3,3", "2,2", "1,1"});
    parser->put_HasHeader(VARIANT_TRUE);
    parser->RefreshDateInfo(VARIANT_FALSE);
    file->linesRead.clear();
    EXPECT_EQ(ConvertPortion(1, 100), S_FALSE);
    EXPECT_EQ(file->linesRead, (std::vector<ULONGLONG>{2, 1}));
    EXPECT_EQ(sink->AllRows(), (std::vector<std::string>{"2|2", "3|3"}));
}

TEST_F(PortionTest, NothingToConvertEndsWellAtOnce)
{
    struct
    {
        const char* szWhat;
        ULONGLONG nStart, nCount;
        bool bComplete;
        bool bStarted;
    } const rows[] = {
        {"no records", 2, 0, true, false},
        {"start at the end", 6, 5, true, false},
        {"start past the end", 60, 5, true, false},
        {"start past what is known of the file", 60, 5, false, true},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.szWhat);
        CreateObject(sink);
        Open(Days(1, 6));
        file->bComplete = row.bComplete;
        file->linesRead.clear();
        EXPECT_EQ(parser->StartConvertPortion(0, sink.get(), row.nStart, row.nCount, kTransaction),
                  S_OK);
        EXPECT_EQ(static_cast<bool>(file->pQueued), row.bStarted);
        if (row.bStarted) {
            EXPECT_EQ(file->RunConversion(), S_FALSE);
        } else {
            EXPECT_TRUE(file->linesRead.empty());
        }
        EXPECT_TRUE(sink->batches.empty());
        EXPECT_EQ(sink->ends, std::vector<bool>{true});
    }
}

TEST_F(PortionTest, NoRecordsNeedNoFile)
{
    Access::PutFile(*parser.get(), nullptr);
    EXPECT_EQ(parser->StartConvertPortion(0, sink.get(), 0, 0, kTransaction), S_OK);
    EXPECT_EQ(sink->ends, std::vector<bool>{true});
    EXPECT_EQ(parser->StartConvertPortion(0, sink.get(), 0, 1, kTransaction), E_FAIL);
}

TEST_F(PortionTest, LastBatchOfAPortionCountsFromThePositionBefore)
{
    std::vector<std::string> lines = Days(1, 1300);
    Open(lines);
    for (const std::size_t n : {100u, 1099u, 1100u, 1199u})
        file->lines[n] = std::to_string(n + 1) + ",?";
    ConvertPortion(100, 1100);
    std::vector<LONG_PTR> told;
    for (const auto& bad : sink->badLines)
        told.push_back(bad.nLine);
    // The first 1000 lines are a full batch, the rest is the last one.
    EXPECT_EQ(told, (std::vector<LONG_PTR>{101, 1100, 1100, 1199}));
}

TEST_F(PortionTest, FileWithoutANameIsReportedAndRefused)
{
    Open(Days(1, 3));
    file->bNullName = true;
    for (const auto& [language, szText] :
         {std::pair{Language::Chinese, "没有转换的档案"},
          std::pair{Language::English, "There is no file to convert"}}) {
        SetResourceLanguage(language);
        CreateObject(sink);
        EXPECT_EQ(ConvertPortion(0, 1), E_INVALIDARG);
        ASSERT_EQ(sink->faults.size(), 1u);
        EXPECT_EQ(sink->faults[0].vt, VT_ARRAY | VT_VARIANT);
        EXPECT_EQ(sink->faults[0].elements,
                  (std::vector<std::string>{std::to_string(E_INVALIDARG), szText, szText}));
        EXPECT_TRUE(sink->ends.empty());
    }
    SetResourceLanguage(Language::Chinese);
}

TEST_F(PortionTest, SettingsAreCheckedBeforeTheRun)
{
    Open(Days(1, 3));
    records->nResolution = 0;
    EXPECT_EQ(ConvertPortion(0, 2), E_INVALIDARG);
    EXPECT_EQ(sink->faults.size(), 1u);
    EXPECT_TRUE(sink->ends.empty());
    EXPECT_FALSE(file->pQueued);
    EXPECT_FALSE(Access::HasSink(*parser.get()));
    EXPECT_FALSE(AsyncTransactionPool::CancelTransaction(kTransaction));
}

TEST_F(PortionTest, RefusedStartsGiveTheirReason)
{
    Open(Days(1, 3));
    EXPECT_EQ(parser->StartConvertPortion(0, nullptr, 0, 1, 1), E_POINTER);
    EXPECT_EQ(parser->StartConvertPortion(0, records.get(), 0, 1, 1), E_NOINTERFACE);
    records->hrFieldName = E_FAIL;
    EXPECT_EQ(ConvertPortion(0, 1), E_FAIL);
    records->hrFieldName = S_OK;
    file->hrQueueConversion = E_FAIL;
    EXPECT_EQ(ConvertPortion(0, 1), E_FAIL);
    EXPECT_FALSE(Access::HasSink(*parser.get()));
    EXPECT_FALSE(AsyncTransactionPool::CancelTransaction(kTransaction));
}

TEST_F(PortionTest, PortionDuringARunIsRefusedAndTheRunGoesOn)
{
    Open(Days(1, 3));
    ASSERT_EQ(Start(), S_OK);
    com_ptr<RecordingSink> second;
    CreateObject(second);
    ReportLog reports;
    EXPECT_EQ(parser->StartConvertPortion(0, second.get(), 0, 1, 78), E_UNEXPECTED);
    EXPECT_EQ(reports.Texts(), std::vector<std::string>{"!m_pDataParserEvents"});
    EXPECT_EQ(file->RunConversion(), S_FALSE);
    EXPECT_EQ(sink->AllRows().size(), 3u);
    EXPECT_EQ(sink->ends, std::vector<bool>{true});
}

TEST_F(PortionTest, StartPositionIsThatOfThePortion)
{
    const auto start =
        com_ptr<CDataParser>(parser).as<IQRL_TabulexConverter::IFileHandlerEvents2>();
    ULONGLONG nStart = 9;
    EXPECT_EQ(start->get_StartPosition(nullptr), E_POINTER);
    EXPECT_EQ(start->get_StartPosition(&nStart), S_OK);
    EXPECT_EQ(nStart, 0u);
    Open(Days(1, 6));
    ASSERT_EQ(parser->StartConvertPortion(0, sink.get(), 4, 1, kTransaction), S_OK);
    EXPECT_EQ(start->get_StartPosition(&nStart), S_OK);
    EXPECT_EQ(nStart, 4u);
    file->RunConversion();
}

TEST_F(PortionTest, WholeFileRunAfterAPortionStopsWhereThePortionDid)
{
    Open(Days(1, 6));
    ConvertPortion(1, 2);
    CreateObject(sink);
    EXPECT_EQ(Convert(), S_FALSE);
    EXPECT_EQ(sink->AllRows(), (std::vector<std::string>{"2|2.5", "3|3.5"}));
}

} // namespace
