// An object that is called by what its interface's description says.
#pragma once

#include "Types.h"

enum class Binding
{
    Slots,   // through the table of the interface's virtual members
    Dispatch // through IDispatch, by the operation's number
};

class Object
{
public:
    // Asks for the interface. Failures throw _com_error.
    Object(IUnknown* object, const InterfaceType& type, Binding binding);

    // Each gives the operation's own result code. An argument of another kind than the
    // declared one is coerced; one that is filled is given by Out.
    HRESULT Call(const wchar_t* pszName, std::vector<_variant_t> arguments = {}) const;
    HRESULT Put(const wchar_t* pszName, const _variant_t& value) const;
    HRESULT Get(const wchar_t* pszName, _variant_t& value) const;

private:
    HRESULT Run(const Operation& operation, std::vector<_variant_t> arguments,
                VARIANT* result) const;
    HRESULT CallSlot(const Operation& operation, std::vector<_variant_t>& arguments) const;
    HRESULT Invoke(const Operation& operation, std::vector<_variant_t>& arguments,
                   VARIANT* result) const;

    InterfaceType m_type;
    Binding m_binding;
    Ref<IUnknown> m_interface;
};

// The address of a value, which has to live until the call is over.
template <class T>
_variant_t Out(VARTYPE kind, T* p)
{
    _variant_t argument;
    argument.vt = static_cast<VARTYPE>(VT_BYREF | kind);
    argument.byref = p;
    return argument;
}
