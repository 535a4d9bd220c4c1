// The labels, captions and buttons of the dialogs, for views to draw.
#pragma once

#include "interfaces/IDialogViews.h"

namespace Hesperon::specifics::UILayer {

// The text of a control in the current language. A label without an id stands under the control
// that it labels; kWholeView is the caption of a dialog, the heading of a pane. The commands of
// the folder view are its controls in this respect: tips of the toolbar's buttons, and the
// texts of its menu. Empty for a control without a text, and where memory is short; never null.
//
// Good until the process ends. Safe from any thread.
const OLECHAR* DialogText(IQRL_TabulexConverter::DialogId dialog, LONG nControl);

} // namespace Hesperon::specifics::UILayer
