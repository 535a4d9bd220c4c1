// A name comes as the language writes it, in small letters and in capitals: the letters of a cell
// needn't be folded then.

#include <unicode/dtfmtsym.h>
#include <unicode/locid.h>
#include <unicode/unistr.h>

#include <algorithm>

#include "intake/moments/Words.h"

namespace tabulex::intake {

namespace {

void AddCases(std::vector<LanguageName>& names, const icu::UnicodeString& name,
              const icu::Locale& locale, Word word)
{
    icu::UnicodeString small = name, capitals = name;
    small.toLower(locale);
    capitals.toUpper(locale);
    for (const icu::UnicodeString& form : {name, small, capitals}) {
        std::string bytes;
        form.toUTF8String(bytes);
        names.push_back({std::move(bytes), word});
    }
}

// The system gives the names of another language for one that it doesn't know.
bool IsKnown(const std::string& language)
{
    int32_t nCount = 0;
    const icu::Locale* known = icu::Locale::getAvailableLocales(nCount);
    return std::any_of(known, known + nCount, [&language](const icu::Locale& locale) {
        return language == locale.getLanguage();
    });
}

} // namespace

std::vector<LanguageName> NamesOf(const std::string& language)
{
    using Symbols = icu::DateFormatSymbols;
    std::vector<LanguageName> names;
    const icu::Locale locale(language.c_str());
    UErrorCode status = U_ZERO_ERROR;
    const Symbols symbols(locale, status);
    if (U_FAILURE(status) || !IsKnown(language))
        return names;
    for (const auto context : {Symbols::FORMAT, Symbols::STANDALONE})
        for (const auto width : {Symbols::WIDE, Symbols::ABBREVIATED}) {
            int32_t nCount = 0;
            const icu::UnicodeString* months = symbols.getMonths(nCount, context, width);
            for (int32_t n = 0; n < std::min(nCount, 12); ++n)
                AddCases(names, months[n], locale,
                         {WordKind::Month, static_cast<std::uint8_t>(n + 1)});
            const icu::UnicodeString* days = symbols.getWeekdays(nCount, context, width);
            for (int32_t n = 1; n < nCount; ++n) // the first one is empty
                AddCases(names, days[n], locale, {WordKind::Weekday});
        }
    return names;
}

} // namespace tabulex::intake
