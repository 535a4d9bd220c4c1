// ByName: an object that is reached through IDispatch alone. Names of operations become
// numbers, and arguments become values.
//
//   converter.Put(OLESTR("FileName"), path.get());
//   converter.Call(OLESTR("GetField"), 0, &nId, form.put());
//
// An argument is what the operation declares: LONG, BSTR or IDispatch*, or for what it
// gives back the address of a LONG, BSTR, ULONGLONG or VARIANT_BOOL. A value of another kind
// is coerced. Arguments are borrowed. Each call gives the operation's own result code, or
// the dispatcher's where the operation wasn't reached.
#pragma once

#include <iterator>

#include "platform/com_ptr.h"
#include "platform/values.h"

class ByName
{
public:
    explicit ByName(com_ptr<IDispatch> object) : m_object(std::move(object)) {}

    template <class... T>
    HRESULT Call(const OLECHAR* pszName, T... arguments) const
    {
        // Values lie in reverse: the first argument comes last.
        VARIANT values[sizeof...(T) + 1];
        VARIANT* p = std::end(values);
        ((*--p = Value(arguments)), ...);
        return Invoke(pszName, DISPATCH_METHOD, {p, nullptr, sizeof...(T), 0}, nullptr);
    }

    template <class T>
    HRESULT Put(const OLECHAR* pszName, T value) const
    {
        VARIANT argument = Value(value);
        DISPID put = DISPID_PROPERTYPUT; // the value of a put is a named argument
        return Invoke(pszName, DISPATCH_PROPERTYPUT, {&argument, &put, 1, 1}, nullptr);
    }

    // The result is empty after a failure.
    HRESULT Get(const OLECHAR* pszName, Variant& result) const
    {
        return Invoke(pszName, DISPATCH_PROPERTYGET, {nullptr, nullptr, 0, 0}, result.put());
    }

private:
    template <class Field, class T>
    static VARIANT Value(VARTYPE vt, Field field, T value)
    {
        VARIANT v{};
        v.vt = vt;
        v.*field = value;
        return v;
    }
    static VARIANT Value(LONG n) { return Value(VT_I4, &VARIANT::lVal, n); }
    static VARIANT Value(BSTR s) { return Value(VT_BSTR, &VARIANT::bstrVal, s); }
    static VARIANT Value(IDispatch* p) { return Value(VT_DISPATCH, &VARIANT::pdispVal, p); }
    static VARIANT Value(LONG* p) { return Value(VT_BYREF | VT_I4, &VARIANT::plVal, p); }
    static VARIANT Value(BSTR* p) { return Value(VT_BYREF | VT_BSTR, &VARIANT::pbstrVal, p); }
    static VARIANT Value(ULONGLONG* p) { return Value(VT_BYREF | VT_UI8, &VARIANT::pullVal, p); }
    static VARIANT Value(VARIANT_BOOL* p)
    {
        return Value(VT_BYREF | VT_BOOL, &VARIANT::pboolVal, p);
    }

    HRESULT Invoke(const OLECHAR* pszName, WORD flags, DISPPARAMS arguments, VARIANT* result) const
    {
        DISPID id = DISPID_UNKNOWN;
        auto* name = const_cast<LPOLESTR>(pszName);
        const HRESULT hr = m_object->GetIDsOfNames(IID_NULL, &name, 1, LOCALE_USER_DEFAULT, &id);
        return FAILED(hr) ? hr
                          : m_object->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, flags, &arguments,
                                             result, nullptr, nullptr);
    }

    com_ptr<IDispatch> m_object;
};
