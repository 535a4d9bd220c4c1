#include <cstdint>
#include <string>

#include <gtest/gtest.h>

#include "platform/values.h"
#include "src/files/LineBuffer.h"

namespace {

using Hesperon::specifics::LineBuffer;

string_t TextOf(BSTR line)
{
    return {line, SysStringLen(line)};
}

// Lines of all lengths, so that the next line begins at each alignment.
TEST(LineBuffer, GivesEachLineAsABstr)
{
    LineBuffer lines;
    for (std::size_t n = 0; n < 100; ++n)
        lines.Add(string_t(n, static_cast<OLECHAR>('0' + n % 10)));
    ASSERT_EQ(lines.size(), 100u);
    for (std::size_t n = 0; n < lines.size(); ++n) {
        EXPECT_EQ(TextOf(lines[n]), string_t(n, static_cast<OLECHAR>('0' + n % 10)));
        EXPECT_EQ(SysStringByteLen(lines[n]), n * sizeof(OLECHAR));
        EXPECT_EQ(lines[n][n], 0) << "the null behind the text";
        EXPECT_EQ(reinterpret_cast<std::uintptr_t>(lines[n]) % sizeof(std::uint32_t), 0u);
    }
    EXPECT_EQ(lines.Length(99), 99u);
}

// The same for lines that stay bytes, whose texts are made when they are asked for.
TEST(LineBuffer, GivesLinesOfBytesAsBstrsToo)
{
    LineBuffer lines;
    for (std::size_t n = 0; n < 100; ++n) {
        lines.AddBytes(std::string(n, static_cast<char>('0' + n % 10)));
        lines.Add(OLESTR("\u00E9"));
    }
    ASSERT_EQ(lines.size(), 200u);
    for (std::size_t n = 0; n < 100; ++n) {
        const std::string sBytes(n, static_cast<char>('0' + n % 10));
        EXPECT_EQ(lines.Bytes(2 * n), sBytes);
        EXPECT_EQ(lines.Length(2 * n), n);
        EXPECT_EQ(TextOf(lines[2 * n]), string_t(sBytes.begin(), sBytes.end()));
        EXPECT_EQ(lines[2 * n][n], 0) << "the null behind the text";
        EXPECT_EQ(reinterpret_cast<std::uintptr_t>(lines[2 * n]) % sizeof(std::uint32_t), 0u);
        EXPECT_TRUE(lines.Bytes(2 * n + 1).empty());
        EXPECT_EQ(TextOf(lines[2 * n + 1]), OLESTR("\u00E9"));
    }
    // What lies behind the last line of bytes can be read.
    const std::string_view sLast = lines.Bytes(198);
    EXPECT_EQ(std::string(sLast.data() + sLast.size(), LineBuffer::kPadding),
              std::string(LineBuffer::kPadding, '\0'));
}

TEST(LineBuffer, KeepsNullsWithinALine)
{
    LineBuffer lines;
    lines.Add(string_view_t(OLESTR("a\0b"), 3));
    EXPECT_EQ(TextOf(lines[0]), string_t(OLESTR("a\0b"), 3));
}

TEST(LineBuffer, TakesTheNextBatchIntoTheSameMemory)
{
    LineBuffer lines;
    lines.Add(OLESTR("2004-01-02,1"));
    const BSTR first = lines[0];
    lines.clear();
    EXPECT_TRUE(lines.empty());
    lines.Add(OLESTR("2004-01-03"));
    EXPECT_EQ(lines[0], first);
    EXPECT_EQ(TextOf(lines[0]), OLESTR("2004-01-03"));
    lines.Release();
    EXPECT_TRUE(lines.empty());
}

} // namespace
