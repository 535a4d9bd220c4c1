// Numbers between the numeric kinds of a VARIANT.
#pragma once

#include <variant>

#include "platform/component.h"

struct Currency
{
    LONGLONG nTenThousandths;
};

using Number = std::variant<LONGLONG, ULONGLONG, double, Currency>;

// The number in a VARIANT; VT_EMPTY counts as zero. False for other kinds.
bool ReadNumber(const VARIANT& from, Number& number);

// Stores the number as the kind: fractions go to the nearest whole number, halves
// to the even one. DISP_E_OVERFLOW where it doesn't fit, DISP_E_BADVARTYPE for a
// kind that isn't numeric.
HRESULT WriteNumber(const Number& number, VARTYPE vt, VARIANT& to);

// Stores the bits as an integer kind, whose sign bit they may set; DISP_E_OVERFLOW for more
// bits than it has. For another kind they are a number without a sign.
HRESULT WriteBits(ULONGLONG bits, VARTYPE vt, VARIANT& to);

// From one numeric kind to another. Between integers of one size, and from
// VT_BOOL, the bits are kept and nothing overflows, as published.
HRESULT ConvertNumber(const VARIANT& from, VARTYPE vt, VARIANT& to);
