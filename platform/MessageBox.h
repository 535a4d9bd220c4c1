// Messages for the user that have no other place to appear.
#pragma once

#include <functional>

#include "platform/component.h"

// Shows a warning in a box owned by the window hWnd and returns when it has been
// read; where there are no windows, writes it as one line of UTF-8 to standard
// error. The box has no title of its own. Safe from any thread, throws nothing.
void ShowWarning(LONG_PTR hWnd, string_view_t text);

// Gets the warnings in place of the box; an empty listener brings the box back. Gives the
// previous listener. Set it while no warnings are shown. It must not throw.
using WarningListener = std::function<void(LONG_PTR hWnd, string_view_t text)>;
WarningListener SetWarningListener(WarningListener listener);

// The system's own box; use ShowWarning.
void ShowSystemWarning(LONG_PTR hWnd, string_view_t text);
