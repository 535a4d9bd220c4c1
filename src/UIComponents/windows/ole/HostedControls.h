// The three control classes with windows, for containers of a host.
#pragma once

namespace Hesperon::specifics::UILayer {

// From now on a host that creates one of the classes gets a control that a container can activate
// (ControlClasses.h). Before objects are made.
void UseHostedControls();

} // namespace Hesperon::specifics::UILayer
