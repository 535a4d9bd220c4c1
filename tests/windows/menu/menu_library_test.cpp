// A folder of its own holds the component and a stand-in for the menu library.

#include <gtest/gtest.h>

#include "interfaces/ClassIds.h"
#include "interfaces/IQRLGUITweak.h"
#include "tests/windows/ComponentLibrary.h"

using namespace IQRL_TabulexConverter;

namespace {

string_t InFolder(const OLECHAR* pszFile)
{
    return PathBeside(nullptr, L"menu\\").append(pszFile);
}

class MenuLibrary : public testing::Test
{
protected:
    static void SetUpTestSuite() { CoInitialize(nullptr); }
    static void TearDownTestSuite() { CoUninitialize(); }

    LONG Told(const char* pszEntry)
    {
        using Entry = LONG (*)();
        const HMODULE hLibrary = GetModuleHandleW(InFolder(L"Kelmstyle.dll").c_str());
        const auto pfnEntry =
            reinterpret_cast<Entry>(reinterpret_cast<void*>(GetProcAddress(hLibrary, pszEntry)));
        return pfnEntry ? pfnEntry() : -2;
    }
};

TEST_F(MenuLibrary, IsLoadedFromBesideTheComponentAndToldOfStyleAndEffect)
{
    ComponentLibrary component(InFolder(L"TabulexConverter.dll"));
    ASSERT_TRUE(component);
    com_ptr<IQRLGUITweak> tweak;
    ASSERT_EQ(component.Create(CLSID_CqrlTabulexConvertor, tweak), S_OK);
    EXPECT_EQ(Told("LastStyle"), -1);
    EXPECT_EQ(tweak->put_MenuStyle(3), S_OK);
    EXPECT_EQ(Told("LastStyle"), 3);
    EXPECT_EQ(Told("LastEffect"), -1);
    EXPECT_EQ(tweak->put_MenuEffect(5), S_OK);
    EXPECT_EQ(Told("LastEffect"), 5);
}

TEST_F(MenuLibrary, GoesWithTheComponent)
{
    {
        ComponentLibrary component(InFolder(L"TabulexConverter.dll"));
        ASSERT_TRUE(component);
        EXPECT_NE(GetModuleHandleW(L"Kelmstyle.dll"), nullptr);
    }
    EXPECT_EQ(GetModuleHandleW(L"Kelmstyle.dll"), nullptr);
}

TEST_F(MenuLibrary, IsNotMissedWhereThereIsNone)
{
    ComponentLibrary component;
    ASSERT_TRUE(component);
    EXPECT_EQ(GetModuleHandleW(L"Kelmstyle.dll"), nullptr);
    com_ptr<IQRLGUITweak> tweak;
    ASSERT_EQ(component.Create(CLSID_CqrlTabulexConvertor, tweak), S_OK);
    EXPECT_EQ(tweak->put_MenuStyle(3), S_OK);
    LONG nStyle = 0;
    EXPECT_EQ(tweak->get_MenuStyle(&nStyle), S_OK);
    EXPECT_EQ(nStyle, 3);
}

} // namespace
