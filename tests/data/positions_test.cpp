// Positions, lines, counts and directions.

#include "tests/data/DataParserFixture.h"

using namespace Hesperon::specifics;

namespace {

class PositionsTest : public DataParserFixture
{
protected:
    std::string Current()
    {
        Bstr sRecord;
        return parser->get_CurrentRecord(sRecord.put()) == S_OK ? Utf8(sRecord.view()) : "none";
    }
    std::string Last()
    {
        Bstr sRecord;
        return parser->get_LastRecord(sRecord.put()) == S_OK ? Utf8(sRecord.view()) : "none";
    }
};

TEST_F(PositionsTest, LineOfAPosition)
{
    struct
    {
        const char* szWhat;
        ULONG nOffset;
        bool bHeader, bInverted;
        std::vector<std::string> records; // from position 0
        std::string sLast;
    } const rows[] = {
        {"plain", 0, false, false, {"a", "b", "c", "d", "none"}, "d"},
        {"header", 0, true, false, {"b", "c", "d", "none"}, "d"},
        {"offset", 2, false, false, {"c", "d", "none"}, "d"},
        {"offset and header", 2, true, false, {"d", "none"}, "d"},
        {"inverted", 0, false, true, {"d", "c", "b", "a", "none"}, "a"},
        // In an inverted file the header has the last position.
        {"inverted with offset and header", 1, true, true, {"d", "c", "b", "a", "none"}, "c"},
    };
    file->lines = {"a", "b", "c", "d"};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.szWhat);
        parser->put_HeaderOffset(row.nOffset);
        parser->put_HasHeader(row.bHeader ? VARIANT_TRUE : VARIANT_FALSE);
        parser->put_InvertedDirection(VARIANT_FALSE);
        if (row.bInverted)
            parser->put_InvertedDirection(VARIANT_TRUE);
        std::vector<std::string> records;
        for (ULONGLONG n = 0; n < row.records.size(); ++n) {
            const HRESULT hr = parser->put_Position(n);
            EXPECT_EQ(hr, row.records[n] == "none" ? E_FAIL : S_OK);
            records.push_back(hr == S_OK ? Current() : "none");
        }
        EXPECT_EQ(records, row.records);
        EXPECT_EQ(Last(), row.sLast);
    }
}

TEST_F(PositionsTest, PositionThatIsNotThereLeavesTheOldOne)
{
    file->lines = {"a", "b"};
    ASSERT_EQ(parser->put_Position(1), S_OK);
    EXPECT_EQ(parser->put_Position(2), E_FAIL);
    file->calls.clear();
    ULONGLONG nPosition = 0;
    EXPECT_EQ(parser->get_Position(&nPosition), S_OK);
    EXPECT_EQ(nPosition, 1u);
    EXPECT_TRUE(file->calls.empty());
}

TEST_F(PositionsTest, CountIsWithoutTheHeaderAndWrapsBelowIt)
{
    struct
    {
        std::size_t nLines;
        ULONG nOffset;
        bool bHeader;
        ULONGLONG nCount;
    } const rows[] = {
        {3, 0, false, 3},         {3, 0, true, 2},         {3, 2, true, 0},
        {3, 5, false, ~0ull - 1}, {3, 5, true, ~0ull - 2},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(testing::Message() << row.nOffset << row.bHeader);
        file->lines.assign(row.nLines, "x");
        parser->put_HeaderOffset(row.nOffset);
        parser->put_HasHeader(row.bHeader ? VARIANT_TRUE : VARIANT_FALSE);
        for (const bool bComplete : {false, true}) {
            file->bComplete = bComplete;
            ULONGLONG nCount = 0;
            VARIANT_BOOL bKnown = 7;
            EXPECT_EQ(parser->GetCount(&nCount, &bKnown), S_OK);
            EXPECT_EQ(nCount, row.nCount);
            EXPECT_EQ(bKnown, bComplete ? VARIANT_TRUE : VARIANT_FALSE);
        }
    }
    EXPECT_EQ(parser->GetCount(nullptr, nullptr), S_OK);
}

TEST_F(PositionsTest, SecondRequestForTheInvertedDirectionSwitchesBack)
{
    file->lines = {"a"};
    for (const bool bExpected : {true, false, true}) {
        EXPECT_EQ(parser->put_InvertedDirection(VARIANT_TRUE), S_OK);
        EXPECT_EQ(Inverted(), bExpected);
    }
    EXPECT_EQ(parser->put_InvertedDirection(VARIANT_FALSE), S_OK);
    EXPECT_FALSE(Inverted());
}

TEST_F(PositionsTest, InvertedDirectionWalksToTheEndOfTheFile)
{
    file->lines = {"a", "b"};
    parser->put_InvertedDirection(VARIANT_TRUE);
    EXPECT_EQ(file->calls, (std::vector<std::string>{"SeekRecord end", "GetCount"}));
}

TEST_F(PositionsTest, InvertedDirectionNeedsTheWholeCount)
{
    const char* const kReport = "(((HRESULT)(hr)) >= 0) && ((VARIANT_BOOL)0) != bComplete";
    ReportLog reports;
    file->bComplete = false;
    EXPECT_EQ(parser->put_InvertedDirection(VARIANT_TRUE), S_OK);
    EXPECT_FALSE(Inverted());
    file->bComplete = true;
    file->hrGetCount = E_UNEXPECTED;
    EXPECT_EQ(parser->put_InvertedDirection(VARIANT_TRUE), E_UNEXPECTED);
    EXPECT_FALSE(Inverted());
    EXPECT_EQ(reports.Texts(), (std::vector<std::string>{kReport, kReport}));
}

TEST_F(PositionsTest, WhatIsAskedOfTheFileIsPassedOn)
{
    file->lines.assign(8, "x");
    FLOAT fRelative = 0;
    EXPECT_EQ(parser->GetRelativePos(2, &fRelative), S_OK);
    EXPECT_EQ(fRelative, 0.25f);
    ULONGLONG nCount = 0;
    EXPECT_EQ(parser->GetApproxCount(&nCount), S_OK);
    EXPECT_EQ(nCount, 9u);
    Bstr sName;
    EXPECT_EQ(parser->get_FileName(sName.put()), S_OK);
    EXPECT_EQ(Utf8(sName.view()), "memory");
}

TEST_F(PositionsTest, InvalidatingReadsTheDatesAgain)
{
    Open(Days(1, 3));
    file->lines = Days(4, 1);
    EXPECT_EQ(parser->InvalidateFileInfo(VARIANT_TRUE), S_OK);
    EXPECT_EQ(file->calls.front(), "Invalidate erase");
    EXPECT_TRUE(Inverted());
    file->hrInvalidate = E_FAIL;
    file->lines = Days(1, 4);
    EXPECT_EQ(parser->InvalidateFileInfo(VARIANT_FALSE), E_FAIL);
    EXPECT_TRUE(Inverted());
}

// ---- without a file, without a place for the answer, with a file that fails

TEST_F(PositionsTest, ResultsWithoutAFile)
{
    Access::PutFile(*parser.get(), nullptr);
    ULONGLONG n = 0;
    VARIANT_BOOL b = 0;
    FLOAT f = 0;
    Bstr s;
    Variant v;
    struct
    {
        const char* szWhat;
        HRESULT hr, expected;
    } const rows[] = {
        {"CurrentRecord", parser->get_CurrentRecord(s.put()), E_FAIL},
        {"LastRecord", parser->get_LastRecord(s.put()), E_UNEXPECTED},
        {"LastRecord, no place", parser->get_LastRecord(nullptr), E_UNEXPECTED},
        {"FileName", parser->get_FileName(s.put()), E_FAIL},
        {"Position", parser->put_Position(0), E_FAIL},
        {"get Position", parser->get_Position(&n), S_OK},
        {"GetCount", parser->GetCount(&n, &b), E_FAIL},
        {"GetCount, no place", parser->GetCount(nullptr, nullptr), E_FAIL},
        {"GetApproxCount", parser->GetApproxCount(&n), OLE_E_BLANK},
        {"GetRelativePos", parser->GetRelativePos(0, &f), E_UNEXPECTED},
        {"RefreshDateInfo", parser->RefreshDateInfo(VARIANT_FALSE), E_UNEXPECTED},
        {"InvalidateFileInfo", parser->InvalidateFileInfo(VARIANT_FALSE), E_UNEXPECTED},
        {"GetMinDateTime", parser->GetMinDateTime(v.put()), E_NOINTERFACE},
        {"GetMaxDateTime", parser->GetMaxDateTime(v.put()), E_NOINTERFACE},
        {"InvertedDirection on", parser->put_InvertedDirection(VARIANT_TRUE), E_UNEXPECTED},
        {"InvertedDirection off", parser->put_InvertedDirection(VARIANT_FALSE), S_OK},
        {"ParseRecords", parser->ParseRecords(v.put(), 0, 1), E_FAIL},
        {"Locale", parser->put_Locale(936), S_OK},
        {"StartEnumSymbols", parser->StartEnumSymbols(sink.get(), 1), E_UNEXPECTED},
    };
    for (const auto& row : rows)
        EXPECT_EQ(row.hr, row.expected) << row.szWhat;
}

TEST_F(PositionsTest, AnswersNeedAPlace)
{
    const std::pair<const char*, HRESULT> rows[] = {
        {"CurrentRecord", parser->get_CurrentRecord(nullptr)},
        {"LastRecord", parser->get_LastRecord(nullptr)},
        {"Position", parser->get_Position(nullptr)},
        {"RecordParser", parser->get_RecordParser(nullptr)},
        {"HasHeader", parser->get_HasHeader(nullptr)},
        {"HeaderOffset", parser->get_HeaderOffset(nullptr)},
        {"InvertedDirection", parser->get_InvertedDirection(nullptr)},
        {"StartDateTime", parser->get_StartDateTime(nullptr)},
        {"EndDateTime", parser->get_EndDateTime(nullptr)},
        {"Locale", parser->get_Locale(nullptr)},
        {"AutoDetectCodePage", parser->get_AutoDetectCodePage(nullptr)},
        {"DisableErrorNotify", parser->get_DisableErrorNotify(nullptr)},
        {"SymbolName", parser->get_SymbolName(nullptr)},
        {"ParseRecords", parser->ParseRecords(nullptr, 0, 1)},
        {"Clone", parser->Clone(nullptr)},
        {"AddFileEventHandler", parser->AddFileEventHandler(nullptr)},
        {"RemoveFileEventHandler", parser->RemoveFileEventHandler(nullptr)},
    };
    for (const auto& [szWhat, hr] : rows)
        EXPECT_EQ(hr, E_POINTER) << szWhat;
}

TEST_F(PositionsTest, WhatTheFileThrowsBecomesAResult)
{
    file->lines = {"1,1"};
    const std::pair<std::function<void()>, HRESULT> rows[] = {
        {[] { throw std::bad_alloc(); }, E_OUTOFMEMORY},
        {[] { throw std::invalid_argument("read"); }, E_INVALIDARG},
        {[] { throw std::runtime_error("other"); }, E_FAIL},
        {[] { throw 5; }, E_FAIL},
    };
    for (const auto& [fault, expected] : rows) {
        file->onGetRecord = [&](ULONGLONG) { fault(); };
        Bstr s;
        Variant v;
        EXPECT_EQ(parser->get_CurrentRecord(s.put()), expected);
        EXPECT_EQ(parser->GetMinDateTime(v.put()), expected);
        EXPECT_EQ(parser->ParseRecords(v.put(), 0, 1), expected);
        EXPECT_EQ(v.vt, VT_EMPTY);
        EXPECT_EQ(parser->RefreshDateInfo(VARIANT_FALSE), expected);
        EXPECT_EQ(parser->put_StartDateTime(Variant::FromDate(3)), expected);
        EXPECT_EQ(parser->put_Locale(1252), S_OK);
    }
}

// ---- plain properties

TEST_F(PositionsTest, PlainPropertiesKeepWhatIsPut)
{
    VARIANT_BOOL b = 7;
    for (const VARIANT_BOOL bPut : {VARIANT_TRUE, VARIANT_FALSE, VARIANT_BOOL(1)}) {
        const VARIANT_BOOL bExpected = bPut ? VARIANT_TRUE : VARIANT_FALSE;
        parser->put_HasHeader(bPut);
        parser->get_HasHeader(&b);
        EXPECT_EQ(b, bExpected);
        parser->put_AutoDetectCodePage(bPut);
        parser->get_AutoDetectCodePage(&b);
        EXPECT_EQ(b, bExpected);
        parser->put_DisableErrorNotify(bPut);
        parser->get_DisableErrorNotify(&b);
        EXPECT_EQ(b, bExpected);
    }
    ULONG n = 0;
    parser->put_HeaderOffset(12);
    parser->get_HeaderOffset(&n);
    EXPECT_EQ(n, 12u);
    parser->get_Locale(&n);
    EXPECT_EQ(n, 1252u);
}

TEST_F(PositionsTest, NullSymbolNameChangesNothing)
{
    Bstr sName;
    parser->get_SymbolName(sName.put());
    EXPECT_EQ(sName.view(), OLESTR(""));
    parser->put_SymbolName(Bstr(OLESTR("AB")).get());
    parser->put_SymbolName(nullptr);
    parser->get_SymbolName(sName.put());
    EXPECT_EQ(sName.view(), OLESTR("AB"));
    parser->put_SymbolName(Bstr(OLESTR("")).get());
    parser->get_SymbolName(sName.put());
    EXPECT_EQ(sName.view(), OLESTR(""));
}

TEST_F(PositionsTest, ErrorInformationIsThatOfTheMainInterface)
{
    const auto info = com_ptr<CDataParser>(parser).as<ISupportErrorInfo>();
    EXPECT_EQ(info->InterfaceSupportsErrorInfo(iid_of<IQRL_TabulexConverter::IDataParser>), S_OK);
    EXPECT_EQ(info->InterfaceSupportsErrorInfo(iid_of<IUnknown>), S_FALSE);
}

} // namespace
