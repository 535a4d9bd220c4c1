#include <cstdlib>

#include <gtest/gtest.h>

#include "Values.h"
#include "platform/Locale.h"
#include "platform/Locale_icu.h"
#include "platform/UserLocale_posix.h"

namespace {

SYSTEMTIME Day(int nYear, int nMonth, int nDay)
{
    SYSTEMTIME time = {};
    time.wYear = static_cast<WORD>(nYear);
    time.wMonth = static_cast<WORD>(nMonth);
    time.wDay = static_cast<WORD>(nDay);
    return time;
}

// Sets environment variables for a test; null removes one.
class Variables
{
public:
    ~Variables()
    {
        for (const auto& [name, value] : m_saved)
            Put(name, value ? value->c_str() : nullptr);
    }
    void Set(const char* name, const char* value)
    {
        const char* old = std::getenv(name);
        m_saved.insert(m_saved.begin(),
                       {name, old ? std::optional<std::string>(old) : std::nullopt});
        Put(name, value);
    }

private:
    static void Put(const char* name, const char* value)
    {
        if (value)
            setenv(name, value, 1);
        else
            unsetenv(name);
    }
    std::vector<std::pair<const char*, std::optional<std::string>>> m_saved;
};

TEST(EnvironmentLocale, IsTheFirstOfAllCategoryAndLanguage)
{
    struct Row
    {
        const char* all;
        const char* category;
        const char* lang;
        const char* expected;
    };
    const Row rows[] = {
        {"a", "b", "c", "a"},         {nullptr, "b", "c", "b"}, {"", "b", "c", "b"},
        {nullptr, nullptr, "c", "c"}, {"", "", "c", "c"},       {nullptr, nullptr, nullptr, ""},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.expected);
        Variables variables;
        variables.Set("LC_ALL", row.all);
        variables.Set("LC_TIME", row.category);
        variables.Set("LANG", row.lang);
        EXPECT_EQ(EnvironmentLocale("LC_TIME"), row.expected);
    }
}

TEST(LocaleName, LeavesOutEncodingAndModifier)
{
    const std::pair<const char*, const char*> rows[] = {
        {"", "en_US"},
        {"C", "en_US"},
        {"POSIX", "en_US"},
        {"C.UTF-8", "en_US"},
        {"zh_CN", "zh_CN"},
        {"zh_CN.GBK", "zh_CN"},
        {"de_DE@euro", "de_DE"},
        {"sr_RS.UTF-8@latin", "sr_RS"},
        {"fr", "fr"},
    };
    for (const auto& [locale, name] : rows)
        EXPECT_EQ(LocaleName(locale), name) << locale;
}

TEST(LocaleInfo, HasNamesForTheTypes42To79)
{
    struct Row
    {
        int nType;
        string_view_t name;
    };
    const Row rows[] = {
        {42, u"Monday"},  {47, u"Saturday"}, {48, u"Sunday"}, {49, u"Mon"}, {55, u"Sun"},
        {56, u"January"}, {67, u"December"}, {68, u"Jan"},    {79, u"Dec"}, {41, u""},
        {80, u""},        {0, u""},          {-1, u""},
    };
    for (const Row& row : rows)
        EXPECT_EQ(Narrow(LocaleInfo(row.nType)), Narrow(row.name)) << row.nType;
}

TEST(LocaleInfo, FollowsTheLanguage)
{
    const LocaleNames german("de_DE");
    EXPECT_EQ(german.Info(42), u"Montag");
    EXPECT_EQ(german.Info(58), u"M\u00E4rz");
    const LocaleNames chinese("zh_CN");
    EXPECT_EQ(chinese.Info(42), u"\u661F\u671F\u4E00");
    EXPECT_EQ(chinese.Info(56), u"\u4E00\u6708");
    EXPECT_EQ(chinese.Info(68), u"1\u6708");
}

TEST(ShortDate, HasTheYearInFullAndTheLocalesOrder)
{
    struct Row
    {
        const char* locale;
        string_view_t text;
    };
    const Row rows[] = {
        {"en_US", u"3/5/2004"},   {"en_GB", u"05/03/2004"}, {"de_DE", u"05.03.2004"},
        {"fr_FR", u"05/03/2004"}, {"zh_CN", u"2004/3/5"},
    };
    for (const Row& row : rows)
        EXPECT_EQ(Narrow(LocaleNames(row.locale).ShortDate(Day(2004, 3, 5))), Narrow(row.text))
            << row.locale;
    EXPECT_EQ(Narrow(ShortDate(Day(2078, 12, 31))), "12/31/2078");
}

TEST(ShortDate, IsEmptyForNoDate)
{
    for (const SYSTEMTIME& time : {Day(2004, 0, 1), Day(2004, 13, 1), Day(2004, 4, 31),
                                   Day(2003, 2, 29), Day(1600, 1, 1), Day(2004, 1, 0)})
        EXPECT_EQ(ShortDate(time), u"") << time.wYear << '-' << time.wMonth << '-' << time.wDay;
}

TEST(InvariantTime, HasTwoDigitsEverywhere)
{
    SYSTEMTIME time = {};
    EXPECT_EQ(InvariantTime(time), u"00:00:00");
    time.wHour = 7;
    time.wMinute = 5;
    time.wSecond = 9;
    EXPECT_EQ(InvariantTime(time), u"07:05:09");
    time.wHour = 23;
    time.wMinute = time.wSecond = 59;
    EXPECT_EQ(InvariantTime(time), u"23:59:59");
    time.wHour = 24;
    EXPECT_EQ(InvariantTime(time), u"");
}

TEST(LowerCase, MapsUnitToUnit)
{
    string_t text = u"JAN \u00C4\u0394\u0416 \u0130 1\u4E00\xD83D\xDE00 z";
    LowerCase(text);
    EXPECT_EQ(text, u"jan \u00E4\u03B4\u0436 i 1\u4E00\xD83D\xDE00 z");
}

TEST(PrefersChinese, InChineseEnvironmentsOnly)
{
    const std::pair<const char*, bool> rows[] = {
        {"zh_CN.UTF-8", true}, {"zh_TW", true},        {"zh", true},
        {"C", false},          {"en_US.UTF-8", false}, {"zha_XX", false},
    };
    for (const auto& [locale, bChinese] : rows) {
        Variables variables;
        variables.Set("LC_ALL", locale);
        EXPECT_EQ(PrefersChinese(), bChinese) << locale;
    }
}

} // namespace
