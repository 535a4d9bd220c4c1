// Whose views dialogs appear on.
//
// A process has one set of views. It is set on one thread before dialogs are opened, and
// outlives them.
#pragma once

#include "interfaces/IDialogViews.h"

namespace Hesperon::specifics::UILayer {

using IQRL_TabulexConverter::IDialogEvents;
using IQRL_TabulexConverter::IDialogView;
using IQRL_TabulexConverter::IDialogViews;
using IQRL_TabulexConverter::IPaneView;

// Null takes them away. Gives the former ones.
IDialogViews* SetDialogViews(IDialogViews* pViews);

// Never null: where no views are set, those in which no dialog can be opened.
IDialogViews& DialogViews();

// Runs a dialog over the active window of the thread.
LONG RunDialog(IQRL_TabulexConverter::DialogId dialog, IDialogEvents& events);

// The wait cursor, while it lives.
class WaitCursor
{
public:
    WaitCursor() { DialogViews().ShowWaiting(true); }
    ~WaitCursor() { DialogViews().ShowWaiting(false); }
    WaitCursor(const WaitCursor&) = delete;
    WaitCursor& operator=(const WaitCursor&) = delete;
};

} // namespace Hesperon::specifics::UILayer
