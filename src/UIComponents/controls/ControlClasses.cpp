#include "src/UIComponents/controls/ControlClasses.h"

#include <utility>

#include "src/UIComponents/controls/FolderView.h"
#include "src/UIComponents/controls/QRLCommonCtrlContained.h"
#include "src/UIComponents/controls/QRLDataGridViewCtrl.h"

namespace Hesperon::specifics {

namespace {

// Constant until a module replaces it, so it is there before anything runs at load.
constinit ControlClasses g_controlClasses = {&CreateClass<CQRLDataGridViewCtrl>,
                                             &CreateClass<CFolderViewCtrl>,
                                             &CreateClass<CQRLCommonCtrlContained>};

} // namespace

ControlClasses SetControlClasses(const ControlClasses& classes)
{
    return std::exchange(g_controlClasses, classes);
}

HRESULT CreateGridControl(REFIID riid, void** ppv)
{
    return g_controlClasses.pfnGrid(riid, ppv);
}

HRESULT CreateFolderControl(REFIID riid, void** ppv)
{
    return g_controlClasses.pfnFolder(riid, ppv);
}

HRESULT CreateContainedControl(REFIID riid, void** ppv)
{
    return g_controlClasses.pfnContained(riid, ppv);
}

} // namespace Hesperon::specifics
