// CQRLCommonCtrlContained: a window of a standard class, as an object.
// IQRLCommonCtrlContained.h documents the members.
//
// This is the object of the arguments; the contained window lies in its view. Without a view it
// keeps what it is given, CreateControl says so by S_FALSE, and the other members report that
// there is no window. A view that comes later gets the contained window then.
//
// Used by one thread.
#pragma once

#include "interfaces/IQRLCommonCtrlContained.h"
#include "module/ComObject.h"
#include "src/UIComponents/controls/IContainedView.h"

namespace Hesperon::specifics {

class CQRLCommonCtrlContained
    : public ComObject<CQRLCommonCtrlContained,
                       Dual<IQRL_TabulexConverter::IQRLCommonCtrlContained>>
{
public:
    // The view from now on, until its window goes: it then calls this with null, and has no
    // contained window any more. This object goes after that.
    void Attach(IContainedView* pView);

    // ---- IQRLCommonCtrlContained

    HRESULT STDMETHODCALLTYPE CreateControl(BSTR bsClassName, BSTR bsWindowName, ULONG Style,
                                            ULONG ExStyle, ULONGLONG lParam,
                                            ULONGLONG SuperWndProc) override;
    HRESULT STDMETHODCALLTYPE DefWindowProc0(LONG_PTR* lResult) override;
    HRESULT STDMETHODCALLTYPE DefWindowProcW(ULONGLONG pMsg, LONG_PTR* lResult) override;
    HRESULT STDMETHODCALLTYPE get_ControlHWND(ULONGLONG* pVal) override;

private:
    friend struct ContainedControlTestAccess; // reads what is kept

    ULONGLONG Contained() const { return m_pView ? m_pView->Contained() : 0; }

    ContainedWindowArguments m_arguments; // of the last CreateControl
    IContainedView* m_pView = nullptr;
};

} // namespace Hesperon::specifics
