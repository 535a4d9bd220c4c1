// When the menu library comes and goes: at the load of this module, and at its unload.
#pragma once

#include "platform/component.h"

namespace MenuLibrary {

// It lies beside the module.
void Load(HMODULE hModule);
void Free();

} // namespace MenuLibrary
