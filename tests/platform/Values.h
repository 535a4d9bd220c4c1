// Values to test with, and how they are compared and printed.
#pragma once

#include <cstring>
#include <iomanip>
#include <ostream>
#include <sstream>
#include <string>

#include "platform/values.h"

// A result code that prints as the number it is known by.
struct Result
{
    HRESULT hr;
    friend bool operator==(Result a, Result b) { return a.hr == b.hr; }
    friend std::ostream& operator<<(std::ostream& out, Result r)
    {
        return out << "0x" << std::hex << std::setw(8) << std::setfill('0')
                   << static_cast<std::uint32_t>(r.hr) << std::dec;
    }
};

inline Variant Empty()
{
    return Variant();
}
inline Variant Null()
{
    Variant v;
    v.vt = VT_NULL;
    return v;
}
inline Variant I1(int n)
{
    Variant v;
    v.cVal = static_cast<signed char>(n);
    v.vt = VT_I1;
    return v;
}
inline Variant I2(int n)
{
    Variant v;
    v.iVal = static_cast<SHORT>(n);
    v.vt = VT_I2;
    return v;
}
inline Variant I4(LONG n)
{
    Variant v;
    v.lVal = n;
    v.vt = VT_I4;
    return v;
}
inline Variant I8(LONGLONG n)
{
    Variant v;
    v.llVal = n;
    v.vt = VT_I8;
    return v;
}
inline Variant UI1(int n)
{
    Variant v;
    v.bVal = static_cast<BYTE>(n);
    v.vt = VT_UI1;
    return v;
}
inline Variant UI2(int n)
{
    Variant v;
    v.uiVal = static_cast<USHORT>(n);
    v.vt = VT_UI2;
    return v;
}
inline Variant UI4(ULONG n)
{
    Variant v;
    v.ulVal = n;
    v.vt = VT_UI4;
    return v;
}
inline Variant UI8(ULONGLONG n)
{
    Variant v;
    v.ullVal = n;
    v.vt = VT_UI8;
    return v;
}
inline Variant Int(INT n)
{
    Variant v;
    v.intVal = n;
    v.vt = VT_INT;
    return v;
}
inline Variant Uint(UINT n)
{
    Variant v;
    v.uintVal = n;
    v.vt = VT_UINT;
    return v;
}
inline Variant R4(FLOAT r)
{
    Variant v;
    v.fltVal = r;
    v.vt = VT_R4;
    return v;
}
inline Variant R8(double r)
{
    Variant v;
    v.dblVal = r;
    v.vt = VT_R8;
    return v;
}
inline Variant Date(DATE date)
{
    return Variant::FromDate(date);
}
// In ten-thousandths.
inline Variant Cy(LONGLONG n)
{
    Variant v;
    v.cyVal.int64 = n;
    v.vt = VT_CY;
    return v;
}
inline Variant Bool(int n)
{
    Variant v;
    v.boolVal = static_cast<VARIANT_BOOL>(n);
    v.vt = VT_BOOL;
    return v;
}
inline Variant Error(SCODE code)
{
    Variant v;
    v.scode = code;
    v.vt = VT_ERROR;
    return v;
}
inline Variant Text(string_view_t text)
{
    return Variant::FromText(text);
}

// Bytes of a value of a scalar kind; 0 for the kinds that have none.
inline std::size_t ScalarSize(VARTYPE vt)
{
    switch (vt) {
    case VT_I1:
    case VT_UI1:
        return 1;
    case VT_I2:
    case VT_UI2:
    case VT_BOOL:
        return 2;
    case VT_I4:
    case VT_UI4:
    case VT_INT:
    case VT_UINT:
    case VT_R4:
    case VT_ERROR:
        return 4;
    case VT_EMPTY:
    case VT_NULL:
        return 0;
    default:
        return 8;
    }
}

inline bool Same(const VARIANT& a, const VARIANT& b)
{
    if (a.vt != b.vt)
        return false;
    if (a.vt == VT_BSTR)
        return TextOf(a.bstrVal) == TextOf(b.bstrVal);
    return std::memcmp(&a.llVal, &b.llVal, ScalarSize(a.vt)) == 0;
}

inline std::string Narrow(string_view_t text)
{
    std::string bytes;
    for (OLECHAR c : text)
        bytes.push_back(c < 0x80 ? static_cast<char>(c) : '#');
    return bytes;
}

// "kind:value", for failure messages.
inline std::string Show(const VARIANT& v)
{
    std::ostringstream out;
    out << std::setprecision(17) << "vt " << v.vt << ": ";
    if (v.vt == VT_BSTR)
        out << '"' << Narrow(TextOf(v.bstrVal)) << '"';
    else if (v.vt == VT_R8 || v.vt == VT_DATE)
        out << v.dblVal;
    else if (v.vt == VT_R4)
        out << v.fltVal;
    else {
        LONGLONG n = 0;
        std::memcpy(&n, &v.llVal, v.vt & VT_BYREF ? sizeof n : ScalarSize(v.vt));
        out << n;
    }
    return out.str();
}

// An object on the stack that counts its references and has a default property.
class FakeObject : public IDispatch
{
public:
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID riid, void** ppvObject) override
    {
        *ppvObject = nullptr;
        if (!(riid == iid_of<IUnknown>)&&!(riid == iid_of<IDispatch>))
            return E_NOINTERFACE;
        *ppvObject = this;
        AddRef();
        return S_OK;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return ++nReferences; }
    ULONG STDMETHODCALLTYPE Release() override { return --nReferences; }
    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override
    {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE Invoke(DISPID dispIdMember, REFIID, LCID, WORD, DISPPARAMS*,
                                     VARIANT* pVarResult, EXCEPINFO*, UINT*) override
    {
        if (dispIdMember != DISPID_VALUE)
            return DISP_E_MEMBERNOTFOUND;
        return VariantCopy(pVarResult, &defaultValue);
    }

    ULONG nReferences = 1;
    Variant defaultValue;
};
