// The copy of a plain line, against a loop over bytes.

#include "src/files/PlainLine.h"

#include <gtest/gtest.h>

#include <random>
#include <string>

#include "tests/support/Seed.h"

using namespace Hesperon::specifics;

namespace {

// What Copy promises, but for lines near the end of what can be read.
std::size_t PlainSize(const std::string& bytes)
{
    for (std::size_t n = 0; n < bytes.size(); ++n) {
        if (bytes[n] == '\n' || bytes[n] == '\r')
            return n;
        if (bytes[n] == 0 || static_cast<unsigned char>(bytes[n]) >= 0x80)
            return PlainLine::kNone;
    }
    return PlainLine::kNone;
}

std::size_t CopyOf(const std::string& bytes, std::string& out)
{
    out.assign(PlainLine::kRoom, '#');
    const std::size_t n = PlainLine::Copy<PlainLine::Width::One>(
        bytes.data(), bytes.data() + bytes.size(), out.data());
    out.resize(n == PlainLine::kNone ? 0 : n);
    return n;
}

TEST(PlainLine, IsCopiedUpToItsEnd)
{
    const std::string tail(PlainLine::kBlock, 'x');
    for (std::size_t n = 0; n + PlainLine::kBlock < PlainLine::kMaxLine; ++n)
        for (const char cEnd : {'\n', '\r'}) {
            const std::string line(n, static_cast<char>('0' + n % 10));
            std::string copy;
            ASSERT_EQ(CopyOf(line + cEnd + tail, copy), n);
            ASSERT_EQ(copy, line);
        }
}

TEST(PlainLine, IsNoneOfOtherBytesOrTooManyOrAtTheVeryEnd)
{
    const std::string tail(PlainLine::kBlock, 'x');
    std::string copy;
    for (std::size_t n = 0; n < 40; ++n)
        for (const char c : {'\0', '\x80', '\xFF'}) {
            std::string line(40, 'a');
            line[n] = c;
            EXPECT_EQ(CopyOf(line + "\n" + tail, copy), PlainLine::kNone) << n;
            std::string next = std::string(n, 'a') + "\n" + c + tail; // in the next line
            EXPECT_EQ(CopyOf(next, copy), n);
        }
    EXPECT_EQ(CopyOf(std::string(PlainLine::kMaxLine, 'a') + "\n" + tail, copy), PlainLine::kNone);
    EXPECT_EQ(CopyOf(std::string(2000, 'a'), copy), PlainLine::kNone);
    EXPECT_EQ(CopyOf("abc\n", copy), PlainLine::kNone) << "no block to be read";
    EXPECT_EQ(CopyOf("", copy), PlainLine::kNone);
}

TEST(PlainLine, OfRandomBytes)
{
    std::mt19937 random(Seed());
    const std::string kBytes = "0123456789,.:/ \t\n\r\x01\x7F\x80\xFE";
    for (int nRound = 0; nRound < Rounds(20000); ++nRound) {
        std::string bytes(PlainLine::kBlock * 4, ' ');
        const std::size_t nOdd = random() % 40; // how seldom a byte is anything but a digit
        for (char& c : bytes)
            c = kBytes[random() % (random() % (nOdd + 1) == 0 ? kBytes.size() : 10)];
        std::string copy;
        const std::size_t n = CopyOf(bytes, copy);
        ASSERT_EQ(n, PlainSize(bytes)) << bytes;
        if (n != PlainLine::kNone) {
            ASSERT_EQ(copy, bytes.substr(0, n));
        }
    }
}

std::string Wide(const std::string& bytes)
{
    std::string wide;
    for (const char c : bytes) {
        wide += c;
        wide += '\0';
    }
    return wide;
}

// The same bytes with a zero behind each, and then with one byte changed.
TEST(PlainLine, OfTwoBytesACharacter)
{
    std::mt19937 random(Seed());
    const std::string kBytes = "0123456789,.:/ \t\n\r\x01\x7F\x80\xFE";
    for (int nRound = 0; nRound < Rounds(20000); ++nRound) {
        std::string bytes(PlainLine::kBlock * 3, ' ');
        const std::size_t nOdd = random() % 40;
        for (char& c : bytes)
            c = kBytes[random() % (random() % (nOdd + 1) == 0 ? kBytes.size() : 10)];
        std::string wide = Wide(bytes);
        const std::size_t nPlain = PlainSize(bytes);
        const std::size_t nChanged = random() % wide.size();
        const bool bChanged = random() % 2;
        if (bChanged)
            wide[nChanged] = nChanged % 2 ? 'x' : '\0';
        std::string copy(PlainLine::kRoom, '#');
        const std::size_t n = PlainLine::Copy<PlainLine::Width::Two>(
            wide.data(), wide.data() + wide.size(), copy.data());
        const bool bHit = bChanged && nPlain != PlainLine::kNone && nChanged < 2 * nPlain;
        if (nPlain == PlainLine::kNone || bHit) {
            ASSERT_EQ(n, PlainLine::kNone);
        } else if (n != PlainLine::kNone) { // the end itself may have been changed
            ASSERT_EQ(n, 2 * nPlain);
            ASSERT_EQ(copy.substr(0, nPlain), bytes.substr(0, nPlain));
        } else {
            ASSERT_TRUE(bChanged && nChanged / 2 == nPlain);
        }
    }
}

} // namespace
