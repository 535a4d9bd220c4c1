#include "src/UIComponents/windows/PaneWindow.h"

#include "src/UIComponents/views/GuardedEvent.h"
#include "src/UIComponents/windows/DialogResources.h"
#include "src/UIComponents/windows/grid/GridWindow.h"

namespace Hesperon::specifics::UILayer {

bool PaneWindow::Create(DialogId pane, HWND hDialog, IControlEvents& events)
{
    const HWND hWnd = MakeDialogWindow(pane, hDialog, &OnMessage, this);
    m_controls.SetWindow(hWnd);
    m_pEvents = hWnd ? &events : nullptr;
    return hWnd != nullptr;
}

IQRL_TabulexConverter::IGridView* PaneWindow::MakeGrid(IGridEvents& events)
{
    return GridWindow::Create(Window(), events);
}

INT_PTR CALLBACK PaneWindow::OnMessage(HWND hWnd, UINT nMessage, WPARAM wParam, LPARAM lParam)
{
    if (nMessage == WM_INITDIALOG) {
        SetWindowLongPtrW(hWnd, DWLP_USER, lParam);
        return FALSE;
    }
    auto* const pPane = reinterpret_cast<PaneWindow*>(GetWindowLongPtrW(hWnd, DWLP_USER));
    if (!pPane || !pPane->m_pEvents)
        return FALSE;
    INT_PTR nHandled = FALSE;
    GuardedEvent([&] {
        if (nMessage == WM_SIZE)
            pPane->m_pEvents->OnResize();
        else if (nMessage == WM_DESTROY)
            pPane->m_pEvents = nullptr;
        else
            nHandled = pPane->m_controls.OnMessage(nMessage, wParam, lParam, *pPane->m_pEvents);
    });
    return nHandled;
}

} // namespace Hesperon::specifics::UILayer
