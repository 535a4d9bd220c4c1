// Where the dialogs, menus and images of the windows come from: the module that the resource
// handle stands for (ResourceStrings.h), read at each opening. There is no second place: a
// host's module of texts that lacks a dialog can't show it.
#pragma once

#include "interfaces/IDialogViews.h"

namespace Hesperon::specifics::UILayer {

inline constexpr unsigned kFolderMenuId = 204;
inline constexpr unsigned kFolderToolbarId = 202; // a toolbar, and its bitmap

HINSTANCE DialogModule();

// A modeless dialog or pane, hidden unless its template says otherwise; null if it can't be made.
// The parameter is that of WM_INITDIALOG.
HWND MakeDialogWindow(IQRL_TabulexConverter::DialogId dialog, HWND hParent, DLGPROC pfnProcedure,
                      void* pParameter);

} // namespace Hesperon::specifics::UILayer
