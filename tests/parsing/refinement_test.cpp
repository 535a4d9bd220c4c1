#include <gtest/gtest.h>

#include <algorithm>

#include "src/parsing/detection/FieldTypeRefinement.h"
#include "tests/parsing/Layout.h"

using namespace Hesperon::specifics;

namespace {

using Lines = std::vector<string_t>;

constexpr unsigned kDate = TypeDate, kTime = TypeTime, kOpen = TypeOpen, kHigh = TypeHigh,
                   kLow = TypeLow, kClose = TypeClose, kVolume = TypeVolume,
                   kUpVolume = TypeUpVolume, kDownVolume = TypeDownVolume,
                   kUnchangedVolume = TypeUnchangedVolume, kTotalVolume = TypeTotalVolume,
                   kUpTicks = TypeUpTicks, kDownTicks = TypeDownTicks,
                   kUnchangedTicks = TypeUnchangedTicks, kTotalTicks = TypeTotalTicks,
                   kInterest = TypeOpenInterest, kNone = kNoType;

class Refinement : public testing::Test
{
protected:
    void Prepare(std::initializer_list<unsigned> types, Lines lines, LONG nResolution)
    {
        m_file = MemoryFile::Of(std::move(lines));
        m_state = {};
        m_state.m_pDataParser = m_file.get();
        m_state.m_dividers = DividerSet::FromMask(4); // ','
        m_state.m_fields = ColumnsOf(types);
        m_state.m_nResolution = nResolution;
    }
    std::string Refined(FirstColumn firstColumn = FirstColumn::MayBeSymbol)
    {
        RefineFieldTypes(m_state, firstColumn, m_report);
        std::string s;
        for (const CDataField& field : m_state.m_fields) {
            const unsigned uiType = field.GetType();
            s += (s.empty() ? "" : ", ") +
                 (uiType == kNoType ? std::string("-") : Shown(TypeName(uiType)));
        }
        return s;
    }
    std::string Refined(std::initializer_list<unsigned> types, Lines lines,
                        LONG nResolution = ResolutionMinutes)
    {
        Prepare(types, std::move(lines), nResolution);
        return Refined();
    }

    com_ptr<MemoryFile> m_file;
    ParserState m_state;
    DetectionReport m_report;
};

using SymbolRule = Refinement;
using Samples = Refinement;

struct RefinementRow
{
    std::initializer_list<unsigned> types;
    const char* szLine;
    const char* szRefined;
    LONG nResolution = ResolutionMinutes;
};

#define EXPECT_REFINED(rows)                                                                       \
    for (const RefinementRow& row : rows) {                                                        \
        SCOPED_TRACE(std::string(row.szLine) + " to " + row.szRefined);                            \
        EXPECT_EQ(row.szRefined, Refined(row.types, {Wide(row.szLine)}, row.nResolution));         \
    }

// nCount equal lines, of which line nOther is another.
Lines LinesBut(const char* szLine, std::size_t nCount, std::size_t nOther, const char* szOther)
{
    Lines lines(nCount, Wide(szLine));
    lines.at(nOther) = Wide(szOther);
    return lines;
}

// ---- the symbol ------------------------------------------------------------------------

TEST_F(SymbolRule, TakesAColumnAheadOfTheDate)
{
    struct SymbolRow
    {
        std::initializer_list<unsigned> types;
        FirstColumn firstColumn;
        bool bHasHeader;
        const char* szRefined;
    };
    constexpr auto kMayBe = FirstColumn::MayBeSymbol, kIsNone = FirstColumn::IsNoSymbol;
    const SymbolRow kRows[] = {
        {{kNone, kDate}, kMayBe, false, "Symbol, Date"},
        {{kOpen, kDate}, kMayBe, false, "Symbol, Date"},
        {{kTime, kDate}, kMayBe, false, "Symbol, Date"},
        {{kOpen, kDate}, kMayBe, true, "Symbol, Date"},
        {{kOpen, kDate}, kIsNone, false, "Open, Date"},
        {{TypeSymbol, kDate}, kMayBe, false, "Symbol, Date"},
        {{TypeSymbol, kDate}, kIsNone, false, "-, Date"},
        {{TypeSymbol, kOpen}, kMayBe, false, "-, Open"},
        {{kOpen, TypeSymbol, kDate}, kMayBe, false, "Symbol, -, Date"},
        {{kDate, TypeSymbol}, kMayBe, false, "Date, Symbol"},
        {{kDate, kOpen}, kMayBe, false, "Date, Open"},
        {{kOpen, kHigh}, kMayBe, false, "Open, High"},
        {{}, kMayBe, false, ""},
    };
    for (const SymbolRow& row : kRows) {
        SCOPED_TRACE(std::string(row.szRefined) +
                     (row.firstColumn == kIsNone ? ", no symbol" : ""));
        Prepare(row.types, {OLESTR("1,2,3")}, ResolutionMinutes);
        m_state.m_bHasHeader = row.bHasHeader;
        EXPECT_EQ(row.szRefined, Refined(row.firstColumn));
    }
}

TEST_F(SymbolRule, IsTheOnlyOneForAFileWithAHeader)
{
    Prepare({kOpen, kDate, kHigh, kLow, kUpVolume}, {OLESTR("ES,d,1,2,3")}, ResolutionMinutes);
    m_state.m_bHasHeader = true;
    EXPECT_EQ("Symbol, Date, High, Low, Up Volume", Refined());
    EXPECT_EQ(0u, m_file->m_nReads);
}

// ---- the order of a bar ------------------------------------------------------------------

TEST_F(Refinement, PutsTheBoundsOfABarInOrder)
{
    const RefinementRow kRows[] = {
        {{kDate, kOpen, kHigh, kLow, kClose}, "d,1.5,1,2,1.5", "Date, Open, Low, High, Close"},
        {{kDate, kHigh, kLow}, "d,1,2", "Date, Low, High"},
        {{kDate, kOpen, kHigh}, "d,2,1", "Date, High, Open"},
        {{kDate, kClose, kHigh}, "d,2,1", "Date, High, Close"},
        {{kDate, kOpen, kLow}, "d,1,2", "Date, Low, Open"},
        {{kDate, kClose, kLow}, "d,1,2", "Date, Low, Close"},
        {{kDate, kOpen, kHigh, kLow, kClose}, "d,2,2,2,2", "Date, Open, High, Low, Close"},
        {{kDate, kOpen, kClose}, "d,2,1", "Date, Open, Close"},
        {{kDate, kOpen, kHigh}, "d,-1,-2", "Date, High, Open"},
    };
    EXPECT_REFINED(kRows);
}

TEST_F(Samples, AreEachHundredthRecordUpTo900)
{
    struct SampleRow
    {
        std::size_t nLine; // of 1000, where the Open is above the High
        const char* szRefined;
    };
    const SampleRow kRows[] = {
        {0, "Date, High, Open"},   {1, "Date, Open, High"},   {200, "Date, High, Open"},
        {201, "Date, Open, High"}, {900, "Date, High, Open"}, {950, "Date, Open, High"},
        {999, "Date, Open, High"},
    };
    for (const SampleRow& row : kRows) {
        SCOPED_TRACE(row.nLine);
        EXPECT_EQ(row.szRefined,
                  Refined({kDate, kOpen, kHigh}, LinesBut("d,1,1", 1000, row.nLine, "d,2,1")));
    }
}

TEST_F(Samples, EndAtAPositionThatFails)
{
    Prepare({kDate, kOpen, kHigh}, LinesBut("d,1,1", 300, 200, "d,2,1"), ResolutionMinutes);
    m_file->m_badPositions = {100};
    EXPECT_EQ("Date, Open, High", Refined());
}

TEST_F(Samples, PassOverRecordsThatLackAField)
{
    Prepare({kDate, kOpen, kHigh}, LinesBut("d,1", 300, 200, "d,2,1"), ResolutionMinutes);
    EXPECT_EQ("Date, High, Open", Refined());
}

TEST_F(Samples, CountEmptyFieldsWhichColumnsDoNot)
{
    // Column 2 is read as the empty field, 0.
    EXPECT_EQ("Date, High, Open", Refined({kDate, kOpen, kHigh}, {OLESTR("d,1,,2")}));
}

TEST_F(Samples, NeedACurrentRecord)
{
    Prepare({kDate, kOpen, kHigh}, LinesBut("d,2,1", 300, 0, "d,1,1"), ResolutionMinutes);
    m_file->m_badLines = {0}; // the current one
    EXPECT_EQ("Date, Open, High", Refined());
    EXPECT_TRUE(m_file->m_positions.empty());
}

TEST_F(Refinement, StopsAtSwapsThatUndoEachOther)
{
    // Only on line 200 is the Open above the High; after the swap all other lines are wrong.
    Prepare({kDate, kOpen, kHigh}, LinesBut("d,1,2", 300, 200, "d,2,1"), ResolutionMinutes);
    EXPECT_EQ("Date, Open, High", Refined()); // as many swaps as passes, an even number
    // In 20 passes the third sample and the first cause swaps in turn.
    EXPECT_EQ(10u * 3u + 10u, m_file->m_positions.size());
}

// ---- totals and their parts ----------------------------------------------------------------

TEST_F(Refinement, DropsUpAndDownTicks)
{
    const RefinementRow kRows[] = {
        {{kDate, kUpTicks, kDownTicks, kTotalTicks}, "d,3,4,7", "Date, -, -, Total Ticks"},
        {{kDate, kUpTicks, kDownTicks, kTotalTicks}, "d,10,4,7", "Date, Total Ticks, -, -"},
        {{kDate, kUpTicks, kDownTicks, kTotalTicks}, "d,3,10,7", "Date, -, Total Ticks, -"},
        {{kDate, kUpTicks, kDownTicks, kTotalTicks}, "d,3,4,9", "Date, -, -, Total Ticks"},
        {{kDate, kUpTicks}, "d,3", "Date, -"},
        {{kDate, kDownTicks}, "d,3", "Date, -"},
        {{kDate, kUpTicks, kDownTicks}, "d,3,4", "Date, -, -"},
        {{kDate, kTotalTicks}, "d,3", "Date, Total Ticks"},
    };
    EXPECT_REFINED(kRows);
}

TEST_F(Refinement, DropsUpAndDownVolumes)
{
    const RefinementRow kRows[] = {
        {{kDate, kUpVolume, kDownVolume, kVolume}, "d,3,4,7", "Date, -, -, Volume"},
        {{kDate, kUpVolume, kDownVolume, kVolume}, "d,10,4,7", "Date, Volume, -, -"},
        {{kDate, kUpVolume, kDownVolume, kVolume}, "d,3,10,7", "Date, -, Volume, -"},
        {{kDate, kUpVolume, kDownVolume, kVolume}, "d,3,4,9", "Date, -, -, Volume"},
        {{kDate, kDownVolume}, "d,3", "Date, -"},
        {{kDate, kOpen, kHigh, kLow, kClose, kVolume, kUpVolume},
         "d,2,3,1,2,100,50",
         "Date, Open, High, Low, Close, Volume, -"},
        {{kDate, kOpen, kHigh, kLow, kClose, kVolume, kUpVolume},
         "d,2,3,1,2,100,150",
         "Date, Open, High, Low, Close, Volume, Open Interest",
         ResolutionDays},
    };
    EXPECT_REFINED(kRows);
}

TEST_F(Refinement, EndsThePassInWhichItDropsThem)
{
    // The next pass begins at the High, which is near the volume and far from the Low.
    const char* szLine = "d,90,95,10,92,100,3,4,9";
    EXPECT_EQ(
        "Date, Open, Volume, Low, Close, High, -, -, Total Ticks",
        Refined({kDate, kOpen, kHigh, kLow, kClose, kVolume, kUpTicks, kDownTicks, kTotalTicks},
                {Wide(szLine)}));
    EXPECT_EQ("Date, Open, High, Low, Close, Volume, -, -, Total Ticks",
              Refined({kDate, kOpen, kHigh, kLow, kClose, kVolume, kNone, kNone, kTotalTicks},
                      {Wide(szLine)}));
}

TEST_F(Refinement, FillsOpenInterestFromTheFirstUnassignedColumn)
{
    const RefinementRow kRows[] = {
        {{kDate, kNone, kNone}, "d,1,2", "Date, Open Interest, -", ResolutionDays},
        {{kDate, kNone, kNone}, "d,1,2", "Date, Open Interest, -", ResolutionNone},
        {{kDate, kNone, kNone}, "d,1,2", "Date, -, -", ResolutionMinutes},
        {{kDate, kNone, kInterest}, "d,1,2", "Date, -, Open Interest", ResolutionDays},
    };
    EXPECT_REFINED(kRows);
}

TEST_F(Refinement, TakesTheLargerOfVolumeAndOpenInterestForTheInterest)
{
    const RefinementRow kRows[] = {
        {{kDate, kVolume, kInterest}, "d,200,100", "Date, Open Interest, Volume", ResolutionDays},
        {{kDate, kVolume, kInterest}, "d,100,100", "Date, Volume, Open Interest", ResolutionDays},
        {{kDate, kVolume, kInterest},
         "d,200,100",
         "Date, Volume, Open Interest",
         ResolutionMinutes},
    };
    EXPECT_REFINED(kRows);
}

TEST_F(Refinement, ComparesTotalsOnTheLastSampledRecord)
{
    const RefinementRow kRows[] = {
        {{kDate, kOpen, kHigh, kUnchangedVolume, kTotalVolume},
         "d,1,2,9,5",
         "Date, Open, High, Total Volume, Unchanged Volume",
         ResolutionNone},
        {{kDate, kOpen, kHigh, kUnchangedVolume, kTotalVolume},
         "d,1,2,5,5",
         "Date, Open, High, Unchanged Volume, Total Volume",
         ResolutionNone},
        {{kDate, kOpen, kHigh, kTotalVolume, kTotalTicks},
         "d,1,2,5,9",
         "Date, Open, High, Total Ticks, Total Volume",
         ResolutionNone},
        {{kDate, kOpen, kHigh, kTotalVolume, kTotalTicks},
         "d,1,2,9,5",
         "Date, Open, High, Total Volume, Total Ticks",
         ResolutionNone},
        // No rule samples a record here.
        {{kDate, kUnchangedVolume, kTotalVolume},
         "d,9,5",
         "Date, Unchanged Volume, Total Volume",
         ResolutionNone},
        {{kDate, kTotalVolume, kTotalTicks},
         "d,5,9",
         "Date, Total Volume, Total Ticks",
         ResolutionNone},
    };
    EXPECT_REFINED(kRows);
    const std::initializer_list<unsigned> kTypes = {kDate, kOpen, kHigh, kUnchangedVolume,
                                                    kTotalVolume};
    EXPECT_EQ("Date, Open, High, Unchanged Volume, Total Volume",
              Refined(kTypes, LinesBut("d,1,2,5,9", 150, 0, "d,1,2,9,5"), ResolutionNone));
    EXPECT_EQ("Date, Open, High, Total Volume, Unchanged Volume",
              Refined(kTypes, LinesBut("d,1,2,5,9", 150, 100, "d,1,2,9,5"), ResolutionNone));
}

TEST_F(Refinement, FindsTheSumOfTwoColumns)
{
    const RefinementRow kRows[] = {
        // The parts are named, and the next passes drop them.
        {{kDate, kOpen, kHigh, kVolume, kUnchangedTicks, kTotalTicks},
         "d,1,2,30,10,20",
         "Date, Open, High, Total Volume, Open Interest, -",
         ResolutionNone},
        {{kDate, kOpen, kHigh, kUnchangedVolume, kUnchangedTicks, kTotalTicks},
         "d,1,2,10,30,20",
         "Date, Open, High, -, Total Volume, -",
         ResolutionMinutes},
        {{kDate, kOpen, kHigh, kUnchangedVolume, kUnchangedTicks, kTotalTicks},
         "d,1,2,0,0,0",
         "Date, Open, High, Unchanged Volume, Unchanged Ticks, Total Ticks",
         ResolutionNone},
        {{kDate, kOpen, kHigh, kUnchangedVolume, kUnchangedTicks, kTotalTicks},
         "d,1,2,30,10,21",
         "Date, Open, High, Unchanged Volume, Unchanged Ticks, Total Ticks",
         ResolutionNone},
        // A price isn't part of a sum.
        {{kDate, kOpen, kHigh, kUnchangedTicks, kTotalTicks},
         "d,10,20,30,31",
         "Date, Open, High, Unchanged Ticks, Total Ticks",
         ResolutionNone},
        {{kDate, kUnchangedVolume, kUnchangedTicks, kTotalTicks},
         "d,30,10,20",
         "Date, Unchanged Volume, Unchanged Ticks, Total Ticks",
         ResolutionNone},
    };
    EXPECT_REFINED(kRows);
}

// ---- a volume among the prices ---------------------------------------------------------------

TEST_F(Refinement, FindsTheVolumeAmongThePrices)
{
    const RefinementRow kRows[] = {
        {{kDate, kOpen, kHigh, kVolume}, "d,60,100,79", "Date, Volume, High, Open"},
        {{kDate, kOpen, kHigh, kVolume}, "d,60,100,80", "Date, Open, High, Volume"}, // 60/80
        {{kDate, kOpen, kHigh, kVolume}, "d,75,100,75", "Date, Open, High, Volume"}, // 75/100
        {{kDate, kOpen, kHigh, kVolume}, "d,0,5,3", "Date, Volume, High, Open"},
        {{kDate, kOpen, kClose, kVolume}, "d,5,1,5", "Date, Volume, Close, Open"},
        {{kDate, kOpen, kClose, kVolume}, "d,5,0,5", "Date, Open, Close, Volume"},
        {{kDate, kOpen, kVolume}, "d,0,5", "Date, Open, Volume"}, // one price alone
        {{kDate, kOpen, kHigh}, "d,0,5", "Date, Open, High"},     // no volume
        {{kDate, kOpen, TypePrice, kVolume},
         "d,0,5,9",
         "Date, Open, Price, Volume",
         ResolutionNone}, // the price of a tick isn't looked at
    };
    EXPECT_REFINED(kRows);
}

TEST_F(Refinement, ReadsAColumnInItsNewType)
{
    Prepare({kDate, kHigh, kVolume, kOpen}, {OLESTR("d,5,3,0")}, ResolutionMinutes);
    EXPECT_EQ("Date, High, Open, Volume", Refined());
    for (std::size_t i : {1u, 2u, 3u}) {
        CDataField& field = m_state.m_fields[i];
        field.ParseField(OLESTR("7"));
        EXPECT_EQ("7", ShownValue(field)) << i;
    }
}

} // namespace
