// FolderButtons: the two buttons beside the look-in list, with pictures and tips. A press is a
// WM_COMMAND to its parent, by the number of the FolderCommand.
//
// Its class is the host's own where the menu library is there, else the system's.
//
// Used on the thread of the window.
#pragma once

#include "platform/component.h"

#include <commctrl.h>

namespace Hesperon::specifics::UILayer {

class FolderButtons
{
public:
    FolderButtons() = default;
    ~FolderButtons();
    FolderButtons(const FolderButtons&) = delete;
    FolderButtons& operator=(const FolderButtons&) = delete;

    // Takes the place of a control of the dialog, and its id; the control goes. False, and the
    // control stays, if the toolbar can't be made.
    bool Replace(HWND hControl);

    // Buttons that are off are drawn so.
    void SetEnabled(bool bEnabled);

    // Of a button, in pixels of the screen; empty where there is no such button.
    RECT PlaceOf(LONG nCommand) const;

    // Answers the question for a button's tip, which the parent gets as a WM_NOTIFY. False for
    // any other notice.
    static bool AnswerTip(NMHDR& notice);

private:
    void AddButtons();

    HWND m_hWnd = nullptr; // goes with its parent
    HIMAGELIST m_hImages = nullptr;
};

} // namespace Hesperon::specifics::UILayer
