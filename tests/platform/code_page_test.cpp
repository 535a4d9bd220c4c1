#include <atomic>
#include <random>
#include <thread>

#include <gtest/gtest.h>

#include "CodePages.h"
#include "System.h"
#include "Values.h"
#include "tests/support/Seed.h"

namespace {

using namespace std::literals;

constexpr Coded kCoded[] = {
    {1252, "EUR \x80 \xE4"sv, OLESTR("EUR \u20AC \u00E4")},
    {1252, "\x81\x8D\x8F\x90\x9D"sv, OLESTR("\x81\x8D\x8F\x90\x9D")},
    {1252, "a\0b"sv, string_view_t(OLESTR("a\0b"), 3)},
    {28591, "\x80\xFF"sv, OLESTR("\x80\xFF")},
    {1251, "\xCF\xF0"sv, OLESTR("\u041F\u0440")},
    {437, "\x80\xE1"sv, OLESTR("\u00C7\u00DF")},
    {936, "\xD6\xD0\xCE\xC4 600000,12.5"sv, OLESTR("\u4E2D\u6587 600000,12.5")},
    {936, "\x81\x40"sv, OLESTR("\u4E02")},
    {950, "\xA4\xA4\xA4\xE5"sv, OLESTR("\u4E2D\u6587")},
    {932, "\x93\xFA\\\xB1"sv, OLESTR("\u65E5\\\uFF71")},
    {949, "\xC7\xD1"sv, OLESTR("\uD55C")},
    {65001, "A\xE4\xB8\xAD\xF0\x9F\x98\x80"sv, OLESTR("A\u4E2D\U0001F600")},
    {65001, ""sv, OLESTR("")},
};

TEST(CodePage, DecodesAndEncodes)
{
    for (const Coded& row : kCoded) {
        SCOPED_TRACE(testing::Message() << row.nCodePage << ' ' << Narrow(row.text));
        EXPECT_EQ(Decode(row.nCodePage, row.bytes), row.text);
        EXPECT_EQ(EncodeText(row.nCodePage, row.text), row.bytes);
    }
}

// Of a page without shifts, in which ASCII is what it is.
TEST(CodePage, KnowsTextThatIsAscii)
{
    for (const UINT nCodePage : {1252u, 936u, 65001u}) {
        SCOPED_TRACE(nCodePage);
        EXPECT_TRUE(IsAsciiText(nCodePage, ""sv));
        EXPECT_TRUE(IsAsciiText(nCodePage, "2000/01/03,\t~\x7F\\"sv));
        EXPECT_FALSE(IsAsciiText(nCodePage, "2000/01/03,\x80"sv));
        EXPECT_FALSE(IsAsciiText(nCodePage, "\xE9"sv));
    }
    constexpr UINT kEbcdic = 37, kUtf7 = 65000;
    for (const UINT nCodePage : {kEbcdic, kUtf7})
        EXPECT_FALSE(IsAsciiText(nCodePage, "2000+1"sv)) << nCodePage;
}

TEST(CodePage, HoldsAllCharactersInGb18030)
{
    const Coded row = {54936, "\x81\x30\x84\x36\x90\x30\x81\x30"sv, OLESTR("\u00A5\U00010000")};
    EXPECT_EQ(Decode(row.nCodePage, row.bytes) == row.text, !LacksGb18030());
    EXPECT_EQ(EncodeText(row.nCodePage, row.text) == row.bytes, !LacksGb18030());
}

TEST(CodePage, ReplacesMalformedUtf8)
{
    const Coded rows[] = {
        {65001, "a\xFFz"sv, OLESTR("a\uFFFDz")},
        {65001, "a\xE4\xB8"sv, OLESTR("a\uFFFD")},
        {65001, "\xC0\x80"sv, OLESTR("\uFFFD\uFFFD")},
    };
    for (const Coded& row : rows) {
        SCOPED_TRACE(testing::PrintToString(row.bytes));
        EXPECT_EQ(Decode(row.nCodePage, row.bytes), row.text);
    }
}

// One mark for both bytes, also where the second one could stand alone.
TEST(CodePage, MarksPairsThatAreNone)
{
    const Coded rows[] = {
        {936, "a\xD6"sv, OLESTR("a?")},
        {936, "a\x81 z"sv, OLESTR("a?z")},
        {936, "a\x81,z"sv, OLESTR("a?z")},
        {936, "a\xD6\xFFz"sv, OLESTR("a?z")},
        {936, "a\x81\x7Fz"sv, OLESTR("a?z")},
        {936, "\x81,\xD6\xD0\x81"sv, OLESTR("?\u4E2D?")},
        {936, "\x81\0z"sv, string_view_t(OLESTR("?\0z"), 3)},
        {949, "a\xC7 z"sv, OLESTR("a?z")},
        {949, "\xC9\x40z"sv, OLESTR("?z")},
        {950, "a\xA4,z"sv, OLESTR("a?z")},
        {950, "\xF9\xFFz"sv, OLESTR("?z")},
        {932, "a\x81"sv, OLESTR("a\u30FB")},
        {932, "a\x81,z"sv, OLESTR("a\u30FBz")},
        {932, "\xFC\xFCz"sv, OLESTR("\u30FBz")},
        {932, "\x81\xFFz"sv, OLESTR("\u30FBz")},
        {932, "\x80\xA0\xFDz"sv, OLESTR("\x80\uF8F0\uF8F1z")},
    };
    for (const Coded& row : rows) {
        SCOPED_TRACE(testing::Message() << row.nCodePage << testing::PrintToString(row.bytes));
        EXPECT_EQ(Decode(row.nCodePage, row.bytes), row.text);
    }
}

TEST(CodePage, MarksCharactersThatItLacks)
{
    const Coded rows[] = {
        {1252, "a?b"sv, OLESTR("a\u4E2Db")},
        {1252, "?x"sv, OLESTR("\xD800x")},
        {20127, "?"sv, OLESTR("\u4E2D")},
        // Characters that aren't what they look like.
        {1252, "???"sv, OLESTR("\u0100\uFF21\u221E")},
        {936, "?"sv, OLESTR("\u0100")},
    };
    for (const Coded& row : rows) {
        SCOPED_TRACE(testing::Message() << row.nCodePage << ' ' << row.bytes);
        EXPECT_EQ(EncodeText(row.nCodePage, row.text), row.bytes);
    }
}

TEST(CodePage, AppendsToWhatIsThere)
{
    string_t text = OLESTR("old ");
    DecodeBytes(1252, "new", text);
    DecodeBytes(936, "\xD6\xD0", text);
    EXPECT_EQ(text, OLESTR("old new\u4E2D"));
}

TEST(CodePage, ReturnsEachByteOfASingleBytePage)
{
    for (const UINT nCodePage : {1250u, 1251u, 1252u, 1253u, 1254u, 1257u, 437u, 850u, 28591u}) {
        SCOPED_TRACE(nCodePage);
        std::string bytes;
        for (int n = 0; n < 256; ++n)
            bytes.push_back(static_cast<char>(n));
        const string_t text = Decode(nCodePage, bytes);
        EXPECT_EQ(text.size(), 256u);
        EXPECT_EQ(text.find(OLECHAR{0xFFFD}), string_t::npos);
        EXPECT_EQ(EncodeText(nCodePage, text), bytes);
    }
}

// Any mixture of whole blocks, words and single bytes gives the same as byte after byte.
TEST(CodePage, DecodesTheSameAtAnyLengthAndPosition)
{
    std::mt19937 random(Seed());
    for (int n = 0; n < Rounds(3000); ++n) {
        std::string bytes(random() % 200, 'x');
        for (char& c : bytes)
            c = static_cast<char>(random() % (n % 3 == 0 ? 256 : 128));
        string_t expected;
        for (const char c : bytes)
            expected += Decode(1252, std::string_view(&c, 1));
        ASSERT_EQ(Decode(1252, bytes), expected);
    }
}

TEST(CodePage, WithoutAConverterIsReadAsLatin)
{
    EXPECT_EQ(Decode(99999, "\x80"), OLESTR("\u20AC"));
}

TEST(AnsiCodePage, IsOneForTheProcess)
{
    const UINT nBefore = AnsiCodePage();
    EXPECT_TRUE(SetAnsiCodePage(936));
    EXPECT_EQ(AnsiCodePage(), 936u);
    EXPECT_EQ(Decode(kAnsiCodePage, "\xD6\xD0"), OLESTR("\u4E2D"));
    EXPECT_EQ(EncodeText(kAnsiCodePage, OLESTR("\u4E2D")), "\xD6\xD0");
    EXPECT_FALSE(SetAnsiCodePage(99999));
    EXPECT_EQ(AnsiCodePage(), 936u);
    UINT nSeen = 0;
    std::thread([&] { nSeen = AnsiCodePage(); }).join();
    EXPECT_EQ(nSeen, 936u);
    EXPECT_TRUE(SetAnsiCodePage(nBefore));
}

TEST(CodePageByName, KnowsNamesAndNumbers)
{
    const std::pair<const char*, UINT> rows[] = {
        {"windows-1252", 1252},
        {"WINDOWS-1252", 1252},
        {"cp1252", 1252},
        {"CP1252", 1252},
        {"1252", 1252},
        {"936", 936},
        {"cp936", 936},
        {"GBK", 936},
        {"gb2312", 936},
        {"gb18030", 54936},
        {"GB18030", 54936},
        {"big5", 950},
        {"Big5", 950},
        {"Shift_JIS", 932},
        {"sjis", 932},
        {"euc-kr", 51949},
        {"utf-8", 65001},
        {"UTF8", 65001},
        {"utf-16le", 1200},
        {"utf-16be", 1201},
        {"us-ascii", 20127},
        {"iso-8859-1", 28591},
        {"latin1", 28591},
        {"koi8-r", 20866},
        {"65001", 65001},
        {"437", 437},
        {"ibm437", 437},
        {"windows-1251", 1251},
        {"", 0},
        {"no such page", 0},
        {"99999", 0},
        {"cp", 0},
        {"cp99999", 0},
        {"12x", 0},
    };
    for (const auto& [name, nCodePage] : rows)
        EXPECT_EQ(CodePageByName(name), nCodePage) << name;
}

TEST(CodePageDetection, GivesNoMoreThanAskedFor)
{
    const std::string_view bytes = "Date,Time,Open,High,Low,Close\r\n2004-01-02,10:30,1,2,3,4\r\n";
    EXPECT_TRUE(DetectCodePages(bytes, 0).empty());
    EXPECT_LE(DetectCodePages(bytes, 2).size(), 2u);
    EXPECT_LE(DetectCodePages(bytes, 100).size(), 30u);
}

TEST(CodePage, ServesManyThreads)
{
    std::vector<std::thread> threads;
    std::atomic<int> nWrong = 0;
    for (int t = 0; t < 8; ++t)
        threads.emplace_back([&] {
            for (int n = 0; n < 500; ++n)
                for (const Coded& row : kCoded)
                    if (Decode(row.nCodePage, row.bytes) != row.text ||
                        EncodeText(row.nCodePage, row.text) != row.bytes)
                        ++nWrong;
        });
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(nWrong, 0);
}

} // namespace
