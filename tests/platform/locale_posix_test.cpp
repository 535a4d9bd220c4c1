#include <cstdlib>

#include <gtest/gtest.h>

#include "SystemTime.h"
#include "Values.h"
#include "platform/text/DateTimePicture_posix.h"
#include "platform/text/Locale.h"
#include "platform/text/Locale_icu.h"
#include "platform/text/UserLocale_posix.h"

namespace {

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
        EXPECT_EQ(Narrow(LocalePictures(row.locale).ShortDate(Time(2004, 3, 5))), Narrow(row.text))
            << row.locale;
}

TEST(TimeText, FollowsTheLocale)
{
    struct Row
    {
        const char* locale;
        string_view_t text;
    };
    const Row rows[] = {
        {"en_US", u"3:05:09 PM"},
        {"en_GB", u"15:05:09"},
        {"de_DE", u"15:05:09"},
        {"zh_CN", u"15:05:09"},
        {"ko_KR", u"\uC624\uD6C4 3:05:09"},
        {"es_CO", u"3:05:09 p. m."},
    };
    SYSTEMTIME time = {};
    time.wHour = 15;
    time.wMinute = 5;
    time.wSecond = 9;
    for (const Row& row : rows)
        EXPECT_EQ(Narrow(LocalePictures(row.locale).Time(time)), Narrow(row.text)) << row.locale;
}

TEST(FormatTexts, FollowTheLocale)
{
    struct Row
    {
        const char* locale;
        string_view_t date, time;
    };
    const Row rows[] = {
        {"en_US", u"M/d/yyyy", u"h:mm:ss tt"},    {"en_GB", u"dd/MM/yyyy", u"HH:mm:ss"},
        {"de_DE", u"dd.MM.yyyy", u"HH:mm:ss"},    {"zh_CN", u"yyyy/M/d", u"HH:mm:ss"},
        {"ko_KR", u"yyyy. M. d.", u"tt h:mm:ss"},
    };
    for (const Row& row : rows) {
        const LocalePictures pictures(row.locale);
        EXPECT_EQ(Narrow(pictures.DatePicture()), Narrow(row.date)) << row.locale;
        EXPECT_EQ(Narrow(pictures.TimePicture()), Narrow(row.time)) << row.locale;
    }
}

TEST(Pictures, HaveTheLettersOfWindows)
{
    const std::pair<string_view_t, string_view_t> rows[] = {
        {u"h:mm:ss\u202Fa", u"h:mm:ss tt"},
        {u"d\u00A0M\u00A0y", u"d M yyyy"},
        {u"yy-LLL-dd", u"yyyy-MM-dd"},
        {u"kk:m:s B", u"HH:m:s tt"},
        {u"K:mm b", u"h:mm tt"},
        {u"H'h'mm", u"H'h'mm"},
        {u"d.M.y GGGGG", u"d.M.yyyy "},
        {u"H 'open", u"H 'open"},
        {u"", u""},
    };
    for (const auto& [pattern, picture] : rows)
        EXPECT_EQ(Narrow(PictureOf(pattern)), Narrow(picture)) << Narrow(pattern);
}

TEST(Pictures, AreFilledWithTheFieldsOfATime)
{
    SYSTEMTIME time = Time(2004, 3, 5);
    time.wHour = 13;
    time.wMinute = 7;
    time.wSecond = 9;
    const std::pair<string_view_t, string_view_t> rows[] = {
        {u"d/M/yyyy", u"5/3/2004"},
        {u"dd.MM.yyyy", u"05.03.2004"},
        {u"HH:mm:ss", u"13:07:09"},
        {u"h:m:s tt", u"1:7:9 pm"},
        {u"H' o''clock'", u"13 oclock"},
        {u"H'h", u"13h"},
        {u"'", u""},
        {u"", u""},
    };
    for (const auto& [picture, text] : rows)
        EXPECT_EQ(Narrow(FillPicture(picture, time, u"pm")), Narrow(text)) << Narrow(picture);
}

TEST(LowerCase, KnowsTheDottedCapital)
{
    string_t text = u"\u0130";
    LowerCase(text);
    EXPECT_EQ(text, u"i");
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
