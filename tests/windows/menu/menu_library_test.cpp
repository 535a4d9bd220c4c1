// A folder of its own holds the component and a stand-in for the menu library.

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "interfaces/ClassIds.h"
#include "interfaces/IQRLGUITweak.h"
#include "module/MenuLibrary_win32.h"
#include "src/UIComponents/windows/DialogResources.h"
#include "src/UIComponents/windows/shell/FolderButtons.h"
#include "tests/support/TempFolder.h"
#include "tests/windows/ComponentLibrary.h"

using namespace IQRL_TabulexConverter;
namespace UILayer = Hesperon::specifics::UILayer;

namespace {

string_t InFolder(const OLECHAR* pszFile)
{
    return PathBeside(nullptr, L"menu\\").append(pszFile);
}

class MenuLibraryTest : public testing::Test
{
protected:
    static void SetUpTestSuite() { CoInitialize(nullptr); }
    static void TearDownTestSuite() { CoUninitialize(); }

    template <class Value = LONG>
    Value Told(const char* pszEntry)
    {
        using Entry = Value (*)();
        const HMODULE hLibrary = GetModuleHandleW(InFolder(L"Kelmstyle.dll").c_str());
        const auto pfnEntry =
            reinterpret_cast<Entry>(reinterpret_cast<void*>(GetProcAddress(hLibrary, pszEntry)));
        return pfnEntry ? pfnEntry() : Value();
    }
};

TEST_F(MenuLibraryTest, IsLoadedFromBesideTheComponentAndToldOfStyleAndEffect)
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

TEST_F(MenuLibraryTest, GoesWithTheComponent)
{
    {
        ComponentLibrary component(InFolder(L"TabulexConverter.dll"));
        ASSERT_TRUE(component);
        EXPECT_NE(GetModuleHandleW(L"Kelmstyle.dll"), nullptr);
    }
    EXPECT_EQ(GetModuleHandleW(L"Kelmstyle.dll"), nullptr);
}

TEST_F(MenuLibraryTest, IsNotMissedWhereThereIsNone)
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

TEST_F(MenuLibraryTest, IsNotMissedWhereItsFileIsDamaged)
{
    const TempFolder folder;
    const auto copy = folder.Path() / L"TabulexConverter.dll";
    std::filesystem::copy_file(InFolder(L"TabulexConverter.dll"), copy);
    std::ofstream(folder.Path() / L"Kelmstyle.dll", std::ios::binary) << "MZ and no more";
    const DWORD nMode = GetThreadErrorMode();
    {
        const ComponentLibrary component(copy.native());
        ASSERT_TRUE(component);
        EXPECT_EQ(GetThreadErrorMode(), nMode); // of the host's own
        com_ptr<IQRLGUITweak> tweak;
        ASSERT_EQ(component.Create(CLSID_CqrlTabulexConvertor, tweak), S_OK);
        EXPECT_EQ(tweak->put_MenuStyle(3), S_OK);
    }
    EXPECT_EQ(GetModuleHandleW(copy.c_str()), nullptr);
}

// The entries that windows use are called by this program itself, with the library that lies
// beside the component's copy.
class MenuLooks : public MenuLibraryTest
{
protected:
    MenuLooks() : m_hBeside(LoadLibraryW(InFolder(L"TabulexConverter.dll").c_str()))
    {
        MenuLibrary::Load(m_hBeside);
    }
    ~MenuLooks()
    {
        MenuLibrary::Free();
        FreeLibrary(m_hBeside);
    }

    const HMODULE m_hBeside;
};

TEST_F(MenuLooks, AWindowGetsFlatMenus)
{
    const HWND hWnd = GetDesktopWindow();
    MenuLibrary::SetFlatMenu(hWnd);
    EXPECT_EQ(Told<HWND>("LastFlatMenu"), hWnd);
}

TEST_F(MenuLooks, TheLoaderOfImagesIsChosenAndTheFormerOneGiven)
{
    EXPECT_EQ(MenuLibrary::SelectImageLoaderId(202), 0);
    EXPECT_EQ(Told("CurrentLoader"), 202);
    EXPECT_EQ(MenuLibrary::SelectImageLoaderId(0), 202);
    EXPECT_EQ(Told("CurrentLoader"), 0);
}

TEST_F(MenuLooks, ImagesComeFromTheModuleThatIsNamed)
{
    const HIMAGELIST hImages =
        MenuLibrary::LoadImagesFromToolbar(UILayer::kFolderToolbarId, UILayer::DialogModule());
    ASSERT_NE(hImages, nullptr);
    EXPECT_EQ(ImageList_GetImageCount(hImages), 2);
    ImageList_Destroy(hImages);
    EXPECT_EQ(MenuLibrary::LoadImagesFromToolbar(1, UILayer::DialogModule()), nullptr);
}

// A window with a control in whose place the buttons go; they are gone before the library is.
struct ButtonsInAWindow
{
    ButtonsInAWindow()
    {
        const HWND hPlace = CreateWindowExW(0, L"STATIC", L"", WS_CHILD, 7, 8, 80, 26, m_hWnd,
                                            reinterpret_cast<HMENU>(1003), nullptr, nullptr);
        EXPECT_TRUE(m_buttons.Replace(hPlace));
        EXPECT_FALSE(IsWindow(hPlace));
    }
    ~ButtonsInAWindow() { DestroyWindow(m_hWnd); }

    HWND Toolbar() const { return GetDlgItem(m_hWnd, 1003); }
    string_t ClassName() const
    {
        wchar_t name[40] = L"";
        GetClassNameW(Toolbar(), name, std::size(name));
        return name;
    }
    int ImageWidth() const
    {
        int nWidth = 0, nHeight = 0;
        ImageList_GetIconSize(
            reinterpret_cast<HIMAGELIST>(SendMessageW(Toolbar(), TB_GETIMAGELIST, 0, 0)), &nWidth,
            &nHeight);
        return nWidth;
    }

    const HWND m_hWnd = CreateWindowExW(0, L"STATIC", L"", WS_POPUP, 0, 0, 200, 60, nullptr,
                                        nullptr, nullptr, nullptr);
    UILayer::FolderButtons m_buttons;
};

TEST_F(MenuLooks, TheFolderButtonsAreTheLibrarysOwn)
{
    const ButtonsInAWindow window;
    EXPECT_EQ(window.ClassName(), L"KelmFlatToolbar");
    EXPECT_EQ(Told("ToolbarsMade"), 1);
    EXPECT_EQ(SendMessageW(window.Toolbar(), TB_BUTTONCOUNT, 0, 0), 2);
    EXPECT_EQ(window.ImageWidth(), 11);
    EXPECT_EQ(Told("LoaderAtLastLoad"), 202);
    EXPECT_EQ(Told("CurrentLoader"), 0);
}

TEST(NoMenuLibrary, TheFolderButtonsAreTheSystems)
{
    const ButtonsInAWindow window;
    EXPECT_EQ(window.ClassName(), L"ToolbarWindow32");
    EXPECT_EQ(SendMessageW(window.Toolbar(), TB_BUTTONCOUNT, 0, 0), 2);
    EXPECT_EQ(window.ImageWidth(), 16);
}

TEST(NoMenuLibrary, LeavesEverythingAsItIs)
{
    MenuLibrary::SetFlatMenu(GetDesktopWindow());
    EXPECT_EQ(MenuLibrary::SelectImageLoaderId(202), 0);
    EXPECT_EQ(
        MenuLibrary::LoadImagesFromToolbar(UILayer::kFolderToolbarId, UILayer::DialogModule()),
        nullptr);
}

} // namespace
