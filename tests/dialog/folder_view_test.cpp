// The folder view.

#include <fstream>
#include <ranges>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/Folders.h"
#include "platform/Shell.h"
#include "src/UIComponents/controls/FolderView.h"
#include "tests/dialog/ChangeCounter.h"
#include "tests/dialog/fakes/FakeViews.h"
#include "tests/support/ReportLog.h"
#include "tests/support/TempFolder.h"

using namespace dialog_test;
using Hesperon::specifics::CFolderViewCtrl;
namespace fs = std::filesystem;

namespace {

// top/ with a.csv, b.csv and sub/, which has c.csv
class FolderViewTest : public testing::Test
{
protected:
    FolderViewTest() : m_top(fs::canonical(m_folder.Path()) / "top"), m_pCounter(new ChangeCounter)
    {
        fs::create_directories(m_top / "sub");
        for (const fs::path& file : {m_top / "a.csv", m_top / "b.csv", m_top / "sub" / "c.csv"})
            std::ofstream(file) << "x";
        EXPECT_EQ(CreateObject(m_pCtrl), S_OK);
        m_pView.emplace("folder", nullptr, m_pCtrl->Events());
        EXPECT_EQ(m_pCtrl->put_onchange(m_pCounter->AsVariant()), S_OK);
    }
    ~FolderViewTest()
    {
        m_pCtrl->Events().OnClose();
        m_pView.reset();
    }

    // Shows top/.
    void Open()
    {
        EXPECT_EQ(PutFolder(m_top), S_OK);
        m_pCtrl->Attach(&*m_pView);
    }
    HRESULT PutFolder(const fs::path& folder)
    {
        return m_pCtrl->put_Folder(Bstr(TextOfPath(folder)).get());
    }
    HRESULT PutFile(const fs::path& file)
    {
        return m_pCtrl->put_FileName(Bstr(TextOfPath(file)).get());
    }
    fs::path Folder()
    {
        Bstr folder;
        EXPECT_EQ(m_pCtrl->get_Folder(folder.put()), S_OK);
        return PathOfText(folder.view());
    }
    fs::path File()
    {
        Bstr file;
        EXPECT_EQ(m_pCtrl->get_FileName(file.put()), S_OK);
        return PathOfText(file.view());
    }
    fs::path ShownFolder() { return PathOfText(Wide(m_pView->m_sFolder)); }
    fs::path ShownSelection() { return PathOfText(Wide(m_pView->m_sSelected)); }
    void Command(FolderCommand command) { m_pCtrl->Events().OnCommand(command); }
    std::vector<std::string> Entries()
    {
        std::vector<std::string> names;
        for (LONG n = 0; n < m_pCtrl->Events().EntryCount(); ++n)
            names.push_back(Utf8(m_pCtrl->Events().Entry(n).pszName));
        return names;
    }

    const TempFolder m_folder;
    const fs::path m_top;
    com_ptr<CFolderViewCtrl> m_pCtrl;
    std::optional<FakeFolderView> m_pView;
    com_ptr<ChangeCounter> m_pCounter;
};

// ---- what is put

TEST_F(FolderViewTest, ShowsTheFolderThatWasPut)
{
    Open();
    EXPECT_EQ(ShownFolder(), m_top);
    EXPECT_EQ(m_pView->m_mode, ModeNames);
    EXPECT_EQ(Folder(), m_top);
    EXPECT_EQ(File(), "");
    EXPECT_THAT(Entries(), testing::ElementsAre("sub", "a.csv", "b.csv"));
    EXPECT_EQ(PutFolder(m_top / "sub"), S_OK);
    EXPECT_EQ(ShownFolder(), m_top / "sub");
    EXPECT_THAT(Entries(), testing::ElementsAre("c.csv"));
    EXPECT_EQ(m_pCounter->m_nCalls, 0);
}

TEST_F(FolderViewTest, ShowsTheSystemsFolderWhereNoneWasPut)
{
    m_pCtrl->Attach(&*m_pView);
    EXPECT_EQ(ShownFolder(), PathOfText(StartFolder()));
    EXPECT_EQ(Folder(), PathOfText(StartFolder()));
}

TEST_F(FolderViewTest, AFolderThatCantBeReadChangesNothing)
{
    Open();
    EXPECT_EQ(PutFile(m_top / "a.csv"), S_OK);
    EXPECT_TRUE(FAILED(PutFolder(m_top / "none")));
    EXPECT_EQ(PutFolder(m_top / "b.csv"), E_INVALIDARG);
    EXPECT_EQ(m_pCtrl->put_Folder(nullptr), S_OK);
    EXPECT_EQ(PutFolder(""), S_OK);
    m_pView->m_bRefuseFolders = true;
    EXPECT_EQ(PutFolder(m_top / "sub"), E_FAIL);
    EXPECT_EQ(Folder(), m_top);
    EXPECT_EQ(ShownFolder(), m_top);
    EXPECT_EQ(File(), m_top / "a.csv");
    EXPECT_EQ(Entries().size(), 3u);
}

TEST_F(FolderViewTest, AFileThatIsPutIsSelectedInItsFolder)
{
    Open();
    EXPECT_EQ(PutFile(m_top / "sub" / "c.csv"), S_OK);
    EXPECT_EQ(ShownFolder(), m_top / "sub");
    EXPECT_EQ(ShownSelection(), m_top / "sub" / "c.csv");
    EXPECT_EQ(File(), m_top / "sub" / "c.csv");
    EXPECT_EQ(m_pCounter->m_nCalls, 0); // the program's own doing
}

TEST_F(FolderViewTest, WhatIsNoFileIsRefused)
{
    Open();
    EXPECT_EQ(PutFile(m_top / "a.csv"), S_OK);
    EXPECT_EQ(PutFile(m_top / "sub"), E_INVALIDARG);
    EXPECT_EQ(PutFile(m_top / "none"), static_cast<HRESULT>(0x80070002));
    EXPECT_EQ(PutFile(""), E_INVALIDARG);
    EXPECT_EQ(m_pCtrl->put_FileName(nullptr), E_INVALIDARG);
    EXPECT_EQ(File(), m_top / "a.csv");
    EXPECT_EQ(ShownFolder(), m_top);
}

TEST_F(FolderViewTest, WhatWasPutBeforeTheViewCameIsShown)
{
    EXPECT_EQ(PutFile(m_top / "b.csv"), S_OK);
    EXPECT_EQ(m_pCtrl->put_disabled(1), S_OK);
    EXPECT_EQ(ShownFolder(), "");
    m_pCtrl->Attach(&*m_pView);
    EXPECT_EQ(ShownFolder(), m_top);
    EXPECT_EQ(ShownSelection(), m_top / "b.csv");
    EXPECT_TRUE(m_pView->m_bFrozen);
}

TEST_F(FolderViewTest, KeepsATitle)
{
    Bstr title;
    EXPECT_EQ(m_pCtrl->get_Title(title.put()), S_OK);
    EXPECT_EQ(title.view(), OLESTR(""));
    EXPECT_EQ(m_pCtrl->put_Title(Bstr(OLESTR("quotes")).get()), S_OK);
    EXPECT_EQ(m_pCtrl->get_Title(title.put()), S_OK);
    EXPECT_EQ(title.view(), OLESTR("quotes"));
    EXPECT_EQ(m_pCtrl->get_Title(nullptr), E_POINTER);
    EXPECT_EQ(m_pCtrl->get_FileName(nullptr), E_POINTER);
    EXPECT_EQ(m_pCtrl->get_Folder(nullptr), E_POINTER);
    EXPECT_EQ(m_pCtrl->get_disabled(nullptr), E_POINTER);
}

// ---- the user

TEST_F(FolderViewTest, ASelectionIsReported)
{
    Open();
    m_pView->Pick("b.csv");
    EXPECT_EQ(m_pCounter->m_nCalls, 1);
    EXPECT_EQ(m_pCounter->m_nId, DISPID_VALUE);
    EXPECT_EQ(m_pCounter->m_nFlags, DISPATCH_METHOD);
    EXPECT_EQ(m_pCounter->m_nLocale, LCID{LOCALE_USER_DEFAULT});
    EXPECT_EQ(m_pCounter->m_nArguments, 0u);
    EXPECT_EQ(File(), m_top / "b.csv");
    m_pView->Pick("sub");
    EXPECT_EQ(m_pCounter->m_nCalls, 2);
    EXPECT_EQ(File(), ""); // a folder is no file
    m_pCtrl->Events().OnSelection(OLESTR(""));
    EXPECT_EQ(m_pCounter->m_nCalls, 3);
    EXPECT_EQ(File(), "");
}

TEST_F(FolderViewTest, ASelectedFileThatHasGoneKeepsItsName)
{
    Open();
    m_pView->Pick("b.csv");
    fs::remove(m_top / "b.csv");
    EXPECT_EQ(File(), m_top / "b.csv");
}

TEST_F(FolderViewTest, EnterOpensAFolderWithNothingSelected)
{
    Open();
    m_pView->Pick("sub");
    Command(FolderOpenSelection);
    EXPECT_EQ(ShownFolder(), m_top / "sub");
    EXPECT_EQ(m_pView->m_sSelected, "");
    EXPECT_EQ(File(), "");
    EXPECT_EQ(m_pCounter->m_nCalls, 1); // of the selection alone
    m_pCtrl->OpenSelection();           // nothing is selected
    EXPECT_EQ(ShownFolder(), m_top / "sub");
}

TEST_F(FolderViewTest, EnterOnAFileOnlySelectsIt)
{
    Open();
    m_pView->Pick("a.csv");
    m_pCtrl->OpenSelection();
    EXPECT_EQ(ShownFolder(), m_top);
    EXPECT_EQ(File(), m_top / "a.csv");
    EXPECT_EQ(m_pCounter->m_nCalls, 1);
}

TEST_F(FolderViewTest, UpGoesToTheParentAsFarAsTheTop)
{
    Open();
    Command(FolderUp);
    EXPECT_EQ(ShownFolder(), m_top.parent_path());
    EXPECT_EQ(PutFolder(m_top.root_path()), S_OK);
    for (const string_view_t sAbove : FoldersAboveRoots() | std::views::reverse) {
        Command(FolderUp);
        EXPECT_EQ(Wide(m_pView->m_sFolder), sAbove);
    }
    const std::string sTop = m_pView->m_sFolder;
    Command(FolderUp);
    EXPECT_EQ(m_pView->m_sFolder, sTop);
    EXPECT_EQ(m_pCounter->m_nCalls, 0);
}

TEST_F(FolderViewTest, WithoutAFolderCommandsAreReported)
{
    ReportLog reports;
    Command(FolderUp);
    Command(FolderDetails);
    EXPECT_THAT(reports.Texts(), testing::ElementsAre("m_pShellFolder", "m_pShellFolder"));
}

TEST_F(FolderViewTest, TheLookInListIsTheWayFromTheRoot)
{
    Open();
    std::vector<std::string> names;
    for (fs::path folder = m_top; folder.has_relative_path(); folder = folder.parent_path())
        names.insert(names.begin(), Utf8(TextOfPath(folder.filename())));
    names.insert(names.begin(), Utf8(TextOfPath(m_top.root_path())));
    for (const string_view_t sAbove : FoldersAboveRoots() | std::views::reverse)
        names.insert(names.begin(), Utf8(NameAboveRoots(sAbove)));
    EXPECT_EQ(m_pView->Rows(FolderLookIn), names);
    EXPECT_EQ(m_pView->Selected(FolderLookIn), static_cast<LONG>(names.size()) - 1);
}

TEST_F(FolderViewTest, EnterInTheLookInListOpensTheRow)
{
    Open();
    const LONG nRow = m_pView->Selected(FolderLookIn) - 1;
    m_pView->Choose(FolderLookIn, nRow);
    EXPECT_EQ(ShownFolder(), m_top); // not before Enter
    m_pView->SetFocus(FolderLookIn);
    Command(FolderOpenSelection);
    EXPECT_EQ(ShownFolder(), m_top.parent_path());
    EXPECT_EQ(m_pView->Selected(FolderLookIn), nRow);
    m_pView->Choose(FolderLookIn, static_cast<LONG>(FoldersAboveRoots().size()));
    m_pView->Click(FolderLookIn); // with a mouse
    EXPECT_EQ(ShownFolder(), m_top.root_path());
    m_pView->Select(FolderLookIn, kNoRow);
    m_pView->Click(FolderLookIn);
    EXPECT_EQ(ShownFolder(), m_top.root_path());
}

TEST_F(FolderViewTest, ARowThatCantBeOpenedIsLeftForTheOneThatIsShown)
{
    Open();
    const LONG nRow = m_pView->Selected(FolderLookIn);
    m_pView->Choose(FolderLookIn, nRow - 1);
    m_pView->m_bRefuseFolders = true;
    m_pView->Click(FolderLookIn);
    EXPECT_EQ(ShownFolder(), m_top);
    EXPECT_EQ(m_pView->Selected(FolderLookIn), nRow);
}

// ---- modes

TEST_F(FolderViewTest, TheMenuOffersFourModes)
{
    struct Row
    {
        LONG nId;
        FolderMode mode;
    };
    static constexpr Row kModes[] = {
        {32774, ModeIcons}, {32775, ModeSmallIcons}, {32777, ModeDetails}, {32776, ModeNames}};
    Open();
    for (const Row& row : kModes) {
        m_pView->m_onMenu = [&](ViewMenu menu) {
            EXPECT_EQ(menu.size(), 4u);
            for (std::size_t n = 0; n < menu.size(); ++n) {
                EXPECT_EQ(menu[n].nId, 32774 + static_cast<LONG>(n));
                EXPECT_NE(string_view_t(menu[n].pszText), OLESTR(""));
                EXPECT_FALSE(menu[n].bChecked);
                EXPECT_TRUE(menu[n].items.empty());
            }
            return row.nId;
        };
        Command(FolderModes);
        EXPECT_EQ(m_pView->m_mode, row.mode);
    }
    m_pView->m_onMenu = [](ViewMenu) { return 0; };
    Command(FolderModes);
    EXPECT_EQ(m_pView->m_mode, ModeNames);
}

TEST_F(FolderViewTest, AnotherModeKeepsFolderAndSelection)
{
    Open();
    m_pView->Pick("b.csv");
    std::ofstream(m_top / "new.csv") << "x";
    Command(FolderDetails);
    EXPECT_EQ(m_pView->m_mode, ModeDetails);
    EXPECT_EQ(ShownFolder(), m_top);
    EXPECT_EQ(ShownSelection(), m_top / "b.csv");
    EXPECT_EQ(File(), m_top / "b.csv");
    EXPECT_THAT(Entries(), testing::ElementsAre("sub", "a.csv", "b.csv", "new.csv"));
    EXPECT_EQ(m_pCounter->m_nCalls, 1);
    m_pView->m_bRefuseFolders = true;
    Command(FolderIcons);
    m_pView->m_bRefuseFolders = false;
    EXPECT_EQ(PutFolder(m_top / "sub"), S_OK);
    EXPECT_EQ(m_pView->m_mode, ModeDetails); // the refused one wasn't kept
}

// ---- disabled

TEST_F(FolderViewTest, DisabledItShowsTheFileAndNoActionChangesIt)
{
    Open();
    EXPECT_EQ(PutFile(m_top / "a.csv"), S_OK);
    EXPECT_EQ(m_pCtrl->put_disabled(1), S_OK);
    BOOL bDisabled = 0;
    EXPECT_EQ(m_pCtrl->get_disabled(&bDisabled), S_OK);
    EXPECT_TRUE(bDisabled);
    EXPECT_TRUE(m_pView->m_bFrozen);

    m_pView->Pick("b.csv");
    m_pView->Pick("sub");
    m_pView->m_onMenu = [](ViewMenu) -> LONG {
        ADD_FAILURE() << "a menu";
        return FolderDetails;
    };
    for (LONG n = FolderUp; n <= FolderOpenSelection; ++n)
        Command(static_cast<FolderCommand>(n));
    m_pView->Choose(FolderLookIn, 0);
    m_pView->Click(FolderLookIn);
    m_pView->SetFocus(FolderLookIn);
    m_pCtrl->OpenSelection();
    EXPECT_EQ(PutFolder(m_top / "sub"), S_FALSE);
    EXPECT_EQ(PutFile(m_top / "b.csv"), S_FALSE);

    EXPECT_EQ(File(), m_top / "a.csv");
    EXPECT_EQ(Folder(), m_top);
    EXPECT_EQ(ShownFolder(), m_top);
    EXPECT_EQ(ShownSelection(), m_top / "a.csv");
    EXPECT_EQ(m_pView->m_mode, ModeNames);
    EXPECT_EQ(m_pCounter->m_nCalls, 0);

    EXPECT_EQ(m_pCtrl->put_disabled(0), S_OK);
    EXPECT_FALSE(m_pView->m_bFrozen);
    m_pView->Pick("b.csv");
    EXPECT_EQ(File(), m_top / "b.csv");
}

// ---- onchange

TEST_F(FolderViewTest, OnchangeTakesDispatchObjectsOnly)
{
    Open();
    com_ptr<ChangeCounter> pOther(new ChangeCounter);
    IDispatch* pDispatch = pOther.get();
    VARIANT value{};
    value.vt = VT_DISPATCH | VT_BYREF;
    value.byref = &pDispatch;
    EXPECT_EQ(m_pCtrl->put_onchange(value), S_OK);
    m_pView->Pick("a.csv");
    EXPECT_EQ(pOther->m_nCalls, 1);
    EXPECT_EQ(m_pCounter->m_nCalls, 0);

    for (const VARTYPE vt : {VT_I4, VT_BSTR, VT_UNKNOWN, VT_NULL}) {
        VARIANT refused{};
        refused.vt = vt;
        EXPECT_EQ(m_pCtrl->put_onchange(refused), DISP_E_TYPEMISMATCH) << vt;
    }
    m_pView->Pick("b.csv");
    EXPECT_EQ(pOther->m_nCalls, 2);

    EXPECT_EQ(m_pCtrl->put_onchange(VARIANT{}), S_OK);
    m_pView->Pick("a.csv");
    EXPECT_EQ(pOther->m_nCalls, 2);
}

TEST_F(FolderViewTest, OnchangeMayTakeItselfAway)
{
    Open();
    m_pCounter->m_onCall = [&] { m_pCtrl->put_onchange(VARIANT{}); };
    m_pView->Pick("a.csv");
    m_pView->Pick("b.csv");
    EXPECT_EQ(m_pCounter->m_nCalls, 1);
}

// ---- the view

TEST_F(FolderViewTest, AsksForTheFilterOfTheFolder)
{
    IFolderEvents& events = m_pCtrl->Events();
    EXPECT_FALSE(events.Shows(OLESTR("::{X}")));
    Open();
    EXPECT_TRUE(events.Shows(TextOfPath(m_top / "a.csv").c_str()));
    EXPECT_FALSE(events.Shows(OLESTR("C:\\RECYCLED")));
    EXPECT_FALSE(events.Shows(OLESTR("::{X}")));
    EXPECT_FALSE(events.Shows(nullptr));
}

TEST_F(FolderViewTest, EntriesThatArentThereAreEmpty)
{
    IFolderEvents& events = m_pCtrl->Events();
    EXPECT_EQ(events.EntryCount(), 0);
    EXPECT_EQ(string_view_t(events.Entry(0).pszPath), OLESTR(""));
    Open();
    for (const LONG n : {-1, 3})
        EXPECT_EQ(string_view_t(events.Entry(n).pszName), OLESTR(""));
}

TEST_F(FolderViewTest, GrowsWithItsPlace)
{
    Open();
    m_pView->Move(FolderLookIn, {0, 1, 190, 16});
    m_pView->Move(FolderToolbar, {194, 0, 237, 15});
    m_pView->Move(IQRL_TabulexConverter::FolderList, {0, 17, 237, 211});
    m_pCtrl->Move({10, 20, 310, 320});
    EXPECT_EQ(m_pView->Place(kWholeView), (ControlPlace{10, 20, 310, 320}));
    EXPECT_EQ(m_pView->Place(FolderLookIn), (ControlPlace{0, 1, 253, 16}));
    EXPECT_EQ(m_pView->Place(FolderToolbar), (ControlPlace{257, 0, 300, 15}));
    EXPECT_EQ(m_pView->Place(IQRL_TabulexConverter::FolderList), (ControlPlace{0, 17, 300, 300}));
    m_pCtrl->Move({10, 20, 247, 231});
    EXPECT_EQ(m_pView->Place(FolderLookIn), (ControlPlace{0, 1, 190, 16}));
    EXPECT_EQ(m_pView->Place(FolderToolbar), (ControlPlace{194, 0, 237, 15}));
    EXPECT_EQ(m_pView->Place(IQRL_TabulexConverter::FolderList), (ControlPlace{0, 17, 237, 211}));
}

TEST_F(FolderViewTest, WithoutItsViewItStillKeepsThings)
{
    Open();
    m_pCtrl->Events().OnClose();
    EXPECT_EQ(PutFile(m_top / "sub" / "c.csv"), S_OK);
    EXPECT_EQ(File(), m_top / "sub" / "c.csv");
    EXPECT_EQ(ShownFolder(), m_top);
    Command(FolderUp);
    EXPECT_EQ(Folder(), m_top);
    Command(FolderModes);
    m_pCtrl->Move({0, 0, 1, 1});
    m_pCtrl->put_disabled(1);
    EXPECT_FALSE(m_pView->m_bFrozen);
}

TEST_F(FolderViewTest, MayGoWhileItsMenuIsOpen)
{
    Open();
    com_ptr<CFolderViewCtrl> pOther;
    ASSERT_EQ(CreateObject(pOther), S_OK);
    IFolderEvents& events = pOther->Events();
    FakeFolderView view("other", nullptr, events);
    pOther->Attach(&view);
    view.m_onMenu = [&](ViewMenu) -> LONG {
        events.OnClose();
        pOther.reset();
        return FolderDetails;
    };
    events.OnCommand(FolderModes);
    EXPECT_EQ(view.m_mode, ModeNames);
}

} // namespace
