// tagMATHVALUE: the value of a template's variable.
#pragma once

#include <cstdint>

#include "platform/component.h"

namespace Hesperon::specifics {

// A variable's value: a signed integer or a double.
struct tagMATHVALUE
{
    static constexpr std::uint8_t kInteger = 1; // else double
    static constexpr std::uint8_t kSet = 2;

    union {
        LONGLONG nValue;
        double fValue;
    };
    std::uint8_t nFlags;

    // Both set kSet.
    static tagMATHVALUE Integer(LONGLONG value);
    static tagMATHVALUE Double(double value);
    bool IsInteger() const { return nFlags & kInteger; }
    double AsDouble() const { return IsInteger() ? static_cast<double>(nValue) : fValue; }
    // Two integers give an integer, wrapping at 64 bits; anything else a double.
    void Add(const tagMATHVALUE& other);
};

inline tagMATHVALUE tagMATHVALUE::Integer(LONGLONG value)
{
    tagMATHVALUE result;
    result.nValue = value;
    result.nFlags = kInteger | kSet;
    return result;
}

inline tagMATHVALUE tagMATHVALUE::Double(double value)
{
    tagMATHVALUE result;
    result.fValue = value;
    result.nFlags = kSet;
    return result;
}

inline void tagMATHVALUE::Add(const tagMATHVALUE& other)
{
    if (IsInteger() && other.IsInteger())
        *this = Integer(static_cast<LONGLONG>(static_cast<ULONGLONG>(nValue) +
                                              static_cast<ULONGLONG>(other.nValue)));
    else
        *this = Double(AsDouble() + other.AsDouble());
}

} // namespace Hesperon::specifics
