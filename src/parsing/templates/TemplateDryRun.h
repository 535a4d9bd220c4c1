#pragma once

#include "platform/component.h"

namespace Hesperon::specifics {

// Whether the template could take the text, judged by lengths and digits alone; an
// evaluation may still refuse it. uiType is TypeDate or TypeTime. Detection asks this
// first, since most templates fall here.
bool CouldTake(unsigned uiType, string_view_t sTemplate, string_view_t sText);

} // namespace Hesperon::specifics
