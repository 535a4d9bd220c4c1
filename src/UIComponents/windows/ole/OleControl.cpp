// Everything here that a container or the system hears of may come back to the control, and may
// end it: a caller's reference isn't enough, since the call that the container is in may be one
// that it ends meanwhile. So the calls that activate and deactivate hold the control themselves.

#include "src/UIComponents/windows/ole/OleControl.h"

#include <utility>

#include "module/Guarded.h"
#include "module/OutValue.h"

namespace Hesperon::specifics::UILayer {

// ---- activation

HRESULT OleControl::DoVerb(LONG nVerb, MSG*, IOleClientSite* pActiveSite, LONG nIndex, HWND hParent,
                           const RECT* pRect)
{
    if (nIndex != 0 && nIndex != -1) // the old and the new number for the whole object
        return DV_E_LINDEX;
    const com_ptr<IOleObject> pSelf(this);
    if (nVerb == OLEIVERB_HIDE) {
        UIDeactivate();
        if (const HWND hWnd = Window())
            ShowWindow(hWnd, SW_HIDE);
        return S_OK;
    }
    const bool bForUser = nVerb >= OLEIVERB_PRIMARY || nVerb == OLEIVERB_UIACTIVATE;
    if (!bForUser && nVerb != OLEIVERB_SHOW && nVerb != OLEIVERB_INPLACEACTIVATE)
        return E_NOTIMPL;
    const HRESULT hr = Activate(pActiveSite, {hParent, pRect ? *pRect : RECT{}, {}});
    if (SUCCEEDED(hr) && bForUser)
        ActivateUi();
    return SUCCEEDED(hr) && nVerb > OLEIVERB_PRIMARY ? OLEOBJ_S_INVALIDVERB : hr;
}

// One that is active, but hidden, comes into sight again.
HRESULT OleControl::Activate(IOleClientSite* pActiveSite, const InPlace& given)
{
    if (const HWND hWnd = Window()) {
        ShowWindow(hWnd, SW_SHOWNA);
        return S_OK;
    }
    if (std::exchange(m_bActivating, true))
        return E_UNEXPECTED;
    InPlace place;
    HRESULT hr = Site().Enter(pActiveSite, given, place);
    if (SUCCEEDED(hr)) {
        hr = MakeWindowAt(place);
        if (FAILED(hr))
            Site().Leave();
    }
    m_bActivating = false;
    if (SUCCEEDED(hr))
        Site().Show();
    return hr;
}

HRESULT OleControl::MakeWindowAt(const InPlace& place)
{
    return Guarded([&] {
        const HWND hWnd = MakeWindow(place);
        if (!hWnd || !m_window.Watch(hWnd))
            return E_FAIL;
        m_window.Move(place.rect, place.clip);
        return S_OK;
    });
}

void OleControl::ActivateUi()
{
    if (m_bUiActive || !Window())
        return;
    m_bUiActive = true;
    Site().EnterUi(this);
    m_window.TakeFocus();
}

void OleControl::OnMousePress()
{
    const com_ptr<IOleObject> pSelf(this);
    ActivateUi();
}

// ---- deactivation

HRESULT OleControl::UIDeactivate()
{
    const com_ptr<IOleObject> pSelf(this);
    if (std::exchange(m_bUiActive, false))
        Site().LeaveUi();
    return S_OK;
}

HRESULT OleControl::InPlaceDeactivate()
{
    const com_ptr<IOleObject> pSelf(this);
    UIDeactivate();
    m_window.Destroy();
    return S_OK;
}

// The window may also have been destroyed from outside, while the user worked in it.
void OleControl::OnWindowGone()
{
    UIDeactivate();
    Site().Leave();
}

// There is never anything to save.
HRESULT OleControl::Close(DWORD)
{
    const com_ptr<IOleObject> pSelf(this);
    InPlaceDeactivate();
    TellClosed();
    return S_OK;
}

// ---- the window

HRESULT OleControl::GetWindow(HWND* phWnd)
{
    const HWND hWnd = Window();
    const HRESULT hr = GiveOut(phWnd, hWnd);
    return FAILED(hr) || hWnd ? hr : E_FAIL;
}

HRESULT OleControl::SetObjectRects(const RECT* pPosition, const RECT* pClip)
{
    if (!pPosition || !pClip)
        return E_POINTER;
    m_window.Move(*pPosition, *pClip);
    return S_OK;
}

HRESULT OleControl::TranslateAccelerator(MSG* pMessage)
{
    if (!pMessage)
        return E_POINTER;
    return Site().TranslateKey(pMessage) ? S_OK : S_FALSE;
}

// A control has no tools at the frame's border.
HRESULT OleControl::ResizeBorder(const RECT*, IOleInPlaceUIWindow*, BOOL)
{
    return S_OK;
}

// ---- QueryInterface

void* OleControl::Offer(REFIID riid)
{
    if (riid == __uuidof(IOleObject))
        return static_cast<IOleObject*>(this);
    if (riid == __uuidof(IOleControl))
        return static_cast<IOleControl*>(this);
    if (riid == __uuidof(IPersist) || riid == __uuidof(IPersistStreamInit))
        return static_cast<IPersistStreamInit*>(this);
    if (riid == __uuidof(IProvideClassInfo))
        return static_cast<IProvideClassInfo*>(this);
    if (riid == __uuidof(IOleWindow) || riid == __uuidof(IOleInPlaceObject))
        return static_cast<IOleInPlaceObject*>(this);
    if (riid == __uuidof(IOleInPlaceActiveObject))
        return static_cast<IOleInPlaceActiveObject*>(this);
    return nullptr;
}

} // namespace Hesperon::specifics::UILayer
