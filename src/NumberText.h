// Conversions of a column's text that test and read it in one pass. Texts are at
// most kMaxText characters. No locale, no allocation.
#pragma once

#include "platform/component.h"

namespace Hesperon::specifics {

// True if IsFloatText holds; value is then what TextToDouble gives with the first
// ',' taken as a point. Else value stays.
bool ReadFloatText(string_view_t sText, double& value);

// True if IsIntegerText(sText, true) holds; value is then what TextToInt64 gives.
bool ReadIntegerText(string_view_t sText, LONGLONG& value);

// True for digits only, and for the empty text, which is 0. Saturates.
bool ReadDigits(string_view_t sText, LONGLONG& value);

constexpr bool IsDigit(OLECHAR c)
{
    return c >= OLESTR('0') && c <= OLESTR('9');
}

} // namespace Hesperon::specifics
