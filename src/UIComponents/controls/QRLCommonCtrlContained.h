// CQRLCommonCtrlContained: a window of a standard class, as an object.
// IQRLCommonCtrlContained.h documents the members.
//
// This is the object of the arguments. It has no window of its own, so the contained window
// never comes: CreateControl keeps what it is given and says so by S_FALSE, and the other
// members report that there is no window.
//
// Used by one thread.
#pragma once

#include "interfaces/IQRLCommonCtrlContained.h"
#include "module/ComObject.h"

namespace Hesperon::specifics {

class CQRLCommonCtrlContained final
    : public ComObject<CQRLCommonCtrlContained,
                       Dual<IQRL_TabulexConverter::IQRLCommonCtrlContained>>
{
public:
    HRESULT STDMETHODCALLTYPE CreateControl(BSTR bsClassName, BSTR bsWindowName, ULONG Style,
                                            ULONG ExStyle, ULONGLONG lParam,
                                            ULONGLONG SuperWndProc) override;
    HRESULT STDMETHODCALLTYPE DefWindowProc0(LONG_PTR* lResult) override;
    HRESULT STDMETHODCALLTYPE DefWindowProcW(ULONGLONG pMsg, LONG_PTR* lResult) override;
    HRESULT STDMETHODCALLTYPE get_ControlHWND(ULONGLONG* pVal) override;

private:
    friend struct ContainedControlTestAccess; // reads what is kept

    ULONGLONG m_pfnSuper = 0; // window procedure of the class; 0 for none
    string_t m_sClassName;
    string_t m_sWindowName;
    ULONG m_nStyle = 0;
    ULONG m_nExStyle = 0;
    ULONGLONG m_lParam = 0; // creation parameter
};

} // namespace Hesperon::specifics
