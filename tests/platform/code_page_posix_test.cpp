#include <algorithm>

#include <gtest/gtest.h>

#include "CodePages.h"
#include "platform/text/UserLocale_posix.h"

namespace {

using namespace std::literals;

TEST(CodePage, HasUtf16AsBytes)
{
    EXPECT_EQ(Decode(1200, "A\0-N"sv), u"A\u4E2D");
    EXPECT_EQ(EncodeText(1200, u"A\u4E2D"), "A\0-N"sv);
}

TEST(CodePage, ReplacesMalformedSequencesOfOtherPages)
{
    const Coded rows[] = {
        {54936, "a\xFFz"sv, u"a\uFFFDz"sv},
        {51949, "\xC7"sv, u"\uFFFD"sv},
    };
    for (const Coded& row : rows) {
        SCOPED_TRACE(testing::Message() << row.nCodePage << ' ' << row.bytes.size());
        EXPECT_EQ(Decode(row.nCodePage, row.bytes), row.text);
    }
}

TEST(CodePage, HasOneMarkForAPairOfSurrogates)
{
    EXPECT_EQ(EncodeText(1252, u"\U0001F600!"), "?!");
    EXPECT_EQ(EncodeText(936, u"\U0001F600\u4E2D"), "?\xD6\xD0");
    EXPECT_EQ(EncodeText(65001, u"\xDC80x"), "?x");
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

TEST(CodePageDetection, FindsSeveralForAscii)
{
    EXPECT_EQ(DetectCodePages("Date,Time,Open\r\n2004-01-02,10:30,1\r\n", 2).size(), 2u);
}

TEST(CodePageList, HasOnlyPagesWithAConverter)
{
    const UINT nBefore = AnsiCodePage();
    for (const CodePageDescription& page : CodePages())
        EXPECT_TRUE(SetAnsiCodePage(page.nCodePage)) << page.nCodePage;
    SetAnsiCodePage(nBefore);
}

TEST(CodePageList, HasTheEnglishDescriptions)
{
    struct Row
    {
        UINT nCodePage;
        string_view_t sDescription;
    };
    static constexpr Row kRows[] = {
        {936, u"Chinese Simplified (GBK)"}, {950, u"Chinese Traditional (Big5)"},
        {932, u"Japanese (Shift-JIS)"},     {949, u"Korean (Windows)"},
        {20866, u"Cyrillic (KOI8-R)"},      {65001, u"Unicode (UTF-8)"},
    };
    const std::vector<CodePageDescription> pages = CodePages();
    for (const Row& row : kRows)
        EXPECT_TRUE(std::ranges::any_of(pages, [&](const CodePageDescription& page) {
            return page.nCodePage == row.nCodePage && page.sDescription == row.sDescription;
        })) << row.nCodePage;
}

TEST(CodePageList, HasTheUsualOnes)
{
    const std::vector<CodePageDescription> pages = CodePages();
    for (const UINT nCodePage : {932u, 936u, 949u, 950u, 1250u, 1251u, 1252u, 1253u, 1254u, 1255u,
                                 1256u, 1257u, 1258u, 866u, 20866u, 28591u, 65001u})
        EXPECT_EQ(std::ranges::count(pages, nCodePage, &CodePageDescription::nCodePage), 1)
            << nCodePage;
}

} // namespace
