#include "src/files/LineBytes.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

using namespace Hesperon::specifics::LineBytes;

namespace {

TEST(LineBytes, ClassesHoldTheirBytesAndNoOthers)
{
    using namespace std::string_view_literals;
    struct Row
    {
        const char* name;
        Class what;
        std::string_view bytes;
    };
    const Row rows[] = {
        {"line end", kLineEnd, "\r\n"sv},
        {"gap", kGap, "\r\n\t \0"sv},
        {"lead", kLead, "\r\n\t "sv},
        {"blank line", kBlankLine, ": ,;"sv},
        {"separator", kSeparator, ": ,;|\t\0"sv},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        for (int n = 0; n < 256; ++n) {
            const char c = static_cast<char>(n);
            EXPECT_EQ(Is(c, row.what), row.bytes.find(c) != row.bytes.npos) << n;
        }
    }
}

// Bytes that differ from CR and LF by a bit or by one, and those with the high bit
// set, next to the true ones in every place of a block.
TEST(LineBytes, FindsTheFirstLineEndInAnyPlace)
{
    for (const char c : {'\x09', '\x0B', '\x0C', '\x0E', '\x8A', '\x8D', '\x00', '\xFF', 'x'}) {
        for (std::size_t nSize = 0; nSize != 100; ++nSize) {
            std::string bytes(nSize, c);
            const char* p = bytes.data();
            ASSERT_EQ(FindLineEnd(p, p + nSize), p + nSize) << int(c) << ' ' << nSize;
            for (std::size_t nAt = 0; nAt != nSize; ++nAt) {
                for (const char lineEnd : {'\r', '\n'}) {
                    bytes[nAt] = lineEnd;
                    ASSERT_EQ(FindLineEnd(p, p + nSize), p + nAt) << nSize;
                }
                bytes[nSize - 1] = '\r';
                ASSERT_EQ(FindLineEnd(p, p + nSize), p + nAt) << nSize;
                bytes[nSize - 1] = c;
                bytes[nAt] = c;
            }
        }
    }
}

TEST(LineBytes, LooksAtNothingBeyondTheEnd)
{
    const std::string bytes = std::string(64, 'x') + "\n";
    for (std::size_t nSize = 0; nSize <= 64; ++nSize) {
        const char* p = bytes.data() + (64 - nSize);
        EXPECT_EQ(FindLineEnd(p, p + nSize), p + nSize);
    }
}

} // namespace
