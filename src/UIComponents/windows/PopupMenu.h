// Menus of a view as menus of the system, which open below a heading or a button.
//
// A menu waits for the user and dispatches the thread's messages meanwhile: when the call
// returns, any window may be gone, the owner included. Destroying the owner ends its menu.
#pragma once

#include "interfaces/IGridView.h"

namespace Hesperon::specifics::UILayer {

// The edges at which a menu and the place that it opens below are flush.
enum class MenuEdge
{
    Left,
    Right,
};

// Opens the menu below the place, which is in pixels of the screen and stays uncovered; near the
// bottom of the screen the menu opens above it. Its own edge is pulled into the work area of the
// monitor. Gives the id of the item that was chosen; 0 for none, and for a menu that can't be
// shown. On the owner's thread.
LONG TrackMenuBelow(IQRL_TabulexConverter::ViewMenu menu, HWND hOwner, const RECT& place,
                    MenuEdge edge);

// The menu of the system, with those within it; the caller destroys it. Null if it can't be made.
// Texts are shown as they are: an ampersand is a character like any other.
HMENU MakePopupMenu(IQRL_TabulexConverter::ViewMenu menu);

} // namespace Hesperon::specifics::UILayer
