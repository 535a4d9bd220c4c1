#include <string>

#include <gtest/gtest.h>

#include "advice/forms/FileSample.h"

namespace tabulex::advice {

namespace {

FileSample SampleOf(const std::string& text)
{
    return FileSample(text.size(), [&text](std::uint64_t nOffset, std::span<char> buffer) {
        return text.copy(buffer.data(), buffer.size(), static_cast<std::size_t>(nOffset));
    });
}

std::string LongText(std::size_t nLines)
{
    std::string text;
    for (std::size_t i = 0; i < nLines; ++i)
        text += "line " + std::to_string(i) + " with some text behind its number\n";
    return text;
}

} // namespace

struct EndsRow
{
    const char* pszText;
    std::vector<std::pair<std::string_view, std::uint64_t>> lines;
};

TEST(FileSample, FindsLinesByEveryKindOfEnd)
{
    const EndsRow rows[] = {
        {"a\nb\n", {{"a", 1}, {"b", 2}}}, {"a\r\nb", {{"a", 1}, {"b", 2}}},
        {"a\rb\r", {{"a", 1}, {"b", 2}}}, {"a\n\n  \nb", {{"a", 1}, {"b", 4}}},
        {"\r\n\r\na\r\n", {{"a", 3}}},    {"", {}},
    };
    for (const EndsRow& row : rows) {
        const FileSample sample{std::string(row.pszText)};
        ASSERT_EQ(sample.Lines().size(), row.lines.size()) << row.pszText;
        for (std::size_t i = 0; i < row.lines.size(); ++i) {
            EXPECT_EQ(sample.Lines()[i].sText, row.lines[i].first) << row.pszText;
            EXPECT_EQ(sample.Lines()[i].nLine, row.lines[i].second) << row.pszText;
        }
    }
}

TEST(FileSample, TakesASmallFileWhole)
{
    const std::string text = LongText(1000);
    const FileSample sample = SampleOf(text);
    EXPECT_TRUE(sample.IsWhole());
    EXPECT_EQ(sample.Lines().size(), 1000u);
}

TEST(FileSample, TakesHeadAndEndAndPiecesOfALargeFile)
{
    const std::string text = LongText(100000);
    const FileSample sample = SampleOf(text);
    EXPECT_FALSE(sample.IsWhole());
    EXPECT_LT(sample.Lines().size(), 40000u);
    EXPECT_TRUE(sample.Lines().front().sText.starts_with("line 0 "));
    EXPECT_TRUE(sample.Lines().back().sText.starts_with("line 99999 "));
    for (const SampledLine& line : sample.Lines())
        ASSERT_TRUE(line.sText.starts_with("line ") && line.sText.ends_with("number"))
            << line.sText;
}

TEST(FileSample, LeavesOutALineWithoutEnd)
{
    const FileSample sample("a\n" + std::string(kLongestLine + 1, 'x') + "\nb\n");
    EXPECT_EQ(sample.LongLine(), 2u);
    EXPECT_EQ(sample.Lines().size(), 2u);
    const std::string endless(kWholeBytes * 2, 'x');
    const FileSample none = SampleOf(endless);
    EXPECT_EQ(none.LongLine(), 1u);
    EXPECT_TRUE(none.Lines().empty());
}

TEST(FileSample, SeesBytesThatNoTextHas)
{
    EXPECT_TRUE(FileSample(std::string("a\0b", 3)).HasZeroBytes());
    EXPECT_FALSE(FileSample(std::string("a b")).HasZeroBytes());
}

} // namespace tabulex::advice
