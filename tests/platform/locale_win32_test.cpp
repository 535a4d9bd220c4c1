#include <gtest/gtest.h>

#include "platform/text/Locale.h"

namespace {

TEST(PrefersChinese, WhereTheUsersLocaleIsChinese)
{
    wchar_t language[9] = {};
    GetLocaleInfoW(LOCALE_USER_DEFAULT, LOCALE_SISO639LANGNAME, language, 9);
    EXPECT_EQ(PrefersChinese(), string_t(language) == L"zh");
}

} // namespace
