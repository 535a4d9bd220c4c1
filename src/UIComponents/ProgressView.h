// Who makes the views of progress boxes.
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

// Null takes the host's factory away. Before boxes are shown.
void SetProgressViews(ProgressViewFactory pfnMake, void* pContext);

// The host's view for the calling thread; null where it has none.
ProgressViewPtr MakeHostProgressView();
// One that shows nothing and skips bad lines.
ProgressViewPtr MakeSilentProgressView();

} // namespace Hesperon::specifics::UILayer
