// Settings of looks: some for the process, one a thread.
#pragma once

#include "platform/component.h"

// Handed to the menu library, where there is one, and kept.
LONG MenuStyle();
void SetMenuStyle(LONG nStyle);
LONG MenuEffect();
void SetMenuEffect(LONG nEffect);

// A flag of the calling thread; unset on a thread that never set it.
bool ModelessProgress();
void SetModelessProgress(bool bModeless);
