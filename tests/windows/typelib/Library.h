// The type library of the component, read out of the built module.
#pragma once

#include <string>
#include <vector>

#include "platform/com_ptr.h"
#include "platform/values.h"

// One function of an interface: an operation, or one half of a property.
struct Function
{
    string_t sName; // of the operation or the property
    INVOKEKIND kind = INVOKE_FUNC;
    DISPID nId = DISPID_UNKNOWN;
    unsigned nSlot = 0;
    std::vector<VARTYPE> kinds;      // of its arguments, by the rules of DispatchRow.h
    std::vector<USHORT> directions;  // PARAMFLAG_FIN and so on
    std::vector<string_t> arguments; // their names; the value of a put has none
};

com_ptr<ITypeLib> OpenLibrary();

string_t NameOf(ITypeInfo& info);
TYPEATTR AttributesOf(ITypeInfo& info);

// An interface that is dual has a description for either way of calling; the library gives
// out that for dispatch, and this gives the other.
com_ptr<ITypeInfo> VtableSide(ITypeInfo& dispatchSide);

// Its own, without those that it inherits, by slot.
std::vector<Function> FunctionsOf(ITypeInfo& vtableSide);

// For messages.
std::string Narrow(string_view_t text);
