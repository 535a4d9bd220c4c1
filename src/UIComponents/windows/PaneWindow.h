// PaneWindow: a pane of the import dialog, a child dialog without a frame.
#pragma once

#include "src/UIComponents/views/DialogViews.h"
#include "src/UIComponents/windows/Controls.h"

namespace Hesperon::specifics::UILayer {

// Belongs to the dialog and outlives its window, which goes with the dialog's.
class PaneWindow final : public ControlsOf<IPaneView>
{
public:
    using DialogId = IQRL_TabulexConverter::DialogId;
    using IControlEvents = IQRL_TabulexConverter::IControlEvents;
    using IGridEvents = IQRL_TabulexConverter::IGridEvents;
    using IGridView = IQRL_TabulexConverter::IGridView;

    // False if the window can't be made. The events are told from then on.
    bool Create(DialogId pane, HWND hDialog, IControlEvents& events);
    HWND Window() const { return m_controls.Window(); }

    // ---- IPaneView

    IGridView* MakeGrid(IGridEvents& events) override;

private:
    static INT_PTR CALLBACK OnMessage(HWND hWnd, UINT nMessage, WPARAM wParam, LPARAM lParam);

    IControlEvents* m_pEvents = nullptr; // null while the window is made, and when it goes
};

} // namespace Hesperon::specifics::UILayer
