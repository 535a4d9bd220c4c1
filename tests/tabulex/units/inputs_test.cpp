// What inputs are taken for, and which names stand for them.
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tools/tabulex/input/ContentKind.h"
#include "tools/tabulex/input/NamePattern.h"
#include "tools/tabulex/input/Utf8Reading.h"
#include "tools/tabulex/text/NaturalOrder.h"

using namespace tabulex;
using namespace std::string_literals;

namespace {

const std::string kQuoteLines = "Date,Open,High\n2003/01/13,10.5,11.5\n2003/01/14,10.5,11.5\n";

std::string TwoByteText(const std::string& text, bool bBigEndian)
{
    std::string bytes;
    for (const char c : text)
        bytes += bBigEndian ? "\0"s + c : c + "\0"s;
    return bytes;
}

ContentKind KindOf(const std::string& head)
{
    return RecogniseContent(head).kind;
}

} // namespace

TEST(ContentKinds, TextIsWhatNothingElseIs)
{
    for (const std::string& text :
         {""s, "a"s, kQuoteLines, "\x01\x02"s, "PAR1,10.5\n"s, "MZ,10.5\n"s, "GIF8,10.5\n"s,
          std::string(257, 'a') + "ustar\n", kQuoteLines + "\x1A", "\xC3\x9Cltimo,Preis\n"s,
          "\xB9\xC9\xC6\xB1,10.5\n"s, "\x1B[31mred\x1B[0m\n"s})
        EXPECT_EQ(KindOf(text), ContentKind::Text) << text;
}

TEST(ContentKinds, MarksCountTheirBytes)
{
    const auto markOf = [](const std::string& head) { return RecogniseContent(head).nMark; };
    EXPECT_EQ(KindOf("\xEF\xBB\xBF" + kQuoteLines), ContentKind::Utf8);
    EXPECT_EQ(markOf("\xEF\xBB\xBF" + kQuoteLines), 3u);
    EXPECT_EQ(KindOf("\xFF\xFE" + TwoByteText(kQuoteLines, false)), ContentKind::Utf16Le);
    EXPECT_EQ(KindOf("\xFE\xFF" + TwoByteText(kQuoteLines, true)), ContentKind::Utf16Be);
    EXPECT_EQ(markOf("\xFE\xFF" + TwoByteText(kQuoteLines, true)), 2u);
}

TEST(ContentKinds, TwoByteTextNeedsNoMark)
{
    EXPECT_EQ(KindOf(TwoByteText(kQuoteLines, false)), ContentKind::Utf16Le);
    EXPECT_EQ(KindOf(TwoByteText(kQuoteLines, true)), ContentKind::Utf16Be);
    EXPECT_EQ(RecogniseContent(TwoByteText(kQuoteLines, true)).nMark, 0u);
}

TEST(ContentKinds, BytesOfNoTextAreTold)
{
    std::string all;
    for (int i = 0; i < 1024; ++i)
        all += static_cast<char>(i);
    EXPECT_EQ(KindOf(all), ContentKind::Binary);
    EXPECT_EQ(KindOf(std::string(4096, '\0')), ContentKind::Binary);
    for (const std::string& bytes : {"\xFF\xFE\0\0"s, "\0\0\xFE\xFF"s, "PK\5\6"s})
        EXPECT_EQ(KindOf(bytes), ContentKind::Refused) << bytes;
    for (const std::string& bytes : {all, "PK\5\6"s}) {
        const Content content = RecogniseContent(bytes);
        EXPECT_THAT(content.sReason, testing::StartsWith("is "));
        EXPECT_THAT(content.sReason, testing::HasSubstr("; ")); // the next step
    }
}

TEST(NaturalOrder, CountsNumbers)
{
    const auto less = [](const char* a, const char* b) {
        return NaturalLess(a, b) && !NaturalLess(b, a);
    };
    EXPECT_TRUE(less("file2", "file10"));
    EXPECT_TRUE(less("file", "file1"));
    EXPECT_TRUE(less("2003-9", "2003-10"));
    EXPECT_TRUE(less("a01", "a1"));
    EXPECT_TRUE(less("a01", "a2"));
    EXPECT_TRUE(less("a9", "a99999999999999999999"));
    EXPECT_TRUE(less("a", "\xE8\x82\xA1"));
    EXPECT_FALSE(NaturalLess("a1", "a1"));
}

TEST(NamePatterns, FitAsInShells)
{
    struct Row
    {
        const char* pszPattern;
        std::vector<const char*> fitting, others;
    };
    const Row rows[] = {
        {"*.csv", {"a.csv", "a.b.csv"}, {".csv", "a.txt", "a.csv2", "csv"}},
        {"a*b*c", {"abc", "aXbXbXc", "abbcc"}, {"ab", "ac", "abcd"}},
        {"?.csv", {"a.csv"}, {".csv", "ab.csv"}},
        {"[a-c]1", {"a1", "c1"}, {"d1", "a", "-1"}},
        {"[!a-c]1", {"d1"}, {"b1"}},
        {"[]x]", {"]", "x"}, {"a"}},
        {"a[1", {"a[1"}, {"a1"}},
        {".*", {".hidden"}, {"seen"}},
        {"*", {"a"}, {".a"}},
    };
    for (const Row& row : rows) {
        for (const char* pszName : row.fitting)
            EXPECT_TRUE(FitsPattern(pszName, row.pszPattern)) << row.pszPattern << " " << pszName;
        for (const char* pszName : row.others)
            EXPECT_FALSE(FitsPattern(pszName, row.pszPattern)) << row.pszPattern << " " << pszName;
    }
}

TEST(EncodingNames, OfUnicodeAreKnown)
{
    for (const char* pszName : {"utf-8", "UTF8", "65001", "utf-16", "UTF-16LE", "1200"})
        EXPECT_TRUE(IsUnicodeName(pszName)) << pszName;
    for (const char* pszName : {"windows-1252", "gbk", "utf-7", ""})
        EXPECT_FALSE(IsUnicodeName(pszName)) << pszName;
}
