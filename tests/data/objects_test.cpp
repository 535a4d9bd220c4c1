// A data parser with its record parser, its clones and its listeners.

#include "tests/data/CloneOf.h"
#include "tests/data/DataParserFixture.h"

using namespace Hesperon::specifics;
using namespace IQRL_TabulexConverter;

namespace {

class CountListener : public ComObject<CountListener, Dual<IFileHandlerEvents>>
{
public:
    std::vector<std::pair<ULONGLONG, VARIANT_BOOL>> heard;
    std::function<void()> onHeard;

    HRESULT STDMETHODCALLTYPE RecordCountChange(ULONGLONG nCount, VARIANT_BOOL bComplete) override
    {
        heard.emplace_back(nCount, bComplete);
        if (onHeard)
            onHeard();
        return E_FAIL;
    }
    HRESULT STDMETHODCALLTYPE PutData(VARIANT, ULONGLONG, ULONGLONG) override { return S_OK; }
    HRESULT STDMETHODCALLTYPE ProcessRecord(ULONGLONG, BSTR, VARIANT_BOOL) override { return S_OK; }
};

class ObjectsTest : public DataParserFixture
{
protected:
    com_ptr<IRecordParser> RecordParserOf(CDataParser& owner)
    {
        com_ptr<IDispatch> pObject;
        owner.get_RecordParser(pObject.put());
        return pObject.as<IRecordParser>();
    }
};

// ---- record parser

TEST_F(ObjectsTest, NewDataParserIsLinkedToARecordParserOfItsOwn)
{
    com_ptr<CDataParser> fresh;
    ASSERT_EQ(CreateObject(fresh), S_OK);
    const auto pParser = RecordParserOf(*fresh.get());
    ASSERT_TRUE(pParser);
    com_ptr<IDispatch> pLinked;
    EXPECT_EQ(pParser->get_DataParser(pLinked.put()), S_OK);
    EXPECT_EQ(pLinked.get(), static_cast<IDataParser*>(fresh.get()));
}

TEST_F(ObjectsTest, RecordParserThatLivesOnLosesItsLink)
{
    EXPECT_EQ(records->pDataParser, static_cast<IDataParser*>(parser.get()));
    com_ptr<FakeRecordParser> second;
    CreateObject(second);
    ASSERT_EQ(parser->put_RecordParser(second.get()), S_OK);
    EXPECT_EQ(records->pDataParser, nullptr);
    parser.reset();
    EXPECT_EQ(second->pDataParser, nullptr);
}

TEST_F(ObjectsTest, RecordParserLinkedElsewhereKeepsItsLink)
{
    com_ptr<CDataParser> other;
    CreateObject(other);
    ASSERT_EQ(other->put_RecordParser(records.get()), S_OK);
    parser.reset();
    EXPECT_EQ(records->pDataParser, static_cast<IDataParser*>(other.get()));
}

TEST_F(ObjectsTest, PuttingARecordParserReadsTheDatesAgain)
{
    file->lines = Days(5, 2);
    EXPECT_EQ(parser->put_RecordParser(records.get()), S_OK);
    EXPECT_TRUE(Inverted());
    EXPECT_EQ(records->pDataParser, static_cast<IDataParser*>(parser.get()));
}

TEST_F(ObjectsTest, RecordParserThatCannotBeTakenIsReported)
{
    struct
    {
        const char* szWhat;
        std::function<HRESULT()> put;
        HRESULT hr;
        const char* szReport;
    } const rows[] = {
        {"null", [&] { return parser->put_RecordParser(nullptr); }, E_POINTER, "pParser"},
        {"link refused",
         [&] {
             records->hrPutDataParser = E_FAIL;
             return parser->put_RecordParser(records.get());
         },
         E_FAIL, "(((HRESULT)(hr)) >= 0)"},
        {"another kind of object", [&] { return parser->put_RecordParser(sink.get()); },
         E_NOINTERFACE, "(((HRESULT)(hr)) >= 0)"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.szWhat);
        ReportLog reports;
        EXPECT_EQ(row.put(), row.hr);
        EXPECT_EQ(reports.Texts(), std::vector<std::string>{row.szReport});
    }
    com_ptr<IDispatch> pObject;
    ULONG n = 0;
    EXPECT_EQ(parser->get_RecordParser(pObject.put()), E_NOTIMPL);
    EXPECT_EQ(parser->get_FieldCount(&n), E_FAIL);
}

TEST_F(ObjectsTest, TypeNamesAreFoundByPosition)
{
    EXPECT_EQ(Access::TypeOf(*parser.get(), Bstr(OLESTR("Symbol")).get()), 0);
    EXPECT_EQ(Access::TypeOf(*parser.get(), Bstr(OLESTR("Up Volume")).get()), 9);
    EXPECT_EQ(Access::TypeOf(*parser.get(), Bstr(OLESTR("Open Interest")).get()), 17);
    EXPECT_EQ(Access::TypeOf(*parser.get(), Bstr(OLESTR("symbol")).get()), -1);
    EXPECT_EQ(Access::TypeOf(*parser.get(), Bstr(TypeName(kNoType)).get()), -1);
    EXPECT_EQ(Access::TypeOf(*parser.get(), Bstr(OLESTR("")).get()), -1);
    ReportLog reports;
    EXPECT_EQ(Access::TypeOf(*parser.get(), nullptr), -1);
    EXPECT_EQ(reports.Texts(), std::vector<std::string>{"bsName"});
}

// ---- blocks of records

TEST_F(ObjectsTest, BlockIsRecordByField)
{
    Open({"1,10", "2,?", "?,30", "4"});
    Variant block;
    ASSERT_EQ(parser->ParseRecords(block.put(), 1, 3), S_OK);
    ASSERT_EQ(block.vt, VT_ARRAY | VT_VARIANT);
    LONG nLow = 0, nHigh = 0;
    SafeArrayGetLBound(block.parray, 1, &nLow);
    SafeArrayGetUBound(block.parray, 1, &nHigh);
    EXPECT_EQ(nLow, 1);
    EXPECT_EQ(nHigh, 3);
    SafeArrayGetUBound(block.parray, 2, &nHigh);
    EXPECT_EQ(nHigh, 1);
    const std::vector<std::vector<std::string>> expected = {{"2", "?"}, {"?", "30"}, {"4", ""}};
    for (LONG i = 0; i < 3; ++i)
        for (LONG k = 0; k < 2; ++k) {
            LONG indices[] = {i + 1, k};
            Variant cell;
            ASSERT_EQ(SafeArrayGetElement(block.parray, indices, cell.put()), S_OK);
            EXPECT_EQ(RecordingSink::CellText(cell), expected[i][k]) << i << ' ' << k;
        }
}

TEST_F(ObjectsTest, BlockFollowsTheDirection)
{
    Open(Days(3, 1));
    ASSERT_TRUE(Inverted());
    Variant block;
    ASSERT_EQ(parser->ParseRecords(block.put(), 0, 1), S_OK);
    LONG indices[] = {0, 0};
    Variant cell;
    SafeArrayGetElement(block.parray, indices, cell.put());
    EXPECT_EQ(cell.date, 1);
}

TEST_F(ObjectsTest, BlockBeyondTheFileFails)
{
    Open(Days(1, 3));
    Variant block;
    EXPECT_EQ(parser->ParseRecords(block.put(), 2, 2), E_FAIL);
    EXPECT_EQ(block.vt, VT_EMPTY);
    records->hrFieldCount = E_UNEXPECTED;
    EXPECT_EQ(parser->ParseRecords(block.put(), 0, 1), E_UNEXPECTED);
    records->hrFieldCount = S_OK;
    EXPECT_EQ(parser->ParseRecords(block.put(), 0, 0), S_OK);
}

// ---- clones

TEST_F(ObjectsTest, CloneHasTheSettingsAndTheFileAndARecordParserOfItsOwn)
{
    Open(Days(9, 1));
    parser->put_SymbolName(Bstr(OLESTR("AB")).get());
    parser->put_Position(4);
    parser->put_HeaderOffset(2);
    parser->put_HasHeader(VARIANT_TRUE);
    parser->put_DisableErrorNotify(VARIANT_TRUE);
    parser->put_AutoDetectCodePage(VARIANT_TRUE);
    Access::PutDates(*parser.get(), 3, 5);
    const ULONG nFileRefs = RefsOf(static_cast<IFileHandler*>(file.get()));
    const auto clone = CloneOf(*parser.get());

    Bstr sSymbol;
    ULONGLONG nPosition = 0;
    ULONG nOffset = 0, nLocale = 0;
    VARIANT_BOOL bHeader = 0, bInverted = 0, bDisabled = 0, bDetect = 0;
    Variant start, end;
    clone->get_SymbolName(sSymbol.put());
    clone->get_Position(&nPosition);
    clone->get_HeaderOffset(&nOffset);
    clone->get_HasHeader(&bHeader);
    clone->get_InvertedDirection(&bInverted);
    clone->get_DisableErrorNotify(&bDisabled);
    clone->get_AutoDetectCodePage(&bDetect);
    clone->get_Locale(&nLocale);
    clone->get_StartDateTime(start.put());
    clone->get_EndDateTime(end.put());
    EXPECT_EQ(sSymbol.view(), OLESTR("AB"));
    EXPECT_EQ(nPosition, 4u);
    EXPECT_EQ(nOffset, 2u);
    EXPECT_EQ(bHeader, VARIANT_TRUE);
    EXPECT_EQ(bInverted, VARIANT_TRUE);
    EXPECT_EQ(nLocale, 1252u);
    EXPECT_EQ(start.date, 3);
    EXPECT_EQ(end.date, 5);
    EXPECT_EQ(bDisabled, VARIANT_FALSE);
    EXPECT_EQ(bDetect, VARIANT_FALSE);
    EXPECT_EQ(RefsOf(static_cast<IFileHandler*>(file.get())), nFileRefs + 1);
    const auto pParser = RecordParserOf(*clone.get());
    EXPECT_NE(pParser.get(), static_cast<IRecordParser*>(records.get()));
    Bstr sRecord;
    EXPECT_EQ(clone->get_CurrentRecord(sRecord.put()), S_OK);
    EXPECT_EQ(Utf8(sRecord.view()), "5,5.5");
}

TEST_F(ObjectsTest, RecordParserOfACloneStaysLinkedToTheSource)
{
    auto clone = CloneOf(*parser.get());
    auto second = CloneOf(*clone.get());
    CDataParser* const pSource = parser.get();
    const auto pParser = RecordParserOf(*second.get());
    com_ptr<IDispatch> pLinked;
    // The link isn't counted, but stays valid when the source and the first clone are gone.
    clone.reset();
    parser.reset();
    ASSERT_EQ(pParser->get_DataParser(pLinked.put()), S_OK);
    EXPECT_EQ(pLinked.get(), static_cast<IDataParser*>(pSource));
    pLinked.reset();
    second.reset();
    EXPECT_EQ(pParser->get_DataParser(pLinked.put()), E_FAIL);
}

TEST_F(ObjectsTest, CloneOfAParserThatRanAPortionStopsThereToo)
{
    Open(Days(1, 9));
    ConvertPortion(2, 3);
    const auto clone = CloneOf(*parser.get());
    CreateObject(sink);
    ASSERT_EQ(clone->StartConversion(sink.get(), kTransaction), S_OK);
    file->RunConversion();
    EXPECT_EQ(sink->AllRows(), (std::vector<std::string>{"3|3.5", "4|4.5", "5|5.5"}));
}

TEST_F(ObjectsTest, CloneThatFailsGivesNothing)
{
    records->hrClone = E_UNEXPECTED;
    com_ptr<IDispatch> pObject;
    EXPECT_EQ(parser->Clone(pObject.put()), E_UNEXPECTED);
    EXPECT_FALSE(pObject);
}

TEST_F(ObjectsTest, CloneConvertsWhileTheSourceDoesOtherThings)
{
    Open(Days(1, 1500));
    const auto clone = CloneOf(*parser.get());
    ASSERT_EQ(clone->StartConversion(sink.get(), kTransaction), S_OK);
    parser->put_HeaderOffset(7);
    parser->put_StartDateTime(Variant::FromDate(100));
    EXPECT_EQ(file->RunConversion(), S_FALSE);
    EXPECT_EQ(sink->AllRows().size(), 1500u);
}

// ---- handlers of file events

TEST_F(ObjectsTest, CountEventsReachTheHandlersWithoutTheLock)
{
    com_ptr<CountListener> first, second;
    CreateObject(first);
    CreateObject(second);
    EXPECT_EQ(parser->AddFileEventHandler(first.get()), S_OK);
    EXPECT_EQ(parser->AddFileEventHandler(second.get()), S_OK);
    first->onHeard = [&] { parser->RemoveFileEventHandler(second.get()); };
    EXPECT_EQ(parser->RecordCountChange(64, VARIANT_FALSE), S_OK);
    EXPECT_EQ(parser->RecordCountChange(65, VARIANT_TRUE), S_OK);
    using Heard = std::vector<std::pair<ULONGLONG, VARIANT_BOOL>>;
    EXPECT_EQ(first->heard, (Heard{{64, VARIANT_FALSE}, {65, VARIANT_TRUE}}));
    EXPECT_EQ(second->heard, (Heard{{64, VARIANT_FALSE}}));
}

TEST_F(ObjectsTest, HandlerIsHeldUntilItIsRemoved)
{
    com_ptr<CountListener> listener;
    CreateObject(listener);
    ASSERT_EQ(parser->AddFileEventHandler(listener.get()), S_OK);
    EXPECT_EQ(RefsOf(listener.get()), 2u);
    EXPECT_EQ(parser->RemoveFileEventHandler(listener.get()), S_OK);
    EXPECT_EQ(RefsOf(listener.get()), 1u);
    EXPECT_EQ(parser->RemoveFileEventHandler(listener.get()), S_OK);
    EXPECT_EQ(parser->AddFileEventHandler(listener.get()), S_OK);
    EXPECT_EQ(RefsOf(listener.get()), 2u);
    parser.reset();
    EXPECT_EQ(RefsOf(listener.get()), 1u);
}

TEST_F(ObjectsTest, HandlerAddedTwiceOutlivesItsRemoval)
{
    com_ptr<CountListener> listener;
    CreateObject(listener);
    parser->AddFileEventHandler(listener.get());
    parser->AddFileEventHandler(listener.get());
    EXPECT_EQ(RefsOf(listener.get()), 3u);
    parser->RemoveFileEventHandler(listener.get());
    EXPECT_EQ(RefsOf(listener.get()), 2u);
    parser->RecordCountChange(1, VARIANT_TRUE);
    EXPECT_TRUE(listener->heard.empty());
    listener->Release(); // what nothing else gives back
}

TEST_F(ObjectsTest, ObjectThatCannotHandleEventsIsRefused)
{
    EXPECT_EQ(parser->AddFileEventHandler(sink.get()), E_NOINTERFACE);
    EXPECT_EQ(parser->RecordCountChange(1, VARIANT_TRUE), S_OK);
}

} // namespace
