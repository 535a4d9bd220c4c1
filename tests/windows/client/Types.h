// All that this client knows of the component: its type library. Failures throw
// _com_error.
#pragma once

#include <comdef.h>

#include <string>
#include <vector>

template <class Interface>
using Ref = _com_ptr_t<_com_IIID<Interface, &__uuidof(Interface)>>;

// One function of an interface.
struct Operation
{
    std::wstring sName;
    INVOKEKIND kind;
    MEMBERID nId;
    SHORT nOffset;              // in the table of virtual members, in bytes
    std::vector<VARTYPE> kinds; // of its arguments, VT_BYREF added for a pointer to one
};

// A dual interface.
struct InterfaceType
{
    std::wstring sName;
    IID iid;
    WORD nTableSize; // in bytes
    std::vector<Operation> operations;

    // TYPE_E_ELEMENTNOTFOUND where there is none.
    const Operation& Find(const wchar_t* pszName, INVOKEKIND kind) const;
};

struct ClassType
{
    CLSID clsid;
    InterfaceType standard; // the one that is called without being asked for
};

class TypeLibrary
{
public:
    // An identifier in braces is looked up in the registry, all else is a file.
    explicit TypeLibrary(const wchar_t* pszSource);

    std::wstring Name() const; // with its version
    // TYPE_E_ELEMENTNOTFOUND where there is none.
    ClassType Class(const wchar_t* pszName) const;
    InterfaceType Interface(const wchar_t* pszName) const;

private:
    Ref<ITypeInfo> Find(const wchar_t* pszName) const;

    Ref<ITypeLib> m_library;
};
