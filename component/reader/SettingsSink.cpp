#include "component/reader/SettingsSink.h"

#include "facade/tabulex/fields.hpp"

namespace Hesperon::reader {

HRESULT ParserSink::QueryInterface(REFIID riid, void** ppv)
{
    if (!ppv)
        return E_POINTER;
    const bool bKnown = riid == iid_of<IUnknown> || riid == iid_of<IDispatch> ||
                        riid == iid_of<IQRL_TabulexConverter::IDataParserEvents>;
    *ppv = bKnown ? this : nullptr;
    if (!bKnown)
        return E_NOINTERFACE;
    AddRef();
    return S_OK;
}

ULONG ParserSink::Release()
{
    const ULONG nLeft = --m_nRefs;
    if (nLeft == 0)
        delete this;
    return nLeft;
}

HRESULT ParserSink::GetResolutionName(LONG Resolution, BSTR* Name)
{
    if (!Name)
        return E_POINTER;
    const std::string_view name = name_of(static_cast<tabulex::Resolution>(Resolution));
    *Name = SysAllocStringLen(FromUtf8(name).c_str(), static_cast<UINT>(name.size()));
    return *Name ? S_OK : E_OUTOFMEMORY;
}

HRESULT SettingsSink::OnError(VARIANT Description)
{
    if (Description.vt != (VT_ARRAY | VT_VARIANT))
        return E_INVALIDARG;
    LONG nText = 1;
    Variant text;
    const HRESULT hr = SafeArrayGetElement(Description.parray, &nText, text.put());
    if (SUCCEEDED(hr) && text.vt == VT_BSTR)
        m_sFault = ToUtf8(TextOf(text.bstrVal));
    return hr;
}

} // namespace Hesperon::reader
