// ControlClasses: who makes the objects of the three control classes when a host asks for one.
//
// The objects are plain ones, without windows, unless a module that has windows says otherwise.
// The dialog makes its own grids and its folder view itself, as plain ones in any case.
#pragma once

#include "platform/component.h"

namespace Hesperon::specifics {

using ControlMaker = HRESULT (*)(REFIID riid, void** ppv);

struct ControlClasses
{
    ControlMaker pfnGrid;      // CQRLDataGridViewCtrl
    ControlMaker pfnFolder;    // CFolderViewCtrl
    ControlMaker pfnContained; // CQRLCommonCtrlContained
};

// Gives back the former ones. Not synchronised: before objects are made.
ControlClasses SetControlClasses(const ControlClasses& classes);

// For the object map.
HRESULT CreateGridControl(REFIID riid, void** ppv);
HRESULT CreateFolderControl(REFIID riid, void** ppv);
HRESULT CreateContainedControl(REFIID riid, void** ppv);

} // namespace Hesperon::specifics
