#include <windows.h>

#include "intake/moments/Words.h"

namespace tabulex::intake {

namespace {

std::string Utf8(const wchar_t* pszText)
{
    char bytes[256];
    const int n =
        WideCharToMultiByte(CP_UTF8, 0, pszText, -1, bytes, sizeof bytes, nullptr, nullptr);
    return n > 0 ? std::string(bytes) : std::string();
}

// As the language writes it, in small letters and in capitals.
void AddCases(std::vector<LanguageName>& names, const wchar_t* pszLanguage, LCTYPE type, Word word)
{
    wchar_t name[80];
    const int n = GetLocaleInfoEx(pszLanguage, type, name, static_cast<int>(std::size(name)));
    if (n <= 1)
        return;
    names.push_back({Utf8(name), word});
    for (const DWORD flags : {LCMAP_LOWERCASE, LCMAP_UPPERCASE}) {
        wchar_t form[80] = {};
        if (LCMapStringEx(pszLanguage, flags, name, n, form, static_cast<int>(std::size(form)),
                          nullptr, nullptr, 0) > 0)
            names.push_back({Utf8(form), word});
    }
}

} // namespace

std::vector<LanguageName> NamesOf(const std::string& language)
{
    std::vector<LanguageName> names;
    const std::wstring name(language.begin(), language.end());
    if (!IsValidLocaleName(name.c_str()))
        return names;
    constexpr LCTYPE kWideMonths = LOCALE_SMONTHNAME1, kShortMonths = LOCALE_SABBREVMONTHNAME1;
    constexpr LCTYPE kWideDays = LOCALE_SDAYNAME1, kShortDays = LOCALE_SABBREVDAYNAME1;
    for (std::uint8_t n = 0; n < 12; ++n)
        for (const LCTYPE first : {kWideMonths, kShortMonths})
            AddCases(names, name.c_str(), first + n,
                     {WordKind::Month, static_cast<std::uint8_t>(n + 1)});
    for (std::uint8_t n = 0; n < 7; ++n)
        for (const LCTYPE first : {kWideDays, kShortDays})
            AddCases(names, name.c_str(), first + n, {WordKind::Weekday});
    return names;
}

} // namespace tabulex::intake
