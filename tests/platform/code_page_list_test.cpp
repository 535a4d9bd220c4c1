// The code pages that a user can choose from.

#include <algorithm>
#include <set>

#include <gtest/gtest.h>

#include "platform/text/CodePage.h"

namespace {

TEST(CodePageList, HasTheLatinPageUnderItsName)
{
    const auto pages = CodePages();
    const auto latin = std::ranges::find(pages, kLatinCodePage, &CodePageDescription::nCodePage);
    ASSERT_NE(latin, pages.end());
    EXPECT_EQ(latin->sDescription, OLESTR("Western European (Windows)"));
}

TEST(CodePageList, HasEachPageOnceWithADescription)
{
    std::set<UINT> numbers;
    for (const CodePageDescription& page : CodePages()) {
        EXPECT_TRUE(numbers.insert(page.nCodePage).second) << page.nCodePage;
        EXPECT_FALSE(page.sDescription.empty()) << page.nCodePage;
    }
}

} // namespace
