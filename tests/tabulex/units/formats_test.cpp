// Dates, times and numbers as the tool writes and reads them.
#include <charconv>
#include <chrono>
#include <cmath>
#include <limits>
#include <random>

#include <fmt/format.h>
#include <gtest/gtest.h>

#include "tests/support/Seed.h"
#include "tools/tabulex/text/Formats.h"

using namespace tabulex;

namespace {

std::string PriceText(double value)
{
    char text[kDigitsRoom];
    return std::string(text, PutPrice(text, value));
}

std::string TimeText(DATE date)
{
    char text[kDigitsRoom];
    return std::string(text, PutTimeOfDay(text, TimeOfDay(date)));
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
        {0.00001234, "0.00001234"},
        {0.000012345, "0.000012345"},
        {-6543.21098765, "-6543.21098765"},
        {9999999.99999999, "9999999.99999999"},
        {99999999, "99999999"},
        {100000000, "100000000"},
        {100000001.5, "100000001.5"},
        {std::numeric_limits<double>::infinity(), "inf"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.pszText);
        EXPECT_EQ(PriceText(row.value), row.pszText);
    }
}

// The fast ways for few decimals must give the same as the library's conversion. A neighbour of a
// short decimal has a long text, which a rounding must not shorten.
TEST(Prices, AgreeWithTheLibraryOnRandomValues)
{
    std::mt19937_64 random(Seed());
    for (int i = 0; i < Rounds(200'000); ++i) {
        const int nDecimals = static_cast<int>(random() % 10);
        const int nBits = 1 + static_cast<int>(random() % 52);
        const auto n = static_cast<double>(random() >> (64 - nBits));
        const double decimal = (random() & 1 ? -n : n) / std::pow(10.0, nDecimals);
        for (const double value : {decimal, std::nextafter(decimal, 1e300)}) {
            const double magnitude = std::abs(value);
            if (magnitude < 1e-5 || magnitude >= 1e15)
                continue;
            char text[64];
            const auto end =
                std::to_chars(text, text + sizeof text, value, std::chars_format::fixed);
            ASSERT_EQ(PriceText(value), std::string(text, end.ptr));
        }
    }
}

TEST(WholeNumbers, AgreeWithTheLibraryAtEveryLength)
{
    using Limits = std::numeric_limits<LONGLONG>;
    std::vector<LONGLONG> values = {0, Limits::max(), Limits::min()};
    for (LONGLONG nPower = 1; nPower <= Limits::max() / 10; nPower *= 10)
        for (const LONGLONG n : {nPower - 1, nPower, nPower + 1, nPower * 7 + 3})
            values.insert(values.end(), {n, -n});
    for (const LONGLONG value : values) {
        char text[kDigitsRoom];
        ASSERT_EQ(std::string(text, PutWhole(text, value)), std::to_string(value));
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

// The digits are made in one word; a plain way to write them is the judge.
TEST(Times, AreWrittenDigitByDigit)
{
    for (unsigned n = 0; n < 86'400'000; n += 997) {
        std::string sPlain =
            fmt::format("{:02}:{:02}:{:02}", n / 3'600'000, n / 60'000 % 60, n / 1000 % 60);
        if (n % 1000 != 0)
            sPlain += fmt::format(".{:03}", n % 1000);
        char text[kDigitsRoom];
        ASSERT_EQ(std::string(text, PutTimeOfDay(text, n)), sPlain);
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

TEST(Dates, AreWrittenDigitByDigit)
{
    for (int nDay = 0; nDay <= 65'535; ++nDay) {
        const std::chrono::year_month_day date{kDayZero + std::chrono::days(nDay)};
        char text[kDigitsRoom];
        ASSERT_EQ(std::string(text, PutDay(text, nDay)),
                  fmt::format("{:04}-{:02}-{:02}", static_cast<int>(date.year()),
                              static_cast<unsigned>(date.month()),
                              static_cast<unsigned>(date.day())));
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
