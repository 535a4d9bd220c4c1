// How menus look, for the whole process.
#pragma once

#include "platform/component.h"

// Each is kept, and passed to the menu library where there is one.
LONG MenuStyle();
void SetMenuStyle(LONG nStyle);
LONG MenuEffect();
void SetMenuEffect(LONG nEffect);
