// IQRLCommonCtrlContained: a window of a standard class, as an object.
//
// The host names the class and hands over the class's window procedure; the object makes that
// window as a child of its own. Without windows of the system it keeps what it is given, and
// has no contained window.
#pragma once

#include "platform/component.h"

namespace IQRL_TabulexConverter {

// Dual. Used by one thread.
struct IQRLCommonCtrlContained : IDispatch
{
    // Replaces the contained window. E_POINTER for a null procedure. S_FALSE while this object
    // has no window: the contained one is made together with that.
    virtual HRESULT STDMETHODCALLTYPE CreateControl(BSTR bsClassName, BSTR bsWindowName,
                                                    ULONG Style, ULONG ExStyle, ULONGLONG lParam,
                                                    ULONGLONG SuperWndProc) = 0;
    // Passes the message that is being handled to the procedure. E_UNEXPECTED without a
    // contained window. lResult may be null, here and in the next one.
    virtual HRESULT STDMETHODCALLTYPE DefWindowProc0(LONG_PTR* lResult) = 0;
    // The same with a message record, given by its address; E_POINTER for 0.
    virtual HRESULT STDMETHODCALLTYPE DefWindowProcW(ULONGLONG pMsg, LONG_PTR* lResult) = 0;
    // E_UNEXPECTED where there is none.
    virtual HRESULT STDMETHODCALLTYPE get_ControlHWND(ULONGLONG* pVal) = 0;
};

} // namespace IQRL_TabulexConverter

// {E47A9B10-6C2F-4D58-B3E1-095D7F82AC36}
template <>
inline constexpr GUID iid_of<IQRL_TabulexConverter::IQRLCommonCtrlContained> = {
    0xE47A9B10, 0x6C2F, 0x4D58, {0xB3, 0xE1, 0x09, 0x5D, 0x7F, 0x82, 0xAC, 0x36}};
