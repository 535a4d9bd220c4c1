// Pictures of every window for the documents, in both languages.

#include <filesystem>

#include "Simples/interface/ResourceStrings.h"
#include "interfaces/IDataParser.h"
#include "interfaces/IProgressView.h"
#include "interfaces/IRecordParser.h"
#include "src/UIComponents/DelDialog.h"
#include "src/UIComponents/TemplateEditDlgNoHTML.h"
#include "src/UIComponents/windows/ProgressBoxWindow.h"
#include "src/parsing/EnvironmentDocument.h"
#include "tests/windows/dialogs/WindowSession.h"

using namespace IQRL_TabulexConverter;
using namespace Hesperon::specifics::UILayer;

namespace {

constexpr std::chrono::milliseconds kFadedIn(400);
constexpr wchar_t kFolder[] = L"C:\\quotes";

class Pictures : public WindowSession, public testing::WithParamInterface<Language>
{
protected:
    void SetUp() override
    {
        if (!HasScreen())
            GTEST_SKIP() << "no screen to take pictures of";
        SetResourceLanguage(GetParam());
        WindowSession::SetUp();
        CopySamples();
        m_hBehind = CreateWindowExW(0, L"STATIC", L"", WS_POPUP | WS_VISIBLE | SS_WHITERECT, 0, 0,
                                    GetSystemMetrics(SM_CXSCREEN), GetSystemMetrics(SM_CYSCREEN),
                                    nullptr, nullptr, nullptr, nullptr);
        SetForegroundWindow(m_hBehind);
        PumpFor(kFadedIn);
    }
    void TearDown() override
    {
        DestroyWindow(m_hBehind);
        if (front)
            WindowSession::TearDown();
        SetResourceLanguage(Language::Chinese);
    }
    static std::wstring Named(const wchar_t* pszName)
    {
        return std::wstring(pszName) +
               (GetParam() == Language::Chinese ? L"-chinese" : L"-english");
    }
    static void Take(HWND hDlg, const wchar_t* pszName)
    {
        SetForegroundWindow(hDlg);
        PumpFor(kFadedIn);
        EXPECT_TRUE(TakePicture(hDlg, Named(pszName)));
    }
    static ModalDriver::Step TakeAndCancel(const wchar_t* pszName)
    {
        return [pszName](HWND hDlg) {
            Take(hDlg, pszName);
            Press(hDlg, ImportCancel);
            return true;
        };
    }
    // Where the samples lie in the pictures: the same folder and times on every machine.
    static void CopySamples()
    {
        constexpr FILETIME kMorning{0xD53E8000, 0x01C2BBB2}; // of 2003-01-14
        CreateDirectoryW(kFolder, nullptr);
        for (const auto& entry : std::filesystem::directory_iterator(Sample(""))) {
            const std::wstring sCopy = kFolder + (L"\\" + entry.path().filename().wstring());
            CopyFileW(entry.path().c_str(), sCopy.c_str(), FALSE);
            const HANDLE hFile = CreateFileW(sCopy.c_str(), FILE_WRITE_ATTRIBUTES, 0, nullptr,
                                             OPEN_EXISTING, 0, nullptr);
            SetFileTime(hFile, nullptr, nullptr, &kMorning);
            CloseHandle(hFile);
        }
        DeleteFileW((std::wstring(kFolder) + L"\\README.md").c_str());
    }
    void Open(const wchar_t* pszName)
    {
        const std::wstring sPath = kFolder + (L"\\" + std::wstring(pszName));
        ASSERT_EQ(front->put_FileName(Bstr(sPath).get()), S_OK);
    }
    void BeginInTheSamples()
    {
        front->put_Environment(
            Bstr(Hesperon::specifics::WriteEnvironment(kFolder, OLESTR(""))).get());
    }
    static HWND ProgressBoxOnShow()
    {
        HWND hBox = nullptr;
        EnumThreadWindows(
            GetCurrentThreadId(),
            [](HWND hWnd, LPARAM lParam) -> BOOL {
                if (IsWindowVisible(hWnd) && GetDlgItem(hWnd, ProgressBar))
                    *reinterpret_cast<HWND*>(lParam) = hWnd;
                return TRUE;
            },
            reinterpret_cast<LPARAM>(&hBox));
        return hBox;
    }

    HWND m_hBehind = nullptr; // a white screen
};

TEST_P(Pictures, TheDialogWithTimes)
{
    Open(L"minute-5.csv");
    m_driver.OnDialog(InTurn({HasRows, TakeAndCancel(L"import-times")}));
    Analyse();
}

TEST_P(Pictures, TheDialogWithDates)
{
    Open(L"day-no-header.csv");
    m_driver.OnDialog(InTurn({HasRows, TakeAndCancel(L"import-dates")}));
    Analyse();
}

// Before a file is picked: all is off but the folder view, here with details.
TEST_P(Pictures, TheFolderViewInDetails)
{
    BeginInTheSamples();
    m_driver.OnDialog(InTurn({[](HWND hDlg) {
                                  const HWND hView = GetParent(Descendant(hDlg, FolderLookIn));
                                  SendMessageW(hView, WM_COMMAND, FolderDetails, 0);
                                  return true;
                              },
                              TakeAndCancel(L"folder-details")}));
    Analyse();
}

TEST_P(Pictures, TheMenuOfAHeading)
{
    Open(L"day-no-header.csv");
    m_driver.OnDialog(InTurn({HasRows,
                              [](HWND hDlg) {
                                  SetWindowPos(hDlg, nullptr, 100, 10, 0, 0,
                                               SWP_NOSIZE | SWP_NOZORDER);
                                  PressHeading(hDlg, 0);
                                  return true;
                              },
                              [](HWND) { return OpenMenu() != nullptr; },
                              [](HWND) {
                                  PressInMenu({VK_DOWN, VK_DOWN, VK_DOWN, VK_RIGHT});
                                  return true;
                              },
                              [](HWND hDlg) {
                                  Take(hDlg, L"field-menu");
                                  PressInMenu({VK_ESCAPE, VK_ESCAPE});
                                  return true;
                              },
                              [](HWND) { return OpenMenu() == nullptr; },
                              [](HWND hDlg) {
                                  Press(hDlg, ImportCancel);
                                  return true;
                              }}));
    Analyse();
}

TEST_P(Pictures, TheTemplateEditor)
{
    Open(L"day-no-header.csv");
    com_ptr<IDispatch> pData, pRecords;
    ASSERT_EQ(front->get_DataParser(pData.put()), S_OK);
    ASSERT_EQ(pData.as<IDataParser>()->get_RecordParser(pRecords.put()), S_OK);
    m_driver.OnDialog([](HWND hDlg) {
        SendMessageW(GetDlgItem(hDlg, TemplateList), LB_SETCURSEL, 2, 0);
        SendMessageW(hDlg, WM_COMMAND, MAKEWPARAM(TemplateList, LBN_SELCHANGE),
                     reinterpret_cast<LPARAM>(GetDlgItem(hDlg, TemplateList)));
        return TakeAndCancel(L"template-editor")(hDlg);
    });
    CTemplateEditDlgNoHTML(OLESTR("Date"), pRecords.as<IRecordParser>(), 0).DoModal();
}

TEST_P(Pictures, TheDelimiters)
{
    CSelectDelimitersDialog dialog;
    dialog.m_nDividers = 0x24;
    m_driver.OnDialog(TakeAndCancel(L"delimiters"));
    dialog.DoModal();
}

TEST_P(Pictures, TheProgressBox)
{
    TabulexSetProgressViews(&MakeProgressBoxWindow, nullptr);
    Open(L"day-no-header.csv");
    sink->onData = [](std::size_t) {
        Take(ProgressBoxOnShow(), L"progress");
        return S_OK;
    };
    front->DoConvert(sink.get(), 0);
    PumpToTheEnd();
}

TEST_P(Pictures, TheProgressBoxWithABadLine)
{
    TabulexSetProgressViews(&MakeProgressBoxWindow, nullptr);
    Open(L"junk.csv");
    front->DoConvert(sink.get(), 0);
    PumpUntil([] { return IsWindowVisible(Descendant(ProgressBoxOnShow(), ProgressSkip)); });
    Take(ProgressBoxOnShow(), L"progress-bad-line");
    Press(ProgressBoxOnShow(), ProgressSkipAll);
    PumpToTheEnd();
}

INSTANTIATE_TEST_SUITE_P(Languages, Pictures, testing::Values(Language::Chinese, Language::English),
                         [](const auto& language) {
                             return language.param == Language::Chinese ? "Chinese" : "English";
                         });

} // namespace
