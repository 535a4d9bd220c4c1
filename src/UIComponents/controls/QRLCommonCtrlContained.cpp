#include "src/UIComponents/controls/QRLCommonCtrlContained.h"

#include "diagnostics/FaultmereClient.h"
#include "module/Guarded.h"
#include "platform/values.h"
#include "src/UIComponents/views/GuardedEvent.h"

namespace Hesperon::specifics {

// The arguments stay, so that a control whose window is made anew has its contained one again.
// Making it may call back, hence the copy.
void CQRLCommonCtrlContained::Attach(IContainedView* pView)
{
    m_pView = pView;
    if (!pView || !m_arguments.pfnSuper)
        return;
    GuardedEvent([&] {
        const ContainedWindowArguments arguments = m_arguments;
        pView->Make(arguments);
    });
}

// A null procedure is kept like any other: the call replaces what was there in any case.
HRESULT CQRLCommonCtrlContained::CreateControl(BSTR bsClassName, BSTR bsWindowName, ULONG Style,
                                               ULONG ExStyle, ULONGLONG lParam,
                                               ULONGLONG SuperWndProc)
{
    const com_ptr<CQRLCommonCtrlContained> pSelf(this);
    return Guarded([&]() -> HRESULT {
        const ContainedWindowArguments arguments{string_t(TextOf(bsClassName)),
                                                 string_t(TextOf(bsWindowName)),
                                                 Style,
                                                 ExStyle,
                                                 lParam,
                                                 SuperWndProc};
        if (m_pView)
            m_pView->Destroy();
        m_arguments = arguments;
        if (!FaultmereUtil::Assert(SuperWndProc != 0, "m_pfnSuper"))
            return E_POINTER;
        return m_pView ? m_pView->Make(arguments) : S_FALSE;
    });
}

HRESULT CQRLCommonCtrlContained::DefWindowProc0(LONG_PTR* lResult)
{
    if (!Contained())
        return E_UNEXPECTED;
    return Guarded([&] {
        const LONG_PTR nResult = m_pView->PassCurrent();
        if (lResult)
            *lResult = nResult;
        return S_OK;
    });
}

HRESULT CQRLCommonCtrlContained::DefWindowProcW(ULONGLONG pMsg, LONG_PTR* lResult)
{
    if (!pMsg)
        return E_POINTER;
    if (!Contained())
        return E_UNEXPECTED;
    return Guarded([&] {
        const LONG_PTR nResult = m_pView->Pass(pMsg);
        if (lResult)
            *lResult = nResult;
        return S_OK;
    });
}

HRESULT CQRLCommonCtrlContained::get_ControlHWND(ULONGLONG* pVal)
{
    if (!pVal)
        return E_POINTER;
    const ULONGLONG nWindow = Contained();
    if (!nWindow)
        return E_UNEXPECTED;
    *pVal = nWindow;
    return S_OK;
}

} // namespace Hesperon::specifics
