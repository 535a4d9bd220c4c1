// Who gets windows: the component's library, and a program that asks. Anything else that links
// the component stays without, so that nothing waits in a box that nobody answers.
#pragma once

namespace Hesperon::specifics::UILayer {

// The import dialog and the progress box appear as windows of the system from now on. Before any
// of them is made.
void UseSystemWindows();

} // namespace Hesperon::specifics::UILayer
