// A procedure of ours in place of that of a window of the system, which it calls for what it
// doesn't handle itself (CallWindowProcW).
//
// The window must be one that we have made, or a part of such a one: its user data is taken.
// SetWindowSubclass has room for several, but looks its data up at each message, which some
// systems ask another process for; a paint of a list sends hundreds of messages. All calls come
// on the window's thread.
#pragma once

#include "platform/component.h"

namespace Hesperon::specifics::UILayer {

// Gives the window's own procedure, null for a window that isn't there. From now on the owner is
// OwnerOfProcedure of the window; it must live until the procedure is restored or the window goes.
inline WNDPROC ReplaceProcedure(HWND hWnd, WNDPROC pfnNew, void* pOwner)
{
    if (!IsWindow(hWnd))
        return nullptr;
    SetWindowLongPtrW(hWnd, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(pOwner));
    return reinterpret_cast<WNDPROC>(
        SetWindowLongPtrW(hWnd, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(pfnNew)));
}

// False, and nothing is changed, where another procedure was put in place later: that one still
// calls ours.
inline bool RestoreProcedure(HWND hWnd, WNDPROC pfnNew, WNDPROC pfnOwn)
{
    if (GetWindowLongPtrW(hWnd, GWLP_WNDPROC) != reinterpret_cast<LONG_PTR>(pfnNew))
        return false;
    SetWindowLongPtrW(hWnd, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(pfnOwn));
    return true;
}

template <class Owner>
Owner* OwnerOfProcedure(HWND hWnd)
{
    return reinterpret_cast<Owner*>(GetWindowLongPtrW(hWnd, GWLP_USERDATA));
}

} // namespace Hesperon::specifics::UILayer
