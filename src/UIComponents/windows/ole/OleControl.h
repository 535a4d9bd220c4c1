// OleControl: an object that a container activates in place, with a window of its own.
//
//   class Hosted final : public CFolderViewCtrl, public OleControl { ... };
//
// Activating (DoVerb) makes the control's window in the container's, at the place that the
// container names; deactivating and closing destroy it. A control whose window has gone can be
// activated again. It can be activated without a site, too: then in the window that comes with
// the verb.
//
// The window goes with the container's window as well, without a word from the container; the
// control is inactive from then on, and the container's site hears of it as of any deactivation.
//
// A container that releases the control without closing it: a control that nothing else holds
// goes, with its window, at the next dispatch of its thread. One that something else holds, such
// as a file's parser, stays as long as the container's window.
//
// Used by one thread; counting is safe from any.
#pragma once

#include "src/UIComponents/windows/ole/ControlWindow.h"
#include "src/UIComponents/windows/ole/OleObject.h"

namespace Hesperon::specifics::UILayer {

class OleControl : public OleObject,
                   public IOleInPlaceObject,
                   public IOleInPlaceActiveObject,
                   private IControlWindowEvents
{
public:
    // ---- IOleObject

    // A verb of the container's own, above 0, is the primary one: the control becomes active for
    // the user. OLEIVERB_HIDE hides the window.
    HRESULT STDMETHODCALLTYPE DoVerb(LONG nVerb, MSG* pMessage, IOleClientSite* pActiveSite,
                                     LONG nIndex, HWND hParent, const RECT* pRect) override;
    HRESULT STDMETHODCALLTYPE Close(DWORD nSave) override;

    // ---- IOleWindow

    HRESULT STDMETHODCALLTYPE GetWindow(HWND* phWnd) override; // E_FAIL while there is none
    HRESULT STDMETHODCALLTYPE ContextSensitiveHelp(BOOL) override { return E_NOTIMPL; }

    // ---- IOleInPlaceObject

    HRESULT STDMETHODCALLTYPE InPlaceDeactivate() override;
    HRESULT STDMETHODCALLTYPE UIDeactivate() override;
    HRESULT STDMETHODCALLTYPE SetObjectRects(const RECT* pPosition, const RECT* pClip) override;
    HRESULT STDMETHODCALLTYPE ReactivateAndUndo() override { return INPLACE_E_NOTUNDOABLE; }

    // ---- IOleInPlaceActiveObject

    // S_FALSE for a key that the control's windows are to get, as all are that the container
    // doesn't take itself.
    HRESULT STDMETHODCALLTYPE TranslateAccelerator(MSG* pMessage) override;
    HRESULT STDMETHODCALLTYPE OnFrameWindowActivate(BOOL) override { return S_OK; }
    HRESULT STDMETHODCALLTYPE OnDocWindowActivate(BOOL) override { return S_OK; }
    HRESULT STDMETHODCALLTYPE ResizeBorder(const RECT*, IOleInPlaceUIWindow*, BOOL) override;
    HRESULT STDMETHODCALLTYPE EnableModeless(BOOL) override { return S_OK; }

protected:
    explicit OleControl(const CLSID& clsid) : OleObject(clsid) {}
    ~OleControl() = default;

    // One of the interfaces above, not counted; null for any other.
    void* Offer(REFIID riid);
    // Null while the control isn't active.
    HWND Window() const { return m_window.Window(); }
    // Makes the control's window, in sight; null if it can't be made. May throw.
    virtual HWND MakeWindow(const InPlace& place) = 0;

private:
    // ---- IControlWindowEvents

    void OnMousePress() override;
    void OnWindowGone() override;
    void HoldControl() override { static_cast<IOleObject*>(this)->AddRef(); }
    void ReleaseControl() override { static_cast<IOleObject*>(this)->Release(); }

    HRESULT Activate(IOleClientSite* pActiveSite, const InPlace& given);
    HRESULT MakeWindowAt(const InPlace& place);
    void ActivateUi();

    ControlWindow m_window{*this};
    bool m_bActivating = false; // the container is being asked
    bool m_bUiActive = false;
};

} // namespace Hesperon::specifics::UILayer
