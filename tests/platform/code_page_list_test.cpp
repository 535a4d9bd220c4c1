// The code pages that a user can choose from.

#include <set>

#include <gtest/gtest.h>

#include "platform/text/CodePage.h"

namespace {

string_t DescriptionOf(UINT nCodePage)
{
    for (const CodePageDescription& page : CodePages())
        if (page.nCodePage == nCodePage)
            return page.sDescription;
    return {};
}

TEST(CodePageList, HasTheUsualOnes)
{
    for (const UINT nCodePage : {932u, 936u, 949u, 950u, 1250u, 1251u, 1252u, 1253u, 1254u, 1255u,
                                 1256u, 1257u, 1258u, 866u, 20866u, 28591u, 65001u})
        EXPECT_FALSE(DescriptionOf(nCodePage).empty()) << nCodePage;
    EXPECT_EQ(DescriptionOf(1252), OLESTR("Western European (Windows)"));
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
