#include <gtest/gtest.h>

#include <fmt/format.h>

#include "src/parsing/ColumnParsing.h"
#include "src/parsing/RecordText.h"
#include "src/parsing/detection/StepSampling.h"
#include "tests/parsing/Layout.h"
#include "tests/parsing/QuoteLines.h"

using namespace Hesperon::specifics;

namespace {

using Lines = std::vector<string_t>;

// ---- steps --------------------------------------------------------------------------------

// Parses samples into the columns of a state.
class StateParser final : public SampleParser
{
public:
    explicit StateParser(ParserState& state) : m_state(state) {}

    HRESULT ParseSample(string_view_t sRecord) override
    {
        m_sRecord = sRecord;
        ParseColumns(m_state, m_sRecord);
        return m_hrParse;
    }
    HRESULT SampleValue(std::size_t nColumn, VARIANT* pValue) override
    {
        CDataField& field = m_state.m_fields[nColumn];
        if (field.GetType() != TypeSymbol && SUCCEEDED(ColumnValue(m_state, field, pValue)))
            return S_OK;
        const auto sText = FilledFieldAt(m_sRecord, m_state.m_dividers, nColumn);
        *pValue = Variant::FromText(sText.value_or(string_view_t())).detach();
        return S_FALSE;
    }

    HRESULT m_hrParse = S_OK;

private:
    ParserState& m_state;
    string_t m_sRecord;
};

class StepSampling : public testing::Test
{
protected:
    void Prepare(std::initializer_list<CDataField> columns, Lines lines)
    {
        m_file = MemoryFile::Of(std::move(lines));
        m_state = {};
        m_state.m_pDataParser = m_file.get();
        m_state.m_dividers = DividerSet::FromMask(4); // ','
        m_state.m_fields = columns;
        m_parser = std::make_unique<StateParser>(m_state);
    }
    void PrepareDays(Lines lines) { Prepare({m_date}, std::move(lines)); }
    void PrepareMinutes(Lines lines) { Prepare({m_date, m_time}, std::move(lines)); }
    void PrepareSymbols(Lines lines) { Prepare({m_symbol, m_date}, std::move(lines)); }

    // "days 1, minutes 0", or "unknown".
    std::string Steps()
    {
        Hesperon::specifics::Steps steps;
        if (!SampleSteps(m_state, *m_parser, steps))
            return "unknown";
        return fmt::format("days {}, minutes {}", steps.wDay, steps.wMinute);
    }

    const CDataField m_symbol = Column(TypeSymbol);
    const CDataField m_date = Column(TypeDate, OLESTR("yyyymmdd"));
    const CDataField m_time = Column(TypeTime, OLESTR("*h:mm"));
    com_ptr<MemoryFile> m_file;
    ParserState m_state;
    std::unique_ptr<StateParser> m_parser;
};

struct StepRow
{
    std::vector<int> stamps;
    const char* szSteps;
};

TEST_F(StepSampling, MeasuresDays)
{
    const StepRow kRows[] = {
        {Evenly(1, 5), "days 1, minutes 0"},
        {Evenly(7, 5), "days 7, minutes 0"},
        {{0, 1, 2, 3, 4, 7}, "days 1, minutes 0"},
        {{0, 2, 5, 7}, "days 1, minutes 0"}, // 3 is no multiple of 2
        {{0, 2, 6}, "days 2, minutes 0"},
        {{0, 4, 6}, "days 2, minutes 0"},
        {{0, 3}, "days 3, minutes 0"},
        {{2, 1, 0}, "days 65535, minutes 0"}, // backwards, in 16 bits
        {{0}, "unknown"},
        {{0, 0}, "unknown"},
        {{0, 1, 1, 2}, "unknown"},
    };
    for (const StepRow& row : kRows) {
        SCOPED_TRACE(testing::PrintToString(row.stamps));
        PrepareDays(DayLines(row.stamps));
        EXPECT_EQ(row.szSteps, Steps());
    }
}

TEST_F(StepSampling, MeasuresMinutesWithinADay)
{
    const StepRow kRows[] = {
        {Evenly(5, 10), "days 0, minutes 5"},
        {{0, 5, 10, 1035, 1040}, "days 0, minutes 5"}, // over a night of 1025 minutes
        {{0, 5, 12}, "days 0, minutes 1"},
        {{0, 10, 15}, "days 0, minutes 5"},
        {{0, 0, 5}, "unknown"},
        {{10, 5}, "unknown"},
        // Days win where both are known.
        {Evenly(1440, 3), "days 1, minutes 0"},
        {{0, 1441, 2882}, "days 1, minutes 0"},
        // 46 days are more minutes than are counted, 45 aren't.
        {{0, 46 * 1440}, "days 46, minutes 0"},
        {{0, 5, 5 + 46 * 1440}, "unknown"},
        {{0, 5, 5 + 45 * 1440}, "days 0, minutes 5"},
    };
    for (const StepRow& row : kRows) {
        SCOPED_TRACE(testing::PrintToString(row.stamps));
        PrepareMinutes(MinuteLines(row.stamps));
        EXPECT_EQ(row.szSteps, Steps());
    }
}

TEST_F(StepSampling, TakesAChangeOfTheSymbolForAStepOfOne)
{
    struct SymbolRow
    {
        std::vector<std::pair<const char*, int>> days;
        const char* szSteps;
    };
    const SymbolRow kRows[] = {
        {{{"A", 0}, {"A", 1}, {"A", 2}, {"B", 0}, {"B", 1}}, "days 1, minutes 0"},
        {{{"A", 0}, {"B", 0}, {"A", 1}, {"B", 1}}, "days 1, minutes 0"},
        {{{"A", 0}, {"A", 7}, {"B", 0}, {"B", 7}}, "days 1, minutes 0"},
        {{{"es", 0}, {"ES", 7}, {"Es", 14}}, "days 7, minutes 0"},
        {{{"A", 0}, {"A", 0}, {"B", 1}}, "unknown"},
    };
    for (const SymbolRow& row : kRows) {
        SCOPED_TRACE(testing::PrintToString(row.days));
        Lines lines;
        for (const auto& [szSymbol, nDay] : row.days)
            lines.push_back(Wide(std::string(szSymbol) + "," + DateText(nDay)));
        PrepareSymbols(lines);
        EXPECT_EQ(row.szSteps, Steps());
    }
}

TEST_F(StepSampling, NoticesSymbolsInMinutesToo)
{
    const Lines lines = {OLESTR("A,20030106,09:30"), OLESTR("A,20030106,09:35"),
                         OLESTR("B,20030106,09:45"), OLESTR("B,20030106,09:50")};
    Prepare({m_symbol, m_date, m_time}, lines);
    EXPECT_EQ("days 0, minutes 1", Steps());
    Prepare({Column(kNoType), m_date, m_time}, lines);
    EXPECT_EQ("days 0, minutes 5", Steps());
}

TEST_F(StepSampling, ReadsAHundredRecords)
{
    std::vector<int> days = Evenly(7, 101);
    days[100] = days[99] + 1;
    PrepareDays(DayLines(days));
    EXPECT_EQ("days 7, minutes 0", Steps());
    EXPECT_EQ(100u, m_file->m_nReads);
    days[99] = days[98] + 1;
    PrepareDays(DayLines(days));
    EXPECT_EQ("days 1, minutes 0", Steps());
}

TEST_F(StepSampling, EndsAtAPositionThatFails)
{
    PrepareDays(DayLines({0, 7, 14, 15}));
    m_file->m_badPositions = {3};
    EXPECT_EQ("days 7, minutes 0", Steps());
    m_file->m_badPositions = {1};
    EXPECT_EQ("unknown", Steps());
}

TEST_F(StepSampling, FailsWithAReadOrAParseThatFails)
{
    PrepareDays(DayLines(Evenly(1, 5)));
    m_file->m_badLines = {3};
    EXPECT_EQ("unknown", Steps());
    m_file->m_badLines.clear();
    EXPECT_EQ("days 1, minutes 0", Steps());
    m_parser->m_hrParse = E_FAIL;
    EXPECT_EQ("unknown", Steps());
}

TEST_F(StepSampling, FailsWithAStampThatDoesNotParse)
{
    PrepareDays({OLESTR("20030106"), OLESTR("20030107"), OLESTR("n/a")});
    EXPECT_EQ("unknown", Steps());
    PrepareMinutes({OLESTR("20030106,09:30"), OLESTR("20030107,09:30"), OLESTR("20030108,n/a")});
    EXPECT_EQ("unknown", Steps());
    Prepare({m_time}, {OLESTR("09:30"), OLESTR("09:35")});
    EXPECT_EQ("unknown", Steps());
}

// ---- inference -----------------------------------------------------------------------------

struct FileRow
{
    const char* szWhat;
    Lines lines;
    LONG nResolution;
    LONG nSize;
};

void ExpectResolution(const FileRow& row, const std::vector<OfferedResolution>& offered)
{
    SCOPED_TRACE(row.szWhat);
    ParsedFile file(row.lines);
    ASSERT_EQ(S_OK, file.Offer(offered));
    EXPECT_EQ(S_OK, file.Load());
    EXPECT_EQ(row.nResolution, file.Resolution());
    EXPECT_EQ(row.nSize, file.Size());
}

TEST(Inference, FindsTheResolutionOfAFile)
{
    const FileRow kRows[] = {
        {"one line a day", DayLines(Evenly(1, 12), kBar), ResolutionDays, 1},
        {"one line a week", DayLines(Evenly(7, 12), kBar), ResolutionWeeks, 1},
        {"weekends skipped", DayLines({0, 1, 2, 3, 4, 7}, kBar), ResolutionDays, 1},
        {"steps 2, 3, 2", DayLines({0, 2, 5, 7}, kBar), ResolutionDays, 1},
        {"downward days", DayLines({3, 2, 1, 0}, kBar), ResolutionDays, 1},
        {"every 5 minutes", MinuteLines(Evenly(5, 12), kBar), ResolutionMinutes, 5},
        {"a night between", MinuteLines({0, 5, 10, 1035}, kBar), ResolutionMinutes, 5},
        {"5 and 7 minutes", MinuteLines({0, 5, 12}, kBar), ResolutionMinutes, 1},
        {"bars in one minute", MinuteLines({0, 0, 0, 1}, kBar), ResolutionTickBars, 0},
        {"prices in one minute", MinuteLines({0, 0, 0, 1}, "1.5"), ResolutionTick, 1},
        {"prices each minute", MinuteLines(Evenly(1, 5), "1.5"), ResolutionTick, 1},
        {"one bar", MinuteLines({0}, kBar), ResolutionTickBars, 0},
        {"one price", MinuteLines({0}, "1.5"), ResolutionTick, 1},
        {"one day", DayLines({0}, kBar), ResolutionNone, 0},
        {"a day twice", DayLines({0, 0}, kBar), ResolutionNone, 0},
        {"stamps alone", MinuteLines(Evenly(5, 12)), ResolutionNone, 0},
        {"days without bars", DayLines(Evenly(1, 12), "1.5"), ResolutionNone, 0},
    };
    for (const FileRow& row : kRows)
        ExpectResolution(row, AllResolutions());
}

TEST(Inference, TakesOnlyWhatTheHostOffers)
{
    const Lines kWeekLines = DayLines(Evenly(7, 12), kBar);
    const Lines kFives = MinuteLines(Evenly(5, 12), kBar);
    const Lines kPrices = MinuteLines({0, 0, 1}, "1.5");
    struct OfferRow
    {
        std::vector<LONG> offered;
        const Lines& lines;
        LONG nResolution;
        LONG nSize;
    };
    constexpr LONG kTick = ResolutionTick, kTickBars = ResolutionTickBars,
                   kCountBars = ResolutionCountBars, kSeconds = ResolutionSeconds,
                   kMinutes = ResolutionMinutes, kDays = ResolutionDays, kWeeks = ResolutionWeeks;
    const OfferRow kRows[] = {
        {{kWeeks, kDays}, kWeekLines, ResolutionWeeks, 1},
        {{kDays, kWeeks}, kWeekLines, ResolutionWeeks, 1},
        {{kDays}, kWeekLines, ResolutionDays, 1},
        {{kMinutes, kTickBars, kTick, kCountBars}, kWeekLines, ResolutionNone, 0},
        {{kTickBars, kTick, kCountBars, kMinutes}, kFives, ResolutionMinutes, 5},
        {{kTick, kTickBars, kCountBars}, kFives, ResolutionTickBars, 0},
        {{kCountBars}, kFives, ResolutionCountBars, 0},
        {{kCountBars, kTick}, kFives, ResolutionTick, 1}, // the first price of a bar is one
        {{kDays, kWeeks}, kFives, ResolutionNone, 0},
        {{kTickBars, kCountBars}, kPrices, ResolutionNone, 0},
        {{kSeconds}, kFives, ResolutionNone, 0}, // seconds are never inferred
        {{}, kFives, ResolutionNone, 0},
    };
    for (const OfferRow& row : kRows) {
        std::vector<OfferedResolution> offered;
        for (LONG nId : row.offered)
            offered.push_back({nId, OLESTR("any")});
        const std::string sWhat = testing::PrintToString(row.offered);
        ExpectResolution({sWhat.c_str(), row.lines, row.nResolution, row.nSize}, offered);
    }
}

TEST(Inference, HoldsMinutesAgainstTheSizeInTheHostsName)
{
    struct SizeRow
    {
        const char* szName;
        int nStep;
        LONG nResolution;
        LONG nSize;
    };
    const SizeRow kRows[] = {
        {"Minutes|5", 5, ResolutionMinutes, 5},  {"Minutes|5", 10, ResolutionMinutes, 5},
        {"Minutes|5", 3, ResolutionTickBars, 0}, {"Minutes|5", 1, ResolutionTickBars, 0},
        {"a|3|5", 3, ResolutionTickBars, 0},     {"Minutes| 5 or so", 10, ResolutionMinutes, 5},
        {"Minutes", 3, ResolutionMinutes, 3},    {"Minutes|", 3, ResolutionMinutes, 3},
        {"Minutes|0", 3, ResolutionMinutes, 3},  {"Minutes|-5", 3, ResolutionMinutes, 3},
        {"Minutes|x", 3, ResolutionMinutes, 3},
    };
    for (const SizeRow& row : kRows)
        ExpectResolution(
            {row.szName, MinuteLines(Evenly(row.nStep, 12), kBar), row.nResolution, row.nSize},
            {{ResolutionMinutes, Wide(row.szName)}, {ResolutionTickBars, OLESTR("Bars|7")}});
}

TEST(Inference, TakesTheFirstOfTwoNamesOfOneResolution)
{
    ExpectResolution({"two names", MinuteLines(Evenly(5, 12), kBar), ResolutionMinutes, 1},
                     {{ResolutionMinutes, OLESTR("a|1")}, {ResolutionMinutes, OLESTR("b|5")}});
}

TEST(Inference, BuildsTheColumnsThatTheResolutionAdmits)
{
    struct ColumnRow
    {
        Lines lines;
        const char* szColumns;
    };
    const ColumnRow kRows[] = {
        {MinuteLines(Evenly(5, 12), kBar), "Date yyyymmdd, Time *h:mm, Open, High, Low, Close"},
        {MinuteLines({0, 0, 1}, "1.5"), "Date yyyymmdd, Time *h:mm, Price"},
        {DayLines(Evenly(1, 12), std::string(kBar) + ",100,900"),
         "Date yyyymmdd, Open, High, Low, Close, Time *hmm, Volume"},
        // What the first look found, where nothing fits.
        {DayLines(Evenly(1, 12), "1.5"), "Date yyyymmdd, Open"},
    };
    for (const ColumnRow& row : kRows) {
        SCOPED_TRACE(Shown(row.lines[0]));
        ParsedFile file(row.lines);
        ASSERT_EQ(S_OK, file.Offer(AllResolutions()));
        EXPECT_EQ(S_OK, file.Load());
        EXPECT_EQ(row.szColumns, file.Columns());
    }
}

TEST(Inference, EndsWithoutADate)
{
    ParsedFile file({OLESTR("1.5,2.5"), OLESTR("1.5,2.5")});
    ASSERT_EQ(S_OK, file.Offer(AllResolutions()));
    EXPECT_EQ(S_OK, file.Load());
    EXPECT_EQ(ResolutionNone, file.Resolution());
    EXPECT_EQ("Open, High", file.Columns());
}

TEST(Inference, FailsOnWhatIsNoText)
{
    ParsedFile file({OLESTR("20030106,\x01")});
    EXPECT_EQ(E_INVALIDARG, file.Load());
    EXPECT_EQ(E_INVALIDARG, file->FindResolution(Bstr(OLESTR("20030106,\x01")).get()));
}

TEST(Inference, AskedForByTheHostMakesNoSymbol)
{
    ParsedFile file({OLESTR("ES,20030106,1.0,2.0,0.5,1.5"), OLESTR("ES,20030107,1.0,2.0,0.5,1.5")});
    ASSERT_EQ(S_OK, file.Offer({{ResolutionDays, OLESTR("Days")}}));
    EXPECT_EQ(S_OK, file.Load());
    EXPECT_EQ("Symbol, Date yyyymmdd, Open, High, Low, Close", file.Columns());
    EXPECT_EQ(S_OK, file->FindResolution(Bstr(file.File().m_lines[0]).get()));
    EXPECT_EQ("Open Interest, Date yyyymmdd, Open, High, Low, Close", file.Columns());
    EXPECT_EQ(ResolutionDays, file.Resolution());
}

TEST(Inference, KeepsThePredefinedDate)
{
    // The first ten records don't show which number is the day; the user knows.
    ParsedFile file(Lines(12, OLESTR("01/02/2003,1.5")));
    EXPECT_EQ(S_OK, file.Load());
    EXPECT_EQ("Date *m/*d/*y, Open", file.Columns());
    EXPECT_EQ(S_OK, file->SetFieldType(0, TypeDate));
    EXPECT_EQ(S_OK, file->FindResolution(Bstr(file.File().m_lines[0]).get()));
    EXPECT_EQ("Date , Open", file.Columns()); // the template was emptied with the type
}

} // namespace
