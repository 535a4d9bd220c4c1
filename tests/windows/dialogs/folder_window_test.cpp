// The folder view over the shell's.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Simples/interface/ResourceStrings.h"
#include "platform/Folders.h"
#include "tests/windows/dialogs/FolderHost.h"
#include "tests/windows/dialogs/Pictures.h"

using namespace folder_test;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

namespace {

constexpr wchar_t kComputer[] = L"::{20D04FE0-3AEA-1069-A2D8-08002B30309D}";
constexpr wchar_t kDesktop[] = L"::{00021400-0000-0000-C000-000000000046}";

// top/ with 行情.csv, b.csv and 子目录/, which has c.csv
class FolderWindowTest : public testing::Test
{
protected:
    FolderWindowTest() : m_top(fs::canonical(m_folder.Path()) / L"数据"), m_sub(m_top / L"子目录")
    {
        fs::create_directories(m_sub);
        for (const fs::path& file : {m_top / L"行情.csv", m_top / L"b.csv", m_sub / L"c.csv"})
            std::ofstream(file) << "x";
        m_pView = FolderWindow::Create(m_host.Window(), m_reports);
    }
    void SetUp() override { ASSERT_NE(m_pView, nullptr); }

    HWND Pane() const { return m_pView->Window(); }
    HWND List() const { return ListOf(Pane()); }
    HWND LookIn() const { return GetDlgItem(Pane(), FolderLookIn); }
    bool Show(const fs::path& folder, FolderMode mode = ModeNames)
    {
        return m_pView->ShowFolder(TextOfPath(folder).c_str(), mode);
    }
    std::vector<std::wstring> Items() const { return ItemTexts(List()); }
    void Pick(const std::wstring& sText)
    {
        EXPECT_TRUE(SelectItem(List(), sText));
        Pump();
    }
    // The key arrives as from a keyboard, by way of the dialog.
    void Press(HWND hWnd, UINT nKey)
    {
        PostKey(hWnd, nKey);
        MSG message{};
        while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE))
            if (!IsDialogMessageW(m_host.Window(), &message)) {
                TranslateMessage(&message);
                DispatchMessageW(&message);
            }
    }
    void FillLookIn()
    {
        m_pView->ClearRows(FolderLookIn);
        LONG nRow = 0;
        for (const wchar_t* pszName : {L"C:\\", L"目录", L"数据"})
            nRow = m_pView->AddRow(FolderLookIn, pszName, nRow);
        m_pView->Select(FolderLookIn, 2);
    }
    // What the system sends when a row of the open list is clicked.
    void ClickLookInRow(LONG nRow)
    {
        const auto notify = [&](WORD nNotice) {
            SendMessageW(Pane(), WM_COMMAND, MAKEWPARAM(FolderLookIn, nNotice),
                         reinterpret_cast<LPARAM>(LookIn()));
        };
        notify(CBN_DROPDOWN);
        SendMessageW(LookIn(), CB_SETCURSEL, static_cast<WPARAM>(nRow), 0);
        notify(CBN_SELENDOK);
        notify(CBN_CLOSEUP);
        notify(CBN_SELCHANGE);
        Pump();
    }

    const Ole m_ole;
    const TempFolder m_folder;
    const fs::path m_top;
    const fs::path m_sub;
    FolderReports m_reports;
    HostDialog m_host;
    FolderWindow* m_pView = nullptr;
};

// ---- what is shown

TEST_F(FolderWindowTest, ListsTheFolderInEachMode)
{
    for (const FolderMode mode : {ModeIcons, ModeSmallIcons, ModeNames, ModeDetails}) {
        SCOPED_TRACE(mode);
        ASSERT_TRUE(Show(m_top, mode));
        EXPECT_THAT(Items(), UnorderedElementsAre(L"子目录", L"行情.csv", L"b.csv"));
        const DWORD nStyle = static_cast<DWORD>(GetWindowLongW(List(), GWL_STYLE)) & LVS_TYPEMASK;
        const DWORD kStyles[] = {LVS_ICON, LVS_SMALLICON, LVS_LIST, LVS_REPORT};
        EXPECT_EQ(nStyle, kStyles[mode - ModeIcons]);
        EXPECT_TRUE(GetWindowLongW(List(), GWL_STYLE) & LVS_SINGLESEL);
        EXPECT_TRUE(GetWindowLongW(List(), GWL_STYLE) & LVS_SHOWSELALWAYS);
    }
    Pump();
    EXPECT_THAT(m_reports.m_selections, IsEmpty());
}

TEST_F(FolderWindowTest, ShowsOneViewAtATime)
{
    ASSERT_TRUE(Show(m_top));
    ASSERT_TRUE(Show(m_sub));
    EXPECT_THAT(Items(), ElementsAre(L"c.csv"));
    int nViews = 0;
    for (HWND h = nullptr;
         (h = FindWindowExW(GetDlgItem(Pane(), FolderList), h, nullptr, nullptr));)
        ++nViews;
    EXPECT_EQ(nViews, 1);
}

TEST_F(FolderWindowTest, AsksForEachThingByItsWholePath)
{
    ASSERT_TRUE(Show(m_top));
    EXPECT_THAT(m_reports.m_asked,
                testing::IsSupersetOf({(m_top / L"行情.csv").wstring(), m_sub.wstring()}));
}

TEST_F(FolderWindowTest, HidesTheOldRecycleBinOnly)
{
    const fs::path root = m_top.root_path();
    const fs::path bin = root / "RECYCLED";
    const bool bMade = fs::create_directory(bin);
    fs::create_directory(m_top / "Recycled");
    EXPECT_TRUE(Show(root));
    EXPECT_EQ(ItemOf(List(), L"RECYCLED"), -1);
    EXPECT_GE(ItemOf(List(), L"windows"), 0);
    EXPECT_TRUE(Show(m_top));
    EXPECT_GE(ItemOf(List(), L"Recycled"), 0);
    if (bMade)
        fs::remove(bin);
}

TEST_F(FolderWindowTest, AThingWithoutAPathShowsOnlyOnTheWayToTheFolder)
{
    ASSERT_TRUE(m_pView->ShowFolder(kDesktop, ModeNames));
    const std::vector<std::wstring> before = Items();
    const auto isNamedOnly = [](const std::wstring& s) { return s.starts_with(L"::"); };
    EXPECT_THAT(m_reports.m_asked, testing::Contains(testing::ResultOf(isNamedOnly, true)));

    // By way of the computer to a drive, and back up to the desktop.
    ASSERT_TRUE(m_pView->ShowFolder(kComputer, ModeNames));
    EXPECT_FALSE(Items().empty()); // drives
    ASSERT_TRUE(Show(m_top.root_path()));
    ASSERT_TRUE(m_pView->ShowFolder(kDesktop, ModeNames));
    EXPECT_EQ(Items().size(), before.size() + 1);
    ASSERT_TRUE(m_pView->ShowFolder(kDesktop, ModeDetails)); // stays
    EXPECT_EQ(Items().size(), before.size() + 1);

    ASSERT_TRUE(Show(fs::path(StartFolder()))); // elsewhere
    ASSERT_TRUE(m_pView->ShowFolder(kDesktop, ModeNames));
}

TEST_F(FolderWindowTest, WhatIsNoFolderIsRefusedAndTheOldOneStays)
{
    ASSERT_TRUE(Show(m_sub));
    Pick(L"c.csv");
    EXPECT_FALSE(Show(m_top / "none"));
    EXPECT_FALSE(Show(m_top / "b.csv"));
    EXPECT_FALSE(m_pView->ShowFolder(L"", ModeNames));
    EXPECT_THAT(Items(), ElementsAre(L"c.csv"));
    EXPECT_EQ(SelectedItems(List()), L"c.csv ");
}

TEST_F(FolderWindowTest, TakesRelativeNamesAndSlashes)
{
    EXPECT_TRUE(m_pView->ShowFolder(L"/", ModeNames));
    std::wstring sSlashes = m_top.generic_wstring();
    EXPECT_TRUE(m_pView->ShowFolder(sSlashes.c_str(), ModeNames));
    EXPECT_THAT(Items(), UnorderedElementsAre(L"子目录", L"行情.csv", L"b.csv"));
    EXPECT_TRUE(m_pView->ShowFolder((sSlashes + L"/子目录/..").c_str(), ModeNames));
    EXPECT_THAT(Items(), UnorderedElementsAre(L"子目录", L"行情.csv", L"b.csv"));
}

// ---- the selection

TEST_F(FolderWindowTest, ASelectionIsReportedOnceByItsWholePath)
{
    ASSERT_TRUE(Show(m_top));
    Pick(L"b.csv");
    EXPECT_THAT(m_reports.m_selections, ElementsAre((m_top / "b.csv").wstring()));
    Pick(L"行情.csv");
    Pick(L"行情.csv");
    EXPECT_THAT(m_reports.m_selections,
                ElementsAre((m_top / "b.csv").wstring(), (m_top / L"行情.csv").wstring()));
    LVITEMW none{};
    none.stateMask = LVIS_SELECTED;
    SendMessageW(List(), LVM_SETITEMSTATE, static_cast<WPARAM>(-1),
                 reinterpret_cast<LPARAM>(&none));
    Pump();
    ASSERT_EQ(m_reports.m_selections.size(), 3u);
    EXPECT_EQ(m_reports.m_selections.back(), L"");
}

TEST_F(FolderWindowTest, WhatTheProgramSelectsIsNoEvent)
{
    ASSERT_TRUE(Show(m_top));
    m_pView->SelectEntry((m_top / L"行情.csv").c_str());
    Pump();
    EXPECT_EQ(SelectedItems(List()), L"行情.csv ");
    EXPECT_THAT(m_reports.m_selections, IsEmpty());
    m_pView->SelectEntry((m_top / L"b.csv").c_str());
    Pick(L"b.csv"); // it is already
    EXPECT_EQ(SelectedItems(List()), L"b.csv ");
    EXPECT_THAT(m_reports.m_selections, IsEmpty());
    for (const fs::path& other : {m_sub / L"c.csv", m_top / L"none", fs::path()}) {
        m_pView->SelectEntry(other.c_str());
        Pump();
        EXPECT_EQ(SelectedItems(List()), L"");
    }
    EXPECT_THAT(m_reports.m_selections, IsEmpty());
}

// The shell reports long names, whatever it was given.
TEST_F(FolderWindowTest, AFileByItsShortNameIsTheSameFile)
{
    const fs::path folder = m_top / "a folder with a long name";
    const fs::path file = folder / "quotes of the whole day.csv";
    fs::create_directories(folder);
    std::ofstream(file) << "x";
    wchar_t szShort[MAX_PATH] = L"";
    ASSERT_TRUE(GetShortPathNameW(file.c_str(), szShort, MAX_PATH));
    ASSERT_NE(file.native(), szShort);
    ASSERT_TRUE(Show(fs::path(szShort).parent_path()));
    m_pView->SelectEntry(szShort);
    Pump();
    ASSERT_THAT(m_reports.m_selections, IsEmpty());
    m_pView->Freeze(true); // each report that differs would bring about the next one
    m_pView->SelectEntry(szShort);
    Pump();
    EXPECT_EQ(SelectedItems(List()), L"quotes of the whole day.csv ");
    EXPECT_THAT(m_reports.m_selections, IsEmpty());
}

TEST_F(FolderWindowTest, AnotherFolderHasNothingSelectedAndTellsNothing)
{
    ASSERT_TRUE(Show(m_top));
    Pick(L"b.csv");
    SelectItem(List(), L"行情.csv"); // and goes before it is reported
    ASSERT_TRUE(Show(m_sub));
    Pump();
    EXPECT_EQ(SelectedItems(List()), L"");
    EXPECT_EQ(m_reports.m_selections.size(), 1u);
}

// ---- keys

TEST_F(FolderWindowTest, EnterAndBackspaceInTheListAreCommands)
{
    for (const FolderMode mode : {ModeIcons, ModeSmallIcons, ModeNames, ModeDetails}) {
        SCOPED_TRACE(mode);
        ASSERT_TRUE(Show(m_top, mode));
        Pick(L"子目录");
        m_reports.m_commands.clear();
        Press(List(), VK_RETURN);
        Press(List(), VK_BACK);
        EXPECT_THAT(m_reports.m_commands, ElementsAre(FolderOpenSelection, FolderUp));
        SendMessageW(List(), WM_KEYDOWN, VK_RETURN, 0);
        SendMessageW(List(), WM_KEYDOWN, VK_BACK, 0);
        Pump();
        EXPECT_EQ(m_reports.m_commands.size(), 4u);
    }
    EXPECT_THAT(Items(), UnorderedElementsAre(L"子目录", L"行情.csv", L"b.csv"));
}

TEST_F(FolderWindowTest, OtherKeysStayTheListsOwn)
{
    ASSERT_TRUE(Show(m_top));
    m_pView->SetFocus(FolderList);
    Press(List(), VK_END);
    EXPECT_THAT(m_reports.m_commands, IsEmpty());
    EXPECT_EQ(m_reports.m_selections.size(), 1u);
    const LRESULT nCode = SendMessageW(List(), WM_GETDLGCODE, 0, 0);
    EXPECT_FALSE(nCode & (DLGC_WANTALLKEYS | DLGC_WANTTAB));
}

TEST_F(FolderWindowTest, AFolderMayBeOpenedByTheKeyThatTheListIsHandling)
{
    ASSERT_TRUE(Show(m_top));
    m_pView->SetFocus(FolderList);
    m_reports.m_onCommand = [&](LONG) { EXPECT_TRUE(Show(m_sub)); };
    Press(List(), VK_RETURN);
    EXPECT_THAT(Items(), ElementsAre(L"c.csv"));
    EXPECT_EQ(m_pView->Focus(), FolderList); // in the new view
    EXPECT_EQ(GetFocus(), List());
}

TEST_F(FolderWindowTest, ADoubleClickIsACommandAndStartsNoProgram)
{
    ASSERT_TRUE(Show(m_top));
    Pick(L"b.csv");
    // As the list reports it to the shell's view.
    NMITEMACTIVATE notice{};
    notice.hdr = {List(), static_cast<UINT_PTR>(GetDlgCtrlID(List())),
                  static_cast<UINT>(NM_DBLCLK)};
    SendMessageW(GetParent(List()), WM_NOTIFY, notice.hdr.idFrom,
                 reinterpret_cast<LPARAM>(&notice));
    notice.hdr.code = static_cast<UINT>(LVN_ITEMACTIVATE);
    SendMessageW(GetParent(List()), WM_NOTIFY, notice.hdr.idFrom,
                 reinterpret_cast<LPARAM>(&notice));
    Pump();
    EXPECT_THAT(m_reports.m_commands, testing::Contains(FolderOpenSelection));
    EXPECT_THAT(m_reports.m_commands, testing::Each(FolderOpenSelection));
}

TEST_F(FolderWindowTest, TabGoesThroughTheListAndOut)
{
    const HWND hAfter = CreateWindowExW(0, L"BUTTON", L"after", WS_CHILD | WS_VISIBLE | WS_TABSTOP,
                                        0, 0, 10, 10, m_host.Window(), nullptr, nullptr, nullptr);
    SetWindowPos(hAfter, HWND_BOTTOM, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE);
    ASSERT_TRUE(Show(m_top));
    m_pView->SetFocus(FolderLookIn);
    EXPECT_EQ(GetFocus(), LookIn());
    Press(LookIn(), VK_TAB);
    EXPECT_EQ(GetFocus(), List());
    EXPECT_EQ(m_pView->Focus(), FolderList);
    Press(List(), VK_TAB);
    EXPECT_EQ(GetFocus(), hAfter);
    EXPECT_EQ(m_pView->Focus(), kWholeView);
}

// ---- the look-in list

TEST_F(FolderWindowTest, EnterInTheLookInListOpensTheSelection)
{
    ASSERT_TRUE(Show(m_top));
    FillLookIn();
    m_pView->SetFocus(FolderLookIn);
    Press(LookIn(), VK_UP);
    EXPECT_EQ(m_pView->Selected(FolderLookIn), 1);
    EXPECT_THAT(m_reports.m_commands, IsEmpty());
    EXPECT_THAT(m_reports.m_clicks, IsEmpty());
    Press(LookIn(), VK_RETURN);
    EXPECT_THAT(m_reports.m_commands, ElementsAre(FolderOpenSelection));
    EXPECT_EQ(m_pView->Focus(), FolderLookIn);
}

TEST_F(FolderWindowTest, ARowThatIsClickedIsChosenAndTheOneThatIsShownIsNot)
{
    FillLookIn();
    ClickLookInRow(2);
    EXPECT_THAT(m_reports.m_clicks, IsEmpty());
    ClickLookInRow(0);
    EXPECT_THAT(m_reports.m_clicks, ElementsAre(FolderLookIn));
}

TEST_F(FolderWindowTest, AListThatIsLeftOrWalkedThroughChoosesNothing)
{
    FillLookIn();
    const auto notify = [&](WORD nNotice) {
        SendMessageW(Pane(), WM_COMMAND, MAKEWPARAM(FolderLookIn, nNotice),
                     reinterpret_cast<LPARAM>(LookIn()));
    };
    m_pView->SetFocus(FolderLookIn);
    SendMessageW(LookIn(), CB_SHOWDROPDOWN, TRUE, 0);
    Press(LookIn(), VK_UP);
    EXPECT_TRUE(SendMessageW(LookIn(), CB_GETDROPPEDSTATE, 0, 0));
    EXPECT_THAT(m_reports.m_clicks, IsEmpty());
    Press(LookIn(), VK_ESCAPE);
    EXPECT_FALSE(SendMessageW(LookIn(), CB_GETDROPPEDSTATE, 0, 0));
    EXPECT_THAT(m_reports.m_clicks, IsEmpty());

    notify(CBN_DROPDOWN); // a version that reports each step as a choice
    notify(CBN_SELENDOK);
    notify(CBN_SELENDCANCEL);
    notify(CBN_CLOSEUP);
    Pump();
    EXPECT_THAT(m_reports.m_clicks, IsEmpty());
}

TEST_F(FolderWindowTest, EnterInTheOpenLookInListClosesItOnTheRow)
{
    FillLookIn();
    m_pView->SetFocus(FolderLookIn);
    SendMessageW(LookIn(), CB_SHOWDROPDOWN, TRUE, 0);
    Press(LookIn(), VK_UP);
    Press(LookIn(), VK_RETURN);
    EXPECT_FALSE(SendMessageW(LookIn(), CB_GETDROPPEDSTATE, 0, 0));
    EXPECT_THAT(m_reports.m_clicks, ElementsAre(FolderLookIn));
    EXPECT_THAT(m_reports.m_commands, IsEmpty());
}

// ---- frozen

TEST_F(FolderWindowTest, FrozenItShowsTheFileAndNothingChangesIt)
{
    ASSERT_TRUE(Show(m_top));
    FillLookIn();
    m_pView->SelectEntry((m_top / L"b.csv").c_str());
    m_pView->SetFocus(FolderList);
    m_pView->Freeze(true);
    for (const LONG nControl : {LONG{FolderLookIn}, LONG{FolderToolbar}, LONG{FolderList}})
        EXPECT_FALSE(m_pView->IsEnabled(nControl));
    EXPECT_FALSE(IsChild(Pane(), GetFocus()));
    EXPECT_EQ(SelectedItems(List()), L"b.csv ");
    Pick(L"行情.csv");
    EXPECT_EQ(SelectedItems(List()), L"b.csv ");
    EXPECT_THAT(m_reports.m_selections, IsEmpty());
    m_pView->Freeze(false);
    for (const LONG nControl : {LONG{FolderLookIn}, LONG{FolderToolbar}, LONG{FolderList}})
        EXPECT_TRUE(m_pView->IsEnabled(nControl));
    Pick(L"行情.csv");
    EXPECT_EQ(m_reports.m_selections.size(), 1u);
}

// ---- the toolbar

class FolderToolbarTest : public FolderWindowTest
{
protected:
    HWND Toolbar() const { return GetDlgItem(Pane(), FolderToolbar); }
    RECT Button(LONG nCommand) const
    {
        RECT rect{};
        EXPECT_TRUE(SendMessageW(Toolbar(), TB_GETRECT, static_cast<WPARAM>(nCommand),
                                 reinterpret_cast<LPARAM>(&rect)));
        return rect;
    }
    void Click(LONG nCommand)
    {
        const RECT rect = Button(nCommand);
        const LPARAM place = MAKELPARAM((rect.left + rect.right) / 2, (rect.top + rect.bottom) / 2);
        SendMessageW(Toolbar(), WM_LBUTTONDOWN, MK_LBUTTON, place);
        SendMessageW(Toolbar(), WM_LBUTTONUP, 0, place);
        Pump();
    }
    std::wstring Tip(LONG nCommand) const
    {
        wchar_t text[80] = L"";
        TTTOOLINFOW info{};
        info.cbSize = sizeof(info);
        info.hwnd = Toolbar();
        info.uId = static_cast<UINT_PTR>(nCommand);
        info.lpszText = text;
        SendMessageW(reinterpret_cast<HWND>(SendMessageW(Toolbar(), TB_GETTOOLTIPS, 0, 0)),
                     TTM_GETTEXTW, std::size(text), reinterpret_cast<LPARAM>(&info));
        return text;
    }
};

TEST_F(FolderToolbarTest, HasTwoButtonsWithPicturesInItsPlace)
{
    EXPECT_EQ(SendMessageW(Toolbar(), TB_BUTTONCOUNT, 0, 0), 2);
    const auto hImages =
        reinterpret_cast<HIMAGELIST>(SendMessageW(Toolbar(), TB_GETIMAGELIST, 0, 0));
    EXPECT_EQ(ImageList_GetImageCount(hImages), 2);
    RECT area{};
    GetClientRect(Toolbar(), &area);
    for (const LONG nCommand : {FolderUp, FolderModes}) {
        const RECT button = Button(nCommand);
        EXPECT_GT(button.right, button.left);
        EXPECT_LE(button.right, area.right);
        EXPECT_LE(button.bottom, area.bottom);
    }
    EXPECT_LE(Button(FolderUp).right, Button(FolderModes).left);
}

TEST_F(FolderToolbarTest, AButtonIsACommand)
{
    Click(FolderUp);
    Click(FolderModes);
    EXPECT_THAT(m_reports.m_commands, ElementsAre(FolderUp, FolderModes));
    m_reports.m_commands.clear();
    m_pView->Freeze(true);
    EXPECT_FALSE(SendMessageW(Toolbar(), TB_ISBUTTONENABLED, FolderUp, 0));
    Click(FolderUp);
    EXPECT_THAT(m_reports.m_commands, IsEmpty());
}

TEST_F(FolderToolbarTest, TipsAreInTheLanguageOfTheTexts)
{
    EXPECT_EQ(Tip(FolderUp), L"向上");
    EXPECT_EQ(Tip(FolderModes), L"视图");
    SetResourceLanguage(Language::English);
    EXPECT_EQ(Tip(FolderUp), L"Up");
    EXPECT_EQ(Tip(FolderModes), L"View");
    SetResourceLanguage(Language::Chinese);
}

// Presses keys in the menu that opens, and notes where and what it is.
struct MenuReader
{
    static inline std::vector<std::wstring> s_texts;
    static inline RECT s_first{};
    static inline int s_nDown = 0;

    static void CALLBACK OnTimer(HWND hWnd, UINT, UINT_PTR nTimer, DWORD)
    {
        const HMENU hMenu = OpenMenu();
        if (!hMenu)
            return;
        KillTimer(hWnd, nTimer);
        GetMenuItemRect(nullptr, hMenu, 0, &s_first);
        s_texts.clear();
        for (int n = 0; n < GetMenuItemCount(hMenu); ++n) {
            wchar_t text[80] = L"";
            GetMenuStringW(hMenu, static_cast<UINT>(n), text, std::size(text), MF_BYPOSITION);
            s_texts.emplace_back(text);
        }
        for (int n = 0; n < s_nDown; ++n)
            PostKey(hWnd, VK_DOWN);
        PostKey(hWnd, s_nDown ? VK_RETURN : VK_ESCAPE);
    }
};

TEST_F(FolderToolbarTest, TheMenuOpensBelowItsButton)
{
    const ModalDriver limit;
    const ViewMenuItem items[] = {{.pszText = L"图标", .nId = FolderIcons},
                                  {.pszText = L"R&D", .nId = FolderDetails}};
    RECT button = Button(FolderModes);
    MapWindowPoints(Toolbar(), nullptr, reinterpret_cast<POINT*>(&button), 2);
    constexpr UINT_PTR kTimer = 99;
    MenuReader::s_nDown = 2;
    SetTimer(Pane(), kTimer, 10, &MenuReader::OnTimer);
    EXPECT_EQ(m_pView->TrackMenu(items), FolderDetails);
    EXPECT_EQ(MenuReader::s_texts.size(), 2u);
    EXPECT_EQ(MenuReader::s_texts.front(), L"图标");
    EXPECT_GE(MenuReader::s_first.top, button.bottom);
    EXPECT_NEAR(MenuReader::s_first.left, button.left, 8);
    MenuReader::s_nDown = 0;
    SetTimer(Pane(), kTimer, 10, &MenuReader::OnTimer);
    EXPECT_EQ(m_pView->TrackMenu(items), 0);
}

// ---- the window

TEST_F(FolderWindowTest, TheListMovesWithItsPlace)
{
    ASSERT_TRUE(Show(m_top));
    const ControlPlace place{10, 60, 310, 260};
    m_pView->Move(IQRL_TabulexConverter::FolderList, place);
    EXPECT_EQ(m_pView->Place(IQRL_TabulexConverter::FolderList), place);
    RECT rect{};
    GetClientRect(GetDlgItem(Pane(), FolderList), &rect);
    RECT view{};
    GetWindowRect(GetParent(List()), &view);
    EXPECT_EQ(view.right - view.left, rect.right);
    EXPECT_EQ(view.bottom - view.top, rect.bottom);
    EXPECT_GT(rect.right, 290);
}

TEST_F(FolderWindowTest, ANewPlaceOfTheWholeIsReported)
{
    EXPECT_EQ(m_reports.m_nResizes, 0);
    m_pView->Move(kWholeView, {5, 6, 505, 406});
    EXPECT_EQ(m_reports.m_nResizes, 1);
    EXPECT_EQ(m_pView->ClientArea(), (ControlPlace{0, 0, 500, 400}));
}

TEST_F(FolderWindowTest, GoesWithItsDialogAndSaysSoOnce)
{
    ASSERT_TRUE(Show(m_top));
    SelectItem(List(), L"b.csv");
    const HWND hPane = Pane();
    m_host.Close();
    EXPECT_FALSE(IsWindow(hPane));
    EXPECT_EQ(m_reports.m_nCloses, 1);
    Pump();
    EXPECT_THAT(m_reports.m_selections, IsEmpty());
}

TEST_F(FolderWindowTest, MayGoWhileItReportsACommand)
{
    ASSERT_TRUE(Show(m_top));
    m_reports.m_onCommand = [&](LONG) { m_host.Close(); };
    PostKey(List(), VK_RETURN);
    Pump();
    EXPECT_EQ(m_reports.m_nCloses, 1);
}

TEST_F(FolderWindowTest, DrawsPicturesAndDepths)
{
    if (!HasScreen())
        GTEST_SKIP() << "no screen";
    m_pView->Move(kWholeView, {10, 10, 500, 400});
    m_pView->Move(IQRL_TabulexConverter::FolderList, {0, 32, 490, 390});
    ASSERT_TRUE(Show(m_top, ModeDetails));
    FillLookIn();
    m_pView->SelectEntry((m_top / L"b.csv").c_str());
    Pump();
    EXPECT_TRUE(TakePicture(m_host.Window(), L"folder-details"));
    SendMessageW(LookIn(), CB_SHOWDROPDOWN, TRUE, 0);
    Pump();
    EXPECT_TRUE(TakePicture(m_host.Window(), L"folder-look-in"));
    m_pView->SetFocus(IQRL_TabulexConverter::FolderList);
    m_pView->Freeze(true);
    EXPECT_FALSE(SendMessageW(LookIn(), CB_GETDROPPEDSTATE, 0, 0));
    Pump();
    EXPECT_TRUE(TakePicture(m_host.Window(), L"folder-frozen"));
}

TEST(FolderWindow, WithoutTheDialogsResourceIsntMade)
{
    const Ole ole;
    const HostDialog host;
    FolderReports reports;
    SetResourceHandle(reinterpret_cast<LONG_PTR>(GetModuleHandleW(L"kernel32.dll")));
    EXPECT_EQ(FolderWindow::Create(host.Window(), reports), nullptr);
    SetResourceHandle(0);
    EXPECT_EQ(GetWindow(host.Window(), GW_CHILD), nullptr);
    EXPECT_EQ(reports.m_nCloses, 0);
}

TEST(FolderWindow, WithoutAParentIsntMade)
{
    const Ole ole;
    FolderReports reports;
    EXPECT_EQ(FolderWindow::Create(reinterpret_cast<HWND>(1), reports), nullptr);
    EXPECT_EQ(reports.m_nCloses, 0);
}

} // namespace
