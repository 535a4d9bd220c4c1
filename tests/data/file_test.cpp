// Opening, changing and losing a file on disk.

#include "platform/text/CodePage.h"
#include "platform/threads/Apartment.h"
#include "src/files/AsyncTransactionPool.h"
#include "tests/data/DataParserFixture.h"
#include "tests/data/RealFileFixture.h"

using namespace Hesperon::specifics;
using namespace IQRL_TabulexConverter;

namespace {

class CountWaiter : public ComObject<CountWaiter, Dual<IFileHandlerEvents>>
{
public:
    std::atomic<ULONGLONG> nCount = 0;
    std::atomic<int> nCompletes = 0;
    Event complete{Event::Kind::ManualReset};

    HRESULT STDMETHODCALLTYPE RecordCountChange(ULONGLONG n, VARIANT_BOOL bComplete) override
    {
        nCount = n;
        if (bComplete) {
            ++nCompletes;
            complete.Set();
        }
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE PutData(VARIANT, ULONGLONG, ULONGLONG) override { return S_OK; }
    HRESULT STDMETHODCALLTYPE ProcessRecord(ULONGLONG, BSTR, VARIANT_BOOL) override { return S_OK; }
};

class FileTest : public RealFileFixture
{};

TEST_F(FileTest, OpeningWorksOutDirectionAndRange)
{
    for (const bool bDescending : {false, true}) {
        SCOPED_TRACE(bDescending);
        TempFile file(Daily(100, bDescending));
        ASSERT_EQ(Open(*parser.get(), file), S_OK);
        EXPECT_EQ(Inverted(*parser.get()), bDescending);
        EXPECT_EQ(Start(*parser.get()), kFirstDay);
        EXPECT_EQ(End(*parser.get()), kFirstDay + 99);
        Bstr sName;
        EXPECT_EQ(parser->get_FileName(sName.put()), S_OK);
        EXPECT_EQ(sName.view(), file.Name());
    }
}

TEST_F(FileTest, HeaderIsFoundAndLeftOut)
{
    TempFile file("Date,Open,High,Low,Close,Volume\n" + Daily(20));
    ASSERT_EQ(Open(*parser.get(), file), S_OK);
    VARIANT_BOOL bHeader = VARIANT_FALSE;
    parser->get_HasHeader(&bHeader);
    EXPECT_EQ(bHeader, VARIANT_TRUE);
    ASSERT_TRUE(Convert(*parser.get()));
    EXPECT_EQ(sink->AllRows().size(), 20u);
    EXPECT_EQ(sink->ends, std::vector<bool>{true});
}

TEST_F(FileTest, NameThatIsBoundLeavesEverythingAsItIs)
{
    TempFile file(Daily(50));
    ASSERT_EQ(Open(*parser.get(), file), S_OK);
    parser->put_HeaderOffset(3);
    parser->put_HasHeader(VARIANT_TRUE);
    parser->put_InvertedDirection(VARIANT_TRUE);
    parser->put_StartDateTime(Variant::FromDate(kFirstDay + 5));
    const DATE start = Start(*parser.get());
    EXPECT_EQ(Open(*parser.get(), file), S_OK);
    ULONG nOffset = 0;
    VARIANT_BOOL bHeader = VARIANT_FALSE;
    parser->get_HeaderOffset(&nOffset);
    parser->get_HasHeader(&bHeader);
    EXPECT_EQ(nOffset, 3u);
    EXPECT_EQ(bHeader, VARIANT_TRUE);
    EXPECT_TRUE(Inverted(*parser.get()));
    EXPECT_EQ(Start(*parser.get()), start);
}

TEST_F(FileTest, AnotherFileStartsOver)
{
    TempFile first(Daily(50, true)), second(Daily(10));
    ASSERT_EQ(Open(*parser.get(), first), S_OK);
    ASSERT_TRUE(Inverted(*parser.get()));
    parser->put_HeaderOffset(3);
    ASSERT_EQ(Open(*parser.get(), second), S_OK);
    EXPECT_FALSE(Inverted(*parser.get()));
    EXPECT_EQ(End(*parser.get()), kFirstDay + 9);
    ULONG nOffset = 9;
    parser->get_HeaderOffset(&nOffset);
    EXPECT_EQ(nOffset, 0u);
}

// The run takes no further step, and its sink hears nothing more. It can still be cancelled.
TEST_F(FileTest, AnotherFileStopsTheRunOnTheOldOne)
{
    constexpr ULONG_PTR kTransaction = 77;
    TempFile first(Daily(5000)), second(Daily(3000));
    ASSERT_EQ(Open(*parser.get(), first), S_OK);
    const auto references = [&] {
        parser->AddRef();
        return parser->Release();
    };
    const ULONG nBefore = references();
    std::atomic<bool> bSwitched = false;
    sink->onPutRecords = [&](std::size_t) {
        EXPECT_EQ(Open(*parser.get(), second), S_OK);
        bSwitched = true;
        return S_OK;
    };
    ASSERT_EQ(parser->StartConversion(sink.get(), kTransaction), S_OK);
    const auto tEnd = std::chrono::steady_clock::now() + kPatience;
    // The old file's worker holds the parser until it stops.
    while (!(bSwitched && references() == nBefore) && std::chrono::steady_clock::now() < tEnd)
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    EXPECT_EQ(sink->batches.size(), 1u);
    EXPECT_EQ(sink->EndCount(), 0u);
    EXPECT_TRUE(AsyncTransactionPool::CancelTransaction(kTransaction));
    EXPECT_EQ(sink->ends, std::vector<bool>{false});
    EXPECT_FALSE(AsyncTransactionPool::CancelTransaction(kTransaction));
}

TEST_F(FileTest, NameThatCannotBeOpenedLetsTheOldFileGo)
{
    TempFile file(Daily(50));
    for (const string_t& sName : {string_t(OLESTR("/no/such/file")), string_t()}) {
        ASSERT_EQ(Open(*parser.get(), file), S_OK);
        EXPECT_EQ(parser->put_FileName(Bstr(sName).get()), S_FALSE);
        Bstr sBound;
        EXPECT_EQ(parser->get_FileName(sBound.put()), E_FAIL);
        ULONGLONG nCount = 0;
        EXPECT_EQ(parser->GetCount(&nCount, nullptr), E_FAIL);
    }
    EXPECT_EQ(parser->put_FileName(nullptr), S_FALSE);
}

TEST_F(FileTest, FaultWhileAFileIsOpenedStartsAnotherTry)
{
    TempFile file(Daily(50));
    com_ptr<FakeRecordParser> records;
    CreateObject(records);
    ASSERT_EQ(parser->put_RecordParser(records.get()), S_OK);
    records->onParse = [] { throw std::invalid_argument("read"); };
    // The file was already bound when the parser failed, so the next try only finds it bound.
    EXPECT_EQ(Open(*parser.get(), file), S_OK);
    EXPECT_EQ(records->parsed.size(), 1u);
    EXPECT_EQ(records->nResets, 1);
}

TEST_F(FileTest, OpeningIsGivenUpAfterFiveFaults)
{
    TempFile file(Daily(50));
    com_ptr<MemoryFile> old;
    CreateObject(old);
    int nTries = 0;
    old->onGetFileName = [&] {
        ++nTries;
        throw std::invalid_argument("gone");
    };
    DataParserTestAccess::PutFile(*parser.get(), old.get());
    EXPECT_EQ(Open(*parser.get(), file), E_FAIL);
    EXPECT_EQ(nTries, 5);
}

TEST_F(FileTest, EmptyFileIsOpenedWithoutDates)
{
    TempFile file("");
    EXPECT_EQ(Open(*parser.get(), file), S_OK);
    EXPECT_EQ(Start(*parser.get()), 0);
    EXPECT_EQ(End(*parser.get()), 0);
    Variant v;
    EXPECT_EQ(parser->GetMinDateTime(v.put()), E_FAIL);
    Bstr sRecord;
    EXPECT_EQ(parser->get_CurrentRecord(sRecord.put()), E_FAIL);
}

// A record parser that was reset only finds its layout in the record that it is given. A file of
// one record has no other that it would parse meanwhile.
TEST_F(FileTest, FirstDateRightAfterAResetIsZero)
{
    const std::string sHeader = "Date,Open,High,Low,Close,Volume\n";
    for (const std::string& sText : {sHeader + Daily(1), Daily(1)}) {
        SCOPED_TRACE(sText.substr(0, 120));
        TempFile file(sText);
        ASSERT_EQ(Open(*parser.get(), file), S_OK);
        com_ptr<IDispatch> pObject;
        ASSERT_EQ(parser->get_RecordParser(pObject.put()), S_OK);
        ASSERT_EQ(pObject.as<IRecordParser>()->Reset(), S_OK);
        for (const DATE expected : {0.0, kFirstDay}) {
            Variant date;
            EXPECT_EQ(parser->GetMinDateTime(date.put()), S_OK);
            EXPECT_EQ(date.vt, VT_DATE);
            EXPECT_EQ(date.date, expected);
        }
    }
}

TEST_F(FileTest, CountEventsComeUntilTheFileIsComplete)
{
    TempFile file(Daily(5000));
    com_ptr<CountWaiter> waiter;
    CreateObject(waiter);
    ASSERT_EQ(parser->AddFileEventHandler(waiter.get()), S_OK);
    ASSERT_EQ(Open(*parser.get(), file), S_OK);
    ASSERT_TRUE(waiter->complete.Wait(kPatience));
    EXPECT_EQ(waiter->nCount, 5000u);
    // A name that is bound asks for the events again.
    waiter->complete.Reset();
    ASSERT_EQ(Open(*parser.get(), file), S_OK);
    ASSERT_TRUE(waiter->complete.Wait(kPatience));
    EXPECT_EQ(waiter->nCompletes, 2);
}

TEST_F(FileTest, ParserMayGoWhileEventsAreOnTheirWay)
{
    for (int i = 0; i < 10; ++i) {
        TempFile file(Daily(2000));
        auto passing = NewParser();
        com_ptr<CountWaiter> waiter;
        CreateObject(waiter);
        passing->AddFileEventHandler(waiter.get());
        ASSERT_EQ(Open(*passing.get(), file), S_OK);
        passing.reset();
        EXPECT_LE(waiter->nCompletes, 1);
    }
}

TEST_F(FileTest, RecordsAreParsedByPosition)
{
    TempFile file(Daily(30, true));
    ASSERT_EQ(Open(*parser.get(), file), S_OK);
    Variant block;
    ASSERT_EQ(parser->ParseRecords(block.put(), 28, 2), S_OK);
    LONG indices[] = {29, 0};
    Variant cell;
    ASSERT_EQ(SafeArrayGetElement(block.parray, indices, cell.put()), S_OK);
    EXPECT_EQ(cell.vt, VT_DATE);
    EXPECT_EQ(cell.date, kFirstDay + 29);
    EXPECT_EQ(parser->ParseRecords(block.put(), 29, 2), E_FAIL);
}

TEST_F(FileTest, GrownFileIsSeenAfterInvalidating)
{
    TempFile file(Daily(30));
    ASSERT_EQ(Open(*parser.get(), file), S_OK);
    file.Write(Daily(45));
    EXPECT_EQ(parser->InvalidateFileInfo(VARIANT_TRUE), S_OK);
    EXPECT_EQ(End(*parser.get()), kFirstDay + 44);
}

// ---- code pages

// Chinese headlines in code page 936, enough for the system to recognise the page.
std::string ChineseLines()
{
    static const string_view_t kTexts[] = {
        OLESTR("日期,开盘价,最高价,最低价,收盘价,成交量"),
        OLESTR("数据周期无效,未选择周期,操作成功完成"),
        OLESTR("上海证券交易所今日成交量与上涨笔数"),
    };
    std::string bytes;
    for (int i = 0; i < 12; ++i)
        for (const string_view_t text : kTexts)
            bytes += EncodeText(936, text) + "\r\n";
    return bytes;
}

ULONG CodePageOf(CDataParser& parser)
{
    ULONG n = 0;
    parser.get_Locale(&n);
    return n;
}

// The page that is set stays if it is a candidate or if there is none. Otherwise the best
// candidate replaces it.
ULONG PageAfterDetection(ULONG nSet)
{
    DetectedCodePage best{nSet, -1};
    for (const auto& candidate : DetectCodePages(ChineseLines(), 15)) {
        if (candidate.nCodePage == nSet)
            return nSet;
        if (candidate.nConfidence >= best.nConfidence)
            best = candidate;
    }
    return best.nCodePage;
}

TEST_F(FileTest, CodePageIsDetectedOnlyWhereThatIsAsked)
{
    const ThreadApartment apartment; // where detection is a service of the system
    for (const ULONG nSet : {1252u, 20127u}) {
        SCOPED_TRACE(nSet);
        TempFile plain(ChineseLines());
        parser->put_AutoDetectCodePage(VARIANT_FALSE);
        parser->put_Locale(nSet);
        ASSERT_EQ(Open(*parser.get(), plain), S_OK);
        EXPECT_EQ(CodePageOf(*parser.get()), nSet);

        TempFile again(ChineseLines());
        parser->put_AutoDetectCodePage(VARIANT_TRUE);
        ASSERT_EQ(Open(*parser.get(), again), S_OK);
        EXPECT_EQ(CodePageOf(*parser.get()), PageAfterDetection(nSet));
    }
    // 54936 contains 936.
    if (!DetectCodePages(ChineseLines(), 15).empty()) {
        EXPECT_THAT(PageAfterDetection(20127), testing::AnyOf(936u, 54936u));
    }
}

TEST_F(FileTest, CodePageThatIsACandidateStays)
{
    const ThreadApartment apartment;
    parser->put_AutoDetectCodePage(VARIANT_TRUE);
    for (const auto& candidate : DetectCodePages(ChineseLines(), 15)) {
        SCOPED_TRACE(candidate.nCodePage);
        TempFile file(ChineseLines());
        parser->put_Locale(candidate.nCodePage);
        ASSERT_EQ(Open(*parser.get(), file), S_OK);
        EXPECT_EQ(CodePageOf(*parser.get()), candidate.nCodePage);
    }
}

TEST_F(FileTest, CodePageOfAnEmptyFileStays)
{
    TempFile file("");
    parser->put_AutoDetectCodePage(VARIANT_TRUE);
    parser->put_Locale(936);
    ASSERT_EQ(Open(*parser.get(), file), S_OK);
    EXPECT_EQ(CodePageOf(*parser.get()), 936u);
}

} // namespace
