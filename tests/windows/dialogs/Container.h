// A container of controls: a window, a site in it, and what the site was told.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "platform/com_ptr.h"

#include <oleidl.h>

// A window of the system's own to lie in, in sight; destroyed at the end.
class HostWindow
{
public:
    HostWindow() { Renew(); }
    ~HostWindow() { Destroy(); }
    HostWindow(const HostWindow&) = delete;
    HostWindow& operator=(const HostWindow&) = delete;

    HWND get() const { return m_hWnd; }
    void Destroy();
    void Renew(); // another one
    HWND FirstChild() const { return GetWindow(m_hWnd, GW_CHILD); }
    // A child's place in it.
    RECT PlaceOf(HWND hChild) const;

private:
    HWND m_hWnd = nullptr;
};

// The site of one control. It has no frame of its own, which a container may lack.
class TestSite final : public IOleClientSite, public IOleInPlaceSite
{
public:
    TestSite(HWND hWnd, const RECT& rect) : m_hWnd(hWnd), m_rect(rect) {}
    virtual ~TestSite() = default;

    // The calls since the last time, one after another, with blanks between.
    std::string Calls();
    void Refuse() { m_bRefuses = true; } // to activate anything
    void Clip(const RECT& clip) { m_clip = clip; }
    ULONG References() const { return m_nRefs; } // of others

    std::function<void(const std::string& sCall)> m_onCall; // during each call

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID riid, void** ppv) override;
    ULONG STDMETHODCALLTYPE AddRef() override { return ++m_nRefs; }
    ULONG STDMETHODCALLTYPE Release() override { return --m_nRefs; } // the test's own

    HRESULT STDMETHODCALLTYPE SaveObject() override { return Note("SaveObject"); }
    HRESULT STDMETHODCALLTYPE GetMoniker(DWORD, DWORD, IMoniker**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetContainer(IOleContainer**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE ShowObject() override { return Note("ShowObject"); }
    HRESULT STDMETHODCALLTYPE OnShowWindow(BOOL) override { return Note("OnShowWindow"); }
    HRESULT STDMETHODCALLTYPE RequestNewObjectLayout() override { return E_NOTIMPL; }

    HRESULT STDMETHODCALLTYPE GetWindow(HWND* phWnd) override;
    HRESULT STDMETHODCALLTYPE ContextSensitiveHelp(BOOL) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE CanInPlaceActivate() override;
    HRESULT STDMETHODCALLTYPE OnInPlaceActivate() override { return Note("OnInPlaceActivate"); }
    HRESULT STDMETHODCALLTYPE OnUIActivate() override { return Note("OnUIActivate"); }
    HRESULT STDMETHODCALLTYPE GetWindowContext(IOleInPlaceFrame** ppFrame,
                                               IOleInPlaceUIWindow** ppDocument, RECT* pPosition,
                                               RECT* pClip, OLEINPLACEFRAMEINFO* pInfo) override;
    HRESULT STDMETHODCALLTYPE Scroll(SIZE) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE OnUIDeactivate(BOOL) override { return Note("OnUIDeactivate"); }
    HRESULT STDMETHODCALLTYPE OnInPlaceDeactivate() override { return Note("OnInPlaceDeactivate"); }
    HRESULT STDMETHODCALLTYPE DiscardUndoState() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE DeactivateAndUndo() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE OnPosRectChange(const RECT*) override { return E_NOTIMPL; }

private:
    HRESULT Note(const char* pszCall);
    void Tell(const char* pszCall);

    HWND m_hWnd;
    RECT m_rect;
    RECT m_clip{};
    bool m_bRefuses = false;
    ULONG m_nRefs = 0;
    std::string m_sCalls;
};
