// Numbers in texts of at most kMaxText characters. No locale, no allocation.
#pragma once

#include <array>
#include <cstdint>

#include "platform/component.h"

namespace Hesperon::specifics {

// ---- a column's text, tested and read in one pass

// True if IsFloatText holds; value is then what TextToDouble gives with the first
// ',' taken as a point. Else value stays.
bool ReadFloatText(string_view_t sText, double& value);

// True if IsIntegerText(sText, true) holds; value is then what TextToInt64 gives.
bool ReadIntegerText(string_view_t sText, LONGLONG& value);

// True for digits only, and for the empty text, which is 0. Saturates.
bool ReadDigits(string_view_t sText, LONGLONG& value);

// ---- any text, as the platform's runtime reads it

// The longest readable head after leading blanks, else 0; the decimal mark is a point.
double TextToDouble(string_view_t sText);
// The same for whole numbers, saturating at the ends of the type.
LONGLONG TextToInt64(string_view_t sText);
LONG TextToInt32(string_view_t sText);

// ---- a decimal number by its digits

// The largest whole number up to which a double holds all.
inline constexpr std::uint64_t kMaxExactMantissa = std::uint64_t{1} << 53;

// Powers of ten that a double holds exactly.
inline constexpr std::array kExactPowers = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                            1e8,  1e9,  1e10, 1e11, 1e12, 1e13, 1e14, 1e15,
                                            1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};

// nMantissa / 10^nScale. A quotient of two exact doubles is rounded once, so it is the nearest
// one. REQUIRES: nMantissa <= kMaxExactMantissa, nScale < kExactPowers.size().
inline double ExactQuotient(std::uint64_t nMantissa, std::size_t nScale)
{
    return static_cast<double>(nMantissa) / kExactPowers[nScale];
}

// ---- details -------------------------------------------------------------------

constexpr bool IsDigit(OLECHAR c)
{
    return c >= OLESTR('0') && c <= OLESTR('9');
}

// ReadDigits of a text that may not fit 64 bits.
bool ReadManyDigits(string_view_t sText, LONGLONG& value);

inline bool ReadDigits(string_view_t sText, LONGLONG& value)
{
    constexpr std::size_t kSafeDigits = 18; // a number of up to 18 digits fits 64 bits
    if (sText.size() > kSafeDigits)
        return ReadManyDigits(sText, value);
    LONGLONG sum = 0;
    for (OLECHAR c : sText) {
        if (!IsDigit(c))
            return false;
        sum = sum * 10 + (c - OLESTR('0'));
    }
    value = sum;
    return true;
}

} // namespace Hesperon::specifics
