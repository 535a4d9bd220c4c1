#include "src/UIComponents/ConvertDialog/DataDecodeAdapter.h"

#include "module/Guarded.h"
#include "src/UIComponents/ConvertDialog/PaneGrid.h"

namespace Hesperon::specifics::UILayer {

using namespace IQRL_TabulexConverter;

HRESULT CDataDecodeAdapter::CPane::Create(IDialogView& parent)
{
    return Guarded([&] {
        m_pView = parent.MakePane(DialogDecode, *this);
        if (!m_pView)
            return E_FAIL;
        m_pGrid = MakePaneGrid(*m_pView);
        OnResize();
        return S_OK;
    });
}

void CDataDecodeAdapter::CPane::OnResize()
{
    if (m_pView && m_pGrid && m_pView->Exists(DecodeLabel))
        PlaceBelow(*m_pView, DecodeLabel, *m_pGrid.get());
}

} // namespace Hesperon::specifics::UILayer
