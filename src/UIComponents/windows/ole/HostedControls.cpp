#include "src/UIComponents/windows/ole/HostedControls.h"

#include "src/UIComponents/controls/ControlClasses.h"
#include "src/UIComponents/windows/ole/HostedControl.h"

namespace Hesperon::specifics::UILayer {

void UseHostedControls()
{
    SetControlClasses({&CreateClass<HostedControl<CQRLDataGridViewCtrl>>,
                       &CreateClass<HostedControl<CFolderViewCtrl>>,
                       &CreateClass<HostedControl<CQRLCommonCtrlContained>>});
}

} // namespace Hesperon::specifics::UILayer
