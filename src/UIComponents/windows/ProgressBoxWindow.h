// The progress box as a window of the system, made of dialog 250.
//
// It is modeless: the thread that started the session goes on with its own message loop, and
// the box works by what that loop dispatches. It behaves like a modal one all the same: its
// parent can't be used while it is open, and it has the keyboard (DialogKeys.h). The parent is
// the top window of the one that the host names, or the thread's active window; where that is
// another box, its parent. Without one the box stands alone on the screen. A parent of another
// thread must be one that dispatches messages, as for any window with such an owner.
//
// If the window is destroyed by others, as happens when the host destroys its parent, nobody can
// answer any more: a question that is open, and each one that follows, is answered by
// ProgressCancel. Nobody has agreed to lose a line. A conversion without bad lines goes on.
#pragma once

#include "interfaces/IProgressView.h"

namespace Hesperon::specifics::UILayer {

// A box that isn't on show yet; null where its dialog can't be made. The form is that of a
// factory (ProgressView.h); the context isn't used.
IQRL_TabulexConverter::IProgressView* MakeProgressBoxWindow(void* pContext);

} // namespace Hesperon::specifics::UILayer
