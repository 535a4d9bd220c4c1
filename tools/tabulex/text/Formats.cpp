// Prices are written as the shortest decimal that reads back to the same double. The general
// way is std::to_chars. Most prices have few decimals, for which there is a faster way: scale
// by 10^5 and round to a whole number; if that number divided by 10^5 is the value again, its
// digits are the answer. With at most 15 digits no other decimal of that length or less can
// read back to the value.
//
// Dates and times are counted in days and milliseconds, and put digit by digit into a buffer.
#include "tools/tabulex/text/Formats.h"

#include <charconv>
#include <chrono>
#include <cmath>

#include <fmt/format.h>

namespace tabulex {

namespace {

using std::chrono::days;
using std::chrono::sys_days;
using std::chrono::year_month_day;

constexpr LONGLONG kMillisecondsADay = 86'400'000;
// Day 0 of a DATE.
constexpr sys_days kDayZero = sys_days(std::chrono::December / 30 / 1899);

char* PutDigits(char* at, unsigned value, int nDigits)
{
    for (int i = nDigits - 1; i >= 0; --i, value /= 10)
        at[i] = static_cast<char>('0' + value % 10);
    return at + nDigits;
}

char* PutDate(char* at, LONGLONG day)
{
    const year_month_day date{kDayZero + days(day)};
    at = PutDigits(at, static_cast<unsigned>(static_cast<int>(date.year())), 4);
    *at++ = '-';
    at = PutDigits(at, static_cast<unsigned>(date.month()), 2);
    *at++ = '-';
    return PutDigits(at, static_cast<unsigned>(date.day()), 2);
}

char* PutTime(char* at, LONGLONG nMilliseconds)
{
    const auto n = static_cast<unsigned>(nMilliseconds);
    at = PutDigits(at, n / 3'600'000, 2);
    *at++ = ':';
    at = PutDigits(at, n / 60'000 % 60, 2);
    *at++ = ':';
    at = PutDigits(at, n / 1000 % 60, 2);
    if (n % 1000 == 0)
        return at;
    *at++ = '.';
    return PutDigits(at, n % 1000, 3);
}

// Milliseconds since day 0. Rounded: a fraction of a day is rarely exact, and cutting
// would lose a millisecond.
LONGLONG MillisecondsOf(DATE date)
{
    return std::llround(date * static_cast<double>(kMillisecondsADay));
}

// False, and nothing appended, for a value that has more than five decimals or 15 digits.
bool AppendShortDecimal(std::string& out, double value)
{
    constexpr double kScale = 1e5; // five decimals
    const double scaled = std::abs(value) * kScale;
    if (!(scaled < 1e15))
        return false;
    // Rounds by cutting: one instruction, where std::nearbyint may be a slow call.
    auto n = static_cast<LONGLONG>(scaled + 0.5);
    if (n == 0 || static_cast<double>(n) / kScale != std::abs(value))
        return false;
    char text[24];
    char* const end = text + sizeof text; // filled from its end
    char* at = end;
    int nDecimals = 5;
    for (; nDecimals > 0 && n % 10 == 0; --nDecimals)
        n /= 10;
    for (int i = 0; i < nDecimals; ++i, n /= 10)
        *--at = static_cast<char>('0' + n % 10);
    if (nDecimals > 0)
        *--at = '.';
    do {
        *--at = static_cast<char>('0' + n % 10);
    } while (n /= 10);
    if (value < 0)
        *--at = '-';
    out.append(at, end);
    return true;
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

void AppendTime(std::string& out, DATE date)
{
    const LONGLONG n = MillisecondsOf(date - std::floor(date));
    AppendTimeOfDay(out, static_cast<LONG>(n % kMillisecondsADay));
}

void AppendTimeOfDay(std::string& out, LONG nMilliseconds)
{
    char text[16];
    out.append(text, PutTime(text, nMilliseconds));
}

// Outside these magnitudes plain notation would be mostly zeros.
void AppendPrice(std::string& out, double value)
{
    if (AppendShortDecimal(out, value))
        return;
    const double magnitude = std::abs(value);
    const bool bPlain = magnitude == 0 || (magnitude >= 1e-5 && magnitude < 1e15);
    char text[32];
    const auto format = bPlain ? std::chars_format::fixed : std::chars_format::scientific;
    const auto result = std::to_chars(text, text + sizeof text, value, format);
    out.append(text, result.ptr);
}

void AppendWhole(std::string& out, LONGLONG value)
{
    char text[24];
    out.append(text, std::to_chars(text, text + sizeof text, value).ptr);
}

std::string DateTimeText(DATE date, char separator)
{
    const LONGLONG n = MillisecondsOf(date);
    // Rounded down before day 0, too.
    const LONGLONG day =
        n >= 0 ? n / kMillisecondsADay : -((-n + kMillisecondsADay - 1) / kMillisecondsADay);
    char text[32];
    char* at = PutDate(text, day);
    *at++ = separator;
    return std::string(text, PutTime(at, n - day * kMillisecondsADay));
}

std::string_view DateText::Of(DATE date)
{
    const double day = std::floor(date);
    if (day != m_day) {
        m_day = day;
        m_nLength = static_cast<std::size_t>(PutDate(m_text.data(), static_cast<LONGLONG>(day)) -
                                             m_text.data());
    }
    return {m_text.data(), m_nLength};
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
