// Reading rows: their values, both ways to get at them, bad lines, counts, and ends in the middle.

#include <algorithm>
#include <chrono>
#include <ranges>

#include <tabulex.hpp>

#include "tests/facade/QuoteFile.h"

namespace {

using namespace std::chrono_literals;
using std::chrono::sys_days;

static_assert(std::input_iterator<tabulex::Rows::iterator>);
static_assert(std::ranges::input_range<tabulex::Rows>);

constexpr sys_days kFirstDay = std::chrono::year(2003) / 1 / 1;

TEST(FacadeLayout, TellsWhatWasFound)
{
    const QuoteFile quotes(kDayHeader + DayLines(0, 40));
    const auto file = tabulex::open(quotes.Name());
    const tabulex::Layout& layout = file.layout();
    EXPECT_EQ(tabulex::comma, layout.dividers & tabulex::comma);
    EXPECT_TRUE(layout.has_header);
    EXPECT_EQ("Date,Open,High,Low,Close,Volume", layout.header);
    EXPECT_EQ(0u, layout.lines_to_skip);
    EXPECT_FALSE(layout.runs_backwards);
    EXPECT_EQ(tabulex::Resolution::days, layout.resolution);
    EXPECT_EQ(kFirstDay, layout.first);
    EXPECT_EQ(kFirstDay + std::chrono::days(39), layout.last);
    EXPECT_EQ("", layout.fault);
    EXPECT_EQ(quotes.Name(), file.path());
}

TEST(FacadeLayout, TellsTheColumns)
{
    const QuoteFile quotes("Date,Time,Open,High,Low,Close,Wind,Volume\n"
                           "2003-01-01,09:30,1,2,1,2,north,5\n2003-01-01,09:31,1,2,1,2,south,5\n"
                           "2003-01-01,09:32,1,2,1,2,east,5\n");
    const auto file = tabulex::open(quotes.Name());
    ASSERT_EQ(8u, file.columns().size());
    EXPECT_EQ("Date", file.columns()[0].name);
    EXPECT_EQ(tabulex::Kind::date, file.columns()[0].kind);
    EXPECT_EQ("*y-*m-*d", file.columns()[0].pattern);
    EXPECT_EQ(tabulex::Kind::time, file.columns()[1].kind);
    EXPECT_EQ(tabulex::Field::close, file.columns()[5].field);
    EXPECT_EQ(tabulex::Field::none, file.columns()[6].field);
    EXPECT_EQ("", file.columns()[6].name);
    EXPECT_EQ("Wind", file.columns()[6].heading);
    EXPECT_EQ(tabulex::Kind::number, file.columns()[7].kind);
}

TEST(FacadeRows, HaveTypedValues)
{
    const QuoteFile quotes("Symbol,Date,Time,Open,High,Low,Close,Volume\n"
                           "ABC,2003-01-01,09:30:15,1.25,2.5,1,2,50000000000\n"
                           "ABC,2003-01-01,09:31:15,1,2,1,2,5\n"
                           "ABC,2003-01-01,09:32:15,1,2,1,2,5\n");
    auto rows = tabulex::open(quotes.Name()).rows(); // keeps the file open
    const auto row = *rows.begin();
    EXPECT_EQ("ABC", row.symbol());
    EXPECT_EQ(kFirstDay, row.date());
    EXPECT_EQ(9h + 30min + 15s, row.time());
    EXPECT_EQ(kFirstDay + 9h + 30min + 15s, row.moment());
    EXPECT_EQ(1.25, row.open());
    EXPECT_EQ(2.5, row.high());
    EXPECT_EQ(1, row.low());
    EXPECT_EQ(2, row.close());
    EXPECT_EQ(50'000'000'000, row.volume());
    ASSERT_EQ(8u, row.size());
    EXPECT_EQ(tabulex::Value("ABC"), row[0]);
    EXPECT_EQ(tabulex::Value(sys_days(kFirstDay)), row[1]);
    EXPECT_EQ(tabulex::Value(tabulex::TimeOfDay(9h + 30min + 15s)), row["time"]);
    EXPECT_EQ(tabulex::Value(2.5), row["High"]);
    EXPECT_EQ(tabulex::Value(std::int64_t(50'000'000'000)), row[tabulex::Field::volume]);
}

TEST(FacadeRows, HaveMomentsThatCanBeWritten)
{
    EXPECT_EQ("2003-01-01 00:00:00", tabulex::to_text(kFirstDay));
    EXPECT_EQ("2003-01-01 09:30:15.025",
              tabulex::to_text(tabulex::Moment(kFirstDay) + 9h + 30min + 15s + 25ms));
    EXPECT_EQ("1969-12-31 23:59:59.999", tabulex::to_text(tabulex::Moment(-1ms)));
}

TEST(FacadeRows, RefuseWhatTheFileDoesNotHave)
{
    const QuoteFile quotes(kDayHeader + DayLines(0, 40));
    auto rows = tabulex::open(quotes.Name()).rows();
    const auto row = *rows.begin();
    EXPECT_FALSE(row.has(tabulex::Field::symbol));
    EXPECT_THROW(row.symbol(), std::out_of_range);
    EXPECT_THROW(row["Weather"], std::out_of_range);
    EXPECT_THROW(row[6], std::out_of_range);
    EXPECT_THROW(row.price_of(tabulex::Field::volume), std::out_of_range);
    EXPECT_THROW(row.number_of(tabulex::Field::open_interest), std::out_of_range);
    EXPECT_EQ(0ms, row.time());
}

TEST(FacadeRows, ComeAllAndInOrder)
{
    const QuoteFile quotes(kDayHeader + DayLines(0, 12'345));
    auto rows = tabulex::open(quotes.Name()).rows();
    int nRow = 0;
    for (const auto& row : rows) {
        ASSERT_EQ(nRow, row.close());
        ASSERT_EQ(kFirstDay + std::chrono::days(nRow), row.moment());
        ++nRow;
    }
    EXPECT_EQ(12'345, nRow);
    EXPECT_TRUE(rows.is_complete());
    EXPECT_EQ(12'345u, rows.counts().lines);
    EXPECT_EQ(12'345u, rows.counts().delivered);
    EXPECT_EQ(0u, rows.counts().skipped());
}

TEST(FacadeRows, MayBeKept)
{
    const QuoteFile quotes(kDayHeader + DayLines(0, 3000));
    std::vector<tabulex::Row> kept;
    {
        auto rows = tabulex::open(quotes.Name()).rows();
        for (const auto& row : rows)
            if (row.volume() % 10'000 == 0)
                kept.push_back(row);
    }
    ASSERT_EQ(3u, kept.size());
    EXPECT_EQ(2000, kept[2].close());
}

TEST(FacadeRows, OfAFileThatRunsBackwardsComeEarliestFirst)
{
    std::string text = kDayHeader;
    for (int i = 1500; i-- > 0;)
        text += i == 5 || i == 700 ? "2003/what,1,1,1,1,1\n" : DayLines(i, 1);
    const QuoteFile quotes(text);
    const auto file = tabulex::open(quotes.Name());
    EXPECT_TRUE(file.layout().runs_backwards);
    auto rows = file.rows();
    double last = -1;
    for (const auto& row : rows) {
        EXPECT_LT(last, row.close());
        last = row.close();
    }
    EXPECT_EQ(1499, last);
    ASSERT_EQ(2u, rows.bad_lines().size());
    EXPECT_EQ(1496u, rows.bad_lines()[0].line); // 1494 lines of later days and the header before
    EXPECT_EQ(801u, rows.bad_lines()[1].line);
}

TEST(FacadeRows, GoOnBehindTheDateOfTheLastLine)
{
    const QuoteFile quotes(kSymbolHeader + DayLines(10, 30, "ABC") + DayLines(20, 40, "DEF") +
                           DayLines(0, 25, "GHI"));
    auto rows = tabulex::open(quotes.Name()).rows();
    for ([[maybe_unused]] const auto& row : rows) {
    }
    EXPECT_EQ(95u, rows.counts().delivered);
    EXPECT_TRUE(rows.is_complete());
}

// ---- bad lines

std::string WithBadLines()
{
    return kDayHeader + DayLines(0, 150) + "2003-05-31,1,x,1,1,1\n" + DayLines(151, 1) +
           "nothing of the kind\n" + DayLines(150, 1) + DayLines(153, 1500);
}

TEST(FacadeBadLines, AreCollected)
{
    const QuoteFile quotes(WithBadLines());
    auto rows = tabulex::open(quotes.Name()).rows();
    for ([[maybe_unused]] const auto& row : rows) {
    }
    const auto& bad = rows.bad_lines();
    ASSERT_EQ(3u, bad.size());
    EXPECT_EQ(152u, bad[0].line);
    EXPECT_EQ(2u, bad[0].column);
    EXPECT_NE(std::string::npos, bad[0].message.find("\"x\"")) << bad[0].message;
    EXPECT_EQ(154u, bad[1].line);
    EXPECT_EQ(0u, bad[1].column);
    EXPECT_EQ(155u, bad[2].line);
    EXPECT_FALSE(bad[2].column);
    EXPECT_EQ(3u, rows.counts().bad);
    EXPECT_EQ(1654u, rows.counts().lines);
    EXPECT_EQ(1651u, rows.counts().delivered);
}

TEST(FacadeBadLines, AreGivenToACallback)
{
    const QuoteFile quotes(WithBadLines());
    std::vector<std::uint64_t> lines;
    const auto summary =
        tabulex::open(quotes.Name())
            .read([](const tabulex::Row&) {},
                  {.on_bad_line = [&](const tabulex::BadLine& bad) { lines.push_back(bad.line); }});
    EXPECT_EQ((std::vector<std::uint64_t>{152, 154, 155}), lines);
    EXPECT_TRUE(summary.bad_lines.empty());
    EXPECT_EQ(3u, summary.counts.bad);
}

TEST(FacadeBadLines, AreKeptUpToAMostAndAllCounted)
{
    std::string text = kDayHeader + DayLines(0, 200);
    for (int i = 0; i < 3000; ++i)
        text += "nothing of the kind\n";
    text += DayLines(200, 1);
    const QuoteFile quotes(text);
    const auto summary =
        tabulex::open(quotes.Name()).read([](const tabulex::Row&) {}, {.most_bad_lines = 7});
    EXPECT_EQ(7u, summary.bad_lines.size());
    EXPECT_EQ(3000u, summary.counts.bad);
    EXPECT_EQ(201u, summary.counts.delivered);
}

// ---- ends

TEST(FacadeReading, ByCallbackGivesASummary)
{
    const QuoteFile quotes(kDayHeader + DayLines(0, 2500));
    double sum = 0;
    const auto summary =
        tabulex::open(quotes.Name()).read([&](const tabulex::Row& row) { sum += row.close(); });
    EXPECT_EQ(2499.0 * 2500 / 2, sum);
    EXPECT_TRUE(summary.is_complete);
    EXPECT_EQ(2500u, summary.counts.delivered);
}

TEST(FacadeReading, EndsWhereTheCallbackSaysSo)
{
    const QuoteFile quotes(kDayHeader + DayLines(0, 12'000));
    int nRows = 0;
    const auto summary =
        tabulex::open(quotes.Name()).read([&](const tabulex::Row&) { return ++nRows < 1500; });
    EXPECT_EQ(1500, nRows);
    EXPECT_FALSE(summary.is_complete);
}

TEST(FacadeReading, MayBeGivenUpInTheMiddleAndBegunAgain)
{
    const QuoteFile quotes(kDayHeader + DayLines(0, 20'000));
    const auto file = tabulex::open(quotes.Name());
    for (int i = 0; i < 20; ++i) {
        auto rows = file.rows();
        auto it = rows.begin();
        for (int k = 0; k < 100 * i; ++k)
            ++it;
        ASSERT_EQ(100 * i, it->close());
    }
    EXPECT_EQ(20'000u, file.read([](const tabulex::Row&) {}).counts.delivered);
}

TEST(FacadeReading, MayEndAheadOfItsFirstRow)
{
    const QuoteFile quotes(kDayHeader + DayLines(0, 20'000));
    for (int i = 0; i < 20; ++i) {
        const auto file = tabulex::open(quotes.Name());
        const auto rows = file.rows();
    }
}

TEST(FacadeReading, LetsAnExceptionOfTheCallbackThrough)
{
    const QuoteFile quotes(kDayHeader + DayLines(0, 5000));
    const auto file = tabulex::open(quotes.Name());
    EXPECT_THROW(file.read([](const tabulex::Row&) { throw std::domain_error("enough"); }),
                 std::domain_error);
    EXPECT_EQ(5000u, file.read([](const tabulex::Row&) {}).counts.delivered);
}

TEST(FacadeReading, RefusesASecondOneOfTheSameObject)
{
    const QuoteFile quotes(kDayHeader + DayLines(0, 5000));
    const auto file = tabulex::open(quotes.Name());
    {
        const auto rows = file.rows();
        EXPECT_THROW(file.rows(), tabulex::error);
    }
    EXPECT_NO_THROW(file.rows());
}

} // namespace
