// Rows in the order of their symbol and moment, in memory and through a store.

#include <algorithm>
#include <memory>
#include <random>
#include <string>
#include <tuple>
#include <vector>

#include <gtest/gtest.h>

#include "intake/RowSorter.h"
#include "tests/intake/Clean.h"
#include "tests/support/Seed.h"

using namespace intake_test;
using namespace tabulex::intake;

namespace {

TEST(IntakeSort, PutsRowsInOrder)
{
    const std::string text = "S,D,C\nB,2006-01-03,1\nA,2006-01-03,2\n\nB,2006-01-02,3\n"
                             "A,2006-01-02,4\nA,2006-01-02,5\n";
    EXPECT_EQ(Clean("--moment 2:ymd --take 1=Symbol --take 3=Close --sort symbol", text),
              "Symbol;Date;Close\nA;2006-01-02;4\nA;2006-01-02;5\nA;2006-01-03;2\n"
              "B;2006-01-02;3\nB;2006-01-03;1\n");
    EXPECT_EQ(Clean("--moment 2:ymd --take 1=Symbol --take 3=Close --sort moment", text),
              "Symbol;Date;Close\nB;2006-01-02;3\nA;2006-01-02;4\nA;2006-01-02;5\n"
              "B;2006-01-03;1\nA;2006-01-03;2\n");
    EXPECT_EQ(Clean("--moment 2:ymd --sort moment", text),
              "S;Date;C\nB;2006-01-02;3\nA;2006-01-02;4\nA;2006-01-02;5\n"
              "B;2006-01-03;1\nA;2006-01-03;2\n");
}

TEST(IntakeSort, TellsWhereRowsComeFrom)
{
    std::string clean;
    Intake intake(RecipeOf("--moment 1:ymd --take 2=Close --sort moment"),
                  [&](std::string_view block) { clean += block; });
    intake.Feed("D,C\n2006-01-03,1\n\n2006-01-02,2\n");
    intake.Finish();
    EXPECT_EQ(clean, "Date;Close\n2006-01-02;2\n2006-01-03;1\n");
    const auto origins = intake.LineOrigins();
    EXPECT_EQ(origins->Of(0), kNoOrigin);
    EXPECT_EQ(origins->Of(1), 3u);
    EXPECT_EQ(origins->Of(2), 1u);
    EXPECT_EQ(origins->Of(3), kNoOrigin);
    EXPECT_EQ(intake.Account().nMoved, 1u);
}

TEST(IntakeSort, IsTheSameThroughAStore)
{
    std::mt19937 random(Seed());
    for (const std::size_t nMemory : {100u, 1000u, 10000u, 10000000u}) {
        std::vector<std::string> texts(2000);
        std::vector<SortedRow> rows;
        RowSorter sorter(StoreInMemory, nMemory);
        for (std::uint64_t n = 0; n < texts.size(); ++n) {
            texts[n] = std::string(1, static_cast<char>('A' + random() % 3)) + ";" +
                       std::string(random() % 40, 'x');
            rows.push_back({static_cast<std::int64_t>(random() % 50) - 25, n, 1, texts[n]});
            sorter.Add(rows.back());
        }
        std::ranges::sort(rows, [](const SortedRow& a, const SortedRow& b) {
            return std::tuple(a.Symbol(), a.nMoment, a.nOrigin) <
                   std::tuple(b.Symbol(), b.nMoment, b.nOrigin);
        });
        std::size_t nGiven = 0;
        sorter.Give([&](const SortedRow& row) {
            ASSERT_LT(nGiven, rows.size());
            EXPECT_EQ(row.nOrigin, rows[nGiven].nOrigin);
            EXPECT_EQ(row.text, rows[nGiven].text);
            ++nGiven;
        });
        EXPECT_EQ(nGiven, rows.size());
    }
}

// A store on a disk that is full.
class FullStore : public Store
{
public:
    void Append(std::string_view) override { throw std::string("full"); }
    void ReadAt(std::uint64_t, std::span<char>) override {}
};

TEST(IntakeSort, HandsOnTheFaultOfAStore)
{
    Intake intake(
        RecipeOf("--moment 1:ymd --take 2=Close --sort moment"), [](std::string_view) {},
        [] { return std::make_unique<FullStore>(); });
    intake.Feed("2006-01-03,1\n");
    EXPECT_THROW(intake.Finish(), std::string);
}

} // namespace
