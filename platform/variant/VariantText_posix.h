// Values of a VARIANT as text and back, in the forms of an English (United
// States) user whatever the environment says, so that files read the same
// everywhere.
#pragma once

#include "platform/component.h"

// Text of a number, a date or a boolean: 15 significant digits for VT_R8, 7 for
// VT_R4, "-1" and "0" for VT_BOOL, or "True" and "False" when asked for.
HRESULT FormatValue(const VARIANT& from, bool bAlphaBool, string_t& text);

// Reads a number, a date or a boolean of the kind. Text ends at its first zero
// unit. DISP_E_TYPEMISMATCH for text that can't be read.
HRESULT ParseValue(string_view_t text, VARTYPE vt, VARIANT& to);

// "M/d/yyyy h:mm:ss AM/PM"; no date on day 0, no time at midnight of another day.
// E_INVALIDARG outside of the years 100 to 9999.
HRESULT FormatDate(DATE date, string_t& text);

// A date of month, day and year in number or English name, a time of day, or the
// two in either order. What is left out of a date is taken from today.
HRESULT ParseDate(string_view_t text, DATE& date);

// An ASCII digit.
constexpr bool IsDigit(OLECHAR c)
{
    return c >= u'0' && c <= u'9';
}
