// The run of a conversion: batches, their shapes, the end of a run and its result.

#include "tests/data/DataParserFixture.h"

#include "src/files/AsyncTransactionPool.h"

using namespace Hesperon::specifics;

namespace {

using testing::Test;

class PipelineTest : public DataParserFixture
{
protected:
    std::vector<ULONGLONG> LineCounts() const
    {
        std::vector<ULONGLONG> counts;
        for (const auto& batch : sink->batches)
            counts.push_back(batch.nLines);
        return counts;
    }
};

TEST_F(PipelineTest, LinesAreDeliveredInBatchesOfAThousand)
{
    struct
    {
        int nLines;
        std::vector<ULONGLONG> batches;
    } const rows[] = {
        {1, {1}},          {999, {999}},         {1000, {1000}},
        {1001, {1000, 1}}, {2000, {1000, 1000}}, {2500, {1000, 1000, 500}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.nLines);
        CreateObject(sink);
        Open(Days(1, row.nLines));
        EXPECT_EQ(Convert(), S_FALSE);
        EXPECT_EQ(LineCounts(), row.batches);
        EXPECT_EQ(sink->ends, std::vector<bool>{true});
        EXPECT_EQ(sink->AllRows().size(), static_cast<std::size_t>(row.nLines));
    }
}

TEST_F(PipelineTest, EmptyFileEndsWellWithoutABatch)
{
    Open({});
    EXPECT_EQ(Convert(), S_FALSE);
    EXPECT_TRUE(sink->batches.empty());
    EXPECT_EQ(sink->ends, std::vector<bool>{true});
}

TEST_F(PipelineTest, BatchIsColumnByRecordWithTheFieldsThatHaveAType)
{
    records->types = {TypeDate, kNoType, TypeSymbol, TypeClose};
    Open({"5,x,AB,1.5", "6,y,AB,2.5"});
    Convert();
    ASSERT_EQ(sink->batches.size(), 1u);
    EXPECT_EQ(sink->batches[0].nColumns, 3u);
    EXPECT_EQ(sink->batches[0].rows, (std::vector<std::string>{"5|AB|1.5", "6|AB|2.5"}));
}

TEST_F(PipelineTest, RejectedLinesLeaveNoGapAndAreCounted)
{
    Open({"1,1", "2,?", "3,3", "?,4", "5,5"});
    Convert();
    ASSERT_EQ(sink->batches.size(), 1u);
    EXPECT_EQ(sink->batches[0].nLines, 5u);
    EXPECT_EQ(sink->batches[0].rows, (std::vector<std::string>{"1|1", "3|3", "5|5"}));
}

TEST_F(PipelineTest, TextOfARejectedRowDoesNotStayInTheRowThatTakesItsPlace)
{
    records->types = {TypeDate, TypeSymbol, TypeClose, TypeSymbol};
    Open({"1,first,?,tail", "2,second,2,end", "3,third,?,tail"});
    Convert();
    ASSERT_EQ(sink->batches.size(), 1u);
    EXPECT_EQ(sink->batches[0].rows, std::vector<std::string>{"2|second|2|end"});
}

TEST_F(PipelineTest, LinesAreReadOnceAndInOrder)
{
    Open(Days(1, 3));
    Convert();
    EXPECT_EQ(file->linesRead, (std::vector<ULONGLONG>{0, 1, 2, 3}));
}

TEST_F(PipelineTest, HeaderLinesAreNotRead)
{
    Open({"junk", "junk", "Date,Close", "1,1", "2,2"});
    parser->put_HeaderOffset(2);
    parser->put_HasHeader(VARIANT_TRUE);
    parser->RefreshDateInfo(VARIANT_FALSE);
    file->linesRead.clear();
    Convert();
    EXPECT_EQ(file->linesRead, (std::vector<ULONGLONG>{3, 4, 5}));
    EXPECT_EQ(sink->AllRows().size(), 2u);
}

TEST_F(PipelineTest, InvertedFileIsReadBackwardsAndStopsBeforeItsHeader)
{
    Open({"Date,Close", "3,3", "2,2", "1,1"});
    parser->put_HasHeader(VARIANT_TRUE);
    parser->RefreshDateInfo(VARIANT_FALSE);
    ASSERT_TRUE(Inverted());
    file->linesRead.clear();
    EXPECT_EQ(Convert(), S_FALSE);
    EXPECT_EQ(file->linesRead, (std::vector<ULONGLONG>{3, 2, 1}));
    EXPECT_EQ(sink->AllRows(), (std::vector<std::string>{"1|1", "2|2", "3|3"}));
    EXPECT_EQ(sink->ends, std::vector<bool>{true});
}

TEST_F(PipelineTest, InvertedFileOfAThousandLinesGivesOneBatch)
{
    Open(Days(1000, 1));
    ASSERT_TRUE(Inverted());
    EXPECT_EQ(Convert(), S_FALSE);
    EXPECT_EQ(LineCounts(), std::vector<ULONGLONG>{1000});
    EXPECT_EQ(sink->ends, std::vector<bool>{true});
}

TEST_F(PipelineTest, DatesOutsideTheRangeFallAway)
{
    Open(Days(1, 9));
    Access::PutDates(*parser.get(), 3, 6);
    EXPECT_EQ(Convert(), S_FALSE);
    ASSERT_EQ(sink->batches.size(), 1u);
    EXPECT_EQ(sink->batches[0].rows,
              (std::vector<std::string>{"3|3.5", "4|4.5", "5|5.5", "6|6.5"}));
    EXPECT_EQ(sink->batches[0].nLines, 9u);
    EXPECT_TRUE(sink->badLines.empty());
    EXPECT_EQ(sink->ends, std::vector<bool>{true});
}

TEST_F(PipelineTest, DateAfterTheRangeEndsTheRunWithThatBatch)
{
    Open(Days(1, 2500));
    Access::PutDates(*parser.get(), 1, 500);
    EXPECT_EQ(Convert(), S_FALSE);
    EXPECT_EQ(LineCounts(), std::vector<ULONGLONG>{1000});
    EXPECT_EQ(sink->AllRows().size(), 500u);
    EXPECT_EQ(file->linesRead.back(), 999u);
    EXPECT_EQ(sink->ends, std::vector<bool>{true});
}

TEST_F(PipelineTest, SymbolThatIsNotThereGivesBatchesWithoutRows)
{
    records->types = {TypeDate, TypeSymbol, TypeClose};
    Open({"1,XY,1", "2,XY,2"});
    parser->put_SymbolName(Bstr(OLESTR("ABC")).get());
    Convert();
    ASSERT_EQ(sink->batches.size(), 1u);
    EXPECT_EQ(sink->batches[0].nLines, 2u);
    EXPECT_EQ(sink->batches[0].nColumns, 3u);
    EXPECT_TRUE(sink->batches[0].rows.empty());
    EXPECT_EQ(sink->ends, std::vector<bool>{true});
}

TEST_F(PipelineTest, SilentRunOverBadLinesGivesEmptyBatchesAndEndsWell)
{
    std::vector<std::string> lines(1500, "?,1");
    Open(lines);
    parser->put_DisableErrorNotify(VARIANT_TRUE);
    EXPECT_EQ(Convert(), S_FALSE);
    EXPECT_EQ(LineCounts(), (std::vector<ULONGLONG>{1000, 500}));
    EXPECT_TRUE(sink->AllRows().empty());
    EXPECT_TRUE(sink->badLines.empty());
    EXPECT_EQ(sink->ends, std::vector<bool>{true});
}

// ---- results of the sink and of the record parser

TEST_F(PipelineTest, ResultOfPutRecordsDecidesTheEnd)
{
    struct
    {
        HRESULT hr;
        std::vector<bool> ends;
    } const rows[] = {
        {S_FALSE, {true}},        {E_FAIL, {false}},        {E_INVALIDARG, {false}},
        {E_NOINTERFACE, {false}}, {E_OUTOFMEMORY, {false}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.hr);
        CreateObject(sink);
        sink->onPutRecords = [&](std::size_t) { return row.hr; };
        Open(Days(1, 2500));
        EXPECT_EQ(Convert(), row.hr);
        EXPECT_EQ(sink->batches.size(), 1u);
        EXPECT_EQ(sink->ends, row.ends);
        EXPECT_FALSE(Access::HasSink(*parser.get()));
        EXPECT_FALSE(AsyncTransactionPool::CancelTransaction(kTransaction));
    }
}

TEST_F(PipelineTest, ResultOfPutRecordsCountsInTheLastBatchToo)
{
    sink->onPutRecords = [](std::size_t) { return E_FAIL; };
    Open(Days(1, 5));
    EXPECT_EQ(Convert(), E_FAIL);
    EXPECT_EQ(sink->ends, std::vector<bool>{false});
}

TEST_F(PipelineTest, FailuresOfTheRecordParserDecideTheEnd)
{
    struct
    {
        const char* szWhat;
        std::function<void(FakeRecordParser&)> spoil;
        HRESULT hr;
        std::vector<bool> ends; // an E_INVALIDARG of the batch means that the sink knows
    } const rows[] = {
        {"field count", [](auto& p) { p.hrFieldCount = E_FAIL; }, E_FAIL, {false}},
        {"field text", [](auto& p) { p.hrFieldText = E_FAIL; }, E_FAIL, {false}},
        {"field text", [](auto& p) { p.hrFieldText = E_INVALIDARG; }, E_INVALIDARG, {}},
        {"resolution",
         [](auto& p) { p.checkResolution = [](DATE, BSTR*) { return E_UNEXPECTED; }; },
         E_UNEXPECTED,
         {false}},
        {"order without a text",
         [](auto& p) { p.checkResolution = [](DATE, BSTR*) { return S_FALSE; }; },
         E_INVALIDARG,
         {}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.szWhat);
        CreateObject(sink);
        CreateObject(records);
        records->types = {TypeDate, TypeSymbol, TypeClose};
        ASSERT_EQ(parser->put_RecordParser(records.get()), S_OK);
        Open({"1,A,1", "2,A,2", "3,A,3"});
        ASSERT_EQ(Start(), S_OK);
        row.spoil(*records.get());
        EXPECT_EQ(file->RunConversion(), row.hr);
        EXPECT_TRUE(sink->batches.empty());
        EXPECT_EQ(sink->ends, row.ends);
        EXPECT_FALSE(Access::HasSink(*parser.get()));
        EXPECT_FALSE(AsyncTransactionPool::CancelTransaction(kTransaction));
    }
}

TEST_F(PipelineTest, AnswerThatStopsEndsTheRunWithoutAnEndTransaction)
{
    for (const HRESULT hrAnswer : {S_FALSE, E_FAIL, E_ABORT}) {
        SCOPED_TRACE(hrAnswer);
        CreateObject(sink);
        sink->onBadLine = [&](const auto&) { return hrAnswer; };
        Open({"1,1", "?,2", "3,3"});
        EXPECT_EQ(Convert(), E_INVALIDARG);
        EXPECT_TRUE(sink->batches.empty());
        EXPECT_TRUE(sink->ends.empty());
        EXPECT_FALSE(AsyncTransactionPool::CancelTransaction(kTransaction));
        // The parser is free for another run.
        sink->onBadLine = nullptr;
        EXPECT_EQ(Convert(), S_FALSE);
        EXPECT_EQ(sink->ends, std::vector<bool>{true});
    }
}

TEST_F(PipelineTest, FileWithoutADateColumnEndsWithoutEndTransaction)
{
    records->types = {TypeOpen, TypeClose};
    Open({"1,1", "2,2"});
    EXPECT_EQ(Convert(), E_INVALIDARG);
    EXPECT_TRUE(sink->ends.empty());
    EXPECT_TRUE(sink->badLines.empty());
}

TEST_F(PipelineTest, RunWithoutColumnsEndsAfterOneBatchUnlessACheckOfALineGoesWell)
{
    Open(Days(1, 1500));
    records->types = {kNoType};
    records->checkResolution = [](DATE, BSTR*) { return S_OK; };
    parser->put_DisableErrorNotify(VARIANT_TRUE);
    EXPECT_EQ(Convert(), S_FALSE);
    EXPECT_EQ(LineCounts(), std::vector<ULONGLONG>{1000});
    EXPECT_EQ(sink->ends, std::vector<bool>{true});
}

// ---- the file fails

TEST_F(PipelineTest, UnreadableLineEndsTheRunWithTheLinesBeforeIt)
{
    const std::function<void()> faults[] = {
        [] { throw std::invalid_argument("read"); },
        [] { throw std::bad_alloc(); },
        [] { throw 7; },
    };
    for (const auto& fault : faults) {
        CreateObject(sink);
        Open(Days(1, 10));
        file->onGetRecord = [&](ULONGLONG nLine) {
            if (nLine == 4)
                fault();
        };
        EXPECT_EQ(Convert(), S_FALSE);
        EXPECT_EQ(sink->AllRows().size(), 4u);
        EXPECT_EQ(sink->ends, std::vector<bool>{true});
        file->onGetRecord = nullptr;
    }
}

TEST_F(PipelineTest, FileThatShrinksWhileItConvertsEndsAtItsNewEnd)
{
    Open(Days(1, 2500));
    sink->onPutRecords = [&](std::size_t) {
        if (file->lines.size() == 2500)
            file->lines.resize(1200);
        return S_OK;
    };
    EXPECT_EQ(Convert(), S_FALSE);
    EXPECT_EQ(LineCounts(), (std::vector<ULONGLONG>{1000, 200}));
    EXPECT_EQ(sink->ends, std::vector<bool>{true});
}

TEST_F(PipelineTest, InvertedFileThatShrinksEndsAtOnce)
{
    Open(Days(9, 1));
    ASSERT_TRUE(Inverted());
    file->lines.clear();
    EXPECT_EQ(Convert(), S_FALSE);
    EXPECT_TRUE(sink->batches.empty());
    EXPECT_EQ(sink->ends, std::vector<bool>{true});
}

TEST_F(PipelineTest, EmptyLineIsReportedAndGoesOn)
{
    Open({"1,1", "", "3,3"});
    parser->put_DisableErrorNotify(VARIANT_TRUE);
    ReportLog reports;
    Convert();
    EXPECT_EQ(reports.Texts(),
              (std::vector<std::string>{
                  "*bsRecord", "!m_sTempRecords[ m_sTempRecords.GetCount() - 1 ].IsEmpty()",
                  "!m_sTempRecords[n + nSkipRecordCount].IsEmpty()"}));
    EXPECT_EQ(sink->AllRows(), (std::vector<std::string>{"1|1", "3|3"}));
}

TEST_F(PipelineTest, FileTakenAwayDuringARunEndsItWithoutEndTransaction)
{
    Open(Days(1, 2500));
    sink->onPutRecords = [&](std::size_t) {
        Access::PutFile(*parser.get(), nullptr);
        return S_OK;
    };
    EXPECT_EQ(Convert(), E_INVALIDARG);
    EXPECT_EQ(sink->batches.size(), 1u);
    EXPECT_TRUE(sink->ends.empty());
    EXPECT_FALSE(AsyncTransactionPool::CancelTransaction(kTransaction));
}

TEST_F(PipelineTest, LastStepAsksTheFileForItsCount)
{
    for (const int nLines : {0, 3, 1000, 1500}) {
        SCOPED_TRACE(nLines);
        CreateObject(sink);
        Open(nLines ? Days(1, nLines) : std::vector<std::string>());
        Convert();
        EXPECT_EQ(file->calls, std::vector<std::string>{"GetCount"});
    }
}

// ---- settings

TEST_F(PipelineTest, SettingsOfARunAreThoseOfItsStart)
{
    Open(Days(1, 2500));
    sink->onPutRecords = [&](std::size_t nBatch) {
        if (nBatch == 1) {
            parser->put_HeaderOffset(7);
            parser->put_HasHeader(VARIANT_TRUE);
            parser->put_SymbolName(Bstr(OLESTR("ABC")).get());
            parser->put_InvertedDirection(VARIANT_TRUE);
            Access::PutDates(*parser.get(), 5, 6);
        }
        return S_OK;
    };
    EXPECT_EQ(Convert(), S_FALSE);
    EXPECT_EQ(sink->AllRows().size(), 2500u);
    EXPECT_EQ(file->linesRead.back(), 2500u);
}

// The switch for reports of bad lines is the exception: a person may press it meanwhile.
TEST_F(PipelineTest, BadLinesMayBeSilencedDuringARun)
{
    Open({"1,1", "?,2", "?,3", "4,4"});
    sink->onBadLine = [&](const auto&) { return parser->put_DisableErrorNotify(VARIANT_TRUE); };
    EXPECT_EQ(Convert(), S_FALSE);
    EXPECT_EQ(sink->badLines.size(), 1u);
    EXPECT_EQ(sink->AllRows().size(), 2u);
}

// ---- what is left behind

TEST_F(PipelineTest, SinkIsLetGoAtTheEnd)
{
    Open(Days(1, 3));
    Convert();
    const ULONG nOthers = sink->AddRef() - 2;
    sink->Release();
    EXPECT_EQ(nOthers, 0u);
}

TEST_F(PipelineTest, OtherTransactionsStayWhenARunEnds)
{
    com_ptr<CDataParser> other;
    CreateObject(other);
    ASSERT_EQ(AsyncTransactionPool::RegisterTransaction(
                  500, static_cast<IQRL_TabulexConverter::IDataParser*>(other.get())),
              500u);
    Open(Days(1, 3));
    Convert();
    file->pQueued = static_cast<IQRL_TabulexConverter::IDataParser*>(parser.get());
    EXPECT_EQ(file->Step(9), E_INVALIDARG); // a stray step after the end
    EXPECT_TRUE(AsyncTransactionPool::CancelTransaction(500));
    AsyncTransactionPool::UnregisterTransaction(other.get());
}

} // namespace
