#include "src/UIComponents/windows/ole/OleObject.h"

#include "module/OutValue.h"
#include "module/TypeLibrary.h"
#include "src/UIComponents/windows/ole/ControlStatus.h"

namespace Hesperon::specifics::UILayer {

namespace {

// Of an [out] reference that isn't given.
template <class Interface>
HRESULT Refuse(Interface** ppResult, HRESULT hr)
{
    if (!ppResult)
        return E_POINTER;
    *ppResult = nullptr;
    return hr;
}

} // namespace

// ---- IOleObject

HRESULT OleObject::SetClientSite(IOleClientSite* pSite)
{
    m_site.Set(pSite);
    return S_OK;
}

HRESULT OleObject::GetClientSite(IOleClientSite** ppSite)
{
    if (!ppSite)
        return E_POINTER;
    *ppSite = com_ptr<IOleClientSite>(m_site.Client()).detach();
    return S_OK;
}

HRESULT OleObject::GetMoniker(DWORD, DWORD, IMoniker** ppMoniker)
{
    return Refuse(ppMoniker, E_NOTIMPL);
}

HRESULT OleObject::GetClipboardData(DWORD, IDataObject** ppData)
{
    return Refuse(ppData, E_NOTIMPL);
}

HRESULT OleObject::EnumVerbs(IEnumOLEVERB** ppVerbs)
{
    return Refuse(ppVerbs, OLEOBJ_E_NOVERBS);
}

HRESULT OleObject::GetUserClassID(CLSID* pClass)
{
    return GiveOut(pClass, m_clsid);
}

HRESULT OleObject::GetUserType(DWORD nForm, LPOLESTR* ppszType)
{
    return ppszType ? OleRegGetUserType(m_clsid, nForm, ppszType) : E_POINTER;
}

HRESULT OleObject::SetExtent(DWORD nAspect, SIZEL* pSize)
{
    if (nAspect != DVASPECT_CONTENT)
        return DV_E_DVASPECT;
    if (!pSize)
        return E_POINTER;
    m_size = *pSize;
    return S_OK;
}

HRESULT OleObject::GetExtent(DWORD nAspect, SIZEL* pSize)
{
    return nAspect == DVASPECT_CONTENT ? GiveOut(pSize, m_size) : DV_E_DVASPECT;
}

HRESULT OleObject::GetMiscStatus(DWORD nAspect, DWORD* pnStatus)
{
    return GiveOut(pnStatus, nAspect == DVASPECT_CONTENT ? kControlStatus : 0);
}

HRESULT OleObject::Advise(IAdviseSink* pSink, DWORD* pnConnection)
{
    if (!m_pAdvised)
        if (const HRESULT hr = CreateOleAdviseHolder(m_pAdvised.put()); FAILED(hr))
            return hr;
    return m_pAdvised->Advise(pSink, pnConnection);
}

HRESULT OleObject::Unadvise(DWORD nConnection)
{
    return m_pAdvised ? m_pAdvised->Unadvise(nConnection) : OLE_E_NOCONNECTION;
}

// Null where nobody has asked.
HRESULT OleObject::EnumAdvise(IEnumSTATDATA** ppAdvise)
{
    return m_pAdvised ? m_pAdvised->EnumAdvise(ppAdvise) : Refuse(ppAdvise, S_OK);
}

void OleObject::TellClosed()
{
    if (const com_ptr<IOleAdviseHolder> pAdvised = m_pAdvised)
        pAdvised->SendOnClose();
}

// ---- IOleControl, IPersistStreamInit, IProvideClassInfo

// The system's code for a control without mnemonics.
HRESULT OleObject::GetControlInfo(CONTROLINFO* pInfo)
{
    return pInfo ? E_NOTIMPL : E_POINTER;
}

HRESULT OleObject::GetSizeMax(ULARGE_INTEGER* pnSize)
{
    return GiveOut(pnSize, ULARGE_INTEGER{});
}

HRESULT OleObject::GetClassInfo(ITypeInfo** ppInfo)
{
    return ppInfo ? LoadTypeInfo(m_clsid, ppInfo) : E_POINTER;
}

} // namespace Hesperon::specifics::UILayer
