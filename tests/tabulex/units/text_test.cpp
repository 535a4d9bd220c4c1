// Conversion between UTF-16 and UTF-8, widths, and suggestions for misspelt words.
#include <gtest/gtest.h>

#include "tools/tabulex/text/Suggestion.h"
#include "tools/tabulex/text/Text.h"
#include "tools/tabulex/text/TextTable.h"
#include "tools/tabulex/text/VisibleText.h"

using namespace tabulex;

TEST(Utf8, GoesBothWaysForEveryLengthOfSequence)
{
    struct Row
    {
        const char* pszUtf8;
        string_view_t text;
    };
    const Row rows[] = {
        {"", OLESTR("")},
        {"A", OLESTR("A")},
        {"\xC3\xA9", OLESTR("\u00E9")},
        {"\xE8\x82\xA1", OLESTR("\u80A1")},
        {"\xF0\x9F\x93\x88", OLESTR("\U0001F4C8")},
        {"a\xE7\xA5\xA8z", OLESTR("a\u7968z")},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.pszUtf8);
        EXPECT_EQ(FromUtf8(row.pszUtf8), row.text);
        EXPECT_EQ(ToUtf8(row.text), row.pszUtf8);
    }
}

TEST(Utf8, ReplacesWhatIsMalformed)
{
    struct Row
    {
        std::string_view sBytes;
        string_view_t text;
    };
    const Row rows[] = {
        {"\x80", OLESTR("\uFFFD")},
        {"\xC3", OLESTR("\uFFFD")},
        {"\xC3(", OLESTR("\uFFFD(")},
        {"\xC0\xAF", OLESTR("\uFFFD\uFFFD")},
        {"\xED\xA0\x80", OLESTR("\uFFFD\uFFFD\uFFFD")},
        {"\xF4\x90\x80\x80", OLESTR("\uFFFD\uFFFD\uFFFD\uFFFD")},
        {"a\xFFz", OLESTR("a\uFFFDz")},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(std::string(row.sBytes));
        EXPECT_EQ(FromUtf8(row.sBytes), row.text);
    }
}

TEST(Utf8, ReplacesLoneSurrogates)
{
    const OLECHAR high[] = {0xD83D, 'x', 0};
    const OLECHAR low[] = {0xDCC8, 0};
    EXPECT_EQ(ToUtf8(high), "\xEF\xBF\xBDx");
    EXPECT_EQ(ToUtf8(low), "\xEF\xBF\xBD");
}

TEST(Paths, CarryBytesThatAreNotUtf8)
{
    const OLECHAR expected[] = {'a', 0xDCE9, '.', 'c', 0};
    EXPECT_EQ(PathFromBytes("a\xE9.c"), expected);
}

TEST(Widths, CountEastAsianCharactersTwice)
{
    EXPECT_EQ(DisplayWidth("abc"), 3u);
    EXPECT_EQ(DisplayWidth("\xC3\xA9"), 1u);
    EXPECT_EQ(DisplayWidth("\xE8\x82\xA1x"), 3u);
}

TEST(Widths, CountMarksThatStandOnOthersNotAtAll)
{
    EXPECT_EQ(DisplayWidth("e\xCC\x81x"), 2u);
    EXPECT_EQ(DisplayWidth("\xF0\x9F\x93\x88x"), 3u);
    EXPECT_EQ(DisplayWidth("\xFF"), 1u); // no character: shown as one
}

TEST(VisibleTexts, KeepTheEndsOfLinesAndTabs)
{
    EXPECT_EQ(VisibleLines("a\tb\n\x1B[m\r\n\xC2\x9B\xE2\x80\xAE\xFF"),
              "a\tb\n^[[m^M\n\\x9B\\u{202E}\\xFF");
    EXPECT_EQ(VisibleUtf8("a\tb\n"), "a^Ib^J");
    EXPECT_EQ(VisibleLines(""), "");
}

TEST(Tables, AlignColumnsAndKeepTheirWidthsBetweenPieces)
{
    TextTable table({{"name", false}, {"n", true}}, false);
    table.Add({"a", "1000"});
    EXPECT_EQ(table.Take("> "), "> name     n\n> a     1000\n");
    table.Add({"bb", "7"});
    EXPECT_EQ(table.Take("> "), "> bb       7\n");
}

TEST(Suggestions, FindTheWordThatWasMeant)
{
    const std::vector<std::string> words = {"inspect", "convert",  "preview",
                                            "check",   "template", "raw"};
    struct Row
    {
        const char* pszWord;
        const char* pszMeant; // null for none
    };
    const Row rows[] = {
        {"inspct", "inspect"}, {"convrt", "convert"},   {"covnert", "convert"}, {"chekc", "check"},
        {"CHECK", "check"},    {"prev", "preview"},     {"temp", "template"},   {"rwa", "raw"},
        {"x", nullptr},        {"frobnicate", nullptr}, {"", nullptr},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.pszWord);
        const auto meant = Suggest(row.pszWord, words);
        EXPECT_EQ(meant.value_or("(none)"), row.pszMeant ? row.pszMeant : "(none)");
    }
}
