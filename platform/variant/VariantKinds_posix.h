// What the value layer knows of a kind by its number alone.
#pragma once

#include <array>
#include <cstdint>

#include "platform/component.h"

// Bytes that a value of each kind takes up, by number; 0 for kinds that hold no
// value or that this layer doesn't offer (14, the decimal, and 15).
inline constexpr std::array<std::uint8_t, 24> kKindSizes = {
    0,  0, 2, 4, 4, 8, // EMPTY NULL I2 I4 R4 R8
    8,  8, 8, 8, 4, 2, // CY DATE BSTR DISPATCH ERROR BOOL
    24, 8, 0, 0, 1, 1, // VARIANT UNKNOWN - - I1 UI1
    2,  4, 8, 8, 4, 4, // UI2 UI4 I8 UI8 INT UINT
};

constexpr std::size_t KindSize(VARTYPE vt)
{
    return vt < kKindSizes.size() ? kKindSizes[vt] : 0;
}

// True for a kind that a VARIANT may carry, with the array and by-reference bits.
constexpr bool IsKnownKind(VARTYPE vt)
{
    const unsigned kModifiers = VT_ARRAY | VT_BYREF;
    const auto base = static_cast<VARTYPE>(vt & VT_TYPEMASK);
    if ((vt & ~VT_TYPEMASK & ~kModifiers) != 0)
        return false;
    if (base <= VT_NULL)
        return vt == base;
    return KindSize(base) != 0;
}
