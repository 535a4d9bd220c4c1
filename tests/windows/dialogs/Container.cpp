#include "tests/windows/dialogs/Container.h"

#include <utility>

// ---- HostWindow

void HostWindow::Renew()
{
    Destroy();
    m_hWnd = CreateWindowExW(0, L"STATIC", L"Host", WS_POPUP | WS_VISIBLE | WS_CLIPCHILDREN, 20, 20,
                             600, 400, nullptr, nullptr, nullptr, nullptr);
}

void HostWindow::Destroy()
{
    if (const HWND hWnd = std::exchange(m_hWnd, nullptr))
        DestroyWindow(hWnd);
}

RECT HostWindow::PlaceOf(HWND hChild) const
{
    RECT rect{};
    GetWindowRect(hChild, &rect);
    MapWindowPoints(nullptr, m_hWnd, reinterpret_cast<POINT*>(&rect), 2);
    return rect;
}

// ---- TestSite

std::string TestSite::Calls()
{
    return std::exchange(m_sCalls, {});
}

HRESULT TestSite::Note(const char* pszCall)
{
    m_sCalls += (m_sCalls.empty() ? "" : " ") + std::string(pszCall);
    Tell(pszCall);
    return S_OK;
}

void TestSite::Tell(const char* pszCall)
{
    if (m_onCall)
        m_onCall(pszCall);
}

HRESULT TestSite::QueryInterface(REFIID riid, void** ppv)
{
    *ppv = nullptr;
    if (riid == __uuidof(IUnknown) || riid == __uuidof(IOleClientSite))
        *ppv = static_cast<IOleClientSite*>(this);
    else if (riid == __uuidof(IOleWindow) || riid == __uuidof(IOleInPlaceSite))
        *ppv = static_cast<IOleInPlaceSite*>(this);
    else
        return E_NOINTERFACE;
    AddRef();
    return S_OK;
}

HRESULT TestSite::GetWindow(HWND* phWnd)
{
    *phWnd = m_hWnd;
    Tell("GetWindow");
    return S_OK;
}

HRESULT TestSite::CanInPlaceActivate()
{
    Note("CanInPlaceActivate");
    return m_bRefuses ? S_FALSE : S_OK;
}

HRESULT TestSite::GetWindowContext(IOleInPlaceFrame** ppFrame, IOleInPlaceUIWindow** ppDocument,
                                   RECT* pPosition, RECT* pClip, OLEINPLACEFRAMEINFO*)
{
    *ppFrame = nullptr;
    *ppDocument = nullptr;
    *pPosition = m_rect;
    *pClip = m_clip;
    Tell("GetWindowContext");
    return S_OK;
}
