// Lines of a file as the component finds them, and where they stand for an editor.
#include <array>
#include <fstream>
#include <random>

#include <gtest/gtest.h>

#include "tests/files/PlainLineIndex.h"
#include "tests/support/Seed.h"
#include "tests/tabulex/units/QuoteText.h"
#include "tests/tabulex/units/TestFolder.h"
#include "tools/tabulex/account/LineMap.h"
#include "tools/tabulex/account/PlainLines.h"

using namespace tabulex;

namespace {

class LineMapTest : public testing::Test
{
protected:
    LineMap MapOf(const std::string& bytes)
    {
        return LineMap(FileOf(bytes), bytes.size(), nullptr);
    }
    std::string FileOf(const std::string& bytes)
    {
        std::string path = m_folder / "lines.txt";
        std::ofstream(PathOf(path), std::ios::binary) << bytes;
        return path;
    }
    static std::vector<ULONGLONG> Numbers(LineMap& map)
    {
        std::vector<ULONGLONG> numbers;
        for (ULONGLONG i = 0; map.Find(i); ++i)
            numbers.push_back(map.NumberOf(i));
        return numbers;
    }

    TestFolder m_folder;
};

using ::Seed;
using Lines = std::vector<ULONGLONG>;

std::string RandomText(std::mt19937& random, std::size_t nMost)
{
    constexpr std::string_view kAlphabet = ",;:| \t\r\n\n12ab";
    std::string text(random() % nMost, '\0');
    for (char& c : text)
        c = kAlphabet[random() % kAlphabet.size()];
    return text;
}

// All that a walk tells where it stands.
auto Standing(const LineWalker& walker)
{
    const auto place = walker.Here();
    const LineTally& tally = walker.Tally();
    return std::array{place.nOffset,    place.nLineEnds,  tally.nContent, tally.nJoined,
                      tally.nLost,      tally.nSplit,     tally.nLong,    tally.nFirstJoined,
                      tally.nFirstLost, tally.nFirstLong, tally.nZero,    tally.nZeroContent,
                      tally.nFirstZero, walker.Lines()};
}

// Line by line as the words say; without those that end less than a window before the end.
PlainLines SlowPlainLines(std::string_view bytes, std::size_t nMost)
{
    PlainLines found;
    const std::size_t nSeen = bytes.empty() ? 0 : (bytes.size() - 1) / 64 * 64;
    for (std::size_t nFirst = 0; found.nLines < nMost;) {
        const std::size_t nFeed = bytes.find('\n', nFirst);
        if (nFeed >= nSeen)
            break;
        std::string_view line = bytes.substr(nFirst, nFeed - nFirst);
        if (line.ends_with('\r'))
            line.remove_suffix(1);
        if (line.size() < 2 || line.size() > 512 || line.find('\0') != line.npos ||
            line.find('\r') != line.npos || std::string_view(":,;| \t").find(line[0]) != line.npos)
            break;
        found = {found.nLines + 1, nFirst + line.size()};
        nFirst = nFeed + 1;
    }
    return found;
}

} // namespace

TEST(PlainLinesTest, AreThoseThatALookAtEachLineShows)
{
    std::mt19937 random(Seed());
    std::size_t nFound = 0;
    for (int i = 0; i < Rounds(4000); ++i) {
        const std::string text = RandomQuotes(random, random() % 4 ? 200 : 4000);
        const std::string_view bytes = std::string_view(text).substr(random() % text.size());
        const std::size_t nMost = 1 + random() % 80;
        const PlainLines lines = FindPlainLines(bytes, nMost);
        const PlainLines expected = SlowPlainLines(bytes, nMost);
        ASSERT_EQ(lines.nLines, expected.nLines) << testing::PrintToString(bytes);
        ASSERT_EQ(lines.nEnd, expected.nEnd) << testing::PrintToString(bytes);
        nFound += lines.nLines;
    }
    EXPECT_GT(nFound, 0u);
    EXPECT_EQ(FindPlainLines({}, 1).nLines, 0u);
}

TEST_F(LineMapTest, LinesPassedManyAtATimeAreTheSameAsOneByOne)
{
    std::mt19937 random(Seed());
    ULONGLONG nPassed = 0;
    for (int i = 0; i < Rounds(300); ++i) {
        const std::string text = RandomQuotes(random, random() % 8 ? 3000 : 400000);
        const std::string path = FileOf(text);
        LineWalker each(path, text.size()), many(path, text.size());
        ContentLine line;
        for (bool bOn = true; bOn;) {
            const ULONGLONG nBefore = many.Tally().nContent;
            if (many.PassPlainLines(1 + random() % 300))
                nPassed += many.Tally().nContent - nBefore;
            else
                bOn = many.Next(line);
            while (each.Tally().nContent < many.Tally().nContent || !bOn)
                if (!each.Next(line))
                    break;
            ASSERT_EQ(Standing(many), Standing(each)) << testing::PrintToString(text);
        }
    }
    EXPECT_GT(nPassed, 0u);
}

TEST_F(LineMapTest, BlankLinesCountForAnEditorOnly)
{
    LineMap map = MapOf("\n\nDate,Open\n\r\n \t\n2020,1\r\n2021,2");
    EXPECT_EQ(Numbers(map), (Lines{3, 6, 7}));
    EXPECT_EQ(map.Lines(), 7u);
    EXPECT_EQ(map.BytesOf(1), "2020,1");
    EXPECT_EQ(map.BytesOf(2), "2021,2");
    EXPECT_EQ(map.BytesOf(3), "");
}

TEST_F(LineMapTest, AFileWithReturnsAloneHasLines)
{
    LineMap map = MapOf("Date,Open\r2020,1\r\r2021,2\r");
    EXPECT_EQ(Numbers(map), (Lines{1, 2, 4}));
    EXPECT_EQ(map.Lines(), 4u);
}

TEST_F(LineMapTest, ALineOfOneCharacterIsReadWithTheNext)
{
    LineMap map = MapOf("aa\nx\n20,1\n21,2\n");
    EXPECT_EQ(Numbers(map), (Lines{1, 2, 4}));
    EXPECT_EQ(map.BytesOf(1), "x\n20,1");
    EXPECT_EQ(map.Tally().nJoined, 1u);
    EXPECT_EQ(map.Tally().nFirstJoined, 2u);
    EXPECT_EQ(map.Tally().nLost, 0u);
}

TEST_F(LineMapTest, ALineOfDividersTakesTheNextAway)
{
    LineMap map = MapOf("aa\n,,,\n20,1\n||\n21,2\n");
    EXPECT_EQ(Numbers(map), (Lines{1, 5}));
    EXPECT_EQ(map.Tally().nLost, 1u);
    EXPECT_EQ(map.Tally().nFirstLost, 3u);
}

TEST_F(LineMapTest, PartsThatALoneReturnMakesAreLines)
{
    LineMap map = MapOf("aa\nbb\rcc\ndd\n");
    EXPECT_EQ(Numbers(map), (Lines{1, 2, 2, 3}));
    EXPECT_EQ(map.Tally().nSplit, 1u);
    EXPECT_EQ(map.Lines(), 4u);
}

TEST_F(LineMapTest, LongLinesAreToldAndGivenWhole)
{
    const std::string sLong(513, 'x');
    LineMap map = MapOf("aa\n" + sLong + "\nbb\n" + sLong + "\n");
    EXPECT_EQ(map.Tally().nLong, 2u);
    EXPECT_EQ(map.Tally().nFirstLong, 2u);
    EXPECT_EQ(map.BytesOf(1), sLong);
    EXPECT_EQ(map.BytesOf(1, 10), std::string(10, 'x'));
}

TEST_F(LineMapTest, TwoByteCharactersHaveTheirLines)
{
    using namespace std::string_literals;
    LineMap map = MapOf("a\0a\0\r\0\n\0b\0b\0\r\0\n\0"s);
    EXPECT_EQ(Numbers(map), (Lines{1, 2}));
    EXPECT_EQ(map.Lines(), 2u);
}

TEST_F(LineMapTest, LinesAreFoundInAnyOrder)
{
    constexpr ULONGLONG kLines = 40000; // more than one buffer
    std::string text;
    for (ULONGLONG i = 0; i < kLines; ++i)
        text += "line " + std::to_string(i) + (i % 3 ? "\n" : "\r\n\n");
    LineMap map = MapOf(text);
    std::mt19937 random(Seed());
    for (int i = 0; i < 2000; ++i) {
        const ULONGLONG nLine = random() % kLines;
        ASSERT_EQ(map.BytesOf(nLine), "line " + std::to_string(nLine));
        ASSERT_EQ(map.NumberOf(nLine), nLine + (nLine + 2) / 3 + 1);
    }
    EXPECT_EQ(map.Lines(), kLines + (kLines + 2) / 3);
}

TEST_F(LineMapTest, FindsTheLinesThatTheRuleNames)
{
    std::mt19937 random(Seed());
    for (int i = 0; i < 3000; ++i) {
        const std::string text = RandomText(random, 40);
        files_test::PlainLineIndex plain(text);
        LineMap map = MapOf(text);
        plain.SeekRecord(1000);
        ASSERT_EQ(map.Tally().nContent, plain.count) << testing::PrintToString(text);
        for (ULONGLONG n = 0; n < plain.count; ++n) {
            std::string record;
            plain.GetRecord(record, n); // the last one with its line ends
            record.erase(record.find_last_not_of("\r\n") + 1);
            ASSERT_EQ(map.BytesOf(n), record) << testing::PrintToString(text) << " line " << n;
        }
        ASSERT_LE(map.Tally().nContent + map.Tally().nJoined + map.Tally().nLost, map.Lines())
            << testing::PrintToString(text);
    }
}
