// SystemDialogViews: the dialogs as windows of the system.
#pragma once

#include "src/UIComponents/views/DialogViews.h"

namespace Hesperon::specifics::UILayer {

// Without state: several threads may run dialogs at a time.
class SystemDialogViews final : public IDialogViews
{
public:
    LONG Run(IQRL_TabulexConverter::DialogId dialog, LONG_PTR hwndParent,
             IDialogEvents& events) override;
    LONG_PTR ActiveWindow() override;
    void ShowWaiting(bool bWaiting) override;
};

} // namespace Hesperon::specifics::UILayer
