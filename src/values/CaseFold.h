// Comparing text without regard to case, one unit at a time. Allocates nothing for ASCII.
// Thread-safe.
#pragma once

#include "platform/component.h"

namespace Hesperon::specifics {

OLECHAR FoldCase(OLECHAR c);
bool EqualIgnoringCase(string_view_t sFirst, string_view_t sSecond);

} // namespace Hesperon::specifics
