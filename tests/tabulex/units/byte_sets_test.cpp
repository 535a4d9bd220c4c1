// Where the bytes of sets stand, held against a look at each byte.
#include <random>

#include <gtest/gtest.h>

#include "tests/support/Seed.h"
#include "tools/tabulex/account/ByteSets.h"

using namespace tabulex;
using namespace std::string_view_literals;

namespace {

using EightSets = ByteSets<8>;
using Texts = std::array<std::string_view, 8>;

void ExpectFound(const Texts& sets, bool bWide, std::mt19937& random)
{
    const EightSets found(sets, bWide);
    std::string bytes(1 + random() % 3 * 54 + kWindowBytes, '\0');
    for (char& c : bytes)
        c = static_cast<char>(random());
    const std::size_t nStep = random() % 2 ? 54 : kWindowBytes;
    std::vector<EightSets::Masks> windows((bytes.size() - kWindowBytes) / nStep + 1);
    found.Find(bytes.data(), nStep, windows);
    for (std::size_t nWindow = 0; nWindow < windows.size(); ++nWindow)
        for (std::size_t nSet = 0; nSet < sets.size(); ++nSet)
            for (std::size_t i = 0; i < kWindowBytes; ++i) {
                const char c = bytes[nWindow * nStep + i];
                ASSERT_EQ(windows[nWindow][nSet] >> i & 1, sets[nSet].find(c) != sets[nSet].npos)
                    << "byte " << int(c) << " at " << i << " of window " << nWindow << ", set "
                    << nSet << (bWide ? ", wide" : ", narrow");
            }
}

} // namespace

TEST(ByteSetsTest, FindsWhatEachByteShows)
{
    // No two bytes of a set with the same lower half, but for the last row.
    constexpr Texts kSets[] = {
        {"\n\r", ",\t", "0123456789", ".,", "-+", ":", "\"'()[]", ""},
        {"\0"sv, "\r\0"sv, "p", "0", "\x7f", "@", "\1\2\3", "a"},
        {",|", "\x80\xff", "abc", "aq", "", "\0\x10"sv, "\xe4", "zyx"},
    };
    std::mt19937 random(Seed());
    for (int i = 0; i < Rounds(300); ++i)
        for (const Texts& sets : kSets)
            for (const bool bWide : {false, HasWideBytes()})
                ASSERT_NO_FATAL_FAILURE(ExpectFound(sets, bWide, random));
}
