// The stock properties of a grid: kept, and given back. The view follows Enabled.

#include "src/UIComponents/controls/QRLDataGridViewCtrl.h"

namespace Hesperon::specifics {

HRESULT CQRLDataGridViewCtrl::put_AutoSize(VARIANT_BOOL newVal)
{
    m_bAutoSize = newVal != VARIANT_FALSE;
    return S_OK;
}

HRESULT CQRLDataGridViewCtrl::get_AutoSize(VARIANT_BOOL* pVal)
{
    return GiveOut(pVal, m_bAutoSize);
}

HRESULT CQRLDataGridViewCtrl::put_BackColor(OLE_COLOR newVal)
{
    m_clrBack = newVal;
    return S_OK;
}

HRESULT CQRLDataGridViewCtrl::get_BackColor(OLE_COLOR* pVal)
{
    return GiveOut(pVal, m_clrBack);
}

HRESULT CQRLDataGridViewCtrl::put_BorderStyle(LONG newVal)
{
    m_nBorderStyle = newVal;
    return S_OK;
}

HRESULT CQRLDataGridViewCtrl::get_BorderStyle(LONG* pVal)
{
    return GiveOut(pVal, m_nBorderStyle);
}

HRESULT CQRLDataGridViewCtrl::put_BorderWidth(LONG newVal)
{
    m_nBorderWidth = newVal;
    return S_OK;
}

HRESULT CQRLDataGridViewCtrl::get_BorderWidth(LONG* pVal)
{
    return GiveOut(pVal, m_nBorderWidth);
}

HRESULT CQRLDataGridViewCtrl::put_Enabled(VARIANT_BOOL newVal)
{
    m_bEnabled = newVal != VARIANT_FALSE;
    if (m_pView)
        m_pView->SetEnabled(m_bEnabled);
    return S_OK;
}

HRESULT CQRLDataGridViewCtrl::get_Enabled(VARIANT_BOOL* pVal)
{
    return GiveOut(pVal, m_bEnabled);
}

HRESULT CQRLDataGridViewCtrl::put_TabStop(VARIANT_BOOL newVal)
{
    m_bTabStop = newVal != VARIANT_FALSE;
    return S_OK;
}

HRESULT CQRLDataGridViewCtrl::get_TabStop(VARIANT_BOOL* pVal)
{
    return GiveOut(pVal, m_bTabStop);
}

} // namespace Hesperon::specifics
