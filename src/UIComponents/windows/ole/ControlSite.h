// ControlSite: the container, as one of its controls sees it: the site that the control is given,
// and while it is active the in-place site, the frame and the document around it.
//
// A container may lack any of them; what it lacks isn't called. The references to the in-place
// side are held from Enter to Leave, so that the container hears of the end of what it was told
// the begin of, whatever site is set meanwhile.
//
// All calls come on the control's thread, and any of them may come back to the control.
#pragma once

#include "platform/com_ptr.h"

#include <oleidl.h>

namespace Hesperon::specifics::UILayer {

// An interface of the system's by its own identifier; empty where the object lacks it.
template <class Interface>
com_ptr<Interface> AskFor(IUnknown* pObject)
{
    com_ptr<Interface> result;
    if (pObject)
        pObject->QueryInterface(__uuidof(Interface), result.put_void());
    return result;
}

// A window, and a rectangle in its client area, in pixels. What lies outside of the clip isn't
// to be seen; an empty clip is none.
struct InPlace
{
    HWND hParent = nullptr;
    RECT rect{};
    RECT clip{};
};

class ControlSite
{
public:
    void Set(IOleClientSite* pClientSite) { m_pClientSite = com_ptr<IOleClientSite>(pClientSite); }
    const com_ptr<IOleClientSite>& Client() const { return m_pClientSite; }

    // Asks pActiveSite, or the site that was set where it is null, for the place of the control's
    // window. Where there is no such site the place is the one given, which needs a window.
    // A failure, also the container's refusal, leaves nothing held.
    HRESULT Enter(IOleClientSite* pActiveSite, const InPlace& given, InPlace& place);
    // The control's window has gone; without effect where Enter wasn't.
    void Leave();

    // The user works in the control from now on, or no longer.
    void EnterUi(IOleInPlaceActiveObject* pControl);
    void LeaveUi();

    // Has the container bring the control into sight.
    void Show();
    // True if the container has done what the key stands for.
    bool TranslateKey(MSG* pMessage);

private:
    HRESULT AskPlace(InPlace& place);
    void ReleaseInPlace();

    com_ptr<IOleClientSite> m_pClientSite;
    com_ptr<IOleInPlaceSite> m_pInPlaceSite; // these three while the control is active
    com_ptr<IOleInPlaceFrame> m_pFrame;
    com_ptr<IOleInPlaceUIWindow> m_pDocument;
};

} // namespace Hesperon::specifics::UILayer
