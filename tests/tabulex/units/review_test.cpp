// What headings say, and in which orders dates can be read.
#include <gtest/gtest.h>

#include "advice/headings/HeadingWords.h"
#include "interfaces/FieldsAndResolutions.h"
#include "tools/tabulex/review/Decoding.h"
#include "tools/tabulex/review/DeliveredReview.h"
#include "tools/tabulex/review/LayoutFacts.h"
#include "tools/tabulex/text/Formats.h"

using namespace tabulex;

namespace {

using Order = std::vector<std::string>;

LONG DayOf(std::string_view text)
{
    return static_cast<LONG>(ParseDateTime(text).value());
}

std::string DayName(std::optional<LONG> nDay)
{
    DateText dates;
    return nDay ? std::string(dates.Of(*nDay)) : "none";
}

struct HeadingCase
{
    const char* pszHeading;
    Meaning meaning;
};

void PrintTo(const HeadingCase& row, std::ostream* out)
{
    *out << row.pszHeading;
}

class HeadingTest : public testing::TestWithParam<HeadingCase>
{};

TEST_P(HeadingTest, SaysItsMeaning)
{
    EXPECT_EQ(MeaningOf(GetParam().pszHeading), GetParam().meaning);
}

INSTANTIATE_TEST_SUITE_P(
    English, HeadingTest,
    testing::Values(
        HeadingCase{"Open", Meaning::Open}, HeadingCase{"<OPEN>", Meaning::Open},
        HeadingCase{"\"Open Price\"", Meaning::Open}, HeadingCase{"price_open", Meaning::Open},
        HeadingCase{"O", Meaning::Open}, HeadingCase{"BTC:open", Meaning::Open},
        HeadingCase{"BidHigh", Meaning::High}, HeadingCase{"Close/Last", Meaning::Close},
        HeadingCase{"Adj Close", Meaning::Close}, HeadingCase{"Adj. Volume", Meaning::Volume},
        HeadingCase{"Volume (USD)", Meaning::Volume}, HeadingCase{"volume_btc", Meaning::Volume},
        HeadingCase{"OpenInt", Meaning::OpenInterest},
        HeadingCase{"<OPENINT>", Meaning::OpenInterest},
        HeadingCase{"Open Interest", Meaning::OpenInterest},
        HeadingCase{"Previous Day Open Interest", Meaning::OpenInterest},
        HeadingCase{"Open time", Meaning::Moment}, HeadingCase{"Date/Time", Meaning::Moment},
        HeadingCase{"NumTrades", Meaning::Trades}, HeadingCase{"Number of trades", Meaning::Trades},
        HeadingCase{"TICKVOL", Meaning::TickVolume}, HeadingCase{"Up-Vol", Meaning::UpVolume},
        HeadingCase{"Stockid", Meaning::Symbol}));

INSTANTIATE_TEST_SUITE_P(
    NoField, HeadingTest,
    testing::Values(
        HeadingCase{"amount", Meaning::Other}, HeadingCase{"Turnover", Meaning::Other},
        HeadingCase{"Quote asset volume", Meaning::Other}, HeadingCase{"Bid", Meaning::Other},
        HeadingCase{"Ask Size", Meaning::Other}, HeadingCase{"Ex-Dividend", Meaning::Other},
        HeadingCase{"Split Ratio", Meaning::Other}, HeadingCase{"Contract", Meaning::Other},
        HeadingCase{"Prev. Close", Meaning::Other}, HeadingCase{"Change %", Meaning::Other},
        HeadingCase{"MA5", Meaning::Other}, HeadingCase{"52 Week High", Meaning::Other},
        HeadingCase{"<PER>", Meaning::Other}, HeadingCase{"ATMA", Meaning::Unknown},
        HeadingCase{"", Meaning::Unknown}, HeadingCase{"High Low", Meaning::Unknown},
        HeadingCase{"foo", Meaning::Unknown}));

INSTANTIATE_TEST_SUITE_P(
    OtherLanguages, HeadingTest,
    testing::Values(
        HeadingCase{"日期", Meaning::Date}, HeadingCase{"收盘价", Meaning::Close},
        HeadingCase{"成交量(手)", Meaning::Volume}, HeadingCase{"成交金额", Meaning::Other},
        HeadingCase{"Eröffnung", Meaning::Open}, HeadingCase{"Schlusskurs", Meaning::Close},
        HeadingCase{"Stück", Meaning::Volume}, HeadingCase{"Clôture", Meaning::Close},
        HeadingCase{"+ Haut", Meaning::High}, HeadingCase{"Máximo", Meaning::High},
        HeadingCase{"Último", Meaning::Close}, HeadingCase{"Fecha", Meaning::Date},
        HeadingCase{"Abertura", Meaning::Open}, HeadingCase{"Mínima", Meaning::Low},
        HeadingCase{"Chiusura", Meaning::Close}, HeadingCase{"Massimo", Meaning::High},
        HeadingCase{"Slotkoers", Meaning::Close}, HeadingCase{"Laag", Meaning::Low},
        HeadingCase{"Najwyższy", Meaning::High}, HeadingCase{"Zamknięcie", Meaning::Close},
        HeadingCase{"Zamkniecie", Meaning::Close}, HeadingCase{"Дата", Meaning::Date},
        HeadingCase{"ЗАКРЫТИЕ", Meaning::Close}, HeadingCase{"Объём", Meaning::Volume},
        HeadingCase{"始値", Meaning::Open}, HeadingCase{"出来高", Meaning::Volume},
        HeadingCase{"Açılış", Meaning::Open}, HeadingCase{"DÜŞÜK", Meaning::Low},
        HeadingCase{"Hacim", Meaning::Volume}));

TEST(HeadingTest, AdjustedPricesAreTold)
{
    EXPECT_TRUE(IsAdjusted("Adj. Close"));
    EXPECT_TRUE(IsAdjusted("AdjustedClose"));
    EXPECT_FALSE(IsAdjusted("Close"));
}

TEST(HeadingTest, AMeaningAdmitsTypes)
{
    using namespace IQRL_TabulexConverter;
    EXPECT_TRUE(Agrees(Meaning::Close, TypePrice));
    EXPECT_TRUE(Agrees(Meaning::Time, TypeDate));
    EXPECT_FALSE(Agrees(Meaning::Date, TypeTime));
    EXPECT_FALSE(Agrees(Meaning::OpenInterest, TypeDownTicks));
    EXPECT_FALSE(Agrees(Meaning::Other, TypeVolume));
    EXPECT_EQ(TypeOfMeaning(Meaning::Trades), unsigned(TypeTotalTicks));
    EXPECT_EQ(TypeOfMeaning(Meaning::Other), kNoType);
}

TEST(ReviewCellsTest, EmptyCellsCountAndQuotesGo)
{
    EXPECT_EQ(SplitCells("\"Date\", Open,,Low", 4), (Order{"Date", "Open", "", "Low"}));
    EXPECT_EQ(SplitCells("Date  Time Open", 2), (Order{"Date", "Time", "Open"}));
}

TEST(ReviewDecodingTest, ACutSequenceIsUtf8)
{
    EXPECT_TRUE(IsUtf8("Zamkni\xC4\x99"));
    EXPECT_TRUE(IsUtf8("Zamkni\xC4"));
    EXPECT_FALSE(IsUtf8("Zamkni\xEA"
                        "cie"));
    EXPECT_EQ(DecodeBytes("\xC8\xD5\xC6\xDA", "gbk"), "日期");
    EXPECT_FALSE(DecodeBytes("\xFF\xFF", "utf-8"));
}

// ---- orders of dates

TEST(DateOrderTest, DayAndMonthChangePlaces)
{
    EXPECT_EQ(DateOrder("*d/*m/*y", false).Others(), Order{"*m/*d/*y"});
    EXPECT_EQ(DateOrder("*dmmyyyy", false).Others(), Order{"*mddyyyy"});
}

TEST(DateOrderTest, AShortYearMayStandAnywhere)
{
    EXPECT_EQ(DateOrder("*y/*m/*d", true).Others(), (Order{"*d/*m/*y", "*m/*d/*y"}));
    EXPECT_EQ(DateOrder("yymmdd", true).Others(), (Order{"ddmmyy", "mmddyy"}));
}

TEST(DateOrderTest, AYearAheadOrANamedMonthLeavesNoDoubt)
{
    EXPECT_TRUE(DateOrder("*y-*m-*d", false).Others().empty());
    EXPECT_TRUE(DateOrder("yyyymmdd", false).Others().empty());
    EXPECT_TRUE(DateOrder("*d-mmm-*y", true).Others().empty());
}

TEST(DateOrderTest, ADayIsReadAnew)
{
    const DateOrder order("*y/*m/*d", true);
    EXPECT_EQ(DayName(order.Reread(0, DayOf("2001-02-03"))), "2003-02-01");
    EXPECT_EQ(DayName(order.Reread(1, DayOf("2001-02-03"))), "2003-01-02");
    EXPECT_EQ(DayName(order.Reread(0, DayOf("1995-02-03"))), "none");
    EXPECT_EQ(DayName(DateOrder("*d/*m/*y", false).Reread(0, DayOf("2020-01-13"))), "none");
}

TEST(DateOrderTest, TheTextShowsHowYearsAreWritten)
{
    EXPECT_TRUE(HasShortYear("*d/*m/*y", "01/02/03"));
    EXPECT_FALSE(HasShortYear("*d/*m/*y", "01/02/2003"));
    EXPECT_TRUE(HasShortYear("*dmmyy", "10203"));
    EXPECT_FALSE(HasShortYear("ddmmy*", "01022003"));
}

DateOrderReview::Evidence EvidenceOf(std::initializer_list<const char*> days, bool bRunsOn)
{
    DateOrderReview review(DateOrder("*d/*m/*y", false), bRunsOn);
    ULONGLONG nRow = 0;
    for (const char* pszDay : days)
        review.TakeNewDay({0, nRow++, DayOf(pszDay)});
    return review.Result().at(0);
}

TEST(DateOrderReviewTest, LateDaysOfAMonthDecide)
{
    const auto evidence = EvidenceOf({"2020-01-02", "2020-01-13", "2020-01-14"}, true);
    EXPECT_EQ(evidence.nDays, 3u);
    EXPECT_EQ(evidence.nDeciding, 2u);
    EXPECT_EQ(evidence.firstOpen->nRow, 0u);
    EXPECT_EQ(evidence.firstClear->nRow, 1u);
}

TEST(DateOrderReviewTest, ADayCountsOnce)
{
    const auto evidence = EvidenceOf({"2020-01-13", "2020-01-02", "2020-01-13"}, true);
    EXPECT_EQ(evidence.nDays, 2u);
    EXPECT_EQ(evidence.nDeciding, 1u);
}

TEST(DateOrderReviewTest, GoingBackDecidesWhereDaysRunOn)
{
    const auto days = {"2020-01-09", "2020-01-10", "2020-02-03"}; // read anew: September to March
    EXPECT_EQ(EvidenceOf(days, true).nBack, 1u);
    EXPECT_EQ(EvidenceOf(days, false).nBack, 0u);
}

TEST(DateOrderReviewTest, ADayThatBothReadAlikeIsNotOpen)
{
    EXPECT_FALSE(EvidenceOf({"2020-05-05"}, true).firstOpen);
}

} // namespace
