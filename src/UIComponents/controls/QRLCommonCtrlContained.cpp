#include "src/UIComponents/controls/QRLCommonCtrlContained.h"

#include "diagnostics/FaultmereClient.h"
#include "module/Guarded.h"
#include "platform/values.h"

namespace Hesperon::specifics {

// A null procedure is kept like any other: the call replaces what was there in any case.
HRESULT CQRLCommonCtrlContained::CreateControl(BSTR bsClassName, BSTR bsWindowName, ULONG Style,
                                               ULONG ExStyle, ULONGLONG lParam,
                                               ULONGLONG SuperWndProc)
{
    return Guarded([&] {
        m_sClassName = TextOf(bsClassName);
        m_sWindowName = TextOf(bsWindowName);
        m_nStyle = Style;
        m_nExStyle = ExStyle;
        m_lParam = lParam;
        m_pfnSuper = SuperWndProc;
        return FaultmereUtil::Assert(m_pfnSuper != 0, "m_pfnSuper") ? S_FALSE : E_POINTER;
    });
}

HRESULT CQRLCommonCtrlContained::DefWindowProc0(LONG_PTR*)
{
    return E_UNEXPECTED;
}

HRESULT CQRLCommonCtrlContained::DefWindowProcW(ULONGLONG pMsg, LONG_PTR*)
{
    return pMsg ? E_UNEXPECTED : E_POINTER;
}

HRESULT CQRLCommonCtrlContained::get_ControlHWND(ULONGLONG* pVal)
{
    return pVal ? E_UNEXPECTED : E_POINTER;
}

} // namespace Hesperon::specifics
