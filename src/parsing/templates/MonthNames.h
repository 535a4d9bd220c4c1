#pragma once

#include "platform/component.h"

namespace Hesperon::specifics {

// 0 to 11 for a month's short name in English or in the user's language, else -1. Case
// doesn't matter.
int FindMonthIndex(string_view_t sText);

} // namespace Hesperon::specifics
