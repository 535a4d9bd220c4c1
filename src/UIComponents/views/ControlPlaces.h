// What presenters do with the places of controls.
#pragma once

#include "interfaces/IControlsView.h"

namespace Hesperon::specifics::UILayer {

using IQRL_TabulexConverter::ControlPlace;
using IQRL_TabulexConverter::IControlsView;
using IQRL_TabulexConverter::kWholeView;

inline LONG Top(IControlsView& view, LONG nControl)
{
    return view.Place(nControl).nTop;
}

// Moves a control by nDelta, up where it is negative.
inline void MoveDown(IControlsView& view, LONG nControl, LONG nDelta)
{
    ControlPlace place = view.Place(nControl);
    place.nTop += nDelta;
    place.nBottom += nDelta;
    view.Move(nControl, place);
}

// Moves a control so that its upper left corner is there; its size stays.
inline void MoveTo(IControlsView& view, LONG nControl, LONG nLeft, LONG nTop)
{
    const ControlPlace place = view.Place(nControl);
    view.Move(nControl,
              {nLeft, nTop, nLeft + place.nRight - place.nLeft, nTop + place.nBottom - place.nTop});
}

// Makes a control, or the whole view, higher by nDelta; its top stays.
inline void GrowHeight(IControlsView& view, LONG nControl, LONG nDelta)
{
    ControlPlace place = view.Place(nControl);
    place.nBottom += nDelta;
    view.Move(nControl, place);
}

} // namespace Hesperon::specifics::UILayer
