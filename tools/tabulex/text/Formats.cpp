// A moment is split into days and milliseconds, whose digits Digits.h puts into a buffer. Reading
// takes parts from the front of a text.

#include "tools/tabulex/text/Formats.h"

#include <charconv>
#include <chrono>
#include <cmath>

#include <fmt/format.h>

namespace tabulex {

namespace {

using std::chrono::sys_days;
using std::chrono::year_month_day;

constexpr LONGLONG kMillisecondsADay = 86'400'000;

// Milliseconds since day 0. Rounded: a fraction of a day is rarely exact, and cutting
// would lose a millisecond.
LONGLONG MillisecondsOf(DATE date)
{
    return std::llround(date * static_cast<double>(kMillisecondsADay));
}

// ---- reading: each takes what it reads from the front of the text

// A sign is refused, which from_chars would take.
std::optional<int> TakeDigits(std::string_view& text, std::size_t nDigits)
{
    int value = 0;
    const char* end = text.data() + nDigits;
    if (text.size() < nDigits || text[0] == '-' ||
        std::from_chars(text.data(), end, value).ptr != end)
        return std::nullopt;
    text.remove_prefix(nDigits);
    return value;
}

bool Take(std::string_view& text, char c)
{
    if (text.empty() || text.front() != c)
        return false;
    text.remove_prefix(1);
    return true;
}

std::optional<LONGLONG> TakeDate(std::string_view& text)
{
    const auto year = TakeDigits(text, 4);
    if (!year || !Take(text, '-'))
        return std::nullopt;
    const auto month = TakeDigits(text, 2);
    if (!month || !Take(text, '-'))
        return std::nullopt;
    const auto day = TakeDigits(text, 2);
    if (!day)
        return std::nullopt;
    const year_month_day date{std::chrono::year(*year),
                              std::chrono::month(static_cast<unsigned>(*month)),
                              std::chrono::day(static_cast<unsigned>(*day))};
    if (!date.ok())
        return std::nullopt;
    return (sys_days(date) - kDayZero).count();
}

// One to three digits after the point.
std::optional<int> TakeMilliseconds(std::string_view& text)
{
    const std::size_t nDigits = text.size();
    if (nDigits == 0 || nDigits > 3)
        return std::nullopt;
    auto value = TakeDigits(text, nDigits);
    for (std::size_t i = nDigits; value && i < 3; ++i)
        *value *= 10;
    return value;
}

std::optional<LONGLONG> TakeTime(std::string_view& text)
{
    const auto hour = TakeDigits(text, 2);
    if (!hour || *hour > 23 || !Take(text, ':'))
        return std::nullopt;
    const auto minute = TakeDigits(text, 2);
    if (!minute || *minute > 59)
        return std::nullopt;
    std::optional<int> second = 0;
    if (Take(text, ':'))
        second = TakeDigits(text, 2);
    if (!second || *second > 59)
        return std::nullopt;
    std::optional<int> nMilliseconds = 0;
    if (Take(text, '.'))
        nMilliseconds = TakeMilliseconds(text);
    if (!nMilliseconds)
        return std::nullopt;
    return ((*hour * 60LL + *minute) * 60 + *second) * 1000 + *nMilliseconds;
}

} // namespace

unsigned TimeOfDay(DATE date)
{
    const LONGLONG n = MillisecondsOf(date - std::floor(date));
    return static_cast<unsigned>(n % kMillisecondsADay);
}

std::string DateTimeText(DATE date, char separator)
{
    const LONGLONG n = MillisecondsOf(date);
    // Rounded down before day 0, too.
    const LONGLONG day =
        n >= 0 ? n / kMillisecondsADay : -((-n + kMillisecondsADay - 1) / kMillisecondsADay);
    char text[2 * kDigitsRoom];
    char* at = PutDay(text, day);
    *at++ = separator;
    return std::string(text, PutTimeOfDay(at, static_cast<unsigned>(n - day * kMillisecondsADay)));
}

std::string_view DateText::Of(DATE date)
{
    return OfDay(static_cast<LONGLONG>(std::floor(date)));
}

void DateText::Make(LONGLONG nDay)
{
    m_nDay = nDay;
    m_nLength = static_cast<std::size_t>(PutDay(m_text.data(), nDay) - m_text.data());
}

std::optional<DATE> ParseDateTime(std::string_view text)
{
    const auto day = TakeDate(text);
    if (!day)
        return std::nullopt;
    const bool bDateOnly = text.empty();
    if (!bDateOnly && !Take(text, 'T') && !Take(text, ' '))
        return std::nullopt;
    const auto time = bDateOnly ? std::optional<LONGLONG>(0) : TakeTime(text);
    if (!time || !text.empty())
        return std::nullopt;
    return static_cast<double>(*day) +
           static_cast<double>(*time) / static_cast<double>(kMillisecondsADay);
}

std::optional<ULONGLONG> ParseWhole(std::string_view text)
{
    ULONGLONG value = 0;
    const char* end = text.data() + text.size();
    const auto result = std::from_chars(text.data(), end, value);
    if (text.empty() || result.ec != std::errc() || result.ptr != end)
        return std::nullopt;
    return value;
}

std::string WithThousands(ULONGLONG value)
{
    std::string text = fmt::format("{}", value);
    for (auto at = static_cast<std::ptrdiff_t>(text.size()) - 3; at > 0; at -= 3)
        text.insert(static_cast<std::size_t>(at), 1, ',');
    return text;
}

std::string Counted(ULONGLONG nCount, std::string_view noun)
{
    return fmt::format("{} {}{}", WithThousands(nCount), noun, nCount == 1 ? "" : "s");
}

} // namespace tabulex
