// The system knows how wide characters are, but only in a locale of UTF-8, and the process may run
// in another. So one is taken for the call alone. ASCII, which is nearly all, is answered without
// it.

#include "tools/tabulex/text/CellWidth.h"

#include <cwchar>

#include "tools/tabulex/text/Utf8Locale_posix.h"

namespace tabulex {

namespace {

locale_t Utf8Locale()
{
    static const locale_t locale = [] {
        for (const char* pszName : {"C.UTF-8", "en_US.UTF-8", ""})
            if (const locale_t found = ::newlocale(LC_CTYPE_MASK, pszName, nullptr))
                return found;
        return ::duplocale(LC_GLOBAL_LOCALE);
    }();
    return locale;
}

} // namespace

Utf8LocaleOfThread::Utf8LocaleOfThread() : m_before(::uselocale(Utf8Locale())) {}

int CellWidth(char32_t c)
{
    if (c >= 0x20 && c < 0x7F)
        return 1;
    if (c == 0)
        return -1;
    const Utf8LocaleOfThread locale;
    return ::wcwidth(static_cast<wchar_t>(c));
}

} // namespace tabulex
