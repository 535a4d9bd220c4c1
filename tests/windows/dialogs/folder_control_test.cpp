// The folder view's control, and the file picker of the import dialog, over the shell's view.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "interfaces/ControlTable.h"
#include "module/Module.h"
#include "platform/Folders.h"
#include "platform/Shell.h"
#include "src/UIComponents/ConvertDialog/FileContentAdapter.h"
#include "tests/dialog/ChangeCounter.h"
#include "tests/support/UnusedDataParser.h"
#include "tests/support/WriteLink.h"
#include "tests/windows/SystemObjects.h"
#include "tests/windows/dialogs/FolderHost.h"

using namespace folder_test;
using Hesperon::specifics::CFolderViewCtrl;
using Hesperon::specifics::UILayer::CFilePickerAdapter;
using testing::ElementsAre;
using testing::UnorderedElementsAre;

namespace {

// Makes the folder view, and nothing else.
class FolderDialog final : public ControlTable<IDialogView>
{
public:
    explicit FolderDialog(HWND hWnd) : m_hWnd(hWnd) {}

    FolderWindow* m_pFolder = nullptr;

    IPaneView* MakePane(DialogId, IControlEvents&) override { return nullptr; }
    IQRL_TabulexConverter::IFolderView* MakeFolderView(IFolderEvents& events) override
    {
        m_pFolder = FolderWindow::Create(m_hWnd, events);
        return m_pFolder;
    }
    void Centre() override {}
    LONG_PTR Window() override { return reinterpret_cast<LONG_PTR>(m_hWnd); }
    void End(LONG) override {}

private:
    const HWND m_hWnd;
};

class ShownFileParser final : public UnusedDataParser<ShownFileParser>
{
public:
    fs::path m_file;

    HRESULT STDMETHODCALLTYPE get_FileName(BSTR* pVal) override
    {
        *pVal = NewBstr(TextOfPath(m_file));
        return S_OK;
    }
};

class PickedInWindow final : public Hesperon::specifics::notify::IFileEventSink
{
public:
    std::vector<std::wstring> m_files;

    void OnFileSelected(const OLECHAR* pszPath) override { m_files.emplace_back(pszPath); }
    void OnRecordCountChanged() override { ADD_FAILURE(); }
};

// quotes/ with 行情.csv, b.csv, 链接.lnk to sub/c.csv, and sub/
class FolderControl : public testing::Test
{
protected:
    FolderControl() : m_quotes(fs::canonical(m_folder.Path()) / L"报价")
    {
        fs::create_directories(m_quotes / "sub");
        for (const fs::path& file :
             {m_quotes / L"行情.csv", m_quotes / "b.csv", m_quotes / "sub" / "c.csv"})
            std::ofstream(file) << "x";
        EXPECT_TRUE(WriteLink(m_quotes / L"链接.lnk", m_quotes / "sub" / "c.csv"));
    }

    // ---- the window of the test's view, whichever test made it

    HWND Pane() const { return GetWindow(m_host.Window(), GW_CHILD); }
    HWND List() const { return ListOf(Pane()); }
    // In a list that has the keyboard.
    void Press(UINT nKey)
    {
        PostMessageW(List(), WM_KEYDOWN, nKey, 0);
        Pump();
    }
    void Pick(const std::wstring& sItem)
    {
        EXPECT_TRUE(SelectItem(List(), sItem));
        Pump();
    }
    std::vector<std::wstring> LookInRows() const
    {
        std::vector<std::wstring> rows;
        const HWND hCombo = GetDlgItem(Pane(), FolderLookIn);
        for (LRESULT n = 0; n < SendMessageW(hCombo, CB_GETCOUNT, 0, 0); ++n) {
            std::wstring sRow(MAX_PATH, L'\0');
            sRow.resize(
                static_cast<std::size_t>(SendMessageW(hCombo, CB_GETLBTEXT, static_cast<WPARAM>(n),
                                                      reinterpret_cast<LPARAM>(sRow.data()))));
            rows.push_back(sRow);
        }
        return rows;
    }

    const Ole m_ole;
    const TempFolder m_folder;
    const fs::path m_quotes;
    HostDialog m_host;
};

class FolderControlView : public FolderControl
{
protected:
    FolderControlView() : m_pCounter(new dialog_test::ChangeCounter)
    {
        EXPECT_EQ(CreateObject(m_pCtrl), S_OK);
        EXPECT_EQ(m_pCtrl->put_onchange(m_pCounter->AsVariant()), S_OK);
        EXPECT_EQ(m_pCtrl->put_Folder(Bstr(TextOfPath(m_quotes)).get()), S_OK);
        m_pView = FolderWindow::Create(m_host.Window(), m_pCtrl->Events());
        m_pCtrl->Attach(m_pView);
        Pump();
    }
    ~FolderControlView() { m_host.Close(); }

    std::wstring File()
    {
        Bstr file;
        EXPECT_EQ(m_pCtrl->get_FileName(file.put()), S_OK);
        return file.str();
    }
    fs::path Folder()
    {
        Bstr folder;
        EXPECT_EQ(m_pCtrl->get_Folder(folder.put()), S_OK);
        return PathOfText(folder.view());
    }

    com_ptr<CFolderViewCtrl> m_pCtrl;
    com_ptr<dialog_test::ChangeCounter> m_pCounter;
    FolderWindow* m_pView = nullptr;
};

TEST_F(FolderControlView, OneChoiceIsOneChange)
{
    Pick(L"b.csv");
    EXPECT_EQ(m_pCounter->m_nCalls, 1);
    EXPECT_EQ(File(), (m_quotes / "b.csv").wstring());
    Pick(L"行情.csv");
    EXPECT_EQ(m_pCounter->m_nCalls, 2);
    EXPECT_EQ(File(), (m_quotes / L"行情.csv").wstring());
    Pick(L"sub");
    EXPECT_EQ(m_pCounter->m_nCalls, 3);
    EXPECT_EQ(File(), L"");
}

// The shell lists it without its extension.
TEST_F(FolderControlView, ALinkStandsForItsTarget)
{
    Pick(L"链接");
    EXPECT_EQ(File(), (m_quotes / "sub" / "c.csv").wstring());
    EXPECT_EQ(m_pCounter->m_nCalls, 1);
}

TEST_F(FolderControlView, KeysWalkThroughTheFolders)
{
    Pick(L"sub");
    Press(VK_RETURN);
    EXPECT_EQ(Folder(), m_quotes / "sub");
    EXPECT_THAT(ItemTexts(List()), ElementsAre(L"c.csv"));
    Press(VK_BACK);
    EXPECT_EQ(Folder(), m_quotes);
    Pick(L"b.csv");
    Press(VK_RETURN);
    EXPECT_EQ(Folder(), m_quotes);
    EXPECT_EQ(File(), (m_quotes / "b.csv").wstring());
    EXPECT_EQ(SelectedItems(List()), L"b.csv ");
    EXPECT_EQ(m_pCounter->m_nCalls, 2);
}

TEST_F(FolderControlView, TheWayUpEndsAtTheDesktopAndLeadsDownAgain)
{
    const std::vector<std::wstring> rows = LookInRows();
    std::vector<std::wstring> names;
    for (const string_view_t sAbove : FoldersAboveRoots())
        names.push_back(NameAboveRoots(sAbove));
    names.push_back(m_quotes.root_path().wstring());
    for (const fs::path& part : m_quotes.relative_path())
        names.push_back(part.wstring());
    EXPECT_EQ(rows, names);
    for (std::size_t n = 0; n < rows.size() + 1; ++n)
        Press(VK_BACK);
    EXPECT_EQ(LookInRows().size(), 1u);
    EXPECT_TRUE(SelectItem(List(), names[1])) << "the computer isn't on the desktop";
    Pump();
    EXPECT_EQ(File(), L"");
    Press(VK_RETURN);
    EXPECT_EQ(Folder(), fs::path(FoldersAboveRoots()[1]));
    EXPECT_FALSE(ItemTexts(List()).empty());
}

TEST_F(FolderControlView, ARowOfTheLookInListOpensItsFolder)
{
    const HWND hCombo = GetDlgItem(Pane(), FolderLookIn);
    SetFocus(hCombo);
    PostMessageW(hCombo, WM_KEYDOWN, VK_UP, 0);
    Pump();
    EXPECT_EQ(Folder(), m_quotes);
    PostMessageW(hCombo, WM_KEYDOWN, VK_RETURN, 0);
    Pump();
    EXPECT_EQ(Folder(), m_quotes.parent_path());
    EXPECT_GE(ItemOf(List(), m_quotes.filename().wstring()), 0);
    // Then with the mouse.
    SendMessageW(hCombo, CB_SHOWDROPDOWN, TRUE, 0);
    COMBOBOXINFO info{};
    info.cbSize = sizeof(info);
    ASSERT_TRUE(GetComboBoxInfo(hCombo, &info));
    RECT row{};
    SendMessageW(info.hwndList, LB_GETITEMRECT, 2, reinterpret_cast<LPARAM>(&row));
    const LPARAM place = MAKELPARAM(row.left + 4, (row.top + row.bottom) / 2);
    for (const UINT nMessage : {WM_MOUSEMOVE, WM_LBUTTONDOWN, WM_LBUTTONUP})
        SendMessageW(info.hwndList, nMessage, nMessage == WM_LBUTTONUP ? 0 : MK_LBUTTON, place);
    Pump();
    EXPECT_EQ(Folder(), m_quotes.root_path());
}

TEST_F(FolderControlView, AFilePutIsShownAndAnotherModeKeepsIt)
{
    EXPECT_EQ(m_pCtrl->put_FileName(Bstr(TextOfPath(m_quotes / L"行情.csv")).get()), S_OK);
    Pump();
    EXPECT_EQ(SelectedItems(List()), L"行情.csv ");
    SendMessageW(Pane(), WM_COMMAND, FolderDetails, 0);
    Pump();
    EXPECT_EQ(SelectedItems(List()), L"行情.csv ");
    EXPECT_EQ(static_cast<DWORD>(GetWindowLongW(List(), GWL_STYLE)) & LVS_TYPEMASK,
              DWORD{LVS_REPORT});
    EXPECT_EQ(m_pCounter->m_nCalls, 0);
}

TEST_F(FolderControlView, GrowsWithItsPlace)
{
    m_pView->Move(kWholeView, {0, 0, 500, 400});
    const ControlPlace area = m_pView->ClientArea();
    EXPECT_EQ(m_pView->Place(FolderToolbar).nRight, area.nRight);
    const ControlPlace list = m_pView->Place(IQRL_TabulexConverter::FolderList);
    EXPECT_EQ(list.nRight, area.nRight);
    EXPECT_EQ(list.nBottom, area.nBottom);
    EXPECT_LT(m_pView->Place(FolderLookIn).nRight, m_pView->Place(FolderToolbar).nLeft);
}

TEST_F(FolderControlView, AFolderThatHasGoneLeavesTheOldOne)
{
    Pick(L"sub");
    fs::remove_all(m_quotes / "sub");
    Press(VK_RETURN);
    EXPECT_EQ(Folder(), m_quotes);
    EXPECT_THAT(ItemTexts(List()), testing::Contains(L"b.csv"));
}

// ---- the file picker

class FilePickerWindow : public FolderControl
{
protected:
    FilePickerWindow() : m_pParser(new ShownFileParser), m_dialog(m_host.Window())
    {
        m_params.pDataParser = com_ptr<IDataParser>(m_pParser.get());
        m_params.sFolder = TextOfPath(m_quotes);
    }
    ~FilePickerWindow()
    {
        if (m_pPicker)
            m_pPicker->Close();
        m_host.Close();
    }
    HRESULT Create()
    {
        m_pPicker.emplace(m_params, &m_sink);
        const HRESULT hr = m_pPicker->Create(m_dialog);
        Pump();
        return hr;
    }

    com_ptr<ShownFileParser> m_pParser;
    Hesperon::specifics::SConvertDialogParams m_params;
    PickedInWindow m_sink;
    FolderDialog m_dialog;
    std::optional<CFilePickerAdapter> m_pPicker;
};

TEST_F(FilePickerWindow, TellsEachFileThatIsPicked)
{
    ASSERT_EQ(Create(), S_OK);
    EXPECT_TRUE(m_sink.m_files.empty());
    Pick(L"b.csv");
    Pick(L"行情.csv");
    EXPECT_THAT(m_sink.m_files,
                ElementsAre((m_quotes / "b.csv").wstring(), (m_quotes / L"行情.csv").wstring()));
}

TEST_F(FilePickerWindow, AFileThatIsSetAtOpeningIsShownAndStays)
{
    m_pParser->m_file = m_quotes / L"行情.csv";
    ASSERT_EQ(Create(), S_OK);
    EXPECT_THAT(ItemTexts(List()), UnorderedElementsAre(L"sub", L"行情.csv", L"b.csv", L"链接"));
    EXPECT_EQ(SelectedItems(List()), L"行情.csv ");
    for (const LONG nControl : {LONG{FolderLookIn}, LONG{FolderToolbar}, LONG{FolderList}})
        EXPECT_FALSE(m_dialog.m_pFolder->IsEnabled(nControl));
    Pick(L"b.csv");
    Press(VK_BACK);
    Press(VK_RETURN);
    for (WORD n = FolderUp; n <= FolderOpenSelection; ++n)
        SendMessageW(Pane(), WM_COMMAND, n, 0);
    Pump();
    EXPECT_EQ(SelectedItems(List()), L"行情.csv ");
    EXPECT_TRUE(m_sink.m_files.empty());
}

// Lists of combo boxes and tips are among them.
int TopWindows()
{
    int nWindows = 0;
    EnumThreadWindows(
        GetCurrentThreadId(),
        [](HWND, LPARAM lParam) -> BOOL { return ++*reinterpret_cast<int*>(lParam); },
        reinterpret_cast<LPARAM>(&nWindows));
    return nWindows;
}

TEST_F(FilePickerWindow, AHundredLeaveNothing)
{
    const auto openAndClose = [&] {
        HostDialog host;
        FolderDialog dialog(host.Window());
        CFilePickerAdapter picker(m_params, &m_sink);
        EXPECT_EQ(picker.Create(dialog), S_OK);
        EXPECT_TRUE(SelectItem(ListOf(dialog.m_pFolder->Window()), L"b.csv"));
        picker.Close();
        host.Close();
        Pump();
    };
    for (int n = 0; n < 5; ++n) // the shell keeps things of its own
        openAndClose();
    const LONG nLocks = ModuleLockCount();
    const DWORD nObjects = CountGdiObjects();
    const int nWindows = TopWindows();
    EXPECT_GT(nObjects, 0u);
    for (int n = 0; n < 100; ++n)
        openAndClose();
    EXPECT_EQ(ModuleLockCount(), nLocks);
    EXPECT_LE(CountGdiObjects(), nObjects);
    EXPECT_EQ(TopWindows(), nWindows);
}

} // namespace
