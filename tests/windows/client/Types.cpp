#include "Types.h"

#include <algorithm>

using _com_util::CheckError;

namespace {

std::wstring NameOf(ITypeInfo& info, MEMBERID nId = MEMBERID_NIL)
{
    _bstr_t name;
    CheckError(info.GetDocumentation(nId, name.GetAddress(), nullptr, nullptr, nullptr));
    return {name, name.length()};
}

TYPEATTR AttributesOf(ITypeInfo& info)
{
    TYPEATTR* attributes = nullptr;
    CheckError(info.GetTypeAttr(&attributes));
    const TYPEATTR copy = *attributes;
    info.ReleaseTypeAttr(attributes);
    return copy;
}

Ref<ITypeInfo> Referred(ITypeInfo& info, UINT nPlace)
{
    HREFTYPE hType = 0;
    Ref<ITypeInfo> referred;
    CheckError(info.GetRefTypeOfImplType(nPlace, &hType));
    CheckError(info.GetRefTypeInfo(hType, &referred));
    return referred;
}

VARTYPE KindOf(const TYPEDESC& type)
{
    return type.vt == VT_PTR ? static_cast<VARTYPE>(VT_BYREF | KindOf(*type.lptdesc)) : type.vt;
}

Operation Read(ITypeInfo& info, const FUNCDESC& description)
{
    Operation operation{NameOf(info, description.memid),
                        description.invkind,
                        description.memid,
                        description.oVft,
                        {}};
    for (SHORT i = 0; i < description.cParams; ++i)
        operation.kinds.push_back(KindOf(description.lprgelemdescParam[i].tdesc));
    return operation;
}

// The library gives the description for dispatch, which refers to the one of the slots.
InterfaceType Read(ITypeInfo& dispatchSide)
{
    constexpr UINT kOtherSide = static_cast<UINT>(-1);
    const Ref<ITypeInfo> info = Referred(dispatchSide, kOtherSide);
    const TYPEATTR attributes = AttributesOf(info);
    InterfaceType type{NameOf(info), attributes.guid, attributes.cbSizeVft, {}};
    for (UINT i = 0; i < attributes.cFuncs; ++i) {
        FUNCDESC* description = nullptr;
        CheckError(info->GetFuncDesc(i, &description));
        type.operations.push_back(Read(info, *description));
        info->ReleaseFuncDesc(description);
    }
    return type;
}

Ref<ITypeLib> Open(const wchar_t* pszSource)
{
    Ref<ITypeLib> library;
    GUID id;
    CheckError(SUCCEEDED(CLSIDFromString(pszSource, &id))
                   ? LoadRegTypeLib(id, 1, 0, LOCALE_NEUTRAL, &library)
                   : LoadTypeLibEx(pszSource, REGKIND_NONE, &library));
    return library;
}

} // namespace

const Operation& InterfaceType::Find(const wchar_t* pszName, INVOKEKIND kind) const
{
    const auto found = std::ranges::find_if(
        operations, [&](const Operation& o) { return o.sName == pszName && o.kind == kind; });
    if (found == operations.end())
        CheckError(TYPE_E_ELEMENTNOTFOUND);
    return *found;
}

TypeLibrary::TypeLibrary(const wchar_t* pszSource) : m_library(Open(pszSource)) {}

std::wstring TypeLibrary::Name() const
{
    _bstr_t name;
    CheckError(m_library->GetDocumentation(-1, name.GetAddress(), nullptr, nullptr, nullptr));
    TLIBATTR* attributes = nullptr;
    CheckError(m_library->GetLibAttr(&attributes));
    const std::wstring version = std::to_wstring(attributes->wMajorVerNum) + L"." +
                                 std::to_wstring(attributes->wMinorVerNum);
    m_library->ReleaseTLibAttr(attributes);
    return std::wstring(name) + L" " + version;
}

Ref<ITypeInfo> TypeLibrary::Find(const wchar_t* pszName) const
{
    Ref<ITypeInfo> info;
    for (UINT i = 0; i < m_library->GetTypeInfoCount(); ++i) {
        CheckError(m_library->GetTypeInfo(i, &info));
        if (NameOf(info) == pszName)
            return info;
    }
    throw _com_error(TYPE_E_ELEMENTNOTFOUND);
}

ClassType TypeLibrary::Class(const wchar_t* pszName) const
{
    const Ref<ITypeInfo> info = Find(pszName);
    const TYPEATTR attributes = AttributesOf(info);
    for (UINT i = 0; i < attributes.cImplTypes; ++i) {
        int flags = 0;
        CheckError(info->GetImplTypeFlags(i, &flags));
        if (flags & IMPLTYPEFLAG_FDEFAULT)
            return {attributes.guid, Read(Referred(info, i))};
    }
    throw _com_error(TYPE_E_ELEMENTNOTFOUND);
}

InterfaceType TypeLibrary::Interface(const wchar_t* pszName) const
{
    return Read(Find(pszName));
}
