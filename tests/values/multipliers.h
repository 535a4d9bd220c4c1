// Values for multipliers, and multipliers for tests.
#pragma once

#include <gtest/gtest.h>

#include <bit>

#include "platform/values.h"
#include "src/values/qrlValueMultiplier.h"

inline VARIANT IntegerValue(LONGLONG nValue)
{
    VARIANT value{};
    value.vt = VT_I8;
    value.llVal = nValue;
    return value;
}

inline VARIANT FloatValue(double fValue)
{
    VARIANT value{};
    value.vt = VT_R8;
    value.dblVal = fValue;
    return value;
}

// The float whose bits are those of the value, taken as an integer, times nFactor.
inline double AsIntegerTimes(LONGLONG nFactor, double fValue)
{
    return std::bit_cast<double>(std::bit_cast<ULONGLONG>(fValue) * nFactor);
}

// The integer whose bits are those of the value, taken as a float, over nDivisor.
inline LONGLONG AsFloatOver(LONGLONG nDivisor, LONGLONG nValue)
{
    return std::bit_cast<LONGLONG>(std::bit_cast<double>(nValue) / static_cast<double>(nDivisor));
}

inline com_ptr<Hesperon::specifics::CqrlValueMultiplier> NewMultiplier()
{
    com_ptr<Hesperon::specifics::CqrlValueMultiplier> object;
    EXPECT_EQ(S_OK, CreateObject(object));
    return object;
}

inline string_t CurrentOf(IQRL_TabulexConverter::IValueMultiplier& object)
{
    Bstr name;
    EXPECT_EQ(S_OK, object.get_Current(name.put()));
    return name.str();
}
