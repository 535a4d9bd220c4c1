#include "platform/text/Locale_icu.h"

#include <memory>

#include <fmt/format.h>
#include <unicode/datefmt.h>
#include <unicode/dtfmtsym.h>
#include <unicode/smpdtfmt.h>
#include <unicode/uchar.h>

#include "platform/text/DateTimePicture_posix.h"
#include "platform/text/Locale.h"
#include "platform/text/UserLocale_posix.h"
#include "platform/variant/CalendarDay_posix.h"

namespace {

string_t TextOf(const icu::UnicodeString& text)
{
    return string_t(text.getBuffer(), static_cast<std::size_t>(text.length()));
}

string_t Ascii(std::string_view text)
{
    return string_t(text.begin(), text.end());
}

// The picture of a format of ICU's. Its short dates may have a year of two digits; the picture
// has four.
string_t FormatPicture(const std::unique_ptr<icu::DateFormat>& format, string_view_t otherwise)
{
    const auto* simple = dynamic_cast<const icu::SimpleDateFormat*>(format.get());
    if (!simple)
        return string_t(otherwise);
    icu::UnicodeString pattern;
    simple->toPattern(pattern);
    return PictureOf(TextOf(pattern));
}

bool IsValidDate(const SYSTEMTIME& time)
{
    return time.wYear >= 1601 && time.wYear <= 30827 && time.wMonth >= 1 && time.wMonth <= 12 &&
           time.wDay >= 1 && time.wDay <= DaysInMonth(time.wYear, time.wMonth);
}

// The calendar is named since a locale may bring another one, whose months are others.
icu::Locale GregorianLocale(const std::string& name)
{
    return icu::Locale::createCanonical((name + "@calendar=gregorian").c_str());
}

bool IsValidTime(const SYSTEMTIME& time)
{
    return time.wHour <= 23 && time.wMinute <= 59 && time.wSecond <= 59;
}

} // namespace

LocaleNames::LocaleNames(const std::string& name)
{
    const icu::Locale locale = GregorianLocale(name);
    UErrorCode status = U_ZERO_ERROR;
    const icu::DateFormatSymbols symbols(locale, status);
    auto next = m_names.begin();
    using Symbols = icu::DateFormatSymbols;
    for (const auto width : {Symbols::WIDE, Symbols::ABBREVIATED}) {
        // Index 1 is Sunday; the published order begins with Monday.
        int32_t nDays = 0;
        const icu::UnicodeString* days = symbols.getWeekdays(nDays, Symbols::STANDALONE, width);
        for (int n = 0; n < 7; ++n, ++next)
            *next = nDays == 8 ? TextOf(days[n == 6 ? 1 : n + 2]) : string_t();
    }
    for (const auto width : {Symbols::WIDE, Symbols::ABBREVIATED}) {
        int32_t nMonths = 0;
        const icu::UnicodeString* months = symbols.getMonths(nMonths, Symbols::STANDALONE, width);
        for (int n = 0; n < 12; ++n, ++next)
            *next = n < nMonths ? TextOf(months[n]) : string_t();
    }
}

string_t LocaleNames::Info(int nType) const
{
    const int n = nType - kFirstType;
    return n >= 0 && n < static_cast<int>(m_names.size()) ? m_names[static_cast<std::size_t>(n)]
                                                          : string_t();
}

LocalePictures::LocalePictures(const std::string& name)
{
    const icu::Locale locale = GregorianLocale(name);
    UErrorCode status = U_ZERO_ERROR;
    const icu::DateFormatSymbols symbols(locale, status);
    int32_t nMarks = 0;
    const icu::UnicodeString* marks = symbols.getAmPmStrings(nMarks);
    for (int n = 0; n < 2 && n < nMarks; ++n) {
        m_marks[n] = TextOf(marks[n]);
        PlainBlanks(m_marks[n]);
    }
    using Format = icu::DateFormat;
    const auto date = std::unique_ptr<Format>(Format::createDateInstance(Format::kShort, locale));
    const auto time = std::unique_ptr<Format>(Format::createTimeInstance(Format::kMedium, locale));
    m_datePicture = FormatPicture(date, u"M/d/yyyy");
    m_timePicture = FormatPicture(time, u"h:mm:ss tt");
}

string_t LocalePictures::ShortDate(const SYSTEMTIME& time) const
{
    return IsValidDate(time) ? FillPicture(m_datePicture, time, {}) : string_t();
}

string_t LocalePictures::Time(const SYSTEMTIME& time) const
{
    return IsValidTime(time) ? FillPicture(m_timePicture, time, m_marks[time.wHour / 12])
                             : string_t();
}

// Never freed, so that threads may still ask while the process ends.
const LocaleNames& UserLocaleNames()
{
    static const LocaleNames& names = *new LocaleNames(LocaleName(EnvironmentLocale("LC_TIME")));
    return names;
}

const LocalePictures& UserLocalePictures()
{
    static const LocalePictures& pictures =
        *new LocalePictures(LocaleName(EnvironmentLocale("LC_TIME")));
    return pictures;
}

// The simple mapping of a unit is a unit; surrogates have none of their own.
void LowerCase(string_t& text)
{
    for (OLECHAR& c : text) {
        if (c < 0x80)
            c = c >= u'A' && c <= u'Z' ? static_cast<OLECHAR>(c + 0x20) : c;
        else
            c = static_cast<OLECHAR>(u_tolower(c));
    }
}

string_t LocaleInfo(int nType)
{
    return UserLocaleNames().Info(nType);
}

string_t ShortDate(const SYSTEMTIME& time)
{
    return UserLocalePictures().ShortDate(time);
}

string_t TimeText(const SYSTEMTIME& time)
{
    return UserLocalePictures().Time(time);
}

string_t DateFormatText()
{
    return UserLocalePictures().DatePicture();
}

string_t TimeFormatText()
{
    return UserLocalePictures().TimePicture();
}

string_t InvariantTime(const SYSTEMTIME& time)
{
    if (!IsValidTime(time))
        return {};
    return Ascii(fmt::format("{:02}:{:02}:{:02}", time.wHour, time.wMinute, time.wSecond));
}

bool PrefersChinese()
{
    const std::string name = LocaleName(EnvironmentLocale("LC_MESSAGES"));
    return name == "zh" || name.starts_with("zh_");
}

extern "C" HRESULT VarMonthName(INT month, INT abbreviate, ULONG, BSTR* name)
{
    constexpr int kLongMonth = 55; // type of the month before January
    constexpr int kShortMonth = 67;
    if (!name || month < 1 || month > 12)
        return E_INVALIDARG;
    const string_t text = LocaleInfo((abbreviate ? kShortMonth : kLongMonth) + month);
    *name = SysAllocStringLen(text.data(), static_cast<UINT>(text.size()));
    return *name ? S_OK : E_OUTOFMEMORY;
}
