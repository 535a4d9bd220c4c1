// DisabledParent: the parent of a dialog that isn't modal by a loop of its own, as if it were.
//
//   DisabledParent parent(hOwner);
//   parent.Disable();                 // can't be used from now on
//   ...
//   parent.Enable();                  // before the dialog goes, or another program comes to front
//
// Several may hold one window: it is enabled with the last of them, whether it was enabled before
// the first or not. Safe from any thread; a window that has gone meanwhile has no effect.
//
// The window is told of both, and what it does then may end this object.
#pragma once

#include "platform/component.h"

namespace Hesperon::specifics::UILayer {

class DisabledParent
{
public:
    explicit DisabledParent(HWND hParent); // holds it; null for none
    ~DisabledParent() { Enable(); }
    DisabledParent(const DisabledParent&) = delete;
    DisabledParent& operator=(const DisabledParent&) = delete;

    void Disable() const { EnableWindow(m_hParent, FALSE); }
    void Enable(); // once

private:
    HWND m_hParent;
};

} // namespace Hesperon::specifics::UILayer
