// Where boxes appear: in the middle of what they belong to.
#pragma once

#include "platform/component.h"

namespace Hesperon::specifics::UILayer {

// Moves a window to the middle of another one, or of the monitor's work area for null, and as far
// as needed to lie in the work area. The size stays.
void CentreWindow(HWND hWnd, HWND hOwner);

} // namespace Hesperon::specifics::UILayer
