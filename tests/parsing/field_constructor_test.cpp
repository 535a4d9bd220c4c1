#include <gtest/gtest.h>

#include "src/parsing/RecordText.h"
#include "src/parsing/detection/FieldConstructor.h"
#include "src/parsing/detection/FieldTypeRefinement.h"
#include "tests/parsing/Layout.h"

using namespace Hesperon::specifics;

namespace {

using Lines = std::vector<string_t>;

// Builds and refines the columns of a file in memory, as the detection of a layout begins.
class FieldConstructor : public testing::Test
{
protected:
    HRESULT Build(Lines lines, FirstColumn firstColumn = FirstColumn::MayBeSymbol)
    {
        m_file = MemoryFile::Of(std::move(lines));
        m_state.m_pDataParser = m_file.get();
        return Build(m_file->m_lines.at(0), firstColumn);
    }
    HRESULT Build(const string_t& sRecord, FirstColumn firstColumn = FirstColumn::MayBeSymbol,
                  HeaderSearch header = HeaderSearch::Anew)
    {
        FindDivider(sRecord);
        const HRESULT hr =
            CFieldConstructor(m_state, m_report).ProcessRecord(NormalisedRecord(sRecord), header);
        if (SUCCEEDED(hr))
            RefineFieldTypes(m_state, firstColumn, m_report);
        return hr;
    }
    void FindDivider(const string_t& sRecord)
    {
        CFieldConstructor(m_state, m_report).FindDivider(sRecord);
    }
    std::string Columns() const { return ShownColumns(m_state.m_fields); }
    std::string ColumnsOf(Lines lines, LONG nResolution = ResolutionNone)
    {
        m_state = {};
        m_state.m_nResolution = nResolution;
        EXPECT_EQ(S_OK, Build(std::move(lines)));
        return Columns();
    }

    com_ptr<MemoryFile> m_file;
    ParserState m_state;
    DetectionReport m_report;
};

using HeaderColumns = FieldConstructor;
using DataColumns = FieldConstructor;
using TestsAgainstTheFile = FieldConstructor;

Lines Repeated(const string_t& sLine, std::size_t nCount)
{
    return Lines(nCount, sLine);
}

// nCount equal lines, of which line nOther is another.
Lines RepeatedBut(const string_t& sLine, std::size_t nCount, std::size_t nOther,
                  const string_t& sOther)
{
    Lines lines(nCount, sLine);
    lines.at(nOther) = sOther;
    return lines;
}

// ---- files without a header ------------------------------------------------------------

TEST_F(DataColumns, TakeTheLowestTypesThatAreFree)
{
    struct Row
    {
        const char* szLine;
        const char* szColumns;
    };
    const Row kRows[] = {
        {"01/02/03,1.5", "Date *y/*m/*d, Open"},
        {"01/02/2003,1.5", "Date *m/*d/*y, Open"},
        {"13/02/2003,1.5", "Date *d/*m/*y, Open"},
        {"20031225,09:30,1.5", "Date yyyymmdd, Time *h:mm, Open"},
        {"01/02/2003,1.0,2.0,0.5,1.5", "Date *m/*d/*y, Open, High, Low, Close"},
        {"01/02/2003,1.0,2.0,0.5,1.5,100", "Date *m/*d/*y, Open, High, Low, Close, Time *hmm"},
        {"01/02/2003,1.0,2.0,0.5,1.5,199", "Date *m/*d/*y, Open, High, Low, Close, Price"},
        {"01/02/2003,,1.5", "Date *m/*d/*y, Open"},
        {"01/02/2003, ,1.5", "Date *m/*d/*y, Open"},
        {"01/02/2003 09:30,1.5", "Date *m/*d/*y, Time *h:mm, Open"},
    };
    for (const Row& row : kRows) {
        SCOPED_TRACE(row.szLine);
        EXPECT_EQ(row.szColumns, ColumnsOf(Repeated(Wide(row.szLine), 12)));
        EXPECT_FALSE(m_state.m_bHasHeader);
        EXPECT_TRUE(m_state.m_strHeader.empty());
        EXPECT_FALSE(m_file->m_bHasHeader);
    }
}

TEST_F(DataColumns, AreOfTypesThatTheResolutionAdmits)
{
    const Lines kWhole = RepeatedBut(OLESTR("01/02/2003,1.0,2.0,0.5,1.5,100"), 5, 1,
                                     OLESTR("01/02/2003,1.0,2.0,0.5,1.5,199"));
    struct Row
    {
        LONG nResolution;
        const char* szColumns;
    };
    const Row kRows[] = {
        {ResolutionNone, "Date *m/*d/*y, Open, High, Low, Close, Price"},
        {ResolutionMinutes, "Date *m/*d/*y, Open, High, Low, Close, Volume"},
        {ResolutionDays, "Date *m/*d/*y, Open, High, Low, Close, Volume"},
        {ResolutionTick, "Date *m/*d/*y, Price, Volume, -, -, -"}, // 2.0 is whole,
    };
    for (const Row& row : kRows) {
        SCOPED_TRACE(row.nResolution);
        EXPECT_EQ(row.szColumns, ColumnsOf(kWhole, row.nResolution));
    }
}

TEST_F(DataColumns, OfAFractionGetNoTypeWhenAllPricesAreUsed)
{
    const Lines lines = {OLESTR("01/02/2003,1.5,1.5,1.5,1.5,1.5")};
    EXPECT_EQ("Date *m/*d/*y, Open, High, Low, Close, -", ColumnsOf(lines, ResolutionMinutes));
}

TEST_F(DataColumns, AheadOfTheDateBecomeTheSymbolUnlessThatIsForbidden)
{
    const Lines lines = {OLESTR("ES,01/02/2003,1.5")};
    m_state.m_nResolution = ResolutionMinutes;
    EXPECT_EQ(S_OK, Build(lines));
    EXPECT_EQ("Symbol, Date *m/*d/*y, Open", Columns());
    EXPECT_EQ(S_OK, Build(lines, FirstColumn::IsNoSymbol));
    EXPECT_EQ("-, Date *m/*d/*y, Open", Columns());
}

TEST_F(DataColumns, ThatWerePredefinedAreCopied)
{
    m_state.m_predefinedFields.emplace(0, Column(TypeDate, OLESTR("*d/*m/*y")));
    EXPECT_EQ(S_OK, Build(Lines{OLESTR("no date,01/02/2003,1.5")}));
    // The type counts as given away, which leaves the second column none of its own.
    EXPECT_EQ("Date *d/*m/*y, Open Interest, Open", Columns());
}

TEST_F(DataColumns, NeedALineOfText)
{
    EXPECT_EQ(E_INVALIDARG, Build(Lines{OLESTR("01/02/2003,\x01")}));
    EXPECT_EQ(E_INVALIDARG, Build(Lines{string_t(259, '1')}));
    EXPECT_EQ(E_INVALIDARG, Build(Lines{OLESTR("")}));
    EXPECT_TRUE(m_state.m_fields.empty());
}

TEST_F(DataColumns, ComeFromTheGivenRecordWhileHeadersAreLookedFor)
{
    m_file = MemoryFile::Of({OLESTR("01/02/2003,09:30")});
    m_file->m_nHeaderOffset = 3;
    m_state.m_pDataParser = m_file.get();
    EXPECT_EQ(S_OK, Build(OLESTR("01/02/2003,1.5")));
    EXPECT_EQ("Date *m/*d/*y, Open", Columns());
    EXPECT_EQ(0u, m_file->m_nHeaderOffset);
}

TEST_F(DataColumns, ComeFromTheFirstPositionOnceLinesAreSkippedByHand)
{
    m_file = MemoryFile::Of({OLESTR("junk"), OLESTR("01/02/2003,1.5")});
    m_file->m_nHeaderOffset = 1;
    m_state.m_pDataParser = m_file.get();
    m_state.m_bAutoHeader = false;
    FindDivider(OLESTR("a,b"));
    EXPECT_EQ(S_OK, Build(OLESTR("not,this")));
    EXPECT_EQ("Date *m/*d/*y, Open", Columns());
    EXPECT_EQ(1u, m_file->m_nHeaderOffset);
}

TEST_F(DataColumns, HandOnWhatTheDataParserFailsWith)
{
    m_file = MemoryFile::Of({OLESTR("01/02/2003,1.5")});
    m_state.m_pDataParser = m_file.get();
    m_file->m_bBadOffset = true;
    EXPECT_EQ(E_ACCESSDENIED, Build(OLESTR("01/02/2003,1.5")));
    m_state.m_bAutoHeader = false;
    m_file->m_badLines = {0};
    EXPECT_EQ(E_FAIL, Build(OLESTR("01/02/2003,1.5")));
    EXPECT_TRUE(m_state.m_fields.empty());
}

// ---- tests against the file --------------------------------------------------------------

TEST_F(TestsAgainstTheFile, LookAtTheFirstTenRecordsAndTheLast)
{
    struct Row
    {
        std::size_t nLine; // of 30, where the template is refuted
        const char* szColumns;
    };
    const Row kRows[] = {
        {1, "Date *d/*m/*y"},  {7, "Date *d/*m/*y"},  {9, "Date *d/*m/*y"},  {10, "Date *m/*d/*y"},
        {15, "Date *m/*d/*y"}, {28, "Date *m/*d/*y"}, {29, "Date *d/*m/*y"},
    };
    for (const Row& row : kRows) {
        SCOPED_TRACE(row.nLine);
        const Lines lines = RepeatedBut(OLESTR("01/02/2003"), 30, row.nLine, OLESTR("13/02/2003"));
        EXPECT_EQ(row.szColumns, ColumnsOf(lines));
    }
}

TEST_F(TestsAgainstTheFile, EndWithTheResultSoFarWhereTheFileEnds)
{
    // The last record isn't asked for in a file of fewer than ten.
    EXPECT_EQ("Date *m/*d/*y", ColumnsOf(Repeated(OLESTR("01/02/2003"), 9)));
    m_file->m_nReads = 0;
    EXPECT_EQ(S_OK, Build(OLESTR("01/02/2003")));
    EXPECT_EQ(9u + 1u, m_file->m_nReads); // and one read ahead of the refinement
}

TEST_F(TestsAgainstTheFile, EndWithTheResultSoFarAtAReadThatFails)
{
    const Lines lines = RepeatedBut(OLESTR("01/02/2003"), 30, 5, OLESTR("13/02/2003"));
    m_file = MemoryFile::Of(lines);
    m_file->m_badLines = {3};
    m_state.m_pDataParser = m_file.get();
    EXPECT_EQ(S_OK, Build(OLESTR("01/02/2003")));
    EXPECT_EQ("Date *m/*d/*y", Columns());
}

TEST_F(TestsAgainstTheFile, PassRecordsWithTooFewFields)
{
    EXPECT_EQ("Date *m/*d/*y, Time *h:mm",
              ColumnsOf({OLESTR("01/02/2003,09:30"), OLESTR("01/02/2003")}));
}

TEST_F(TestsAgainstTheFile, CountEmptyFieldsWhichColumnsDoNot)
{
    // The column's number picks the empty field, which is as good as midnight.
    EXPECT_EQ("Date *m/*d/*y, Time *hmm",
              ColumnsOf({OLESTR("01/02/2003,,930"), OLESTR("01/02/2003,,999")}));
    EXPECT_EQ("Date *m/*d/*y, Open",
              ColumnsOf({OLESTR("01/02/2003,930"), OLESTR("01/02/2003,999")}));
}

TEST_F(TestsAgainstTheFile, LeaveANumberItsOnlyTemplate)
{
    EXPECT_EQ("Date *m/*d/*y, Open",
              ColumnsOf({OLESTR("01/02/2003,1.5"), OLESTR("01/02/2003,abc")}));
}

// ---- files with a header -----------------------------------------------------------------

TEST_F(HeaderColumns, AreNamedByTheirWords)
{
    struct Row
    {
        const char* szHeader;
        const char* szLine;
        const char* szColumns;
    };
    const Row kRows[] = {
        {"Date,Time,Open,High,Low,Close,Volume", "01/02/2003,09:30,1,2,0.5,1.5,100",
         "Date *m/*d/*y, Time *h:mm, Open, High, Low, Close, Volume"},
        {"D,T,O,H,L,C,V", "01/02/2003,09:30,1,2,0.5,1.5,100",
         "Date *m/*d/*y, Time *h:mm, Open, High, Low, Close, Volume"},
        {"Date,Close,Open", "01/02/2003,1,2", "Date *m/*d/*y, Close, Open"},
        {"Date,Total Volume", "01/02/2003,100", "Date *m/*d/*y, Volume"},
        {"Date,Up Volume,Down Volume", "01/02/2003,5,6", "Date *m/*d/*y, Up Volume, Down Volume"},
        {"Date,Open,High,Low,Close,Vol", "01/02/2003,1,2,0.5,1.5,100",
         "Date *m/*d/*y, Open, High, Low, Close, Volume"},
        {"Date,Vol", "01/02/2003,100", "Date *m/*d/*y, Low"},
        // No value is put right against the words.
        {"Date,High,Low", "01/02/2003,1,2", "Date *m/*d/*y, High, Low"},
        {"Symbol,Date,Open", "ES,01/02/2003,1", "Symbol, Date *m/*d/*y, Open"},
        {"Code,Date,Open", "7,01/02/2003,1", "Symbol, Date *m/*d/*y, Open"},
        {"Date,Open Interest", "01/02/2003,100", "Date *m/*d/*y, Open Interest"},
        {"Date,Open Interest", "01/02/2003,abc", "Date *m/*d/*y, -"},
        {"Date,1", "01/02/2003,100", nullptr}, // a digit makes it a line of data
        {"Date,??", "01/02/2003,100", "Date *m/*d/*y, -"},
        {"Date,Open", "01/02/2003,1.5,7", "Date *m/*d/*y, Open"},
    };
    for (const Row& row : kRows) {
        SCOPED_TRACE(row.szHeader);
        const std::string sColumns = ColumnsOf({Wide(row.szHeader), Wide(row.szLine)});
        EXPECT_EQ(row.szColumns != nullptr, m_state.m_bHasHeader);
        EXPECT_EQ(row.szColumns != nullptr, m_file->m_bHasHeader);
        if (row.szColumns) {
            EXPECT_EQ(row.szColumns, sColumns);
            EXPECT_EQ(row.szHeader, Shown(m_state.m_strHeader));
        }
    }
}

TEST_F(HeaderColumns, OfEmptyCellsAreUnassigned)
{
    EXPECT_EQ("Date *m/*d/*y, -, Open, -",
              ColumnsOf({OLESTR("Date,,Open,"), OLESTR("01/02/2003,7,1.5,9")}));
}

TEST_F(HeaderColumns, AreRefutedByTheFile)
{
    Lines lines = RepeatedBut(OLESTR("01/02/2003,09:30"), 12, 8, OLESTR("13/02/2003,09:30"));
    lines.insert(lines.begin(), OLESTR("Date,Time"));
    EXPECT_EQ("Date *d/*m/*y, Time *h:mm", ColumnsOf(lines));
}

TEST_F(HeaderColumns, GetASecondTryUnlessTheyAreTheLastTypes)
{
    // Not a time, hence the next best word.
    EXPECT_EQ("Date *m/*d/*y, Price", ColumnsOf({OLESTR("Date,Time"), OLESTR("01/02/2003,1.5")}));
    EXPECT_EQ("Date *m/*d/*y, -",
              ColumnsOf({OLESTR("Date,Total Ticks"), OLESTR("01/02/2003,1.5")}));
}

TEST_F(HeaderColumns, AreNamedByTheLastOfARunOfHeaderLines)
{
    EXPECT_EQ("Date *m/*d/*y, Open, High",
              ColumnsOf({OLESTR("Exported,today"), OLESTR("by,hand"), OLESTR("Date,Open,High"),
                         OLESTR("01/02/2003,1,2")}));
    EXPECT_EQ(2u, m_file->m_nHeaderOffset);
    EXPECT_EQ("Date,Open,High", Shown(m_state.m_strHeader));
}

TEST_F(HeaderColumns, AreLookedForInTwentyLinesBehindTheFirst)
{
    Lines lines = Repeated(OLESTR("still,words"), 30);
    lines.push_back(OLESTR("01/02/2003,1"));
    ColumnsOf(lines);
    EXPECT_EQ(20u, m_file->m_nHeaderOffset);
}

TEST_F(HeaderColumns, KeepTheLinesThatWereSkippedByHand)
{
    m_file = MemoryFile::Of(
        {OLESTR("junk"), OLESTR("Date,Open"), OLESTR("Foo,Bar"), OLESTR("01/02/2003,1.5")});
    m_file->m_nHeaderOffset = 1;
    m_state.m_pDataParser = m_file.get();
    m_state.m_bAutoHeader = false;
    FindDivider(OLESTR("a,b"));
    EXPECT_EQ(S_OK, Build(OLESTR("any")));
    EXPECT_EQ(1u, m_file->m_nHeaderOffset);
    EXPECT_EQ("Date,Open", Shown(m_state.m_strHeader));
}

TEST_F(HeaderColumns, OfAFileWithoutDataLinesTakeAnEmptyText)
{
    EXPECT_EQ("Open, High, Volume", ColumnsOf({OLESTR("Open,High,Volume")}));
    // Too few fields are the same.
    EXPECT_EQ("Open, High, Volume", ColumnsOf({OLESTR("Open,High,Volume"), OLESTR("1.5")}));
}

TEST_F(HeaderColumns, ThatWerePredefinedAreCopied)
{
    m_state.m_predefinedFields.emplace(1, Column(TypeDate, OLESTR("*d/*m/*y")));
    EXPECT_EQ(S_OK, Build(Lines{OLESTR("Date,Open,High"), OLESTR("01/02/2003,1,2")}));
    EXPECT_EQ("*d/*m/*y", Shown(m_state.m_fields.at(1).GetTemplate()));
    EXPECT_EQ(TypeDate, m_state.m_fields.at(1).GetType());
    EXPECT_EQ(TypeHigh, m_state.m_fields.at(2).GetType());
}

TEST_F(HeaderColumns, VanishWhenTheFileRefutesTheLastOfAllTypes)
{
    // All types share a letter with this cell, Volume the fewest; text refutes them all.
    EXPECT_EQ(
        "Date *m/*d/*y",
        ColumnsOf({OLESTR("Date,ewpdnthicsragzzzz"), OLESTR("01/02/2003,abc")}, ResolutionTick));
    EXPECT_EQ("Date *m/*d/*y, -",
              ColumnsOf({OLESTR("Date,zzzz"), OLESTR("01/02/2003,abc")}, ResolutionTick));
}

TEST_F(HeaderColumns, StandWhenTheColumnsAreBuiltAgain)
{
    ColumnsOf({OLESTR("Date,Open"), OLESTR("01/02/2003,1.5")});
    m_state.m_nResolution = ResolutionTick;
    EXPECT_EQ(S_OK, Build(OLESTR("01/02/2003,1.5"), FirstColumn::MayBeSymbol, HeaderSearch::Keep));
    EXPECT_EQ("Date,Open", Shown(m_state.m_strHeader));
    EXPECT_EQ("Date *m/*d/*y, Price", Columns());
}

TEST_F(HeaderColumns, AreForgottenWithTheirHeader)
{
    ColumnsOf({OLESTR("Date,Close"), OLESTR("01/02/2003,1.5")});
    EXPECT_EQ(S_OK, Build(OLESTR("01/02/2003,1.5")));
    EXPECT_FALSE(m_state.m_bHasHeader);
    EXPECT_EQ("", Shown(m_state.m_strHeader));
    EXPECT_EQ("Date *m/*d/*y, Open", Columns());
}

} // namespace
