#include "platform/text/Locale.h"

#include <algorithm>

namespace {

// The text from a call that fills a buffer and gives the number of units, the terminator
// among them.
template <class Call>
string_t Text(Call call)
{
    string_t text(128, L'\0');
    const int nUnits = call(text.data(), static_cast<int>(text.size()));
    text.resize(nUnits > 0 ? static_cast<std::size_t>(nUnits - 1) : 0);
    return text;
}

string_t SystemFormat(LCTYPE nType)
{
    return Text([&](wchar_t* buffer, int nMost) {
        return GetLocaleInfoW(LOCALE_SYSTEM_DEFAULT, nType, buffer, nMost);
    });
}

} // namespace

void LowerCase(string_t& text)
{
    if (text.empty())
        return;
    const auto nUnits = static_cast<int>(text.size());
    string_t lower(text.size(), L'\0');
    if (LCMapStringW(LOCALE_USER_DEFAULT, LCMAP_LOWERCASE, text.data(), nUnits, lower.data(),
                     nUnits) == nUnits)
        text = std::move(lower);
}

string_t LocaleInfo(int nType)
{
    constexpr int kFirstType = LOCALE_SDAYNAME1;
    constexpr int kLastType = LOCALE_SABBREVMONTHNAME12;
    if (nType < kFirstType || nType > kLastType)
        return {};
    return Text([&](wchar_t* buffer, int nMost) {
        return GetLocaleInfoW(LOCALE_USER_DEFAULT, static_cast<LCTYPE>(nType), buffer, nMost);
    });
}

string_t ShortDate(const SYSTEMTIME& time)
{
    return Text([&](wchar_t* buffer, int nMost) {
        return GetDateFormatW(LOCALE_USER_DEFAULT, DATE_SHORTDATE, &time, nullptr, buffer, nMost);
    });
}

// Newer systems put a narrow blank that doesn't break before the mark of the half of the day.
string_t TimeText(const SYSTEMTIME& time)
{
    string_t text = Text([&](wchar_t* buffer, int nMost) {
        return GetTimeFormatW(LOCALE_USER_DEFAULT, 0, &time, nullptr, buffer, nMost);
    });
    std::ranges::replace_if(
        text, [](wchar_t c) { return c == L'\u00A0' || c == L'\u202F'; }, L' ');
    return text;
}

string_t DateFormatText()
{
    return SystemFormat(LOCALE_SSHORTDATE);
}

string_t TimeFormatText()
{
    return SystemFormat(LOCALE_STIMEFORMAT);
}

string_t InvariantTime(const SYSTEMTIME& time)
{
    return Text([&](wchar_t* buffer, int nMost) {
        return GetTimeFormatW(LOCALE_INVARIANT, 0, &time, L"HH:mm:ss", buffer, nMost);
    });
}

bool PrefersChinese()
{
    return PRIMARYLANGID(LANGIDFROMLCID(GetUserDefaultLCID())) == LANG_CHINESE;
}
