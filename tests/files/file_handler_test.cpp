#include <array>
#include <numeric>

#include "interfaces/IRecordParser.h"
#include "src/files/ILineReader.h"
#include "tests/files/CodePageInForce.h"
#include "tests/files/Consumers.h"

using namespace Hesperon::specifics;
using namespace files_test;

namespace {

using Texts = std::vector<std::string>;
using Counts = std::vector<CountHeard>;
constexpr ULONGLONG kKey = 17;

class FileHandler : public PoolTest
{};

TEST_F(FileHandler, KnowsTheFirstRecordsWhenItIsAttached)
{
    struct Row
    {
        std::size_t nLines;
        ULONGLONG nAtLeast;
        bool bComplete;
    };
    for (const Row& row : {Row{0, 0, true}, Row{1, 1, true}, Row{100, 100, true},
                           Row{1000, 1000, true}, Row{40000, 1024, false}}) {
        SCOPED_TRACE(row.nLines);
        const TestFile file(NumberedLines(row.nLines));
        const auto pHandler = Attach(file);
        bool bComplete = false;
        EXPECT_GE(Count(pHandler, &bComplete), row.nAtLeast);
        EXPECT_EQ(bComplete, row.bComplete);
    }
}

TEST_F(FileHandler, ScansUpToItsLimitAndNoFurther)
{
    const TestFile file(NumberedLines(40000));
    const auto pHandler = Attach(file);
    EXPECT_TRUE(Eventually([&] { return Count(pHandler) == 32768; }));
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
    EXPECT_EQ(Count(pHandler), 32768u);
    EXPECT_FALSE(IsComplete(pHandler));

    EXPECT_EQ(Record(pHandler, 39999), "line 39999");
    EXPECT_EQ(Count(pHandler), 39999u);
    EXPECT_FALSE(IsComplete(pHandler));
    EXPECT_EQ(Record(pHandler, 40000), "<none>");
    EXPECT_EQ(Count(pHandler), 40000u);
    EXPECT_TRUE(IsComplete(pHandler));
}

TEST_F(FileHandler, TellsTheCountOnceIn4096RecordsAndOnceAtTheEnd)
{
    struct Row
    {
        std::size_t nLines;
        Counts counts;
    };
    const Row rows[] = {
        {0, {{0, 1}}},
        {100, {{100, 1}}},
        {5000, {{4096, 0}, {5000, 1}}},
        {9000, {{4096, 0}, {8192, 0}, {9000, 1}}},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.nLines);
        const TestFile file(NumberedLines(row.nLines));
        const auto pHandler = Attach(file);
        const auto consumer = Make<Consumer>();
        EXPECT_EQ(pHandler->QueueCountEvents(AsUnknown(consumer), kKey), S_OK);
        EXPECT_TRUE(Eventually([&] { return consumer->Counts().size() == row.counts.size(); }));
        EXPECT_EQ(consumer->Counts(), row.counts);
        EXPECT_TRUE(Eventually([&] { return pHandler->CancelRequests(kKey) == S_FALSE; }));
        EXPECT_EQ(consumer->Counts(), row.counts);
    }
}

// Says whether anybody hears the counts that it is told.
class Hearer : public ComObject<Hearer, Dual<IFileHandlerEvents>, ICountHearer>
{
public:
    std::atomic<bool> m_bHears = true;
    std::atomic<int> m_nTold = 0;

    bool STDMETHODCALLTYPE HearsCounts() override { return m_bHears; }
    HRESULT STDMETHODCALLTYPE RecordCountChange(ULONGLONG, VARIANT_BOOL) override
    {
        ++m_nTold;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE PutData(VARIANT, ULONGLONG, ULONGLONG) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE ProcessRecord(ULONGLONG, BSTR, VARIANT_BOOL) override
    {
        return E_NOTIMPL;
    }
};

// Takes the steps that it is offered until m_nRecords have been taken, and notes the most.
class Stepper : public ComObject<Stepper, Dual<IFileHandlerEvents>, IRecordSteps>
{
public:
    ULONGLONG m_nRecords = 0;
    ULONGLONG m_nMostOffered = 1;
    Signal m_done;

    HRESULT STDMETHODCALLTYPE RecordCountChange(ULONGLONG, VARIANT_BOOL) override { return S_OK; }
    HRESULT STDMETHODCALLTYPE PutData(VARIANT, ULONGLONG, ULONGLONG) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE ProcessRecord(ULONGLONG nIndex, BSTR, VARIANT_BOOL) override
    {
        if (nIndex < m_nRecords)
            return S_OK;
        m_done.Raise();
        return S_FALSE;
    }
    HRESULT STDMETHODCALLTYPE ProcessRecords(ULONGLONG nIndex, ULONGLONG nMost,
                                             ULONGLONG& nTaken) override
    {
        m_nMostOffered = nTaken = nMost;
        return ProcessRecord(nIndex, nullptr, VARIANT_FALSE);
    }
};

// A count that somebody may hear is told after each record; else many are taken in a turn.
TEST_F(FileHandler, TakesManyRecordsInATurnWhereNobodyHearsTheCount)
{
    const TestFile file(NumberedLines(33000));
    const auto pHandler = Attach(file);
    ASSERT_TRUE(Eventually([&] { return Count(pHandler) == 32768; }));
    for (const bool bHears : {false, true}) {
        SCOPED_TRACE(bHears);
        const auto hearer = Make<Hearer>();
        hearer->m_bHears = bHears;
        pHandler->QueueCountEvents(AsUnknown(hearer), kKey);
        ASSERT_TRUE(Eventually([&] { return hearer->m_nTold != 0; }));
        const int nBefore = hearer->m_nTold;
        const auto stepper = Make<Stepper>();
        stepper->m_nRecords = 5000;
        pHandler->QueueConversion(AsUnknown(stepper), kKey + 1);
        ASSERT_TRUE(stepper->m_done.Await());
        pHandler->CancelRequests(kKey);
        if (bHears) {
            EXPECT_EQ(stepper->m_nMostOffered, 1u);
            EXPECT_GE(hearer->m_nTold - nBefore, 5000);
        } else {
            EXPECT_GT(stepper->m_nMostOffered, 100u);
            EXPECT_LT(hearer->m_nTold - nBefore, 100);
        }
    }
}

// Reads the records that it is offered until m_nRecords have been taken, and so drives the count.
class ReadingStepper : public ComObject<ReadingStepper, Dual<IFileHandlerEvents>, IRecordSteps>
{
public:
    com_ptr<ILineReader> m_pLines;
    ULONGLONG m_nRecords = 0;
    Signal m_done;

    HRESULT STDMETHODCALLTYPE RecordCountChange(ULONGLONG, VARIANT_BOOL) override { return S_OK; }
    HRESULT STDMETHODCALLTYPE PutData(VARIANT, ULONGLONG, ULONGLONG) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE ProcessRecord(ULONGLONG nIndex, BSTR, VARIANT_BOOL) override
    {
        ULONGLONG nTaken = 0;
        return ProcessRecords(nIndex, 1, nTaken);
    }
    HRESULT STDMETHODCALLTYPE ProcessRecords(ULONGLONG nIndex, ULONGLONG nMost,
                                             ULONGLONG& nTaken) override
    {
        LineBuffer lines;
        EXPECT_EQ(m_pLines->AppendRecords({nIndex, nMost}, 0, lines), S_OK);
        nTaken = nMost;
        if (nIndex + nMost < m_nRecords)
            return S_OK;
        m_done.Raise();
        return S_FALSE;
    }
};

// A conversion that begins before the scan is done takes the count past those that are told.
TEST_F(FileHandler, TellsTheCountsThatAConversionReachesBeforeTheScanDoes)
{
    const TestFile file(NumberedLines(30000));
    const auto pHandler = Attach(file);
    const auto stepper = Make<ReadingStepper>();
    stepper->m_pLines = OpenLines(pHandler);
    stepper->m_nRecords = 20000;
    const auto consumer = Make<Consumer>();
    pHandler->QueueCountEvents(AsUnknown(consumer), kKey);
    pHandler->QueueConversion(AsUnknown(stepper), kKey + 1);
    ASSERT_TRUE(stepper->m_done.Await());
    pHandler->CancelRequests(kKey);
    std::size_t nTold = 0;
    for (const CountHeard& heard : consumer->Counts())
        nTold += heard.nCount > 8191 && heard.nCount < 8192 + 64;
    EXPECT_EQ(nTold, 64u);
}

// Past the scan's limit the count is reported at each turn of the loop.
TEST_F(FileHandler, TellsTheCountAtEachTurnOnceTheScanIsDone)
{
    const TestFile file(NumberedLines(33000));
    const auto pHandler = Attach(file);
    ASSERT_TRUE(Eventually([&] { return Count(pHandler) == 32768; }));
    const auto counting = Make<Consumer>();
    pHandler->QueueCountEvents(AsUnknown(counting), kKey);
    ASSERT_TRUE(Eventually([&] { return !counting->Counts().empty(); }));
    EXPECT_EQ(counting->Counts().back(), (CountHeard{32768, 0}));

    const std::size_t nBefore = counting->Counts().size();
    const auto converting = Make<Consumer>();
    Signal done;
    converting->m_onRecord = [&](ULONGLONG nIndex) {
        if (nIndex < 99)
            return S_OK;
        done.Raise();
        return S_FALSE;
    };
    pHandler->QueueConversion(AsUnknown(converting), kKey + 1);
    ASSERT_TRUE(done.Await());
    ASSERT_TRUE(Eventually([&] { return counting->Counts().size() >= nBefore + 101; }));
    // A turn that starts the conversion, and one for each record.
    EXPECT_EQ(counting->Counts().size(), nBefore + 101);

    EXPECT_EQ(pHandler->SeekRecord(33000), E_FAIL); // completes the index
    const auto waking = Make<Consumer>();
    pHandler->QueueCountEvents(AsUnknown(waking), kKey + 2);
    EXPECT_TRUE(Eventually([&] { return counting->Counts().back() == CountHeard{33000, 1}; }));
    EXPECT_TRUE(Eventually([&] { return waking->Counts() == Counts{{33000, 1}}; }));
}

TEST_F(FileHandler, CancellingTouchesTheRequestsOfOneKey)
{
    const TestFile file(NumberedLines(40000));
    const auto pHandler = Attach(file);
    ASSERT_TRUE(Eventually([&] { return Count(pHandler) == 32768; }));
    const auto first = Make<Consumer>();
    const auto second = Make<Consumer>();
    pHandler->QueueCountEvents(AsUnknown(first), 1);
    pHandler->QueueCountEvents(AsUnknown(second), 2);
    ASSERT_TRUE(Eventually([&] { return !second->Counts().empty(); }));
    EXPECT_EQ(pHandler->CancelRequests(1), S_OK);
    EXPECT_EQ(pHandler->CancelRequests(1), S_FALSE);
    pHandler->SeekRecord(40000);
    pHandler->QueueFirstRecord(nullptr, 3); // wakes the worker
    EXPECT_TRUE(Eventually([&] { return second->Counts().back() == CountHeard{40000, 1}; }));
    EXPECT_EQ(first->Counts().back(), (CountHeard{32768, 0}));
    EXPECT_EQ(pHandler->CancelRequests(IFileHandler::kAllKeys), S_OK);
}

TEST_F(FileHandler, DrivesAConversionToTheEndOfTheFile)
{
    for (const std::size_t nLines : {0, 1, 1000, 40000}) {
        SCOPED_TRACE(nLines);
        const TestFile file(NumberedLines(nLines));
        const auto pHandler = Attach(file);
        const auto consumer = Make<Consumer>();
        Signal done;
        ULONGLONG nWrong = 0;
        consumer->m_onRecord = [&](ULONGLONG nIndex) {
            Bstr bsRecord;
            if (pHandler->GetRecord(nIndex, 0, bsRecord.put()) != S_OK) {
                done.Raise();
                return E_FAIL;
            }
            nWrong += Narrow(bsRecord.view()) != "line " + std::to_string(nIndex);
            return S_OK;
        };
        pHandler->QueueConversion(AsUnknown(consumer), kKey);
        ASSERT_TRUE(done.Await());
        EXPECT_EQ(consumer->Records().size(), nLines + 1);
        EXPECT_EQ(consumer->Records().back(), nLines);
        EXPECT_EQ(nWrong, 0u);
        EXPECT_FALSE(consumer->TextGiven());
        EXPECT_EQ(consumer->Completes().back(), nLines < 40000 ? 1 : 0);
    }
}

TEST_F(FileHandler, ConversionsOfOneFileTakeTurns)
{
    const TestFile file(NumberedLines(100));
    const auto pHandler = Attach(file);
    std::mutex lock;
    std::string calls;
    Signal aDone, bDone;
    const auto answer = [&](char name, Signal& done) {
        return [&, name](ULONGLONG nIndex) {
            std::lock_guard guard(lock);
            calls += name;
            if (nIndex < 49)
                return S_OK;
            done.Raise();
            return S_FALSE;
        };
    };
    const auto a = Make<Consumer>();
    const auto b = Make<Consumer>();
    const auto host = Make<Consumer>();
    a->m_onRecord = answer('a', aDone);
    b->m_onRecord = answer('b', bDone);
    // Both are queued by one call on the worker, so that they begin together.
    host->m_onRecord = [&](ULONGLONG) {
        pHandler->QueueConversion(AsUnknown(a), 1);
        pHandler->QueueConversion(AsUnknown(b), 2);
        return S_FALSE;
    };
    pHandler->QueueConversion(AsUnknown(host), 3);
    ASSERT_TRUE(aDone.Await());
    ASSERT_TRUE(bDone.Await());
    std::string expected;
    for (int n = 0; n < 50; ++n)
        expected += "ab";
    std::lock_guard guard(lock);
    EXPECT_EQ(calls, expected);
}

TEST_F(FileHandler, AConversionBeginsWhereItsConsumerSays)
{
    struct Row
    {
        ULONGLONG nStart;
        HRESULT hr;
        ULONGLONG nFirst;
    };
    for (const Row& row : {Row{0, S_OK, 0}, Row{70, S_OK, 70}, Row{70, E_FAIL, 0}}) {
        SCOPED_TRACE(row.nFirst);
        const TestFile file(NumberedLines(100));
        const auto pHandler = Attach(file);
        const auto consumer = Make<LateStarter>();
        consumer->m_nStart = row.nStart;
        consumer->m_hrStart = row.hr;
        pHandler->QueueConversion(consumer->Identity(), kKey);
        ASSERT_TRUE(consumer->m_done.Await());
        EXPECT_EQ(consumer->m_nFirst, row.nFirst);
    }
}

// A running conversion is no longer a request.
TEST_F(FileHandler, ACancelDoesNotReachAConversionThatIsCollected)
{
    const TestFile file(NumberedLines(100));
    const auto pHandler = Attach(file);
    const auto consumer = Make<Consumer>();
    Signal begun, cancelled, done;
    consumer->m_onRecord = [&](ULONGLONG nIndex) {
        begun.Raise();
        cancelled.Await();
        if (nIndex < 9)
            return S_OK;
        done.Raise();
        return S_FALSE;
    };
    pHandler->QueueConversion(AsUnknown(consumer), kKey);
    ASSERT_TRUE(begun.Await());
    EXPECT_EQ(pHandler->CancelRequests(kKey), S_FALSE);
    cancelled.Raise();
    EXPECT_TRUE(done.Await());
}

// Both are collected in one go; the first one served cancels the second.
TEST_F(FileHandler, ACancelDoesNotReachARequestThatIsCollected)
{
    const TestFile file(NumberedLines(100));
    const auto pHandler = Attach(file);
    const auto host = Make<Consumer>();
    const auto cancelling = Make<Consumer>();
    const auto converting = Make<Consumer>();
    std::atomic<HRESULT> hrCancel = E_FAIL;
    Signal converted;
    cancelling->m_onCount = [&](const CountHeard&) { hrCancel = pHandler->CancelRequests(2); };
    converting->m_onRecord = [&](ULONGLONG) {
        converted.Raise();
        return S_FALSE;
    };
    host->m_onRecord = [&](ULONGLONG) {
        pHandler->QueueCountEvents(AsUnknown(cancelling), 1);
        pHandler->QueueConversion(AsUnknown(converting), 2);
        return S_FALSE;
    };
    pHandler->QueueConversion(AsUnknown(host), 3);
    EXPECT_TRUE(converted.Await());
    EXPECT_EQ(hrCancel, S_FALSE) << "nothing of that key is waiting any more";
}

TEST_F(FileHandler, AConsumerThatThrowsSpoilsNoOtherRequest)
{
    const TestFile file(NumberedLines(100));
    const auto pHandler = Attach(file);
    const auto host = Make<Consumer>();
    const auto throwing = Make<Consumer>();
    const auto counting = Make<Consumer>();
    const auto converting = Make<Consumer>();
    Signal counted, converted;
    throwing->m_onCount = [](const CountHeard&) { throw std::runtime_error("at the consumer"); };
    counting->m_onCount = [&](const CountHeard&) { counted.Raise(); };
    converting->m_onRecord = [&](ULONGLONG nIndex) {
        if (nIndex < 9)
            return S_OK;
        converted.Raise();
        return S_FALSE;
    };
    host->m_onRecord = [&](ULONGLONG) {
        pHandler->QueueCountEvents(AsUnknown(throwing), 1);
        pHandler->QueueConversion(AsUnknown(converting), 2);
        pHandler->QueueCountEvents(AsUnknown(counting), 3);
        return S_FALSE;
    };
    pHandler->QueueConversion(AsUnknown(host), 4);
    EXPECT_TRUE(converted.Await());
    EXPECT_TRUE(counted.Await());
    EXPECT_EQ(throwing->Counts().size(), 1u);
    EXPECT_EQ(counting->Counts().size(), 1u);
    EXPECT_EQ(converting->Records().size(), 10u);
}

TEST_F(FileHandler, RequestsOfObjectsWithoutTheInterfaceAreDropped)
{
    const TestFile file(NumberedLines(10));
    const auto pHandler = Attach(file);
    Signal reported;
    ReportLog reports([&](const std::string&) { reported.Raise(); });
    const auto consumer = Make<Consumer>();
    pHandler->QueueFirstRecord(AsUnknown(consumer), kKey);
    pHandler->QueueCountEvents(nullptr, kKey);
    pHandler->QueueConversion(nullptr, kKey);
    ASSERT_TRUE(reported.Await());
    EXPECT_EQ(reports.Texts(), Texts{"pEvents"});
}

TEST_F(FileHandler, ReleasingDuringAConversionEndsIt)
{
    const TestFile file(NumberedLines(100));
    auto pHandler = Attach(file);
    const auto consumer = Make<Consumer>();
    Signal begun, released;
    consumer->m_onRecord = [&](ULONGLONG nIndex) {
        if (nIndex == 9) {
            begun.Raise();
            released.Await();
        }
        return S_OK; // it would go on for ever
    };
    pHandler->QueueConversion(AsUnknown(consumer), kKey);
    ASSERT_TRUE(begun.Await());
    pHandler.reset();
    released.Raise();
    EXPECT_TRUE(Eventually([&] {
        consumer->AddRef();
        return consumer->Release() == 1;
    })) << "the worker lets go of the consumer";
    EXPECT_EQ(consumer->Records().size(), 10u);
}

TEST_F(FileHandler, TheWorkerItselfMayReleaseTheLastReference)
{
    const TestFile file(NumberedLines(100));
    auto pHandler = Attach(file);
    const auto consumer = Make<Consumer>();
    Signal queued;
    consumer->m_onRecord = [&](ULONGLONG nIndex) {
        queued.Await();
        if (nIndex == 9)
            pHandler.reset();
        return S_OK;
    };
    pHandler->QueueConversion(AsUnknown(consumer), kKey);
    queued.Raise();
    EXPECT_TRUE(Eventually([&] {
        consumer->AddRef();
        return consumer->Release() == 1;
    }));
    EXPECT_EQ(consumer->Records().size(), 10u);
}

TEST_F(FileHandler, AnswersForItsInterfaceOnly)
{
    const TestFile file("ab\ncd\n");
    const auto pHandler = Attach(file);
    void* pv = &pv;
    for (const GUID& iid : {iid_of<IUnknown>, iid_of<IDispatch>, iid_of<IFileHandlerEvents>}) {
        EXPECT_EQ(pHandler->QueryInterface(iid, &pv), E_NOINTERFACE);
        EXPECT_EQ(pv, nullptr);
    }
    com_ptr<IFileHandler> pSame;
    EXPECT_EQ(pHandler->QueryInterface(iid_of<IFileHandler>, pSame.put_void()), S_OK);
    EXPECT_EQ(pSame, pHandler);
    EXPECT_EQ(pHandler->AddRef(), 3u);
    EXPECT_EQ(pHandler->Release(), 2u);
}

TEST_F(FileHandler, AppendsRecordsToTheLinesOfABatch)
{
    const TestFile file("ab\n\ncde\n");
    const auto pHandler = Attach(file);
    const auto pLines = OpenLines(pHandler);
    ASSERT_TRUE(pLines);
    LineBuffer lines;
    EXPECT_EQ(pLines->AppendRecords({1, 1}, 0, lines), S_OK);
    EXPECT_EQ(pLines->AppendRecords({2, 1}, 0, lines), E_FAIL);
    EXPECT_EQ(pLines->AppendRecords({0, 1}, 0, lines), S_OK);
    ASSERT_EQ(lines.size(), 2u);
    EXPECT_EQ(string_t(lines[0]), OLESTR("cde"));
    EXPECT_EQ(string_t(lines[1]), OLESTR("ab"));
}

TEST_F(FileHandler, ReadsTextInTheAnsiCodePage)
{
    struct Row
    {
        UINT nCodePage;
        std::string bytes;
        string_t sText;
    };
    const Row rows[] = {
        {1252, "\x80\xE4z\n", OLESTR("\u20AC\u00E4z")},
        {1252, "\x81z\n", OLESTR("\u0081z")}, // undefined, so it keeps its value
        {1251, "\xE4z\n", OLESTR("\u0434z")},
        {65001, "\xC3\xA4z\n", OLESTR("\u00E4z")},
        {936, "\xD6\xD0z\n", OLESTR("\u4E2Dz")},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.nCodePage);
        const CodePageInForce codePage(row.nCodePage);
        const TestFile file(row.bytes);
        const auto pHandler = Attach(file);
        Bstr sRecord, sLast;
        EXPECT_EQ(pHandler->GetRecord(0, 0, sRecord.put()), S_OK);
        EXPECT_EQ(sRecord.view(), row.sText);
        EXPECT_EQ(pHandler->GetLastRecord(0, sLast.put()), S_OK);
        EXPECT_EQ(sLast.view(), row.sText);
        LineBuffer lines;
        EXPECT_EQ(OpenLines(pHandler)->AppendRecords({0, 1}, 0, lines), S_OK);
        EXPECT_EQ(string_view_t(lines[0], lines.Length(0)), row.sText);
    }
}

TEST_F(FileHandler, RefusesNullPointers)
{
    const TestFile file("ab\ncd\n");
    const auto pHandler = Attach(file);
    ULONGLONG nCount = 0;
    EXPECT_EQ(pHandler->GetFileName(nullptr), E_POINTER);
    EXPECT_EQ(pHandler->GetCount(nullptr, nullptr), E_POINTER);
    EXPECT_EQ(pHandler->GetCount(&nCount, nullptr), S_OK);
    EXPECT_EQ(pHandler->GetRecord(0, 0, nullptr), E_POINTER);
    EXPECT_EQ(pHandler->GetLastRecord(0, nullptr), E_POINTER);
    EXPECT_EQ(pHandler->GetRelativePos(0, nullptr), E_POINTER);
    EXPECT_EQ(pHandler->GetApproxCount(nullptr), E_INVALIDARG);
}

TEST_F(FileHandler, GivesTheResultsOfItsIndex)
{
    const TestFile file("ab\ncd\nef\n");
    const auto pHandler = Attach(file);
    Bstr bsText;
    EXPECT_EQ(pHandler->GetFileName(bsText.put()), S_OK);
    EXPECT_EQ(bsText.view(), file.Name());
    EXPECT_EQ(pHandler->GetLastRecord(0, bsText.put()), S_OK);
    EXPECT_EQ(bsText.view(), OLESTR("ef"));
    EXPECT_EQ(Record(pHandler, 1), "cd");
    EXPECT_EQ(Record(pHandler, 3), "<none>");
    EXPECT_EQ(pHandler->SeekRecord(2), S_OK);
    EXPECT_EQ(pHandler->SeekRecord(3), E_FAIL);
    FLOAT fPos = 1;
    EXPECT_EQ(pHandler->GetRelativePos(2, &fPos), S_OK);
    EXPECT_EQ(fPos, 0);
    EXPECT_EQ(pHandler->GetRelativePos(1024, &fPos), E_UNEXPECTED);
    ULONGLONG nCount = 0;
    EXPECT_EQ(pHandler->GetApproxCount(&nCount), S_OK);
    EXPECT_EQ(nCount, 3u);
}

TEST_F(FileHandler, AnEmptyFileHasNoRecordsAndIsComplete)
{
    const TestFile file("");
    const auto pHandler = Attach(file);
    bool bComplete = false;
    EXPECT_EQ(Count(pHandler, &bComplete), 0u);
    EXPECT_TRUE(bComplete);
    EXPECT_EQ(Record(pHandler, 0), "<none>");
    Bstr bsText;
    EXPECT_EQ(pHandler->GetLastRecord(0, bsText.put()), E_FAIL);
    EXPECT_FALSE(bsText);
}

TEST_F(FileHandler, AGrownFileIsScannedFurtherWhenTold)
{
    const TestFile file(NumberedLines(100));
    const auto pHandler = Attach(file);
    file.Append("line 100\nline 101\n");
    EXPECT_EQ(Record(pHandler, 100), "<none>");
    EXPECT_EQ(pHandler->RefreshFileSize(), S_OK);
    EXPECT_EQ(Record(pHandler, 100), "<none>") << "the count is still final";
    EXPECT_EQ(pHandler->Invalidate(VARIANT_FALSE), S_OK);
    EXPECT_FALSE(IsComplete(pHandler));
    EXPECT_EQ(Record(pHandler, 101), "line 101");
    EXPECT_EQ(Record(pHandler, 102), "<none>");
    EXPECT_EQ(Count(pHandler), 102u);
    file.Write("new\n");
    EXPECT_EQ(pHandler->Invalidate(VARIANT_TRUE), S_OK);
    EXPECT_EQ(Count(pHandler), 0u);
    EXPECT_EQ(Record(pHandler, 0), "new");
    EXPECT_EQ(Record(pHandler, 1), "<none>");
    EXPECT_EQ(Count(pHandler), 1u);
}

// ---- files that can't be read -------------------------------------------------

TEST_F(FileHandler, AFileThatShrinksFailsTheCallThatReadsIt)
{
    const TestFile file(NumberedLines(60000, std::string(100, 'x')));
    const auto pHandler = Attach(file);
    ASSERT_TRUE(Eventually([&] { return Count(pHandler) == 32768; }));
    file.Truncate(100);
    Bstr bsRecord;
    EXPECT_THROW(pHandler->SeekRecord(59000), std::invalid_argument);
    pHandler->Invalidate(VARIANT_TRUE);
    EXPECT_EQ(Record(pHandler, 0), "line 0" + std::string(100, 'x').substr(0, 94));
    EXPECT_EQ(pHandler->SeekRecord(1), E_FAIL);
    EXPECT_TRUE(IsComplete(pHandler));
}

TEST_F(FileHandler, TheFirstFaultStaysKnown)
{
    using namespace IQRL_TabulexConverter;
    const TestFile file(NumberedLines(60000, std::string(100, 'x')));
    const auto pHandler = Attach(file);
    const auto pReadState = pHandler.as<IReadState>();
    ASSERT_TRUE(pReadState);
    ASSERT_TRUE(Eventually([&] { return Count(pHandler) == 32768; }));
    ReadState state{};
    EXPECT_EQ(pReadState->GetReadState(nullptr), E_POINTER);
    ASSERT_EQ(pReadState->GetReadState(&state), S_OK);
    EXPECT_EQ(state.nFault, ReadFaultNone);
    EXPECT_EQ(state.nFaultLine, kNoFaultLine);
    EXPECT_EQ(state.nSize, state.nSizeNow);
    const ULONGLONG nSize = state.nSize;
    ASSERT_GT(nSize, 6'000'000u);

    file.Truncate(5'000'000);
    EXPECT_THROW(pHandler->SeekRecord(59000), std::invalid_argument);
    const ULONGLONG nFaultLine = Count(pHandler);
    EXPECT_GT(nFaultLine, 32768u);
    pHandler->Invalidate(VARIANT_TRUE); // forgets what was read, and not this
    ASSERT_EQ(pReadState->GetReadState(&state), S_OK);
    EXPECT_EQ(state.nFault, ReadFaultCut);
    EXPECT_EQ(state.nFaultPosition, 5'000'000u);
    EXPECT_EQ(state.nFaultLine, nFaultLine);
    EXPECT_EQ(state.nSizeNow, 5'000'000u);
}

// Of many lines that are read in one call the fault is noted with the one that failed.
TEST_F(FileHandler, AFaultIsThatOfItsLineInEitherDirection)
{
    using namespace IQRL_TabulexConverter;
    constexpr ULONGLONG kLines = 60000;
    for (const bool bDownwards : {false, true}) {
        SCOPED_TRACE(bDownwards);
        const TestFile file(NumberedLines(kLines, std::string(100, 'x')));
        const auto pHandler = Attach(file);
        ASSERT_EQ(Record(pHandler, kLines), "<none>");
        ASSERT_EQ(pHandler->SeekRecord(bDownwards ? kLines - 1 : 0), S_OK);
        file.Truncate(1'000'000);
        LineBuffer lines;
        const LineRange range{bDownwards ? kLines - 1 : 0, kLines, bDownwards};
        EXPECT_THROW(OpenLines(pHandler)->AppendRecords(range, 0, lines), std::invalid_argument);
        ASSERT_GT(lines.size(), 2000u);
        ReadState state{};
        ASSERT_EQ(pHandler.as<IReadState>()->GetReadState(&state), S_OK);
        EXPECT_EQ(state.nFault, ReadFaultCut);
        EXPECT_EQ(state.nFaultLine, range.At(lines.size()));
    }
}

TEST_F(FileHandler, AFileThatGrowsIsLongerThanWhatIsRead)
{
    const TestFile file(NumberedLines(10));
    const auto pReadState = Attach(file).as<IQRL_TabulexConverter::IReadState>();
    IQRL_TabulexConverter::ReadState before{}, after{};
    ASSERT_EQ(pReadState->GetReadState(&before), S_OK);
    file.Append("more\n");
    ASSERT_EQ(pReadState->GetReadState(&after), S_OK);
    EXPECT_EQ(after.nFault, IQRL_TabulexConverter::ReadFaultNone);
    EXPECT_EQ(after.nSize, before.nSize);
    EXPECT_EQ(after.nSizeNow, before.nSize + 5);
}

TEST_F(FileHandler, AConversionOfAFileThatShrinksEnds)
{
    const TestFile file(NumberedLines(60000, std::string(100, 'x')));
    const auto pHandler = Attach(file);
    const auto consumer = Make<Consumer>();
    Signal failed;
    consumer->m_onRecord = [&](ULONGLONG nIndex) {
        if (nIndex == 10)
            file.Truncate(1000);
        Bstr bsRecord;
        try {
            return pHandler->GetRecord(nIndex, 0, bsRecord.put());
        } catch (const std::invalid_argument&) {
            failed.Raise();
            throw;
        }
    };
    pHandler->QueueConversion(AsUnknown(consumer), kKey);
    EXPECT_TRUE(failed.Await());
    EXPECT_TRUE(Eventually([&] {
        consumer->AddRef();
        return consumer->Release() == 1;
    }));
}

TEST_F(FileHandler, AClosedFileFailsEachRead)
{
    const TestFile file(NumberedLines(60000, std::string(100, 'x')));
    const auto pHandler = Attach(file);
    ASSERT_TRUE(Eventually([&] { return Count(pHandler) == 32768; }));
    FilePool::ReleaseFile(file.Name(), true);
    Bstr bsText;
    ULONGLONG nCount = 0;
    EXPECT_THROW(pHandler->SeekRecord(59000), std::invalid_argument);
    EXPECT_THROW(pHandler->GetLastRecord(0, bsText.put()), std::invalid_argument);
    EXPECT_FALSE(bsText);
    EXPECT_EQ(pHandler->GetApproxCount(&nCount), E_INVALIDARG);
    EXPECT_EQ(pHandler->RefreshFileSize(), S_OK);
    EXPECT_THROW(pHandler->GetRecord(0, 0, bsText.put()), std::invalid_argument);
}

TEST_F(FileHandler, ADeletedFileIsReadToItsEnd)
{
    auto file = std::make_unique<TestFile>(NumberedLines(40000));
    const auto pHandler = Attach(*file);
    file.reset();
    EXPECT_EQ(Record(pHandler, 39999), "line 39999");
}

// ---- several at once ----------------------------------------------------------

TEST_F(FileHandler, ConsumersReadAtDifferentPlacesAtTheSameTime)
{
    const TestFile file(NumberedLines(20000));
    const auto pHandler = Attach(file);
    std::atomic<int> nWrong = 0;
    std::vector<std::thread> threads;
    for (unsigned nThread = 0; nThread < 4; ++nThread)
        threads.emplace_back([&, nThread] {
            for (unsigned n = 0; n < 400; ++n) {
                const ULONGLONG nIndex = (n * (nThread + 1) * 37 + nThread * 5000) % 20000;
                Bstr bsRecord;
                const HRESULT hr = pHandler->GetRecord(nIndex, 0, bsRecord.put());
                nWrong += hr != S_OK || Narrow(bsRecord.view()) != "line " + std::to_string(nIndex);
                ULONGLONG nCount = 0;
                pHandler->GetApproxCount(&nCount);
                pHandler->GetCount(&nCount, nullptr);
            }
        });
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(nWrong, 0);
}

// Of three keys two are cancelled again and again, and one never is. Conversions get each
// record once and in order; the key that isn't cancelled hears of the whole file once a
// request; nobody hears anything after the last cancel.
TEST_F(FileHandler, ConversionsRunWhileConsumersQueueAndCancel)
{
    constexpr std::size_t kRecords = 3000;
    constexpr std::size_t kRounds = 500;
    constexpr ULONGLONG kKept = 2;
    const TestFile file(NumberedLines(40000));
    const auto pHandler = Attach(file);
    const auto cancelled = Make<Consumer>();
    const auto kept = Make<Consumer>();
    struct Conversion
    {
        com_ptr<Consumer> consumer = Make<Consumer>();
        Signal done;
        std::atomic<int> nWrong = 0;
    };
    std::array<Conversion, 3> conversions;
    for (Conversion& conversion : conversions) {
        conversion.consumer->m_onRecord = [&](ULONGLONG nIndex) {
            conversion.nWrong += Record(pHandler, nIndex) != "line " + std::to_string(nIndex);
            if (nIndex + 1 < kRecords)
                return S_OK;
            conversion.done.Raise();
            return S_FALSE;
        };
        pHandler->QueueConversion(AsUnknown(conversion.consumer), kKey);
    }
    std::thread canceller([&] {
        for (std::size_t n = 0; n < kRounds; ++n) {
            const ULONGLONG nKey = n % 3;
            pHandler->QueueCountEvents(AsUnknown(nKey == kKept ? kept : cancelled), nKey);
            pHandler->CancelRequests(n % 2);
        }
    });
    for (Conversion& conversion : conversions)
        EXPECT_TRUE(conversion.done.Await());
    canceller.join();
    pHandler->CancelRequests(0);
    pHandler->CancelRequests(1);

    std::vector<ULONGLONG> inOrder(kRecords);
    std::iota(inOrder.begin(), inOrder.end(), 0);
    for (Conversion& conversion : conversions) {
        EXPECT_EQ(conversion.nWrong, 0);
        EXPECT_EQ(conversion.consumer->Records(), inOrder);
    }
    EXPECT_EQ(pHandler->SeekRecord(40000), E_FAIL); // completes the index
    const auto last = Make<Consumer>();
    pHandler->QueueCountEvents(AsUnknown(last), kKey); // wakes the worker, and is served last
    ASSERT_TRUE(Eventually([&] { return !last->Counts().empty(); }));
    EXPECT_EQ(std::ranges::count(kept->Counts(), CountHeard{40000, 1}), kRounds / 3);
    EXPECT_EQ(std::ranges::count(cancelled->Counts(), CountHeard{40000, 1}), 0);
    EXPECT_EQ(pHandler->CancelRequests(kKept), S_FALSE) << "served once and for all";
    EXPECT_EQ(pHandler->CancelRequests(IFileHandler::kAllKeys), S_OK);
}

} // namespace
