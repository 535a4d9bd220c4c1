// DialogWindow: one run of a modal dialog: the import dialog or one of its two small ones.
//
// It lives as long as the call of Run, on that thread. Keys that the dialog manager knows do what
// they do in every dialog; Enter is the click of button 1 where there is one, and the default
// command in a dialog without.
#pragma once

#include <memory>
#include <vector>

#include "src/UIComponents/views/DialogViews.h"
#include "src/UIComponents/windows/PaneWindow.h"
#include "src/UIComponents/windows/ResizableFrame.h"

namespace Hesperon::specifics::UILayer {

class DialogWindow final : public ControlsOf<IDialogView>
{
public:
    using DialogId = IQRL_TabulexConverter::DialogId;
    using IControlEvents = IQRL_TabulexConverter::IControlEvents;
    using IFolderEvents = IQRL_TabulexConverter::IFolderEvents;
    using IFolderView = IQRL_TabulexConverter::IFolderView;

    explicit DialogWindow(IDialogEvents& events) : m_events(events) {}

    // As IDialogViews::Run. A window that is destroyed without an End counts as cancelled.
    LONG Run(DialogId dialog, HWND hParent);

    // ---- IDialogView

    IPaneView* MakePane(DialogId pane, IControlEvents& events) override;
    IFolderView* MakeFolderView(IFolderEvents& events) override;
    void Centre() override;
    LONG_PTR Window() override { return reinterpret_cast<LONG_PTR>(m_controls.Window()); }
    void End(LONG nResult) override;

private:
    static INT_PTR CALLBACK OnMessage(HWND hWnd, UINT nMessage, WPARAM wParam, LPARAM lParam);
    void Open(HWND hWnd);
    bool Handle(UINT nMessage, WPARAM wParam, LPARAM lParam);
    bool OnCommand(WPARAM wParam, LPARAM lParam);
    void TakeEnterFromOk();
    void PutInTabOrder(HWND hPane);

    IDialogEvents& m_events;
    ResizableFrame m_frame;
    std::vector<std::unique_ptr<PaneWindow>> m_panes;
    bool m_bOpened = false;
    bool m_bClosed = false; // the window goes: no event is told any more
    LONG m_nResult = IQRL_TabulexConverter::kDialogCancel;
};

} // namespace Hesperon::specifics::UILayer
