// LookInList: the drop-down list of the folders on the way to the one that is shown. It draws each
// row with the picture that the shell has for the folder, in steps to the right while it is open.
//
// The rows belong to whoever fills the list: the last one is the folder that is shown, the one
// before it holds it, and so on.
//
// Used on the thread of the window.
#pragma once

#include <vector>

#include "src/UIComponents/windows/shell/ItemIds.h"

namespace Hesperon::specifics::UILayer {

class LookInList
{
public:
    // The list's window; Enter in the closed list is posted to hCommands as a WM_COMMAND of this
    // number.
    void Attach(HWND hCombo, HWND hCommands, LONG nCommandOfEnter);

    // Whose pictures are shown from the next drawing on.
    void SetFolder(const ItemIds& folder);

    // Answers WM_DRAWITEM of this list.
    void Draw(const DRAWITEMSTRUCT& item) const;

    // To be told of each notice of the list. True if the list was closed on a row that was chosen
    // for good, rather than walked through by the arrow keys or left.
    bool IsChosenBy(WORD nNotice);

private:
    void DrawPicture(const DRAWITEMSTRUCT& item, POINT at) const;
    // Of the list's font and the pictures, whichever is higher.
    int HeightOfRow() const;

    HWND m_hCombo = nullptr;
    std::vector<int> m_icons; // from the desktop down
    bool m_bChosen = false;   // since the list opened
};

} // namespace Hesperon::specifics::UILayer
