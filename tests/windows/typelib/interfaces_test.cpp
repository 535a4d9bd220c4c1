// Each interface of the type library against its header and its dispatch table.

#include <gtest/gtest.h>

#include <algorithm>

#include "tests/windows/typelib/Headers.h"
#include "tests/windows/typelib/Library.h"

namespace {

constexpr unsigned kFirstSlot = 7; // after those of IDispatch

struct Half // of a property; an operation has none
{
    INVOKEKIND kind;
    string_view_t sPrefix;
};
constexpr Half kHalves[] = {{INVOKE_PROPERTYGET, OLESTR("get_")},
                            {INVOKE_PROPERTYPUT, OLESTR("put_")},
                            {INVOKE_FUNC, OLESTR("")}};

// As the header spells it.
string_t MemberName(const Function& function)
{
    const auto* half = std::ranges::find(kHalves, function.kind, &Half::kind);
    return half == std::end(kHalves) ? OLESTR("?") : string_t(half->sPrefix) + function.sName;
}

bool IsGet(const Function& function)
{
    return function.kind == INVOKE_PROPERTYGET;
}

// What can be called under a row: an operation, or the halves of a property.
std::vector<INVOKEKIND> KindsOf(const DispatchRow& row)
{
    if (row.kind == DispatchRow::Kind::Method)
        return {INVOKE_FUNC};
    std::vector<INVOKEKIND> kinds;
    if (row.pfnGet)
        kinds.push_back(INVOKE_PROPERTYGET);
    if (row.call.pfnCall)
        kinds.push_back(INVOKE_PROPERTYPUT);
    return kinds;
}

std::vector<VARTYPE> ArgumentKinds(const DispatchRow& row)
{
    return {row.call.kinds.begin(), row.call.kinds.begin() + row.call.nArguments};
}

std::vector<string_t> ArgumentNames(const DispatchRow& row)
{
    return {row.arguments.begin(), std::ranges::find(row.arguments, string_view_t())};
}

// A function as the library describes it, compared with what it should be.
struct Described
{
    const Description& expected;
    com_ptr<ITypeInfo> dispatchSide, vtableSide;
    std::vector<Function> functions;

    // Those under a number.
    std::vector<Function> Under(DISPID nId) const
    {
        std::vector<Function> found;
        std::ranges::copy_if(functions, std::back_inserter(found),
                             [=](const Function& f) { return f.nId == nId; });
        return found;
    }
};

void ForEach(void (*check)(const Described&))
{
    const com_ptr<ITypeLib> library = OpenLibrary();
    for (const Description& expected : Descriptions()) {
        SCOPED_TRACE(Narrow(expected.sName));
        com_ptr<ITypeInfo> info;
        ASSERT_EQ(S_OK, library->GetTypeInfoOfGuid(expected.iid, info.put()));
        const com_ptr<ITypeInfo> vtableSide = VtableSide(*info.get());
        check({expected, info, vtableSide, FunctionsOf(*vtableSide.get())});
    }
}

TEST(InterfacesInLibrary, AreDualAndClosed)
{
    ForEach([](const Described& described) {
        EXPECT_EQ(described.expected.sName, NameOf(*described.dispatchSide.get()));
        const TYPEATTR dispatchSide = AttributesOf(*described.dispatchSide.get());
        EXPECT_EQ(TKIND_DISPATCH, dispatchSide.typekind);
        const TYPEATTR vtableSide = AttributesOf(*described.vtableSide.get());
        EXPECT_EQ(TKIND_INTERFACE, vtableSide.typekind);
        EXPECT_TRUE(vtableSide.guid == described.expected.iid);
        constexpr WORD kDual = TYPEFLAG_FDUAL | TYPEFLAG_FNONEXTENSIBLE | TYPEFLAG_FDISPATCHABLE;
        EXPECT_EQ(kDual | TYPEFLAG_FOLEAUTOMATION, vtableSide.wTypeFlags);
        EXPECT_EQ(kDual, dispatchSide.wTypeFlags); // the system sets the other flag only for slots
    });
}

TEST(InterfacesInLibrary, ExtendIDispatch)
{
    ForEach([](const Described& described) {
        ASSERT_EQ(1, AttributesOf(*described.vtableSide.get()).cImplTypes);
        HREFTYPE hType = 0;
        com_ptr<ITypeInfo> base;
        ASSERT_EQ(S_OK, described.vtableSide->GetRefTypeOfImplType(0, &hType));
        ASSERT_EQ(S_OK, described.vtableSide->GetRefTypeInfo(hType, base.put()));
        EXPECT_TRUE(AttributesOf(*base.get()).guid == iid_of<IDispatch>);
    });
}

TEST(InterfacesInLibrary, HaveTheSlotsOfTheirHeaders)
{
    ForEach([](const Described& described) {
        const std::vector<Member>& members = described.expected.members;
        EXPECT_EQ(kFirstSlot + members.size(), described.expected.nSlots);
        EXPECT_EQ(described.expected.nSlots * sizeof(void*),
                  AttributesOf(*described.vtableSide.get()).cbSizeVft);
        ASSERT_EQ(members.size(), described.functions.size());
        for (std::size_t i = 0; i < members.size(); ++i) {
            SCOPED_TRACE(Narrow(members[i].sName));
            EXPECT_EQ(kFirstSlot + i, members[i].nSlot);
            EXPECT_EQ(members[i].nSlot, described.functions[i].nSlot);
            EXPECT_EQ(members[i].sName, MemberName(described.functions[i]));
            EXPECT_EQ(members[i].kinds, described.functions[i].kinds);
        }
    });
}

TEST(InterfacesInLibrary, SayWhichWayArgumentsGo)
{
    ForEach([](const Described& described) {
        for (const Function& function : described.functions) {
            SCOPED_TRACE(Narrow(function.sName));
            for (std::size_t i = 0; i < function.kinds.size(); ++i) {
                const USHORT ways = function.directions[i];
                if (IsGet(function))
                    EXPECT_EQ(PARAMFLAG_FOUT | PARAMFLAG_FRETVAL, ways);
                else if (function.kinds[i] & VT_BYREF)
                    EXPECT_EQ(PARAMFLAG_FOUT, ways & ~PARAMFLAG_FIN);
                else
                    EXPECT_EQ(PARAMFLAG_FIN, ways);
            }
        }
    });
}

TEST(InterfacesInLibrary, HaveTheRowsOfTheirDispatchTables)
{
    ForEach([](const Described& described) {
        std::size_t nFunctions = 0;
        for (const DispatchRow& row : described.expected.table) {
            SCOPED_TRACE(Narrow(row.sName));
            std::vector<INVOKEKIND> kinds;
            for (const Function& function : described.Under(row.nId)) {
                kinds.push_back(function.kind);
                EXPECT_EQ(row.sName, function.sName);
                if (!IsGet(function)) {
                    EXPECT_EQ(ArgumentKinds(row), function.kinds);
                }
            }
            std::ranges::sort(kinds); // a get before its put
            EXPECT_EQ(KindsOf(row), kinds);
            nFunctions += kinds.size();
        }
        EXPECT_EQ(nFunctions, described.functions.size()) << "the table lacks some";
    });
}

TEST(InterfacesInLibrary, NameArgumentsAsTheirDispatchTables)
{
    ForEach([](const Described& described) {
        for (const DispatchRow& row : described.expected.table) {
            if (row.kind == DispatchRow::Kind::Property)
                continue; // it has no names for them
            SCOPED_TRACE(Narrow(row.sName));
            for (const Function& function : described.Under(row.nId))
                EXPECT_EQ(ArgumentNames(row), function.arguments);
        }
    });
}

TEST(InterfacesInLibrary, FindNamesAsTheirDispatchTables)
{
    ForEach([](const Described& described) {
        for (const DispatchRow& row : described.expected.table) {
            SCOPED_TRACE(Narrow(row.sName));
            string_t sName(row.sName);
            LPOLESTR pszName = sName.data();
            MEMBERID nId = MEMBERID_NIL;
            EXPECT_EQ(S_OK, described.dispatchSide->GetIDsOfNames(&pszName, 1, &nId));
            EXPECT_EQ(row.nId, nId);
        }
    });
}

} // namespace
