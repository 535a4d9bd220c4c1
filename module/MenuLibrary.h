// The closed library that styles menus and dialogs. It changes only looks, and may be
// absent: the calls do nothing then.
#pragma once

#include "platform/component.h"

namespace MenuLibrary {

void EnableKelmstyle(LONG nStyle);
void SetMenuEffect(LONG nEffect);

} // namespace MenuLibrary
