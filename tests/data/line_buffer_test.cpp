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
    EXPECT_EQ(lines.back(), lines[99]);
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
