// Dates, times and numbers as the tool writes and reads them.
#include <charconv>
#include <cmath>
#include <random>

#include <gtest/gtest.h>

#include "tests/support/Seed.h"
#include "tools/tabulex/text/Formats.h"

using namespace tabulex;

namespace {

std::string PriceText(double value)
{
    std::string text;
    AppendPrice(text, value);
    return text;
}

std::string TimeText(DATE date)
{
    std::string text;
    AppendTime(text, date);
    return text;
}

constexpr double kMillisecond = 1.0 / 86'400'000;

} // namespace

TEST(Prices, AreTheShortestPlainDecimal)
{
    struct Row
    {
        double value;
        const char* pszText;
    };
    const Row rows[] = {
        {0, "0"},
        {-0.0, "-0"},
        {1, "1"},
        {100, "100"},
        {1.1, "1.1"},
        {-1.5, "-1.5"},
        {0.1 + 0.2, "0.30000000000000004"},
        {0.5, "0.5"},
        {0.00001, "0.00001"},
        {0.000012, "0.000012"},
        {0.0000099, "9.9e-06"},
        {105.97, "105.97"},
        {1234.56789, "1234.56789"},
        {1234.567891, "1234.567891"},
        {999999999999999, "999999999999999"},
        {123456789012345.6, "123456789012345.6"},
        {1e15, "1e+15"},
        {-1e22, "-1e+22"},
        {9999999999.99999, "9999999999.99999"},
        {10000000000.00001, "10000000000.00001"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.pszText);
        EXPECT_EQ(PriceText(row.value), row.pszText);
    }
}

// The fast way for few decimals must give the same as the library's conversion.
TEST(Prices, AgreeWithTheLibraryOnRandomValues)
{
    std::mt19937_64 random(Seed());
    for (int i = 0; i < Rounds(200'000); ++i) {
        const int nDecimals = static_cast<int>(random() % 9);
        const int nBits = 1 + static_cast<int>(random() % 52);
        const auto n = static_cast<double>(random() >> (64 - nBits));
        const double value = (random() & 1 ? -n : n) / std::pow(10.0, nDecimals);
        if (value == 0 || std::abs(value) < 1e-5 || std::abs(value) >= 1e15)
            continue;
        char text[64];
        const auto end = std::to_chars(text, text + sizeof text, value, std::chars_format::fixed);
        ASSERT_EQ(PriceText(value), std::string(text, end.ptr));
    }
}

TEST(Times, ShowMillisecondsOnlyWhereThereAreAny)
{
    struct Row
    {
        int nMilliseconds;
        const char* pszText;
    };
    const Row rows[] = {
        {0, "00:00:00"},          {1, "00:00:00.001"},          {999, "00:00:00.999"},
        {34'200'000, "09:30:00"}, {34'215'005, "09:30:15.005"}, {86'399'999, "23:59:59.999"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.pszText);
        EXPECT_EQ(TimeText(row.nMilliseconds * kMillisecond), row.pszText);
        EXPECT_EQ(TimeText(37'000 + row.nMilliseconds * kMillisecond), row.pszText);
    }
}

// A fraction that is less than a tick below a whole second is that second.
TEST(Times, AreRoundedToMilliseconds)
{
    EXPECT_EQ(TimeText(34'200'000 * kMillisecond - 1e-13), "09:30:00");
    EXPECT_EQ(TimeText(34'200'000 * kMillisecond + 1e-13), "09:30:00");
}

TEST(Dates, CountFromTheEndOf1899)
{
    struct Row
    {
        double date;
        const char* pszText;
    };
    const Row rows[] = {
        {0, "1899-12-30"},     {2, "1900-01-01"},          {60, "1900-02-28"},
        {61, "1900-03-01"},    {25569, "1970-01-01"},      {36585, "2000-02-29"},
        {37980, "2003-12-25"}, {37980.9999, "2003-12-25"}, {73050, "2099-12-31"},
    };
    DateText dates;
    for (const Row& row : rows) {
        SCOPED_TRACE(row.pszText);
        EXPECT_EQ(dates.Of(row.date), row.pszText);
        EXPECT_EQ(dates.Of(row.date), row.pszText); // the second time from the text that was kept
    }
}

TEST(DateTimes, JoinDayAndTime)
{
    EXPECT_EQ(DateTimeText(37980), "2003-12-25T00:00:00");
    EXPECT_EQ(DateTimeText(37980.5, ' '), "2003-12-25 12:00:00");
    EXPECT_EQ(DateTimeText(37980 + 34'215'005 * kMillisecond), "2003-12-25T09:30:15.005");
}

TEST(DateTimes, AreReadInTheirIsoForms)
{
    const auto at = [](int h, int m, int s, int ms) {
        return 37980 + (((h * 60 + m) * 60 + s) * 1000 + ms) / 86'400'000.0;
    };
    struct Row
    {
        const char* pszText;
        double date;
    };
    const Row rows[] = {
        {"2003-12-25", at(0, 0, 0, 0)},
        {"2003-12-25T09:30", at(9, 30, 0, 0)},
        {"2003-12-25 09:30", at(9, 30, 0, 0)},
        {"2003-12-25T09:30:15", at(9, 30, 15, 0)},
        {"2003-12-25T09:30:15.5", at(9, 30, 15, 500)},
        {"2003-12-25T09:30:15.005", at(9, 30, 15, 5)},
        {"2003-12-25T23:59:59.999", at(23, 59, 59, 999)},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.pszText);
        EXPECT_EQ(ParseDateTime(row.pszText), row.date);
    }
}

TEST(DateTimes, RefuseAllOtherTexts)
{
    for (const char* pszText :
         {"", "2003", "2003-12", "2003-13-01", "2003-02-29", "2003-12-25T", "2003-12-25T9:30",
          "2003-12-25T24:00", "2003-12-25T09:60", "2003-12-25T09:30:60", "2003-12-25T09:30:15.",
          "2003-12-25T09:30:15.1234", "2003-12-25T09:30:15Z", "2003-12-25x", "25.12.2003",
          "-003-12-25", "2003-12-2 ", "+003-12-25"}) {
        SCOPED_TRACE(pszText);
        EXPECT_EQ(ParseDateTime(pszText), std::nullopt);
    }
}

TEST(WholeNumbers, AreReadWholeOrNotAtAll)
{
    EXPECT_EQ(ParseWhole("0"), 0u);
    EXPECT_EQ(ParseWhole("18446744073709551615"), 18446744073709551615u);
    for (const char* pszText : {"", "-1", "+1", " 1", "1 ", "1x", "18446744073709551616"}) {
        SCOPED_TRACE(pszText);
        EXPECT_EQ(ParseWhole(pszText), std::nullopt);
    }
}

TEST(WholeNumbers, AreGroupedForPeople)
{
    EXPECT_EQ(WithThousands(0), "0");
    EXPECT_EQ(WithThousands(999), "999");
    EXPECT_EQ(WithThousands(1000), "1,000");
    EXPECT_EQ(WithThousands(1234567), "1,234,567");
}
