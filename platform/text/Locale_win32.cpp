#include "platform/text/Locale.h"

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
