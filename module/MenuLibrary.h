// The closed library that styles menus and dialogs. It adds looks only, and may be absent:
// the calls then do nothing.
#pragma once

#include "platform/component.h"

namespace MenuLibrary {

void EnableKelmstyle(LONG nStyle);
void SetMenuEffect(LONG nEffect);

} // namespace MenuLibrary
