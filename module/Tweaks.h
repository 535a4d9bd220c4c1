// Settings of looks, for the whole process.
#pragma once

#include "platform/component.h"

// Handed to the menu library, where there is one, and kept.
LONG MenuStyle();
void SetMenuStyle(LONG nStyle);
LONG MenuEffect();
void SetMenuEffect(LONG nEffect);
