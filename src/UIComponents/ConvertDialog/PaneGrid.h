// The grid of a pane of the import dialog: a list that takes the whole pane below a label.
#pragma once

#include "src/UIComponents/controls/QRLDataGridViewCtrl.h"
#include "src/UIComponents/views/DialogViews.h"

namespace Hesperon::specifics::UILayer {

// A grid in the pane, at first 100 by 100; null where it can't be made. It must outlive its
// view, which calls it until its OnClose.
com_ptr<CQRLDataGridViewCtrl> MakePaneGrid(IPaneView& view);

// Gives the grid what lies below a control.
void PlaceBelow(IPaneView& view, LONG nControl, CQRLDataGridViewCtrl& grid);

} // namespace Hesperon::specifics::UILayer
