#include "tests/windows/typelib/Library.h"

#include <gtest/gtest.h>

#include "tests/windows/ComponentLibrary.h"

namespace {

VARTYPE KindOf(ITypeInfo& info, const TYPEDESC& type)
{
    if (type.vt == VT_PTR)
        return static_cast<VARTYPE>(VT_BYREF | KindOf(info, *type.lptdesc));
    return type.vt;
}

// The function's name and those of its arguments.
std::vector<string_t> NamesOf(ITypeInfo& info, MEMBERID nId, SHORT nArguments)
{
    std::vector<BSTR> texts(static_cast<std::size_t>(nArguments) + 1);
    UINT nNames = 0;
    EXPECT_EQ(S_OK, info.GetNames(nId, texts.data(), static_cast<UINT>(texts.size()), &nNames));
    std::vector<string_t> names;
    for (BSTR text : texts) {
        if (text)
            names.emplace_back(TextOf(text));
        SysFreeString(text);
    }
    EXPECT_EQ(nNames, names.size());
    return names;
}

Function Read(ITypeInfo& info, const FUNCDESC& description)
{
    EXPECT_EQ(FUNC_PUREVIRTUAL, description.funckind);
    EXPECT_EQ(CC_STDCALL, description.callconv);
    EXPECT_EQ(VT_HRESULT, description.elemdescFunc.tdesc.vt);
    EXPECT_EQ(0, description.cParamsOpt);
    EXPECT_EQ(0, description.wFuncFlags);

    Function function;
    function.kind = description.invkind;
    function.nId = description.memid;
    function.nSlot = static_cast<unsigned>(description.oVft) / sizeof(void*);
    for (SHORT i = 0; i < description.cParams; ++i) {
        const ELEMDESC& argument = description.lprgelemdescParam[i];
        function.kinds.push_back(KindOf(info, argument.tdesc));
        function.directions.push_back(argument.paramdesc.wParamFlags);
    }
    std::vector<string_t> names = NamesOf(info, description.memid, description.cParams);
    function.sName = names.at(0);
    function.arguments.assign(names.begin() + 1, names.end());
    return function;
}

} // namespace

com_ptr<ITypeLib> OpenLibrary()
{
    com_ptr<ITypeLib> library;
    EXPECT_EQ(S_OK, LoadTypeLibEx(ComponentLibrary::Path().c_str(), REGKIND_NONE, library.put()));
    return library;
}

string_t NameOf(ITypeInfo& info)
{
    Bstr name;
    EXPECT_EQ(S_OK, info.GetDocumentation(MEMBERID_NIL, name.put(), nullptr, nullptr, nullptr));
    return name.str();
}

TYPEATTR AttributesOf(ITypeInfo& info)
{
    TYPEATTR* attributes = nullptr;
    EXPECT_EQ(S_OK, info.GetTypeAttr(&attributes));
    const TYPEATTR copy = *attributes;
    info.ReleaseTypeAttr(attributes);
    return copy;
}

com_ptr<ITypeInfo> VtableSide(ITypeInfo& dispatchSide)
{
    constexpr UINT kOtherSide = static_cast<UINT>(-1);
    HREFTYPE hType = 0;
    com_ptr<ITypeInfo> info;
    EXPECT_EQ(S_OK, dispatchSide.GetRefTypeOfImplType(kOtherSide, &hType));
    EXPECT_EQ(S_OK, dispatchSide.GetRefTypeInfo(hType, info.put()));
    return info;
}

std::vector<Function> FunctionsOf(ITypeInfo& vtableSide)
{
    std::vector<Function> functions;
    const UINT nFunctions = AttributesOf(vtableSide).cFuncs;
    for (UINT i = 0; i < nFunctions; ++i) {
        FUNCDESC* description = nullptr;
        EXPECT_EQ(S_OK, vtableSide.GetFuncDesc(i, &description));
        functions.push_back(Read(vtableSide, *description));
        vtableSide.ReleaseFuncDesc(description);
    }
    return functions;
}

std::string Narrow(string_view_t text)
{
    return std::string(text.begin(), text.end()); // identifiers are ASCII
}
