// Who makes the views of progress boxes.
//
// A process has one factory. It is set on one thread before boxes are shown; boxes then make
// their views on the threads on which they open.
#pragma once

#include <memory>

#include "interfaces/IProgressView.h"

namespace Hesperon::specifics::UILayer {

using IQRL_TabulexConverter::IProgressButtons;
using IQRL_TabulexConverter::IProgressView;
using IQRL_TabulexConverter::ProgressControl;

using ProgressViewFactory = IProgressView* (*)(void* pContext);

struct ReleaseView
{
    void operator()(IProgressView* pView) const { pView->Release(); }
};
using ProgressViewPtr = std::unique_ptr<IProgressView, ReleaseView>;

// The host's factory, before boxes are shown; null takes it away.
void SetProgressViews(ProgressViewFactory pfnMake, void* pContext);

// A new view for a box of the calling thread, never null: the host's, else the system's own.
ProgressViewPtr MakeProgressView();

} // namespace Hesperon::specifics::UILayer
