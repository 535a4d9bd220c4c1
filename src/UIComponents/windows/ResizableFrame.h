// ResizableFrame: what a dialog that can be resized has beside its contents: a grip in the lower
// right corner, buttons that keep their distance to that corner, and a least size, which is the
// one at opening.
#pragma once

#include <vector>

#include "platform/component.h"

namespace Hesperon::specifics::UILayer {

class ResizableFrame
{
public:
    // All buttons among the direct children follow the corner. Has no effect on a dialog whose
    // frame can't be dragged. The window is as the template made it.
    void Attach(HWND hDialog);
    // At each WM_SIZE.
    void Follow();
    // At WM_GETMINMAXINFO.
    void Limit(MINMAXINFO& limits) const;

private:
    struct Follower
    {
        HWND hWnd;
        SIZE distance; // of its upper left corner from the lower right one of the dialog
    };

    HWND m_hDialog = nullptr;
    std::vector<Follower> m_followers;
    POINT m_least{}; // with the frame
};

} // namespace Hesperon::specifics::UILayer
