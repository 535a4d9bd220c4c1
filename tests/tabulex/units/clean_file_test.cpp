// Lines by their numbers, and whole numbers that leave as decimals.

#include <random>
#include <sstream>

#include <gtest/gtest.h>

#include "tests/support/Seed.h"
#include "tools/tabulex/clean/FileLines.h"
#include "tools/tabulex/output/ReshapedRows.h"
#include "tools/tabulex/output/TemporaryFile.h"

namespace tabulex {

namespace {

constexpr ULONGLONG kMost = 1 << 20;

TEST(FileLines, AreFoundByTheirNumbers)
{
    const TemporaryFile file("a\r\n\nbc\n\n  d");
    FileLines lines(file.Path());
    EXPECT_EQ(lines.BytesOf(5, kMost), "  d");
    EXPECT_EQ(lines.BytesOf(1, kMost), "a");
    EXPECT_EQ(lines.BytesOf(2, kMost), "");
    EXPECT_EQ(lines.BytesOf(3, kMost), "bc");
    EXPECT_EQ(lines.BytesOf(3, 1), "b");
    EXPECT_EQ(lines.BytesOf(6, kMost), "");
    EXPECT_EQ(lines.BytesOf(1000000, kMost), "");
    EXPECT_EQ(lines.BytesOf(0, kMost), "");
}

TEST(FileLines, MayEndWithReturnsAlone)
{
    const TemporaryFile file("a\r\rb\r");
    FileLines lines(file.Path());
    EXPECT_EQ(lines.BytesOf(3, kMost), "b");
    EXPECT_EQ(lines.BytesOf(2, kMost), "");
}

TEST(FileLines, AreFoundInAnyOrder)
{
    std::mt19937 random(Seed());
    std::string text;
    std::vector<std::string> plain;
    for (int n = 0; n < 5000; ++n) {
        plain.push_back(std::string(random() % 100, static_cast<char>('a' + random() % 26)));
        text += plain.back() + '\n';
    }
    plain[1234] = std::string(200000, 'x');
    text.clear();
    for (const std::string& line : plain)
        text += line + '\n';
    const TemporaryFile file(text);
    FileLines lines(file.Path());
    for (int i = 0; i < 2000; ++i) {
        const std::size_t n = random() % plain.size();
        ASSERT_EQ(lines.BytesOf(n + 1, kMost), plain[n]) << n;
    }
    EXPECT_EQ(lines.BytesOf(1235, kMost), plain[1234]);
}

TEST(ReshapedRows, WholeNumbersLeaveAsTheDecimalsThatTheyWere)
{
    EXPECT_EQ(WithDecimals(3063408917, 8), 30.63408917);
    EXPECT_EQ(WithDecimals(5, 2), .05);
    EXPECT_EQ(WithDecimals(-1435399933, 1), -143539993.3);
    EXPECT_EQ(WithDecimals(0, 3), 0);
    EXPECT_EQ(WithDecimals(9223372036854775807, 12), 9223372.036854775807);
    ReshapedRows rows({0, 0}, {0, 3}, std::nullopt);
    VARIANT cells[2] = {};
    cells[0].vt = cells[1].vt = VT_I8;
    cells[0].llVal = cells[1].llVal = 1500;
    const VARIANT* row = rows.Of(cells, 1);
    EXPECT_EQ(row[0].vt, VT_I8);
    EXPECT_EQ(row[1].vt, VT_R8);
    EXPECT_EQ(row[1].dblVal, 1.5);
}

} // namespace

} // namespace tabulex
