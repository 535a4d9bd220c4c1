#include "src/UIComponents/ConvertDialog/PaneGrid.h"

namespace Hesperon::specifics::UILayer {

using namespace IQRL_TabulexConverter;

com_ptr<CQRLDataGridViewCtrl> MakePaneGrid(IPaneView& view)
{
    constexpr ControlPlace kFirstPlace = {0, 0, 100, 100};
    com_ptr<CQRLDataGridViewCtrl> pGrid;
    if (FAILED(CreateObject(pGrid)))
        return {};
    IGridView* const pView = view.MakeGrid(pGrid->Events());
    if (!pView)
        return {};
    pGrid->Attach(pView);
    pGrid->Move(kFirstPlace);
    return pGrid;
}

void PlaceBelow(IPaneView& view, LONG nControl, CQRLDataGridViewCtrl& grid)
{
    const ControlPlace area = view.ClientArea();
    grid.Move({0, view.Place(nControl).nBottom, area.nRight, area.nBottom});
}

} // namespace Hesperon::specifics::UILayer
