// The code pages that a user can choose from, where the descriptions are our own.

#include <algorithm>

#include <gtest/gtest.h>

#include "platform/text/CodePage.h"

namespace {

TEST(CodePageListPosix, HasOnlyPagesWithAConverter)
{
    const UINT nBefore = AnsiCodePage();
    for (const CodePageDescription& page : CodePages())
        EXPECT_TRUE(SetAnsiCodePage(page.nCodePage)) << page.nCodePage;
    SetAnsiCodePage(nBefore);
}

TEST(CodePageListPosix, HasTheEnglishDescriptions)
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

} // namespace
