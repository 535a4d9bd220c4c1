// What differs between the hosted controls: the class, and who makes the window.
#pragma once

#include "interfaces/ClassIds.h"
#include "src/UIComponents/controls/FolderView.h"
#include "src/UIComponents/controls/QRLCommonCtrlContained.h"
#include "src/UIComponents/controls/QRLDataGridViewCtrl.h"
#include "src/UIComponents/windows/ole/ControlSite.h"

namespace Hesperon::specifics::UILayer {

inline const CLSID& ClassOf(const CQRLDataGridViewCtrl*)
{
    return IQRL_TabulexConverter::CLSID_CQRLDataGridViewCtrl;
}
inline const CLSID& ClassOf(const CFolderViewCtrl*)
{
    return IQRL_TabulexConverter::CLSID_CFolderViewCtrl;
}
inline const CLSID& ClassOf(const CQRLCommonCtrlContained*)
{
    return IQRL_TabulexConverter::CLSID_CQRLCommonCtrlContained;
}

// Makes the window of a control at a place, attached and in sight; null if it can't be made. The
// window calls the control until it goes, so it must go first.
HWND MakeControlWindow(CQRLDataGridViewCtrl& grid, const InPlace& place);
HWND MakeControlWindow(CFolderViewCtrl& folderView, const InPlace& place);
HWND MakeControlWindow(CQRLCommonCtrlContained& control, const InPlace& place);

} // namespace Hesperon::specifics::UILayer
