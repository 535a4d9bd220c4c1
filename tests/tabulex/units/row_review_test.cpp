// What is told of rows, held against a look at each of them.
#include <cmath>
#include <limits>
#include <map>
#include <random>

#include <gtest/gtest.h>

#include "tests/support/Seed.h"
#include "tests/tabulex/units/Cells.h"
#include "tests/tabulex/units/TestFolder.h"
#include "tools/tabulex/host/ResolutionOffers.h"
#include "tools/tabulex/review/RowReview.h"

using namespace tabulex;

namespace {

using Limits = std::numeric_limits<LONGLONG>;
using Counts = std::map<std::string, ULONGLONG>; // rows by the code of what is told of them

constexpr LONGLONG kMinute = 60'000, kDayLength = 86'400'000;

// The columns of a file of minutes, and places of its cells.
enum Place
{
    SymbolCell,
    DateCell,
    TimeCell,
    OpenCell,
    HighCell,
    LowCell,
    CloseCell,
    VolumeCell,
    kCells
};

class RowReviewTest : public testing::Test
{
protected:
    RowReviewTest()
    {
        for (const auto& resolution : DefaultResolutions())
            m_offers.Add(resolution);
        m_host.emplace(m_offers);
        const std::string path = m_folder / "minutes.txt";
        std::ofstream out(PathOf(path), std::ios::binary);
        out << "Symbol,Date,Time,Open,High,Low,Close,Volume\n";
        for (int i = 0; i < 50; ++i)
            out << "ABC,2020-01-02,10:" << 10 + i % 50 << ":00,10.25,11.5,9.75,10.5,100\n";
        out.close();
        m_host->Open(path);
    }

    // Of a row that is as usual, in the minute behind the one before.
    static std::vector<Variant> Row(LONGLONG nMinute)
    {
        std::vector<Variant> cells(kCells);
        cells[SymbolCell] = Variant::FromText(OLESTR("ABC"));
        SetMoment(cells, 40000 * kDayLength + nMinute * kMinute);
        cells[OpenCell] = Number(10.25);
        cells[HighCell] = Number(11.5);
        cells[LowCell] = Number(9.75);
        cells[CloseCell] = Number(10.5);
        cells[VolumeCell] = Whole(100);
        return cells;
    }
    static void SetMoment(std::vector<Variant>& cells, LONGLONG nMoment)
    {
        cells[DateCell].iVal = static_cast<SHORT>(nMoment / kDayLength);
        cells[TimeCell].lVal = static_cast<LONG>(nMoment % kDayLength);
    }

    // In batches of some size.
    Counts Told(const std::vector<Variant>& cells, std::size_t nBatch) const
    {
        RowReview review(*m_host, DeliveredColumns(*m_host));
        const std::size_t nRows = cells.size() / kCells;
        for (std::size_t i = 0; i < nRows; i += nBatch)
            review.Take(&cells[i * kCells], std::min(nBatch, nRows - i));
        Console console{false, true, false};
        Warnings warnings(console, "file");
        review.End(warnings, console, "file");
        Counts counts;
        for (const Warning& warning : warnings.All())
            counts[std::string(warning.code)] = std::stoull(warning.sText);
        return counts;
    }

    // Row by row, each test as its words say.
    static Counts Expected(const std::vector<Variant>& cells)
    {
        Counts counts;
        LONGLONG nBefore = -1;
        string_t symbol;
        for (std::size_t i = 0; i < cells.size(); i += kCells) {
            const Variant* row = &cells[i];
            const double open = row[OpenCell].dblVal, high = row[HighCell].dblVal,
                         low = row[LowCell].dblVal, close = row[CloseCell].dblVal;
            if (high < low || open > high || open < low || close > high || close < low)
                ++counts["impossible-bar"];
            if (open == 0 || high == 0 || low == 0 || close == 0)
                ++counts["zero-price"];
            for (const double price : {open, high, low, close})
                if (std::isnan(price) || std::isinf(price))
                    ++counts["price-too-large"];
            if (row[VolumeCell].llVal == Limits::max() || row[VolumeCell].llVal == Limits::min())
                ++counts["whole-too-large"];
            const LONGLONG nMoment =
                static_cast<USHORT>(row[DateCell].iVal) * kDayLength + row[TimeCell].lVal;
            const bool bOther = nBefore < 0 || symbol != TextOf(row[SymbolCell].bstrVal);
            symbol = TextOf(row[SymbolCell].bstrVal);
            if (!bOther && nMoment == nBefore)
                ++counts["moment-twice"];
            else if (!bOther && (nMoment - nBefore) % kMinute != 0)
                ++counts["no-step"];
            nBefore = nMoment;
        }
        if (counts["zero-price"] == cells.size() / kCells)
            counts.erase("zero-price"); // then the column is unused
        std::erase_if(counts, [](const auto& entry) { return entry.second == 0; });
        return counts;
    }

    TestFolder m_folder;
    ResolutionOffers m_offers{"None"};
    std::optional<Host> m_host;
};

void MakeCellOdd(Variant* row, std::mt19937& random)
{
    constexpr double kInfinity = std::numeric_limits<double>::infinity();
    constexpr double kPrices[] = {0,    -0.0, -1,     1e300,   kInfinity, -kInfinity, NAN,   -NAN,
                                  9.75, 11.5, 5e-324, -5e-324, 9.5,       12,         -1e300};
    constexpr LONGLONG kWholes[] = {0, -1, Limits::max(), Limits::min(), Limits::max() - 1};
    switch (const auto n = random() % kCells) {
    case SymbolCell:
        row[n] = Variant::FromText(random() % 2 ? OLESTR("ABD") : OLESTR(""));
        break;
    case DateCell:
        row[n].iVal = static_cast<SHORT>(random());
        break;
    case TimeCell:
        row[n].lVal += static_cast<LONG>(random() % 3 * 30'000) - 60'000;
        break;
    case VolumeCell:
        row[n].llVal = kWholes[random() % std::size(kWholes)];
        break;
    default:
        row[n].dblVal = kPrices[random() % std::size(kPrices)];
    }
}

} // namespace

TEST_F(RowReviewTest, HasTheColumnsThatTheTestsGive)
{
    std::string names;
    for (const Column& column : DeliveredColumns(*m_host))
        names += column.sName + ' ';
    EXPECT_EQ(names, "Symbol Date Time Open High Low Close Volume ");
}

TEST_F(RowReviewTest, OfUsualRowsNothingIsTold)
{
    std::vector<Variant> cells;
    for (int i = 0; i < 1000; ++i)
        for (const Variant& cell : Row(i))
            cells.push_back(cell);
    EXPECT_EQ(Told(cells, 300), Counts());
}

TEST_F(RowReviewTest, TellsWhatALookAtEachRowShows)
{
    std::mt19937 random(Seed());
    Counts all;
    for (int i = 0; i < Rounds(200); ++i) {
        std::vector<Variant> cells;
        const unsigned nOneIn = random() % 2 ? 3 : 100;
        for (int nRow = 0; nRow < 300; ++nRow)
            for (const Variant& cell : Row(nRow))
                cells.push_back(cell);
        for (std::size_t nRow = 0; nRow < 300; ++nRow)
            for (unsigned n = random() % nOneIn ? 0 : 1 + random() % 3; n > 0; --n)
                MakeCellOdd(&cells[nRow * kCells], random);
        const Counts expected = Expected(cells);
        ASSERT_EQ(Told(cells, 1 + random() % 300), expected);
        for (const auto& [code, nRows] : expected)
            all[code] += nRows;
    }
    EXPECT_EQ(all.size(), 6u);
}
