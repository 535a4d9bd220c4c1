// Notations of numbers: what a cell becomes, and what stays out.

#include <gtest/gtest.h>

#include "tests/intake/Clean.h"

using namespace intake_test;

namespace {

struct NumberCase
{
    const char* pszOptions;
    const char* pszCell;
    const char* pszClean; // empty: no value
};

// Each with a date ahead, so that the line is a row whatever the number is.
std::string CleanNumber(const NumberCase& row)
{
    const std::string line =
        CleanLine(std::string("--separator bar --moment 1:ymd --take 2=Open ") + row.pszOptions,
                  std::string("2006-01-02|") + row.pszCell);
    EXPECT_TRUE(line.starts_with("2006-01-02")) << line;
    return line.size() > 11 ? line.substr(11) : "";
}

constexpr NumberCase kNumbers[] = {
    // Plain ones stay.
    {"", "98.05", "98.05"},
    {"", "-98", "-98"},
    {"", "0.00002853", "0.00002853"},
    {"", "98.0500", "98.0500"},
    {"", "+98.05", "98.05"},
    {"", ".5", "0.5"},
    {"", "5.", "5"},
    {"", "-.5", "-0.5"},
    {"--decimal comma", "98.05", "98.05"},
    // Decimal comma.
    {"--decimal comma", "98,05", "98.05"},
    {"--decimal comma", "-0,5", "-0.5"},
    {"--decimal comma", "1,2,3", ""},
    {"", "98,05", ""},
    // Thousands.
    {"--thousands comma", "1,098.05", "1098.05"},
    {"--thousands comma", "1,234,567", "1234567"},
    {"--thousands comma", "12,34,567.5", "1234567.5"},
    {"--thousands comma", "1,23", ""},
    {"--thousands comma", "1234,567", ""},
    {"--thousands comma", ",123", ""},
    {"--thousands comma", "1,,234", ""},
    {"--thousands comma", "1.5,000", ""},
    {"--decimal comma --thousands point", "1.098,05", "1098.05"},
    {"--decimal comma --thousands point", "100.923", "100923"},
    {"--decimal comma --thousands point", "98.05", ""},
    {"--thousands blank", "1 098.05", "1098.05"},
    {"--thousands blank --decimal comma", "1\u00A0098,05", "1098.05"},
    {"--thousands blank --decimal comma", "12\u202F345\u202F678", "12345678"},
    {"--thousands apostrophe", "1'098.05", "1098.05"},
    {"--thousands apostrophe", "1\u2019098.05", "1098.05"},
    {"", "1 098.05", ""},
    // Suffixes, percent, exponents, currency.
    {"--numbers suffix", "497.30K", "497300"},
    {"--numbers suffix", "1.5k", "1500"},
    {"--numbers suffix", "2M", "2000000"},
    {"--numbers suffix", "1.23456789B", "1234567890"},
    {"--numbers suffix", "0.5T", "500000000000"},
    {"--numbers suffix", "1.2345K", "1234.5"},
    {"--numbers suffix", "3 Mio.", ""},
    {"--numbers suffix", "3 Mio", "3000000"},
    {"--numbers suffix", "1.5万", "15000"},
    {"--numbers suffix --decimal comma", "10,90M", "10900000"},
    {"", "497.30K", ""},
    {"--numbers percent", "-0.74%", "-0.74"},
    {"--numbers percent --decimal comma", "0,74 %", "0.74"},
    {"", "0.74%", ""},
    {"--numbers exponent", "1.2e+06", "1200000"},
    {"--numbers exponent", "1.5E-3", "0.0015"},
    {"--numbers exponent", "-2e0", "-2"},
    {"--numbers exponent", "1e400", ""},
    {"--numbers exponent", "1e", ""},
    {"", "1e5", ""},
    {"--numbers currency", "$1.50", "1.50"},
    {"--numbers currency", "-$1.50", "-1.50"},
    {"--numbers currency", "$-1.50", "-1.50"},
    {"--numbers currency", "1.50 EUR", "1.50"},
    {"--numbers currency", "€ 1.50", "1.50"},
    {"--numbers currency", "(1.50)", "-1.50"},
    {"", "\u22121.5", "-1.5"},
    // No value.
    {"", "", ""},
    {"", "-", ""},
    {"", "--", ""},
    {"", "N/A", ""},
    {"", "null", ""},
    {"", "NaN", ""},
    {"--missing -9999", "-9999", ""},
    {"--missing -9999", "-9998", "-9998"},
    // No number.
    {"", "1.2.3", ""},
    {"", "12:30", ""},
    {"", "1x", ""},
    {"", "--5", ""},
};

TEST(IntakeNumbers, AreWrittenPlainly)
{
    for (const NumberCase& row : kNumbers)
        EXPECT_EQ(CleanNumber(row), row.pszClean) << row.pszOptions << " '" << row.pszCell << "'";
}

constexpr NumberCase kScaled[] = {
    {"--take 3=Volume --scale Volume:8", "30.63408917", "3063408917"},
    {"--take 3=Volume --scale Volume:1", "143539993.3", "1435399933"},
    {"--take 3=Volume --scale Volume:2", "5", "500"},
    {"--take 3=Volume --scale Volume:2", "0", "0"},
    {"--take 3=Volume --scale Volume:2", "0.004", "0"},
    {"--take 3=Volume --scale Volume:2", "0.005", "1"},
    {"--take 3=Volume --scale Volume:2", "0.999", "100"},
    {"--take 3=Volume --scale Volume:2", "99.999", "10000"},
    {"--take 3=Volume --scale Volume:2", "-1.235", "-124"},
    {"--take 3=Volume --scale Volume:0", "7.5", "8"},
    {"--take 3=Volume --scale Volume:3 --numbers exponent", "1e-4", "0"},
    {"--take 3=Volume --scale Volume:12 --numbers suffix", "1T", "1000000000000000000000000"},
};

TEST(IntakeNumbers, AreScaledAndRounded)
{
    for (const NumberCase& row : kScaled)
        EXPECT_EQ(CleanLine(std::string("--separator bar --moment 1:ymd ") + row.pszOptions,
                            std::string("2006-01-02|1|") + row.pszCell),
                  std::string("2006-01-02;") + row.pszClean)
            << row.pszOptions << " '" << row.pszCell << "'";
}

TEST(IntakeNumbers, TellWhatWasRounded)
{
    tabulex::intake::IntakeAccount account;
    Clean("--moment 1:ymd --take 2=Volume --scale Volume:2",
          "2006-01-02,1.25\n2006-01-03,1.256\n2006-01-04,1.250\n", &account);
    EXPECT_EQ(account.nRounded, 1u);
    EXPECT_EQ(account.nFirstRounded, 2u);
}

TEST(IntakeNumbers, MayHaveManyDigits)
{
    const std::string digits(60, '7');
    EXPECT_EQ(CleanLine("--moment 1:ymd --take 2=Open", "2006-01-02," + digits + ".5"),
              "2006-01-02;" + digits + ".5");
    const std::string many(1000, '7');
    EXPECT_EQ(CleanLine("--moment 1:ymd --take 2=Open", "2006-01-02," + many), "2006-01-02");
}

} // namespace
