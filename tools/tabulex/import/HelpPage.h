// The page of keys.
#pragma once

#include "tools/tabulex/import/terminal/Desk.h"

namespace tabulex {

// Until any key.
void ShowHelpPage(Desk& desk);

} // namespace tabulex
