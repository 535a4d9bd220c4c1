// SmallDialogView: the template editor and the dialog of the dividers, as a box over the import
// dialog.
#pragma once

#include "tools/tabulex/import/Form.h"

namespace tabulex {

class SmallDialogView final : public ControlsView<IQRL_TabulexConverter::IDialogView>, public ILayer
{
public:
    // Both outlive the view.
    SmallDialogView(Desk& desk, IQRL_TabulexConverter::DialogId dialog,
                    IQRL_TabulexConverter::IDialogEvents& events);

    // Opens the dialog, and gives what End was given. A terminal that goes cancels.
    LONG Run();

    // ---- ILayer

    void Draw(Canvas& canvas) override;

    // ---- IDialogView; it has no panes

    IQRL_TabulexConverter::IPaneView* MakePane(IQRL_TabulexConverter::DialogId,
                                               IQRL_TabulexConverter::IControlEvents&) override
    {
        return nullptr;
    }
    IQRL_TabulexConverter::IFolderView*
    MakeFolderView(IQRL_TabulexConverter::IFolderEvents&) override
    {
        return nullptr;
    }
    void Centre() override {}
    LONG_PTR Window() override { return 0; }
    void End(LONG nResult) override { m_nResult = nResult; }

private:
    void Handle(const Input& input);
    void HandleEnter();
    void Click(LONG nButton);
    void MoveFocus(int nStep);

    IQRL_TabulexConverter::IDialogEvents& m_dialogEvents;
    Form m_form;
    LONG m_nResult = 0; // 0 while it runs
};

} // namespace tabulex
