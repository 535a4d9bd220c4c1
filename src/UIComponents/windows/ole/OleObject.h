// OleObject: what a control is for a container: its class, its size, its site, and who is told of
// its end. Activation follows in OleControl.
//
// A hosted control has nothing to save: InitNew, Load and Save succeed without reading or writing,
// and it is never dirty. It has no moniker, no data object, no verbs of its own, no palette and no
// accelerators; a container that asks for one is refused with the system's code for that.
//
// Sizes are in the system's units for extents, hundredths of a millimetre.
//
// Used by one thread. The counting of the object, and QueryInterface, are a derived class's.
#pragma once

#include "platform/component.h"
#include "src/UIComponents/windows/ole/ControlSite.h"

#include <ocidl.h>

namespace Hesperon::specifics::UILayer {

class OleObject : public IOleObject,
                  public IOleControl,
                  public IPersistStreamInit,
                  public IProvideClassInfo
{
public:
    // ---- IOleObject; DoVerb and Close are OleControl's

    HRESULT STDMETHODCALLTYPE SetClientSite(IOleClientSite* pSite) override;
    HRESULT STDMETHODCALLTYPE GetClientSite(IOleClientSite** ppSite) override;
    HRESULT STDMETHODCALLTYPE SetHostNames(LPCOLESTR, LPCOLESTR) override { return S_OK; }
    HRESULT STDMETHODCALLTYPE SetMoniker(DWORD, IMoniker*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetMoniker(DWORD, DWORD, IMoniker** ppMoniker) override;
    HRESULT STDMETHODCALLTYPE InitFromData(IDataObject*, BOOL, DWORD) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetClipboardData(DWORD, IDataObject** ppData) override;
    HRESULT STDMETHODCALLTYPE EnumVerbs(IEnumOLEVERB** ppVerbs) override;
    HRESULT STDMETHODCALLTYPE Update() override { return S_OK; }
    HRESULT STDMETHODCALLTYPE IsUpToDate() override { return S_OK; }
    HRESULT STDMETHODCALLTYPE GetUserClassID(CLSID* pClass) override;
    // As the register has it; a failure where the class isn't registered.
    HRESULT STDMETHODCALLTYPE GetUserType(DWORD nForm, LPOLESTR* ppszType) override;
    HRESULT STDMETHODCALLTYPE SetExtent(DWORD nAspect, SIZEL* pSize) override;
    HRESULT STDMETHODCALLTYPE GetExtent(DWORD nAspect, SIZEL* pSize) override;
    HRESULT STDMETHODCALLTYPE Advise(IAdviseSink* pSink, DWORD* pnConnection) override;
    HRESULT STDMETHODCALLTYPE Unadvise(DWORD nConnection) override;
    HRESULT STDMETHODCALLTYPE EnumAdvise(IEnumSTATDATA** ppAdvise) override;
    HRESULT STDMETHODCALLTYPE GetMiscStatus(DWORD nAspect, DWORD* pnStatus) override;
    HRESULT STDMETHODCALLTYPE SetColorScheme(LOGPALETTE*) override { return E_NOTIMPL; }

    // ---- IOleControl

    HRESULT STDMETHODCALLTYPE GetControlInfo(CONTROLINFO* pInfo) override;
    HRESULT STDMETHODCALLTYPE OnMnemonic(MSG*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE OnAmbientPropertyChange(DISPID) override { return S_OK; }
    HRESULT STDMETHODCALLTYPE FreezeEvents(BOOL) override { return S_OK; } // there are none

    // ---- IPersistStreamInit

    HRESULT STDMETHODCALLTYPE GetClassID(CLSID* pClass) override { return GetUserClassID(pClass); }
    HRESULT STDMETHODCALLTYPE IsDirty() override { return S_FALSE; }
    HRESULT STDMETHODCALLTYPE Load(IStream*) override { return S_OK; }
    HRESULT STDMETHODCALLTYPE Save(IStream*, BOOL) override { return S_OK; }
    HRESULT STDMETHODCALLTYPE GetSizeMax(ULARGE_INTEGER* pnSize) override;
    HRESULT STDMETHODCALLTYPE InitNew() override { return S_OK; }

    // ---- IProvideClassInfo; fails where the module has no type library

    HRESULT STDMETHODCALLTYPE GetClassInfo(ITypeInfo** ppInfo) override;

protected:
    explicit OleObject(const CLSID& clsid) : m_clsid(clsid) {}
    ~OleObject() = default;

    ControlSite& Site() { return m_site; }
    void TellClosed();

private:
    static constexpr LONG kFirstSize = 5080; // two inches, until a container sets another

    const CLSID m_clsid;
    SIZEL m_size = {kFirstSize, kFirstSize};
    ControlSite m_site;
    com_ptr<IOleAdviseHolder> m_pAdvised; // made when the first one asks
};

} // namespace Hesperon::specifics::UILayer
