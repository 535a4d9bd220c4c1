// HostedControl: one of the component's controls, with a window for containers.
//
//   CreateClass<HostedControl<CFolderViewCtrl>>
//
// Control is the plain class, which knows its rules and no windows. This object is the same to its
// callers, with one identity and one count, and offers the interfaces of OleControl beside those of
// Control. An overload of MakeControlWindow (ControlWindows.h) makes the window and attaches it.
//
// Lifetime: see OleControl. The window holds this object, so it has gone before, and the last
// Release may come on any thread.
#pragma once

#include "src/UIComponents/windows/ole/ControlWindows.h"
#include "src/UIComponents/windows/ole/OleControl.h"

namespace Hesperon::specifics::UILayer {

template <class Control>
class HostedControl final : public Control, public OleControl
{
public:
    HostedControl() : OleControl(ClassOf(static_cast<Control*>(nullptr))) {}

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID riid, void** ppv) override
    {
        const HRESULT hr = Control::QueryInterface(riid, ppv);
        if (hr != E_NOINTERFACE)
            return hr;
        *ppv = Offer(riid);
        if (!*ppv)
            return E_NOINTERFACE;
        AddRef();
        return S_OK;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return Control::AddRef(); }
    // A last reference that is the window's own: the window is read before, since this object may
    // be gone after.
    ULONG STDMETHODCALLTYPE Release() override
    {
        const HWND hWnd = Window();
        const ULONG nLeft = Control::Release();
        if (nLeft == 1 && hWnd)
            ControlWindow::CloseSoon(hWnd);
        return nLeft;
    }

private:
    HWND MakeWindow(const InPlace& place) override { return MakeControlWindow(*this, place); }
};

} // namespace Hesperon::specifics::UILayer
