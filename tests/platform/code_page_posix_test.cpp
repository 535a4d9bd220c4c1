#include <atomic>
#include <random>
#include <thread>

#include <gtest/gtest.h>

#include "Values.h"
#include "platform/CodePage.h"
#include "platform/UserLocale_posix.h"

namespace {

string_t Decode(UINT nCodePage, std::string_view bytes)
{
    string_t text;
    DecodeBytes(nCodePage, bytes, text);
    return text;
}

struct Coded
{
    UINT nCodePage;
    std::string_view bytes;
    string_view_t text;
};

using namespace std::literals;

const Coded kCoded[] = {
    {1252, "EUR \x80 \xE4"sv, u"EUR \u20AC \u00E4"sv},
    {1252, "\x81\x8D\x8F\x90\x9D"sv, u"\u0081\u008D\u008F\u0090\u009D"sv},
    {1252, "a\0b"sv, u"a\0b"sv},
    {28591, "\x80\xFF"sv, u"\u0080\u00FF"sv},
    {1251, "\xCF\xF0"sv, u"\u041F\u0440"sv},
    {437, "\x80\xE1"sv, u"\u00C7\u00DF"sv},
    {936, "\xD6\xD0\xCE\xC4 600000,12.5"sv, u"\u4E2D\u6587 600000,12.5"sv},
    {936, "\x81\x40"sv, u"\u4E02"sv},
    {950, "\xA4\xA4\xA4\xE5"sv, u"\u4E2D\u6587"sv},
    {932, "\x93\xFA\\\xB1"sv, u"\u65E5\\\uFF71"sv},
    {949, "\xC7\xD1"sv, u"\uD55C"sv},
    {54936, "\x81\x30\x84\x36\x90\x30\x81\x30"sv, u"\u00A5\U00010000"sv},
    {65001, "A\xE4\xB8\xAD\xF0\x9F\x98\x80"sv, u"A\u4E2D\U0001F600"sv},
    {65001, ""sv, u""sv},
    {1200, "A\0-N"sv, u"A\u4E2D"sv},
};

TEST(CodePage, DecodesAndEncodes)
{
    for (const Coded& row : kCoded) {
        SCOPED_TRACE(testing::Message() << row.nCodePage << ' ' << Narrow(row.text));
        EXPECT_EQ(Decode(row.nCodePage, row.bytes), row.text);
        EXPECT_EQ(EncodeText(row.nCodePage, row.text), row.bytes);
    }
}

TEST(CodePage, ReplacesMalformedSequences)
{
    const Coded rows[] = {
        {65001, "a\xFFz"sv, u"a\uFFFDz"sv},
        {65001, "a\xE4\xB8"sv, u"a\uFFFD"sv},
        {65001, "\xC0\x80"sv, u"\uFFFD\uFFFD"sv},
        {54936, "a\xFFz"sv, u"a\uFFFDz"sv},
        {936, "\xD6"sv, u"\uFFFD"sv},
        {932, "\x81"sv, u"\uFFFD"sv},
    };
    for (const Coded& row : rows) {
        SCOPED_TRACE(testing::Message() << row.nCodePage << ' ' << row.bytes.size());
        EXPECT_EQ(Decode(row.nCodePage, row.bytes), row.text);
    }
}

TEST(CodePage, MarksCharactersThatItLacks)
{
    struct Row
    {
        UINT nCodePage;
        string_view_t text;
        std::string_view bytes;
    };
    const Row rows[] = {
        {1252, u"a\u4E2Db"sv, "a?b"}, {1252, u"\U0001F600!"sv, "?!"},
        {1252, u"\xD800x"sv, "?x"},   {936, u"\U0001F600\u4E2D"sv, "?\xD6\xD0"},
        {20127, u"\u4E2D"sv, "?"},    {65001, u"\xDC80x"sv, "?x"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(testing::Message() << row.nCodePage << ' ' << row.bytes);
        EXPECT_EQ(EncodeText(row.nCodePage, row.text), row.bytes);
    }
}

TEST(CodePage, AppendsToWhatIsThere)
{
    string_t text = u"old ";
    DecodeBytes(1252, "new", text);
    DecodeBytes(936, "\xD6\xD0", text);
    EXPECT_EQ(text, u"old new\u4E2D");
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
        EXPECT_EQ(text.find(u'\uFFFD'), string_t::npos);
        EXPECT_EQ(EncodeText(nCodePage, text), bytes);
    }
}

// Whole blocks, words and rests in any mixture give what bytes one by one give.
TEST(CodePage, DecodesTheSameAtAnyLengthAndPosition)
{
    const unsigned nSeed = std::random_device{}();
    SCOPED_TRACE(testing::Message() << "seed " << nSeed);
    std::mt19937 random(nSeed);
    for (int n = 0; n < 3000; ++n) {
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
    EXPECT_EQ(Decode(99999, "\x80"), u"\u20AC");
}

TEST(AnsiCodePage, IsOneForTheProcess)
{
    const UINT nBefore = AnsiCodePage();
    EXPECT_TRUE(SetAnsiCodePage(936));
    EXPECT_EQ(AnsiCodePage(), 936u);
    EXPECT_EQ(Decode(kAnsiCodePage, "\xD6\xD0"), u"\u4E2D");
    EXPECT_EQ(EncodeText(kAnsiCodePage, u"\u4E2D"), "\xD6\xD0");
    EXPECT_FALSE(SetAnsiCodePage(99999));
    EXPECT_EQ(AnsiCodePage(), 936u);
    UINT nSeen = 0;
    std::thread([&] { nSeen = AnsiCodePage(); }).join();
    EXPECT_EQ(nSeen, 936u);
    EXPECT_TRUE(SetAnsiCodePage(nBefore));
}

TEST(AnsiCodePage, ComesFromTheLocale)
{
    const std::pair<const char*, UINT> rows[] = {
        {"", 1252},
        {"C", 1252},
        {"POSIX", 1252},
        {"C.UTF-8", 65001},
        {"en_US.UTF-8", 65001},
        {"en_US.utf8", 65001},
        {"zh_CN.GBK", 936},
        {"zh_CN.gb18030", 54936},
        {"zh_CN", 936},
        {"zh_TW", 950},
        {"ja_JP", 932},
        {"ko_KR.cp949", 949},
        {"ru_RU.CP1251", 1251},
        {"ru_RU", 1251},
        {"de_DE", 1252},
        {"de_DE.ISO-8859-15@euro", 28605},
    };
    for (const auto& [locale, nCodePage] : rows)
        EXPECT_EQ(LocaleCodePage(locale), nCodePage) << locale;
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

TEST(CodePageDetection, PutsTheRightPageFirst)
{
    const string_t chinese = u"\u4E2D\u56FD\u5E73\u5B89,\u6D66\u53D1\u94F6\u884C,"
                             u"\u4E0A\u6D77\u8BC1\u5238\u4EA4\u6613\u6240\u7684\u80A1\u7968"
                             u"\u4EE3\u7801\u548C\u540D\u79F0,2004-01-02,10.5\r\n";
    struct Row
    {
        UINT nCodePage;
        UINT nFound;
    };
    for (const Row row : {Row{65001, 65001}, Row{54936, 54936}, Row{936, 54936}}) {
        SCOPED_TRACE(row.nCodePage);
        std::string bytes;
        for (int n = 0; n < 20; ++n)
            bytes += EncodeText(row.nCodePage, chinese);
        const auto pages = DetectCodePages(bytes, 15);
        ASSERT_FALSE(pages.empty());
        EXPECT_EQ(pages.front().nCodePage, row.nFound);
        for (std::size_t n = 0; n < pages.size(); ++n) {
            EXPECT_NE(pages[n].nCodePage, 0u);
            EXPECT_GE(pages[n].nConfidence, 0);
            EXPECT_LE(pages[n].nConfidence, n == 0 ? 100 : pages[n - 1].nConfidence);
        }
    }
}

TEST(CodePageDetection, GivesNoMoreThanAskedFor)
{
    const std::string_view bytes = "Date,Time,Open,High,Low,Close\r\n2004-01-02,10:30,1,2,3,4\r\n";
    EXPECT_TRUE(DetectCodePages(bytes, 0).empty());
    EXPECT_EQ(DetectCodePages(bytes, 2).size(), 2u);
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
