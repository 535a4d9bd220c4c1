// Several readers at once, cancelling, and how far a reader may get ahead.

#include <thread>

#include <tabulex.hpp>

#include "tests/facade/QuoteFile.h"

namespace {

double SumOfCloses(const std::string& path)
{
    double sum = 0;
    tabulex::open(path).read([&](const tabulex::Row& row) { sum += row.close(); });
    return sum;
}

TEST(FacadeThreads, ReadDifferentFilesAndTheSameOne)
{
    const QuoteFile one(kDayHeader + DayLines(0, 5000));
    const QuoteFile two(kDayHeader + DayLines(0, 3000));
    std::vector<double> sums(6);
    {
        std::vector<std::jthread> threads;
        for (std::size_t i = 0; i < sums.size(); ++i)
            threads.emplace_back(
                [&, i] { sums[i] = SumOfCloses(i % 2 == 0 ? one.Name() : two.Name()); });
    }
    for (std::size_t i = 0; i < sums.size(); ++i)
        EXPECT_EQ(i % 2 == 0 ? 4999.0 * 5000 / 2 : 2999.0 * 3000 / 2, sums[i]);
}

// A reader that rests holds nobody up.
TEST(FacadeThreads, OneMayReadAFileTwiceSideBySide)
{
    const QuoteFile quotes(kDayHeader + DayLines(0, 20'000));
    const auto first = tabulex::open(quotes.Name());
    const auto second = tabulex::open(quotes.Name());
    auto resting = first.rows();
    auto it = resting.begin();
    auto rows = second.rows();
    double nRow = 0;
    for (const auto& row : rows) {
        ASSERT_EQ(nRow, row.close());
        if (it->close() * 2 < nRow)
            ++it;
        ++nRow;
    }
    EXPECT_EQ(20'000, nRow);
}

TEST(FacadeCancelling, ComesFromAnotherThread)
{
    const QuoteFile quotes(kDayHeader + DayLines(0, 25'000));
    const auto file = tabulex::open(quotes.Name());
    auto rows = file.rows();
    std::uint64_t nRows = 0;
    std::jthread other;
    for ([[maybe_unused]] const auto& row : rows)
        if (++nRows == 1500) {
            other = std::jthread([&] { rows.cancel(); });
            other.join();
        }
    EXPECT_TRUE(rows.is_cancelled());
    EXPECT_FALSE(rows.is_complete());
    EXPECT_EQ(2000u, nRows); // the batch is read to its end
    EXPECT_EQ(2000u, rows.counts().delivered);
}

TEST(FacadeCancelling, ComesByAStopToken)
{
    const QuoteFile quotes(kDayHeader + DayLines(0, 25'000));
    const auto file = tabulex::open(quotes.Name());
    std::stop_source source;
    std::uint64_t nRows = 0;
    const auto summary = file.read(
        [&](const tabulex::Row&) {
            if (++nRows == 10)
                source.request_stop();
        },
        {.stop = source.get_token()});
    EXPECT_FALSE(summary.is_complete);
    EXPECT_EQ(1000u, nRows);
}

TEST(FacadeCancelling, MayComeAheadOfTheFirstRow)
{
    const QuoteFile quotes(kDayHeader + DayLines(0, 25'000));
    std::stop_source source;
    source.request_stop();
    const auto summary =
        tabulex::open(quotes.Name())
            .read([](const tabulex::Row&) { FAIL(); }, {.stop = source.get_token()});
    EXPECT_FALSE(summary.is_complete);
    EXPECT_EQ(0u, summary.counts.lines);
}

TEST(FacadeCancelling, IsNoEndOfTheFile)
{
    const QuoteFile quotes(kDayHeader + DayLines(0, 5000));
    const auto file = tabulex::open(quotes.Name());
    {
        auto rows = file.rows();
        rows.cancel();
    }
    EXPECT_TRUE(file.read([](const tabulex::Row&) {}).is_complete);
}

} // namespace
