// The order of calls is the system's for in-place activation: CanInPlaceActivate,
// OnInPlaceActivate, GetWindow and GetWindowContext; the reverse in pairs.
//
// Whatever is called may change the members, so references are taken out before.

#include "src/UIComponents/windows/ole/ControlSite.h"

#include <utility>

#include <ocidl.h>

namespace Hesperon::specifics::UILayer {

HRESULT ControlSite::Enter(IOleClientSite* pActiveSite, const InPlace& given, InPlace& place)
{
    place = given;
    IUnknown* pSite = pActiveSite ? pActiveSite : m_pClientSite.get();
    const com_ptr<IOleInPlaceSite> pInPlaceSite = AskFor<IOleInPlaceSite>(pSite);
    if (!pInPlaceSite)
        return given.hParent ? S_OK : E_UNEXPECTED;
    if (pInPlaceSite->CanInPlaceActivate() != S_OK)
        return E_FAIL;
    HRESULT hr = pInPlaceSite->OnInPlaceActivate();
    if (FAILED(hr))
        return hr;
    m_pInPlaceSite = pInPlaceSite;
    hr = AskPlace(place);
    if (FAILED(hr))
        Leave();
    return hr;
}

// A container that knows no rectangle has given it with the verb.
HRESULT ControlSite::AskPlace(InPlace& place)
{
    const com_ptr<IOleInPlaceSite> pSite = m_pInPlaceSite;
    const HRESULT hr = pSite->GetWindow(&place.hParent);
    if (FAILED(hr) || !place.hParent)
        return FAILED(hr) ? hr : E_FAIL;
    RECT position{};
    RECT clip{};
    OLEINPLACEFRAMEINFO info{};
    info.cb = sizeof(info);
    com_ptr<IOleInPlaceFrame> pFrame;
    com_ptr<IOleInPlaceUIWindow> pDocument;
    if (SUCCEEDED(
            pSite->GetWindowContext(pFrame.put(), pDocument.put(), &position, &clip, &info)) &&
        !IsRectEmpty(&position)) {
        place.rect = position;
        place.clip = clip;
    }
    m_pFrame = std::move(pFrame);
    m_pDocument = std::move(pDocument);
    return S_OK;
}

void ControlSite::Leave()
{
    const com_ptr<IOleInPlaceSite> pSite = m_pInPlaceSite;
    ReleaseInPlace();
    if (pSite)
        pSite->OnInPlaceDeactivate();
}

void ControlSite::ReleaseInPlace()
{
    const com_ptr<IOleInPlaceFrame> pFrame = std::exchange(m_pFrame, {});
    const com_ptr<IOleInPlaceUIWindow> pDocument = std::exchange(m_pDocument, {});
    const com_ptr<IOleInPlaceSite> pSite = std::exchange(m_pInPlaceSite, {});
}

// A control has no tools of its own, hence no border space.
void ControlSite::EnterUi(IOleInPlaceActiveObject* pControl)
{
    const com_ptr<IOleInPlaceSite> pSite = m_pInPlaceSite;
    const com_ptr<IOleInPlaceFrame> pFrame = m_pFrame;
    const com_ptr<IOleInPlaceUIWindow> pDocument = m_pDocument;
    if (pSite)
        pSite->OnUIActivate();
    if (pFrame) {
        pFrame->SetActiveObject(pControl, nullptr);
        pFrame->SetBorderSpace(nullptr);
    }
    if (pDocument) {
        pDocument->SetActiveObject(pControl, nullptr);
        pDocument->SetBorderSpace(nullptr);
    }
}

void ControlSite::LeaveUi()
{
    const com_ptr<IOleInPlaceSite> pSite = m_pInPlaceSite;
    const com_ptr<IOleInPlaceFrame> pFrame = m_pFrame;
    const com_ptr<IOleInPlaceUIWindow> pDocument = m_pDocument;
    if (pDocument)
        pDocument->SetActiveObject(nullptr, nullptr);
    if (pFrame)
        pFrame->SetActiveObject(nullptr, nullptr);
    if (pSite)
        pSite->OnUIDeactivate(FALSE);
}

void ControlSite::Show()
{
    if (const com_ptr<IOleClientSite> pSite = m_pClientSite)
        pSite->ShowObject();
}

bool ControlSite::TranslateKey(MSG* pMessage)
{
    constexpr DWORD kShift = 1;
    constexpr DWORD kControl = 2;
    constexpr DWORD kAlt = 4;
    const com_ptr<IOleControlSite> pSite = AskFor<IOleControlSite>(m_pClientSite.get());
    if (!pSite)
        return false;
    const auto bit = [](int nKey, DWORD nBit) { return GetKeyState(nKey) < 0 ? nBit : 0; };
    return pSite->TranslateAccelerator(pMessage, bit(VK_SHIFT, kShift) | bit(VK_CONTROL, kControl) |
                                                     bit(VK_MENU, kAlt)) == S_OK;
}

} // namespace Hesperon::specifics::UILayer
