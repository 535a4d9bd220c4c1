// Range checks. The text of a failure names function, argument, range and value.
#pragma once

#include <cstdint>
#include <locale>
#include <sstream>
#include <stdexcept>
#include <string>

namespace qrlDateTime::details {

// Joins the pieces as a stream prints them in the classic locale.
template <class... Pieces>
std::string JoinPieces(const Pieces&... pieces)
{
    std::ostringstream text;
    text.imbue(std::locale::classic());
    (text << ... << pieces);
    return text.str();
}

// Number is std::int64_t or double. Not inline, so that a check that passes costs its
// caller two comparisons.
template <class Number>
[[noreturn]] void ThrowOutOfRange(const char* szFunction, const char* szArgument, std::int64_t nLow,
                                  std::int64_t nHigh, Number value)
{
    throw std::range_error(JoinPieces("qrlDateTime::", szFunction, ": value of '", szArgument,
                                      "' is out of range [", nLow, "..", nHigh, "]; ", szArgument,
                                      " = ", value));
}

constexpr bool InRange(std::int64_t nValue, std::int64_t nLow, std::int64_t nHigh)
{
    return nLow <= nValue && nValue <= nHigh;
}

inline void CheckRange(const char* szFunction, const char* szArgument, std::int64_t nLow,
                       std::int64_t nHigh, std::int64_t nValue)
{
    if (!InRange(nValue, nLow, nHigh)) [[unlikely]]
        ThrowOutOfRange(szFunction, szArgument, nLow, nHigh, nValue);
}

} // namespace qrlDateTime::details
