#include "Object.h"

#include <algorithm>

namespace {

// Of the kind that a slot takes. Where any kind is taken, the value itself is.
HRESULT Coerce(_variant_t& argument, VARTYPE kind)
{
    if (kind == VT_VARIANT || argument.vt == kind)
        return S_OK;
    if (kind & VT_BYREF)
        return DISP_E_TYPEMISMATCH;
    return VariantChangeType(&argument, &argument, 0, kind);
}

} // namespace

Object::Object(IUnknown* object, const InterfaceType& type, Binding binding)
    : m_type(type), m_binding(binding)
{
    _com_util::CheckError(object->QueryInterface(type.iid, reinterpret_cast<void**>(&m_interface)));
}

HRESULT Object::Call(const wchar_t* pszName, std::vector<_variant_t> arguments) const
{
    return Run(m_type.Find(pszName, INVOKE_FUNC), std::move(arguments), nullptr);
}

HRESULT Object::Put(const wchar_t* pszName, const _variant_t& value) const
{
    return Run(m_type.Find(pszName, INVOKE_PROPERTYPUT), {value}, nullptr);
}

HRESULT Object::Get(const wchar_t* pszName, _variant_t& value) const
{
    value.Clear();
    return Run(m_type.Find(pszName, INVOKE_PROPERTYGET), {}, &value);
}

HRESULT Object::Run(const Operation& operation, std::vector<_variant_t> arguments,
                    VARIANT* result) const
{
    if (m_binding == Binding::Dispatch)
        return Invoke(operation, arguments, result);
    if (!result)
        return CallSlot(operation, arguments);
    // In its slot a get has one argument, the value's address. All kinds but that of a
    // VARIANT as a whole lie at one place in it.
    const auto kind = static_cast<VARTYPE>(operation.kinds.at(0) & ~VT_BYREF);
    void* const place = kind == VT_VARIANT ? static_cast<void*>(result) : &result->llVal;
    arguments.push_back(Out(kind, place));
    const HRESULT hr = CallSlot(operation, arguments);
    if (kind != VT_VARIANT && SUCCEEDED(hr))
        result->vt = kind;
    return hr;
}

HRESULT Object::CallSlot(const Operation& operation, std::vector<_variant_t>& arguments) const
{
    if (arguments.size() != operation.kinds.size())
        return DISP_E_BADPARAMCOUNT;
    std::vector<VARIANTARG*> addresses;
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        if (const HRESULT hr = Coerce(arguments[i], operation.kinds[i]); FAILED(hr))
            return hr;
        addresses.push_back(&arguments[i]);
    }
    VARIANT result;
    const HRESULT hr =
        DispCallFunc(m_interface.GetInterfacePtr(), static_cast<ULONG_PTR>(operation.nOffset),
                     CC_STDCALL, VT_ERROR, static_cast<UINT>(arguments.size()),
                     const_cast<VARTYPE*>(operation.kinds.data()), addresses.data(), &result);
    return FAILED(hr) ? hr : result.scode;
}

HRESULT Object::Invoke(const Operation& operation, std::vector<_variant_t>& arguments,
                       VARIANT* result) const
{
    std::ranges::reverse(arguments); // the last one goes first
    DISPID put = DISPID_PROPERTYPUT; // the value of a put is a named argument
    const bool bPut = operation.kind == INVOKE_PROPERTYPUT;
    DISPPARAMS params{arguments.data(), bPut ? &put : nullptr, static_cast<UINT>(arguments.size()),
                      bPut ? 1u : 0u};
    return Ref<IDispatch>(m_interface)
        ->Invoke(operation.nId, IID_NULL, LOCALE_USER_DEFAULT, static_cast<WORD>(operation.kind),
                 &params, result, nullptr, nullptr);
}
