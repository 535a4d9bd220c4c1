#include "src/UIComponents/windows/SystemWindows.h"

#include "src/UIComponents/views/ProgressView.h"
#include "src/UIComponents/windows/ProgressBoxWindow.h"
#include "src/UIComponents/windows/SystemDialogViews.h"
#include "src/UIComponents/windows/ole/HostedControls.h"

namespace Hesperon::specifics::UILayer {

void UseSystemWindows()
{
    static SystemDialogViews views;
    SetDialogViews(&views);
    SetProgressViews(&MakeProgressBoxWindow, nullptr);
    UseHostedControls();
}

} // namespace Hesperon::specifics::UILayer
