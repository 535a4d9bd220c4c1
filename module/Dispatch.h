// Dispatch by number for dual interfaces, driven by a table per interface.
//
// A table has one row for each operation or property: its name, its dispid and a pointer
// to member, from whose signature the argument kinds follow (DispatchRow.h). Add a method
// by adding a row.
//
// Invoke, in this order:
//  1. no parameter block: DISP_E_BADVARTYPE;
//  2. more arguments than the widest operation takes: DISP_E_BADPARAMCOUNT; from
//     here on the result, where there is one, is initialised;
//  3. named arguments other than the one of a property put: DISP_E_NONAMEDARGS;
//  4. an unknown dispid: DISP_E_MEMBERNOTFOUND;
//  5. a property: get takes no argument, put exactly one, neither flag is
//     DISP_E_MEMBERNOTFOUND; a wrong count anywhere is DISP_E_BADPARAMCOUNT;
//  6. an argument of another kind than the declared one is coerced, a failure
//     being DISP_E_TYPEMISMATCH with the argument's index in rgvarg;
//  7. the operation's own result is given; a failure also fills the exception
//     block.
//
// GetIDsOfNames ignores case. A property answers to its name and to its get_ and
// put_ forms. Argument names are looked up like the others, also without their operation's
// name ahead: a name gives its place among the arguments of the operation that was named
// first, else of the first row of the table that has it.
#pragma once

#include <span>

#include "platform/component.h"

struct DispatchRow;

// The table of an interface; specialised in DispatchTables.cpp.
template <class Interface>
std::span<const DispatchRow> DispatchTable();

HRESULT DispatchGetIDsOfNames(std::span<const DispatchRow> table, LPOLESTR* names, UINT nNames,
                              DISPID* ids);
// pInterface points at the interface that the table describes.
HRESULT DispatchInvoke(std::span<const DispatchRow> table, void* pInterface, DISPID id, WORD flags,
                       DISPPARAMS* params, VARIANT* result, EXCEPINFO* exception, UINT* argument);
// 1 if the module's file holds a type library, else 0.
UINT DispatchTypeInfoCount();
// The interface's description there, at index 0. The index is looked at first:
// DISP_E_BADINDEX for any other, also with a null info. Then E_POINTER for a null info,
// and TYPE_E_CANTLOADLIBRARY without a library.
HRESULT DispatchGetTypeInfo(REFIID iid, UINT index, ITypeInfo** info);

// The dispatch half of a dual interface.
template <class Interface>
class Dual : public Interface
{
public:
    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* pctinfo) override
    {
        if (!pctinfo)
            return E_POINTER;
        *pctinfo = DispatchTypeInfoCount();
        return S_OK;
    }

    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT iTInfo, LCID, ITypeInfo** ppTInfo) override
    {
        return DispatchGetTypeInfo(iid_of<Interface>, iTInfo, ppTInfo);
    }

    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR* rgszNames, UINT cNames, LCID,
                                            DISPID* rgDispId) override
    {
        return DispatchGetIDsOfNames(DispatchTable<Interface>(), rgszNames, cNames, rgDispId);
    }

    HRESULT STDMETHODCALLTYPE Invoke(DISPID dispIdMember, REFIID, LCID, WORD wFlags,
                                     DISPPARAMS* pDispParams, VARIANT* pVarResult,
                                     EXCEPINFO* pExcepInfo, UINT* puArgErr) override
    {
        return DispatchInvoke(DispatchTable<Interface>(), static_cast<Interface*>(this),
                              dispIdMember, wFlags, pDispParams, pVarResult, pExcepInfo, puArgErr);
    }
};
