#include "tools/tabulex/EventSink.h"

#include <new>

#include "platform/values.h"
#include "tools/tabulex/Text.h"

namespace tabulex {

namespace {

// For an id that isn't in the list of offers.
constexpr const char* kUnknownResolution = "?";

// The text stands second in the three elements of an error description.
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

// Late-bound callers get the interface, but no calls by number.
HRESULT EventSink::QueryInterface(REFIID riid, void** ppv)
{
    if (!ppv)
        return E_POINTER;
    *ppv = nullptr;
    if (!(riid == iid_of<IUnknown>)&&!(riid == iid_of<IDispatch>)&&!(riid ==
                                                                     iid_of<IDataParserEvents>))
        return E_NOINTERFACE;
    *ppv = static_cast<IDataParserEvents*>(this);
    AddRef();
    return S_OK;
}

ULONG EventSink::AddRef()
{
    return m_nRefs.fetch_add(1, std::memory_order_relaxed) + 1;
}

ULONG EventSink::Release()
{
    const ULONG nLeft = m_nRefs.fetch_sub(1, std::memory_order_acq_rel) - 1;
    if (nLeft == 0)
        delete this;
    return nLeft;
}

HRESULT EventSink::GetTypeInfoCount(UINT* pctinfo)
{
    if (!pctinfo)
        return E_POINTER;
    *pctinfo = 0;
    return S_OK;
}

HRESULT EventSink::GetTypeInfo(UINT, LCID, ITypeInfo**)
{
    return E_NOTIMPL;
}

HRESULT EventSink::GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*)
{
    return E_NOTIMPL;
}

HRESULT EventSink::Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*, UINT*)
{
    return E_NOTIMPL;
}

HRESULT EventSink::OnError(VARIANT Description)
try {
    m_sFault = TextOfDescription(Description);
    return S_OK;
} catch (const std::bad_alloc&) {
    return E_OUTOFMEMORY;
}

HRESULT EventSink::GetResolutionName(LONG Resolution, BSTR* Name)
try {
    if (!Name)
        return E_POINTER;
    const auto* row = m_offers.FindId(Resolution);
    *Name = NewBstr(FromUtf8(row ? row->sName : kUnknownResolution));
    return S_OK;
} catch (const std::bad_alloc&) {
    return E_OUTOFMEMORY;
}

} // namespace tabulex
