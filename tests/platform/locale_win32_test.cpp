#include <gtest/gtest.h>

#include "platform/text/Locale.h"

namespace {

TEST(PrefersChinese, WhereTheUsersLocaleIsChinese)
{
    wchar_t language[9] = {};
    GetLocaleInfoW(LOCALE_USER_DEFAULT, LOCALE_SISO639LANGNAME, language, 9);
    EXPECT_EQ(PrefersChinese(), string_t(language) == L"zh");
}

TEST(FormatTexts, AreThoseOfTheSystemsLocale)
{
    wchar_t date[80] = {}, time[80] = {};
    GetLocaleInfoW(LOCALE_SYSTEM_DEFAULT, LOCALE_SSHORTDATE, date, 80);
    GetLocaleInfoW(LOCALE_SYSTEM_DEFAULT, LOCALE_STIMEFORMAT, time, 80);
    EXPECT_EQ(DateFormatText(), date);
    EXPECT_EQ(TimeFormatText(), time);
}

} // namespace
