// A session ends in one of three ways: by a call of its sink, by letting go of the sink without
// one, which shows by its references, or by an interrupt, after which one of the first two follows.
// So waiting needs no limit of time.

#include "tools/tabulex/host/DataSink.h"

#include <new>

#include "interfaces/NativeHost.h"
#include "platform/values.h"
#include "tools/tabulex/host/Host.h"
#include "tools/tabulex/system/Interrupt.h"
#include "tools/tabulex/text/Text.h"

namespace tabulex {

namespace {

// The text is the second of the three elements of an error description.
std::string TextOfDescription(const VARIANT& description)
{
    if (description.vt != (VT_ARRAY | VT_VARIANT) || !description.parray)
        return {};
    LONG nText = 1;
    Variant text;
    if (FAILED(SafeArrayGetElement(description.parray, &nText, text.put())) || text.vt != VT_BSTR)
        return {};
    return ToUtf8(TextOf(text.bstrVal));
}

} // namespace

// Late-bound callers get the interface, but can't call by number.
HRESULT DataSink::QueryInterface(REFIID riid, void** ppv)
{
    if (!ppv)
        return E_POINTER;
    *ppv = nullptr;
    const bool bOffered = riid == iid_of<IUnknown> || riid == iid_of<IDispatch> ||
                          riid == iid_of<IqrlTabulexDataSink>;
    if (!bOffered)
        return E_NOINTERFACE;
    *ppv = static_cast<IqrlTabulexDataSink*>(this);
    AddRef();
    return S_OK;
}

ULONG DataSink::AddRef()
{
    return ++m_nRefs;
}

ULONG DataSink::Release()
{
    const ULONG nLeft = --m_nRefs;
    if (nLeft == 0)
        delete this;
    return nLeft;
}

HRESULT DataSink::GetTypeInfoCount(UINT* pctinfo)
{
    if (!pctinfo)
        return E_POINTER;
    *pctinfo = 0;
    return S_OK;
}

HRESULT DataSink::GetTypeInfo(UINT, LCID, ITypeInfo**)
{
    return E_NOTIMPL;
}

HRESULT DataSink::GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*)
{
    return E_NOTIMPL;
}

HRESULT DataSink::Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*, UINT*)
{
    return E_NOTIMPL;
}

HRESULT DataSink::OnError(VARIANT Description)
try {
    m_sFault = TextOfDescription(Description);
    return S_OK;
} catch (const std::bad_alloc&) {
    return E_OUTOFMEMORY;
}

HRESULT DataSink::Commit()
{
    m_end = End::Commit;
    return S_OK;
}

HRESULT DataSink::Rollback()
{
    m_end = End::Rollback;
    return S_OK;
}

// A cancelled conversion ends with a call of the sink. A cancelled enumeration ends without one:
// the component only lets go of the sink.
void PumpToTheEnd(const Host& host, DataSink& sink, const std::function<void()>& between)
{
    while (!sink.HasEnded() && !sink.IsLetGoOf()) {
        if (Interrupted())
            host.Front().Unadvise(&sink);
        TabulexPumpMessages(kPumpMilliseconds);
        if (between)
            between();
    }
}

} // namespace tabulex
