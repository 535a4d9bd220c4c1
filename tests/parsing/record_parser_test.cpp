// The life of a record parser: its states, its links, its copies.

#include <gtest/gtest.h>

#include "tests/parsing/Layout.h"
#include "tests/parsing/QuoteLines.h"
#include "tests/support/Objects.h"
#include "tests/support/ReportLog.h"
#include "tests/values/multipliers.h"

using namespace Hesperon::specifics;
using namespace IQRL_TabulexConverter;

namespace {

using Lines = std::vector<string_t>;

// ---- parsing ---------------------------------------------------------------------------

TEST(RecordParser, DoesNothingBeforeItsReset)
{
    ParsedFile file({OLESTR("20030106,1.5")});
    EXPECT_EQ(S_OK, file.Parse(OLESTR("20030106,1.5")));
    EXPECT_EQ("", file.Columns());
    EXPECT_TRUE(file.File().m_positions.empty());
}

TEST(RecordParser, FindsTheLayoutWithTheFirstRecordAndParsesTheNext)
{
    ParsedFile file({OLESTR("1.5;2.5"), OLESTR("3.5;4.5")});
    EXPECT_EQ(S_OK, file.Load());
    EXPECT_EQ("Open, High", file.Columns());
    EXPECT_EQ(S_OK, file.Parse(OLESTR("5.5;6.5")));
    EXPECT_EQ("5.5", file.Value(0));
    EXPECT_EQ("6.5", file.Value(1));
}

TEST(RecordParser, DoesNotParseTheRecordThatShowsTheLayout)
{
    ParsedFile file({OLESTR("1.5")});
    EXPECT_EQ(S_OK, file.Load());
    EXPECT_EQ("not \"\"", file.Value(0));
}

TEST(RecordParser, KeepsItsLayoutWhateverItParses)
{
    ParsedFile file({OLESTR("20030106,1.5")});
    EXPECT_EQ(S_OK, file.Load());
    file.File().m_positions.clear();
    for (string_view_t sRecord : {OLESTR("Date,Time"), OLESTR("a;b;c"), OLESTR(""), OLESTR("\x01")})
        EXPECT_EQ(S_OK, file.Parse(sRecord)) << Shown(sRecord);
    EXPECT_EQ(S_OK, file->Parse(nullptr));
    EXPECT_EQ("Date yyyymmdd, Open", file.Columns());
    EXPECT_TRUE(file.File().m_positions.empty());
}

TEST(RecordParser, LooksAtNoMoreThan511Characters)
{
    ParsedFile file({OLESTR("ES,20030106")});
    EXPECT_EQ(S_OK, file.Load());
    ASSERT_EQ("Symbol, Date yyyymmdd", file.Columns());
    EXPECT_EQ(S_OK, file.Parse(string_t(600, 'x') + OLESTR(",20030106")));
    EXPECT_EQ('"' + std::string(511, 'x') + '"', file.Value(0));
    EXPECT_EQ("not \"\"", file.Value(1));
}

TEST(RecordParser, NormalisesBeforeItSplits)
{
    ParsedFile file({OLESTR("\"a b\"  ,20030106,1")});
    EXPECT_EQ(S_OK, file.Load());
    EXPECT_EQ(S_OK, file.Parse(OLESTR("\"a  b\"  ,(20030107),'2'")));
    EXPECT_EQ("\"a b\"", file.Value(0));
    EXPECT_EQ("2003-01-07", file.Value(1));
    EXPECT_EQ("2", file.Value(2));
}

TEST(RecordParser, ReportsALayoutThatCanNotBeFound)
{
    ParsedFile file({OLESTR("20030106,\x01")});
    EXPECT_EQ(E_INVALIDARG, file.Load());
    EXPECT_EQ("", file.Columns());
    // The attempt was the only one.
    EXPECT_EQ(S_OK, file.Parse(OLESTR("20030106,1.5")));
    EXPECT_EQ("", file.Columns());
}

TEST(RecordParser, SurvivesASearchWhoseFirstSampleFindsAnotherLayout)
{
    // The record asked about has more columns than the file, which the first sample
    // after the reset shows.
    ParsedFile file({OLESTR("20030106"), OLESTR("20030107")});
    ASSERT_EQ(S_OK, file.Offer(AllResolutions()));
    ASSERT_EQ(S_OK, file->Reset());
    EXPECT_EQ(S_OK, file->FindResolution(Bstr(OLESTR("1.5,2.5,20030106")).get()));
    EXPECT_EQ(ResolutionNone, file.Resolution());
}

// ---- starting over ---------------------------------------------------------------------

TEST(RecordParser, ForgetsItsLayoutWithAReset)
{
    ParsedFile file({OLESTR("20030106;1.5")});
    EXPECT_EQ(S_OK, file.Load());
    EXPECT_EQ(S_OK, file->Reset());
    EXPECT_EQ("", file.Columns());
    file.File().m_lines = {OLESTR("09:30,20030106")};
    EXPECT_EQ(S_OK, file.Parse(file.File().m_lines[0]));
    EXPECT_EQ("Symbol, Date yyyymmdd", file.Columns());
}

TEST(RecordParser, LooksForHeaderLinesAgainAfterAReset)
{
    const Lines lines = {OLESTR("Foo,Bar"), OLESTR("Date,Open"), OLESTR("20030106,1.5")};
    ParsedFile file(lines);
    EXPECT_EQ(S_OK, file->put_LinesToSkip(0));
    EXPECT_EQ(0u, file.File().m_nHeaderOffset); // header lines are not looked for
    file.File().m_bHasHeader = false;
    EXPECT_EQ(S_OK, file.Load());
    EXPECT_EQ(1u, file.File().m_nHeaderOffset);
    EXPECT_EQ("Date yyyymmdd, Open", file.Columns());
}

TEST(RecreatingColumns, StartsTheFileOverAndKeepsTheDividers)
{
    ParsedFile file({OLESTR("20030106;1,5"), OLESTR("20030107;2,5")});
    EXPECT_EQ(S_OK, file.Load());
    MemoryFile& memory = file.File();
    memory.m_bInverted = memory.m_bHasHeader = true;
    memory.m_nHeaderOffset = 1;
    EXPECT_EQ(S_OK, file->RecreateFealds());
    EXPECT_FALSE(memory.m_bInverted);
    EXPECT_FALSE(memory.m_bHasHeader);
    EXPECT_EQ(0u, memory.m_nHeaderOffset);
    EXPECT_EQ("Date yyyymmdd, Open", file.Columns()); // the comma would have won
    EXPECT_EQ("f", memory.m_refreshes);
    EXPECT_EQ("2003-01-06", file.Value(0)); // parsed by the refresh
}

TEST(RecreatingColumns, KeepsWhetherHeaderLinesAreLookedFor)
{
    ParsedFile file({OLESTR("Foo,Bar"), OLESTR("Date,Open"), OLESTR("20030106,1.5")});
    EXPECT_EQ(S_OK, file->put_LinesToSkip(2));
    EXPECT_EQ(S_OK, file->RecreateFealds());
    EXPECT_EQ(0u, file.File().m_nHeaderOffset);
}

TEST(RecreatingColumns, LeavesNoneWithoutARecord)
{
    ParsedFile file({OLESTR("20030106,1.5")});
    EXPECT_EQ(S_OK, file.Load());
    file.File().m_badLines = {0};
    EXPECT_EQ(S_OK, file->RecreateFealds());
    EXPECT_EQ("", file.Columns());
    EXPECT_EQ("", file.File().m_refreshes);
}

// ---- lines to skip -----------------------------------------------------------------------

TEST(LinesToSkip, AreTheHeaderOffsetOfTheFile)
{
    ParsedFile file({OLESTR("made today"), OLESTR("by hand"), OLESTR("20030106,1.5")});
    EXPECT_EQ(S_OK, file->put_LinesToSkip(2));
    EXPECT_EQ(2u, file.File().m_nHeaderOffset);
    EXPECT_EQ("Date yyyymmdd, Open", file.Columns());
    ULONG nLines = 0;
    EXPECT_EQ(S_OK, file->get_LinesToSkip(&nLines));
    EXPECT_EQ(2u, nLines);
}

TEST(LinesToSkip, GiveASoftNoWhenNoColumnsAreLeft)
{
    ParsedFile file({OLESTR("20030106,1.5"), OLESTR("\x01")});
    EXPECT_EQ(S_FALSE, file->put_LinesToSkip(1));
}

TEST(LinesToSkip, KeepTheDateThatStands)
{
    ParsedFile file(Lines(3, OLESTR("01/02/2003,1.5")));
    EXPECT_EQ(S_OK, file.Load());
    // The date that a choice of the resolution finds isn't fixed by it.
    EXPECT_EQ(S_OK, file->SetFieldType(0, TypeVolume));
    EXPECT_EQ(S_OK, file->put_Resolution(ResolutionDays));
    EXPECT_EQ("Date *m/*d/*y, Open", file.Columns());
    EXPECT_EQ(S_OK, file->SetFieldTemplate(Bstr(OLESTR("*d/*m/*y")).get(), 0));
    EXPECT_EQ(S_OK, file->put_LinesToSkip(1));
    EXPECT_EQ("Date *d/*m/*y, Open", file.Columns());
}

TEST(LinesToSkip, BeyondTheEndOfTheFileFailAndLeaveTheColumns)
{
    ParsedFile file(Lines(3, OLESTR("01/02/2003,1.5")));
    ASSERT_EQ(S_OK, file.Load());
    for (ULONG nLines : {3u, 1000u}) {
        SCOPED_TRACE(nLines);
        EXPECT_EQ(E_FAIL, file->put_LinesToSkip(nLines));
        EXPECT_EQ("Date *m/*d/*y, Open", file.Columns());
        ULONG nKept = 0;
        EXPECT_EQ(S_OK, file->get_LinesToSkip(&nKept));
        EXPECT_EQ(nLines, nKept);
    }
    EXPECT_EQ(S_OK, file->put_LinesToSkip(2));
    EXPECT_EQ("Date *m/*d/*y, Open", file.Columns());
}

TEST(LinesToSkip, FixTheDatesAndTimesAsTheyStand)
{
    struct Row
    {
        bool bTypeFirst; // set by hand, which fixes the column with an empty template
        const char* szTemplate;
    };
    for (const Row& row : {Row{false, "*d/*m/*y"}, Row{true, "*d/*m/*y"}, Row{true, "*m/*d/*y"}}) {
        SCOPED_TRACE(testing::Message()
                     << row.szTemplate << (row.bTypeFirst ? ", type first" : ""));
        ParsedFile file(Lines(3, OLESTR("01/02/2003,09:30,10:30,1.5")));
        ASSERT_EQ(S_OK, file.Load());
        for (ULONG nColumn : {1u, 2u})
            if (row.bTypeFirst || nColumn == 2) {
                EXPECT_EQ(S_OK, file->SetFieldType(nColumn, TypeTime));
                EXPECT_EQ(S_OK, file->SetFieldTemplate(Bstr(OLESTR("*h:*m")).get(), nColumn));
            }
        if (row.bTypeFirst) {
            EXPECT_EQ(S_OK, file->SetFieldType(0, TypeDate));
        }
        EXPECT_EQ(S_OK, file->SetFieldTemplate(Bstr(Wide(row.szTemplate)).get(), 0));
        const std::string sColumns = file.Columns();
        EXPECT_TRUE(sColumns.starts_with("Date " + std::string(row.szTemplate))) << sColumns;
        EXPECT_EQ(S_OK, file->put_LinesToSkip(1));
        EXPECT_EQ(sColumns, file.Columns());
        EXPECT_EQ(S_OK, file->put_LinesToSkip(0));
        EXPECT_EQ(sColumns, file.Columns());
    }
}

TEST(LinesToSkip, NeedADataParser)
{
    com_ptr<CRecordParser> parser;
    ASSERT_EQ(S_OK, CreateObject(parser));
    ULONG nLines = 0;
    EXPECT_EQ(E_UNEXPECTED, parser->get_LinesToSkip(&nLines));
    EXPECT_EQ(E_UNEXPECTED, parser->put_LinesToSkip(1));
    EXPECT_EQ(E_UNEXPECTED, parser->RecreateFealds());
}

// ---- headers -------------------------------------------------------------------------------

TEST(RecordParser, DistinguishesHeadersFromData)
{
    struct Row
    {
        string_view_t sRecord;
        HRESULT hr;
    };
    const Row kRows[] = {
        {OLESTR("Date;Time;Close"), S_OK}, {OLESTR("AM;PM"), S_FALSE}, {OLESTR(""), S_OK},
        {OLESTR("ES;'1'"), S_FALSE},       {OLESTR("ES,1"), S_OK}, // the comma divides nothing here
    };
    ParsedFile file({OLESTR("20030106;1.5")});
    EXPECT_EQ(S_OK, file.Load());
    for (const Row& row : kRows) {
        SCOPED_TRACE(Shown(row.sRecord));
        EXPECT_EQ(row.hr, file->IsHeader(Bstr(row.sRecord).get()));
    }
    EXPECT_EQ(S_OK, file->IsHeader(nullptr));
}

// ---- links ---------------------------------------------------------------------------------

class Events final : public ComObject<Events, Dual<IFileHandlerEvents>>
{
public:
    HRESULT STDMETHODCALLTYPE RecordCountChange(ULONGLONG, VARIANT_BOOL) override { return S_OK; }
    HRESULT STDMETHODCALLTYPE PutData(VARIANT, ULONGLONG, ULONGLONG) override { return S_OK; }
    HRESULT STDMETHODCALLTYPE ProcessRecord(ULONGLONG, BSTR, VARIANT_BOOL) override { return S_OK; }
};

TEST(RecordParser, HoldsItsLinksUncounted)
{
    com_ptr<CRecordParser> parser;
    com_ptr<Events> events;
    ASSERT_EQ(S_OK, CreateObject(parser));
    ASSERT_EQ(S_OK, CreateObject(events));
    const com_ptr<MemoryFile> file = MemoryFile::Of({});
    EXPECT_EQ(S_OK, parser->put_DataParser(file.get()));
    EXPECT_EQ(S_OK, parser->put_EventHandler(events.get()));
    EXPECT_EQ(1u, RefsOf(file.get()));
    EXPECT_EQ(1u, RefsOf(events.get()));

    com_ptr<IDispatch> got;
    EXPECT_EQ(S_OK, parser->get_DataParser(got.put()));
    EXPECT_EQ(static_cast<IDispatch*>(file.get()), got.get());
    EXPECT_EQ(2u, RefsOf(file.get()));
    EXPECT_EQ(S_OK, parser->get_EventHandler(got.put()));
    EXPECT_EQ(static_cast<IDispatch*>(events.get()), got.get());

    EXPECT_EQ(E_NOINTERFACE, parser->put_EventHandler(file.get()));
    EXPECT_EQ(E_NOINTERFACE, parser->put_DataParser(events.get()));
    EXPECT_EQ(S_OK, parser->get_EventHandler(got.put()));
    EXPECT_EQ(S_OK, parser->put_EventHandler(nullptr));
    EXPECT_EQ(E_FAIL, parser->get_EventHandler(got.put()));
    EXPECT_FALSE(got);
    EXPECT_EQ(S_OK, parser->put_DataParser(nullptr));
}

// ---- copies --------------------------------------------------------------------------------

TEST(Clones, HaveTheLayoutAndTheSettings)
{
    ParsedFile file(MinuteLines(Evenly(5, 12), kBar));
    ASSERT_EQ(S_OK, file.Offer(AllResolutions()));
    EXPECT_EQ(S_OK, file.Load());
    EXPECT_EQ(S_OK, file.Parse(OLESTR("20030106,10:00,1.0,2.0,0.5,1.5")));
    EXPECT_EQ(S_OK, file->put_UseBarsEndTime(VARIANT_TRUE));
    EXPECT_EQ(S_OK, file->put_ResolutionSize(15));
    EXPECT_EQ(S_OK, file->SetFieldTemplate(Bstr(OLESTR("*h:*m")).get(), 1));
    const auto price = NewMultiplier();
    EXPECT_EQ(S_OK, file->put_PriceMultiplier(price.get()));
    EXPECT_EQ(S_OK, file.Parse(OLESTR("20030106,10:00,1.0,2.0,0.5,1.5")));

    const com_ptr<IRecordParser> clone = CloneOf(*file.Parser());
    ASSERT_TRUE(clone);
    EXPECT_EQ(file.Columns(), ShownColumns(*clone.get()));
    LONG nValue = 0;
    EXPECT_EQ(S_OK, clone->get_Resolution(&nValue));
    EXPECT_EQ(ResolutionMinutes, nValue);
    EXPECT_EQ(S_OK, clone->get_ResolutionSize(&nValue));
    EXPECT_EQ(15, nValue);
    VARIANT_BOOL bValue = VARIANT_FALSE;
    EXPECT_EQ(S_OK, clone->get_UseBarsEndTime(&bValue));
    EXPECT_EQ(VARIANT_TRUE, bValue);
    EXPECT_EQ(S_OK, clone->get_FieldDividers(&nValue));
    EXPECT_EQ(4 + 32, nValue);
    com_ptr<IDispatch> link;
    EXPECT_EQ(S_OK, clone->get_PriceMultiplier(link.put()));
    EXPECT_EQ(static_cast<IDispatch*>(price.get()), link.get());
    EXPECT_EQ(E_NOINTERFACE, clone->get_VolumeMultiplier(link.put()));
    EXPECT_EQ(S_OK, clone->get_DataParser(link.put()));
    EXPECT_EQ(static_cast<IDispatch*>(&file.File()), link.get());
    Variant stamp;
    EXPECT_EQ(S_OK, clone->get_CurrentDateTime(&stamp)); // moved to the end of its bar
    EXPECT_EQ("2003-01-06 10:15:00", ShownVariant(stamp));
}

TEST(Clones, ParseAtOnceAndOnTheirOwn)
{
    ParsedFile file({OLESTR("20030106;1,5")});
    EXPECT_EQ(S_OK, file.Load());
    EXPECT_EQ(S_OK, file.Parse(OLESTR("20030106;1,5")));
    const com_ptr<IRecordParser> clone = CloneOf(*file.Parser());
    ASSERT_TRUE(clone);
    EXPECT_EQ(S_OK, clone->Parse(Bstr(OLESTR("20030107;2,5")).get()));
    EXPECT_EQ(S_OK, clone->SetFieldType(1, TypeClose));
    Variant value;
    EXPECT_EQ(S_OK, clone->GetFieldValue(&value, 0));
    EXPECT_EQ("2003-01-07", ShownVariant(value));
    EXPECT_EQ("Date yyyymmdd, Close", ShownColumns(*clone.get()));
    EXPECT_EQ("2003-01-06", file.Value(0));
    EXPECT_EQ("Date yyyymmdd, Open", file.Columns());
}

TEST(Clones, InferWhatTheirHostOffered)
{
    ParsedFile file(DayLines(Evenly(1, 12), kBar));
    ASSERT_EQ(S_OK, file.Offer(AllResolutions()));
    const com_ptr<IRecordParser> clone = CloneOf(*file.Parser());
    ASSERT_TRUE(clone);
    EXPECT_EQ(S_OK, clone->Reset());
    EXPECT_EQ(S_OK, clone->Parse(Bstr(file.File().m_lines[0]).get()));
    LONG nResolution = 0;
    EXPECT_EQ(S_OK, clone->get_Resolution(&nResolution));
    EXPECT_EQ(ResolutionDays, nResolution);
}

TEST(Clones, HaveNeitherEventHandlerNorSmartResolution)
{
    ParsedFile file({OLESTR("20030106,1.5")});
    com_ptr<Events> events;
    ASSERT_EQ(S_OK, CreateObject(events));
    EXPECT_EQ(S_OK, file->put_EventHandler(events.get()));
    EXPECT_EQ(S_OK, file->put_SmartResolutionEnabled(VARIANT_TRUE));
    const com_ptr<IRecordParser> clone = CloneOf(*file.Parser());
    ASSERT_TRUE(clone);
    com_ptr<IDispatch> link;
    EXPECT_EQ(E_FAIL, clone->get_EventHandler(link.put()));
    VARIANT_BOOL bSmart = VARIANT_TRUE;
    EXPECT_EQ(S_OK, clone->get_SmartResolutionEnabled(&bSmart));
    EXPECT_EQ(VARIANT_FALSE, bSmart);
    EXPECT_EQ(E_POINTER, file->Clone(nullptr));
}

} // namespace
