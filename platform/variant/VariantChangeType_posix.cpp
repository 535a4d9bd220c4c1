// VariantChangeType: from any kind of value to any other.
//
// A value by reference is copied first. Then the kind of the target and that of the source choose
// one of five ways: the same kind is copied, an interface is asked for another one, an object gives
// its default property, which is converted in turn, a text is parsed or written
// (VariantText_posix.cpp), and everything else is a number (VariantNumber_posix.cpp). Pairs that
// can't convert whatever the value are refused before.

#include <new>

#include "platform/component.h"
#include "platform/values.h"
#include "platform/variant/VariantKinds_posix.h"
#include "platform/variant/VariantNumber_posix.h"
#include "platform/variant/VariantText_posix.h"

namespace {

// VT_INT and VT_UINT are other names of the 32-bit kinds.
VARTYPE PlainKind(VARTYPE vt)
{
    if (vt == VT_INT)
        return VT_I4;
    return vt == VT_UINT ? static_cast<VARTYPE>(VT_UI4) : vt;
}

HRESULT ToInterface(const VARIANT& from, VARTYPE vt, VARIANT& to)
{
    if (from.vt != VT_DISPATCH && from.vt != VT_UNKNOWN)
        return DISP_E_TYPEMISMATCH;
    to.punkVal = nullptr;
    if (!from.punkVal)
        return S_OK;
    const IID& iid = vt == VT_DISPATCH ? iid_of<IDispatch> : iid_of<IUnknown>;
    return from.punkVal->QueryInterface(iid, &to.byref);
}

HRESULT ToText(const VARIANT& from, USHORT flags, VARIANT& to)
{
    string_t text;
    if (HRESULT hr = FormatValue(from, (flags & VARIANT_ALPHABOOL) != 0, text); FAILED(hr))
        return hr;
    to.bstrVal = NewBstr(text);
    return S_OK;
}

// An object stands for its default property, unless the flags forbid to ask.
HRESULT FromObject(IDispatch* object, LCID locale, USHORT flags, VARTYPE vt, VARIANT& to)
{
    if (!object || (flags & VARIANT_NOVALUEPROP))
        return DISP_E_TYPEMISMATCH;
    Variant value;
    DISPPARAMS none = {};
    const HRESULT hr = object->Invoke(DISPID_VALUE, IID_NULL, locale, DISPATCH_PROPERTYGET, &none,
                                      &value, nullptr, nullptr);
    if (FAILED(hr))
        return hr;
    // Asking once is enough; a value that is an object again doesn't convert.
    return VariantChangeTypeEx(&to, &value, locale, flags | VARIANT_NOVALUEPROP, vt);
}

// Conversions that don't depend on the value.
bool IsRefused(VARTYPE from, VARTYPE vt)
{
    if ((from | vt) & (VT_ARRAY | VT_BYREF))
        return true;
    return from == VT_NULL || from == VT_ERROR || vt == VT_ERROR || vt == VT_VARIANT;
}

// Puts the converted value into an empty `to`; its kind is set by the caller.
HRESULT Coerce(const VARIANT& from, LCID locale, USHORT flags, VARTYPE vt, VARIANT& to)
{
    if (from.vt == vt || PlainKind(from.vt) == PlainKind(vt))
        return VariantCopy(&to, &from);
    if (IsRefused(from.vt, vt))
        return DISP_E_TYPEMISMATCH;
    if (vt == VT_DISPATCH || vt == VT_UNKNOWN)
        return ToInterface(from, vt, to);
    if (vt == VT_EMPTY || vt == VT_NULL)
        return S_OK;
    if (from.vt == VT_DISPATCH)
        return FromObject(from.pdispVal, locale, flags, vt, to);
    if (from.vt == VT_BSTR)
        return ParseValue(TextOf(from.bstrVal), vt, to);
    if (vt == VT_BSTR)
        return ToText(from, flags, to);
    return ConvertNumber(from, vt, to);
}

HRESULT Replace(VARIANT* to, Variant& value)
{
    const HRESULT hr = VariantClear(to);
    if (SUCCEEDED(hr))
        *to = value.detach();
    return hr;
}

HRESULT Change(VARIANT* to, const VARIANT* from, LCID locale, USHORT flags, VARTYPE vt)
{
    Variant source;
    if (from->vt & VT_BYREF) {
        if (HRESULT hr = VariantCopyInd(&source, from); FAILED(hr))
            return hr;
        from = &source;
    }
    Variant result;
    if (HRESULT hr = Coerce(*from, locale, flags, vt, result); FAILED(hr))
        return hr;
    result.vt = vt;
    return Replace(to, result);
}

} // namespace

extern "C" {

// A failed conversion leaves `to` as it was.
HRESULT VariantChangeTypeEx(VARIANT* to, const VARIANT* from, LCID locale, USHORT flags, VARTYPE vt)
try {
    if (!IsKnownKind(from->vt) || !IsKnownKind(vt))
        return DISP_E_BADVARTYPE;
    if ((from->vt & VT_BYREF) && !from->byref)
        return DISP_E_TYPEMISMATCH;
    return Change(to, from, locale, flags, vt);
} catch (const std::bad_alloc&) {
    return E_OUTOFMEMORY;
}

HRESULT VariantChangeType(VARIANT* to, const VARIANT* from, USHORT flags, VARTYPE vt)
{
    return VariantChangeTypeEx(to, from, LOCALE_USER_DEFAULT, flags, vt);
}
}
