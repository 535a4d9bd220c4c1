#include "platform/text/UserLocale_posix.h"

#include <cstdlib>

#include "platform/text/CodePage.h"

namespace {

struct LanguagePage
{
    std::string_view language; // of the locale name, as far as it counts
    UINT nCodePage;
};

// The ANSI code pages that Windows has for these languages. The first row that the name begins with
// holds.
constexpr LanguagePage kLanguagePages[] = {
    {"zh_TW", 950}, {"zh_HK", 950}, {"zh_MO", 950}, {"zh", 936},  {"ja", 932},  {"ko", 949},
    {"ru", 1251},   {"uk", 1251},   {"be", 1251},   {"bg", 1251}, {"mk", 1251}, {"pl", 1250},
    {"cs", 1250},   {"sk", 1250},   {"hu", 1250},   {"sl", 1250}, {"hr", 1250}, {"ro", 1250},
    {"el", 1253},   {"tr", 1254},   {"az", 1254},   {"he", 1255}, {"ar", 1256}, {"fa", 1256},
    {"et", 1257},   {"lv", 1257},   {"lt", 1257},   {"vi", 1258}, {"th", 874},
};

std::string_view Encoding(std::string_view locale)
{
    const std::size_t nDot = locale.find('.');
    if (nDot == std::string_view::npos)
        return {};
    locale.remove_prefix(nDot + 1);
    return locale.substr(0, locale.find('@'));
}

} // namespace

std::string EnvironmentLocale(const char* category)
{
    for (const char* name : {"LC_ALL", category, "LANG"})
        if (const char* value = std::getenv(name); value && *value)
            return value;
    return {};
}

std::string LocaleName(std::string_view locale)
{
    const std::string_view name = locale.substr(0, locale.find_first_of(".@"));
    if (name.empty() || name == "C" || name == "POSIX")
        return "en_US";
    return std::string(name);
}

UINT LocaleCodePage(std::string_view locale)
{
    if (const UINT nCodePage = CodePageByName(Encoding(locale)))
        return nCodePage;
    for (const LanguagePage& row : kLanguagePages)
        if (locale.starts_with(row.language))
            return row.nCodePage;
    return kLatinCodePage;
}
