#include "src/UIComponents/windows/FolderWindow.h"
#include "src/UIComponents/windows/ole/ControlWindows.h"

namespace Hesperon::specifics::UILayer {

// The window of a pane starts out hidden.
HWND MakeControlWindow(CFolderViewCtrl& folderView, const InPlace& place)
{
    FolderWindow* pWindow = FolderWindow::Create(place.hParent, folderView.Events());
    if (!pWindow)
        return nullptr;
    const HWND hWnd = pWindow->Window();
    const RECT& rect = place.rect;
    folderView.Attach(pWindow);
    folderView.Move({rect.left, rect.top, rect.right, rect.bottom});
    ShowWindow(hWnd, SW_SHOWNA);
    return hWnd;
}

} // namespace Hesperon::specifics::UILayer
