// Decimal numbers as texts of controls, and what a person typed as numbers.
#pragma once

#include "platform/component.h"

namespace Hesperon::specifics::UILayer {

string_t DecimalText(ULONGLONG nNumber);

// White space, a sign, and digits up to the first other character; 0 where there are none. A
// number beyond 32 bits gives the nearest.
LONG DecimalValue(string_view_t sText);

// Its absolute value, 2147483648 for the lowest number.
ULONG AbsoluteDecimalValue(string_view_t sText);

} // namespace Hesperon::specifics::UILayer
