#include "src/UIComponents/windows/grid/GridWindow.h"
#include "src/UIComponents/windows/ole/ControlWindows.h"

namespace Hesperon::specifics::UILayer {

// The grid takes the window's width for its columns, so the window is placed before it is
// attached.
HWND MakeControlWindow(CQRLDataGridViewCtrl& grid, const InPlace& place)
{
    GridWindow* pWindow = GridWindow::Create(place.hParent, grid.Events());
    if (!pWindow)
        return nullptr;
    const HWND hWnd = pWindow->Window();
    pWindow->Move({place.rect.left, place.rect.top, place.rect.right, place.rect.bottom});
    grid.Attach(pWindow);
    return hWnd;
}

} // namespace Hesperon::specifics::UILayer
