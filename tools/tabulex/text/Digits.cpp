// Eight digits are made at once: a number below 10^8 is split into two halves, these into pairs,
// and the pairs into digits, side by side in one word. In memory its first byte is the first digit,
// so leading zeros are zero bytes at the word's low end and trailing ones at its high end. Both are
// counted by one instruction, and nothing branches on the number of digits.
//
// Prices are written as the shortest decimal that reads back to the same double. The general way is
// std::to_chars. Most prices have few decimals, for which there is a faster way: scale by a power
// of ten and round to a whole number n. If n divided by that power is the value again, the digits
// of n are the answer: n and the power are doubles without a rounding, so the quotient is the
// double nearest to the decimal, and of the decimals of at most 15 digits no two have the same
// double.

#include "tools/tabulex/text/Digits.h"

#include <bit>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstring>

namespace tabulex {

namespace {

using Word = std::uint64_t;

static_assert(std::endian::native == std::endian::little, "the first digit is the low byte");

constexpr std::uint32_t kEight = 100'000'000; // the first number of nine digits
constexpr Word kZeros = 0x3030303030303030;   // "00000000"

// The digits as numbers, one in each byte; n has at most eight.
constexpr Word EightDigits(std::uint32_t n)
{
    Word x = n / 10'000 | Word(n % 10'000) << 32;
    Word tens = (x * 10'486 >> 20) & 0x0000007F0000007F; // each half by 100
    x = tens | (x - tens * 100) << 16;
    tens = (x * 103 >> 10) & 0x000F000F000F000F; // each pair by 10
    return tens | (x - tens * 10) << 8;
}

static_assert(EightDigits(12345678) == 0x0807060504030201);
static_assert(EightDigits(99999999) == 0x0909090909090909);

char* PutWord(char* at, Word digits, int nCount)
{
    std::memcpy(at, &digits, sizeof digits);
    return at + nCount;
}

char* PutAllEight(char* at, std::uint32_t n)
{
    return PutWord(at, EightDigits(n) | kZeros, 8);
}

// Without leading zeros; 0 keeps one digit, since the last byte is taken for occupied.
char* PutUpToEight(char* at, std::uint32_t n)
{
    const Word digits = EightDigits(n);
    const int nLeading = std::countr_zero(digits | Word(1) << 56) / 8;
    return PutWord(at, (digits | kZeros) >> nLeading * 8, 8 - nLeading);
}

char* PutLong(char* at, Word n);

inline char* PutUnsigned(char* at, Word n)
{
    return n < kEight ? PutUpToEight(at, static_cast<std::uint32_t>(n)) : PutLong(at, n);
}

char* PutLong(char* at, Word n)
{
    at = PutUnsigned(at, n / kEight);
    return PutAllEight(at, static_cast<std::uint32_t>(n % kEight));
}

// A point and the decimals of n hundred-millionths, without trailing zeros; nothing for none.
char* PutDecimals(char* at, std::uint32_t n)
{
    if (n == 0)
        return at;
    const Word digits = EightDigits(n);
    *at++ = '.';
    return PutWord(at, digits | kZeros, 8 - std::countl_zero(digits) / 8);
}

constexpr double kLeastPlain = 1e-5; // below it plain notation would be mostly zeros
constexpr double kMostPlain = 1e15;

// Null, and nothing of use written, for a value that has more decimals or more than 15 digits.
template <std::uint32_t kScale>
char* PutScaled(char* at, double value)
{
    const double magnitude = std::abs(value);
    const double scaled = magnitude * kScale;
    if (!(scaled < kMostPlain))
        return nullptr;
    // Rounds by cutting: one instruction, where std::nearbyint may be a slow call.
    const auto n = static_cast<std::int64_t>(scaled + 0.5);
    if (static_cast<double>(n) / kScale != magnitude)
        return nullptr;
    *at = '-';
    at = PutUnsigned(at + (value < 0), static_cast<Word>(n / kScale));
    return PutDecimals(at, static_cast<std::uint32_t>(n % kScale) * (kEight / kScale));
}

} // namespace

char* PutPrice(char* at, double value)
{
    const double magnitude = std::abs(value);
    const bool bPlain = magnitude >= kLeastPlain && magnitude < kMostPlain;
    if (bPlain)
        if (char* end = PutScaled<100'000>(at, value))
            return end;
    if (bPlain)
        if (char* end = PutScaled<kEight>(at, value))
            return end;
    const auto format =
        bPlain || magnitude == 0 ? std::chars_format::fixed : std::chars_format::scientific;
    return std::to_chars(at, at + kDigitsRoom, value, format).ptr;
}

char* PutWhole(char* at, LONGLONG value)
{
    *at = '-';
    const auto n = static_cast<Word>(value);
    return value < 0 ? PutUnsigned(at + 1, Word(0) - n) : PutUnsigned(at, n);
}

// The year and the month with a 0 on either side of the month, which become dashes.
char* PutDay(char* at, LONGLONG nDay)
{
    constexpr Word kDashes = Word('0' ^ '-') << 32 | Word('0' ^ '-') << 56;
    const std::chrono::year_month_day date{kDayZero + std::chrono::days(nDay)};
    const std::uint32_t nYear = static_cast<unsigned>(static_cast<int>(date.year())) % 10'000;
    const std::uint32_t nMonth = nYear * 10'000 + static_cast<unsigned>(date.month()) * 10;
    at = PutWord(at, (EightDigits(nMonth) | kZeros) ^ kDashes, 8);
    return PutWord(at, EightDigits(static_cast<unsigned>(date.day()) * 1'000'000) | kZeros, 2);
}

// Hours, minutes and seconds with zeros between them, which become colons.
char* PutTimeOfDay(char* at, unsigned nMilliseconds)
{
    constexpr Word kColons = Word('0' ^ ':') << 16 | Word('0' ^ ':') << 40;
    const std::uint32_t nHour = nMilliseconds / 3'600'000 % 100;
    const std::uint32_t nMinute = nMilliseconds / 60'000 % 60;
    const std::uint32_t nSecond = nMilliseconds / 1000 % 60;
    const Word digits = EightDigits(nHour * 1'000'000 + nMinute * 1000 + nSecond);
    at = PutWord(at, (digits | kZeros) ^ kColons, 8);
    const std::uint32_t nRest = nMilliseconds % 1000;
    if (nRest == 0)
        return at;
    *at++ = '.';
    return PutWord(at, EightDigits(nRest * 100'000) | kZeros, 3);
}

} // namespace tabulex
