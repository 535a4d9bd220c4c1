// GetIDsOfNames, over an interface of all kinds of rows.

#include <gtest/gtest.h>

#include "tests/module/Gadget.h"

namespace {

class Naming : public testing::Test
{
protected:
    Naming() { EXPECT_EQ(S_OK, CreateObject(m_gadget)); }

    HRESULT IdsOf(std::vector<string_t> names)
    {
        std::vector<LPOLESTR> pointers;
        for (string_t& sName : names)
            pointers.push_back(sName.data());
        m_ids.assign(names.size(), -7);
        return m_gadget->GetIDsOfNames(IID_NULL, pointers.data(),
                                       static_cast<UINT>(pointers.size()), 0, m_ids.data());
    }

    com_ptr<Gadget> m_gadget;
    std::vector<DISPID> m_ids;
};

TEST_F(Naming, IgnoresCaseAndKnowsTheFormsOfAProperty)
{
    struct Row
    {
        const OLECHAR* szName;
        DISPID id;
    };
    const Row kRows[] = {
        {OLESTR("Rest"), 1},
        {OLESTR("REST"), 1},
        {OLESTR("Level"), 6},
        {OLESTR("get_Level"), 6},
        {OLESTR("PUT_LEVEL"), 6},
        {OLESTR("Label"), 7},
        {OLESTR("get_label"), 7},
        {OLESTR("Names"), 8},
        {OLESTR("get_Names"), 8},
        // An argument's name without its operation's gives its place.
        {OLESTR("nCount"), 0},
        {OLESTR("bsText"), 1},
        {OLESTR("pObject"), 2},
        {OLESTR("pVal"), 0},
    };
    for (const Row& row : kRows) {
        SCOPED_TRACE(testing::PrintToString(string_t(row.szName)));
        EXPECT_EQ(S_OK, IdsOf({row.szName}));
        EXPECT_EQ(row.id, m_ids[0]);
    }
}

TEST_F(Naming, DoesNotKnowOtherNames)
{
    for (const OLECHAR* szName :
         {OLESTR(""), OLESTR("Resting"), OLESTR("get_Rest"), OLESTR("put_Label"),
          OLESTR("put_Names"), OLESTR("getLevel"), OLESTR("get_"), OLESTR("L\u00C9vel")}) {
        SCOPED_TRACE(testing::PrintToString(string_t(szName)));
        EXPECT_EQ(DISP_E_UNKNOWNNAME, IdsOf({szName}));
        EXPECT_EQ(DISPID_UNKNOWN, m_ids[0]);
    }
}

TEST_F(Naming, GivesThePlacesOfTheArgumentsBehindAnOperation)
{
    EXPECT_EQ(S_OK, IdsOf({OLESTR("Fill"), OLESTR("bstext"), OLESTR("nCount")}));
    EXPECT_EQ((std::vector<DISPID>{5, 1, 0}), m_ids);
    // Names of other operations' arguments are known as well.
    EXPECT_EQ(S_OK, IdsOf({OLESTR("Fill"), OLESTR("pObject")}));
    EXPECT_EQ((std::vector<DISPID>{5, 2}), m_ids);
    EXPECT_EQ(DISP_E_UNKNOWNNAME, IdsOf({OLESTR("Fill"), OLESTR("none"), OLESTR("nCount")}));
    EXPECT_EQ((std::vector<DISPID>{5, DISPID_UNKNOWN, 0}), m_ids);
}

TEST_F(Naming, WantsItsArrays)
{
    DISPID id = 0;
    string_t sName = OLESTR("Rest");
    LPOLESTR name = sName.data();
    EXPECT_EQ(E_POINTER, m_gadget->GetIDsOfNames(IID_NULL, nullptr, 1, 0, &id));
    EXPECT_EQ(E_POINTER, m_gadget->GetIDsOfNames(IID_NULL, &name, 1, 0, nullptr));
}

// A program that links its classes has no type library in its file.
TEST_F(Naming, HasNoTypeInformationWithoutALibrary)
{
    UINT nCount = 77;
    EXPECT_EQ(S_OK, m_gadget->GetTypeInfoCount(&nCount));
    EXPECT_EQ(0u, nCount);
    EXPECT_EQ(E_POINTER, m_gadget->GetTypeInfoCount(nullptr));
    int nSomewhere = 0;
    for (const auto& [nIndex, hr] :
         {std::pair(0u, TYPE_E_CANTLOADLIBRARY), std::pair(1u, DISP_E_BADINDEX)}) {
        auto* info = reinterpret_cast<ITypeInfo*>(&nSomewhere);
        EXPECT_EQ(hr, m_gadget->GetTypeInfo(nIndex, 0, &info));
        EXPECT_EQ(nullptr, info);
    }
}

TEST_F(Naming, LooksAtTheIndexOfTypeInformationBeforeThePointer)
{
    EXPECT_EQ(E_POINTER, m_gadget->GetTypeInfo(0, 0, nullptr));
    EXPECT_EQ(DISP_E_BADINDEX, m_gadget->GetTypeInfo(1, 0, nullptr));
}

TEST_F(Naming, TakesANullNameForAnUnknownOne)
{
    LPOLESTR names[] = {nullptr};
    DISPID id = 0;
    EXPECT_EQ(DISP_E_UNKNOWNNAME, m_gadget->GetIDsOfNames(IID_NULL, names, 1, 0, &id));
    EXPECT_EQ(DISPID_UNKNOWN, id);
}

} // namespace
