// The frame of the import dialog: what opens and closes it, keys, size and place.

#include <gmock/gmock.h>

#include "interfaces/IQRLGUITweak.h"
#include "platform/MessageBox.h"
#include "tests/windows/dialogs/WindowSession.h"

using namespace IQRL_TabulexConverter;

namespace {

class ImportWindow : public WindowSession
{
protected:
    // The text of what the check of the settings says, in place of a box.
    void ListenToWarnings()
    {
        SetWarningListener(
            [this](LONG_PTR, string_view_t sText) { m_warnings.emplace_back(sText); });
    }
    void TearDown() override
    {
        SetWarningListener({});
        EXPECT_TRUE(m_driver.AllRan());
        WindowSession::TearDown();
    }

    std::vector<std::wstring> m_warnings;
};

RECT WorkArea()
{
    RECT area{};
    SystemParametersInfoW(SPI_GETWORKAREA, 0, &area, 0);
    return area;
}

// Next to the middle of the screen, which may be a small one.
HWND MakeOwner()
{
    const RECT area = WorkArea();
    return CreateWindowExW(0, L"STATIC", L"owner", WS_POPUP | WS_VISIBLE, area.left + 4,
                           area.top + 6, area.right - area.left, area.bottom - area.top, nullptr,
                           nullptr, nullptr, nullptr);
}

bool Inside(const RECT& rect, const RECT& of)
{
    return rect.left >= of.left && rect.top >= of.top && rect.right <= of.right &&
           rect.bottom <= of.bottom;
}

RECT ScreenRect(HWND hWnd)
{
    RECT rect{};
    GetWindowRect(hWnd, &rect);
    return rect;
}

TEST_F(ImportWindow, CancelEscAndTheCloseBoxCancel)
{
    OpenSample("minute-5.csv");
    m_driver.OnDialog([](HWND hDlg) {
        EXPECT_EQ(TextOf(hDlg), L"ASCII 数据导入");
        Press(hDlg, ImportCancel);
        return true;
    });
    EXPECT_EQ(Analyse(), VARIANT_FALSE);
    m_driver.OnDialog([](HWND hDlg) {
        PostKey(GetDlgItem(hDlg, ImportCancel), VK_ESCAPE);
        return true;
    });
    EXPECT_EQ(Analyse(), VARIANT_FALSE);
    m_driver.OnDialog([](HWND hDlg) {
        PostMessageW(hDlg, WM_SYSCOMMAND, SC_CLOSE, 0);
        return true;
    });
    EXPECT_EQ(Analyse(), VARIANT_FALSE);
}

TEST_F(ImportWindow, WithoutAParentTheActiveWindowOwnsIt)
{
    const HWND hOwner = MakeOwner();
    SetActiveWindow(hOwner);
    m_driver.OnDialog([&](HWND hDlg) {
        EXPECT_EQ(GetWindow(hDlg, GW_OWNER), hOwner);
        EXPECT_FALSE(IsWindowEnabled(hOwner));
        Press(hDlg, ImportCancel);
        return true;
    });
    EXPECT_EQ(Analyse(nullptr), VARIANT_FALSE);
    EXPECT_TRUE(IsWindowEnabled(hOwner));
    DestroyWindow(hOwner);
}

TEST_F(ImportWindow, StandsInTheMiddleOfItsOwnerAndInTheWorkArea)
{
    const HWND hOwner = MakeOwner();
    m_driver.OnDialog([&](HWND hDlg) {
        const RECT dialog = ScreenRect(hDlg), owner = ScreenRect(hOwner);
        EXPECT_NEAR(dialog.left + dialog.right, owner.left + owner.right, 1);
        EXPECT_NEAR(dialog.top + dialog.bottom, owner.top + owner.bottom, 1);
        Press(hDlg, ImportCancel);
        return true;
    });
    Analyse(hOwner);
    SetWindowPos(hOwner, nullptr, 2000, 2000, 100, 100, SWP_NOZORDER);
    m_driver.OnDialog([&](HWND hDlg) {
        EXPECT_TRUE(Inside(ScreenRect(hDlg), WorkArea()));
        Press(hDlg, ImportCancel);
        return true;
    });
    Analyse(hOwner);
    DestroyWindow(hOwner);
}

TEST_F(ImportWindow, AWindowThatHasGoneIsNoParent)
{
    const HWND hOwner = MakeOwner();
    DestroyWindow(hOwner);
    EXPECT_EQ(Analyse(hOwner), VARIANT_FALSE);
}

TEST_F(ImportWindow, PanesFollowTheSizeAndNothingOverlaps)
{
    OpenSample("day-no-header.csv");
    m_driver.OnDialog([](HWND hDlg) {
        const RECT before = ScreenRect(hDlg);
        const RECT ok = RectOf(hDlg, ImportOk);
        SetWindowPos(hDlg, nullptr, 0, 0, before.right - before.left + 120,
                     before.bottom - before.top + 60, SWP_NOMOVE | SWP_NOZORDER);
        const RECT after = ScreenRect(hDlg), moved = RectOf(hDlg, ImportOk);
        EXPECT_GT(after.right, before.right) << "as far as the screen lets it";
        EXPECT_EQ(moved.left - ok.left, after.right - before.right);
        EXPECT_EQ(moved.top - ok.top, after.bottom - before.bottom);
        const RECT date = RectOf(hDlg, SettingsDateFirst), language = RectOf(hDlg, ContentLanguage);
        EXPECT_TRUE(Inside(date, after));
        EXPECT_LE(language.right, after.right - 15);
        EXPECT_LE(RectOf(hDlg, SettingsDelimiters).bottom, moved.top);
        Press(hDlg, ImportCancel);
        return true;
    });
    Analyse();
}

TEST_F(ImportWindow, IsNeverSmallerThanAtOpening)
{
    m_driver.OnDialog([](HWND hDlg) {
        const RECT before = ScreenRect(hDlg);
        MINMAXINFO limits{};
        SendMessageW(hDlg, WM_GETMINMAXINFO, 0, reinterpret_cast<LPARAM>(&limits));
        EXPECT_EQ(limits.ptMinTrackSize.x, before.right - before.left);
        EXPECT_EQ(limits.ptMinTrackSize.y, before.bottom - before.top);
        Press(hDlg, ImportCancel);
        return true;
    });
    Analyse();
}

TEST_F(ImportWindow, TabGoesThroughThePanesAndThenToTheButtons)
{
    OpenSample("minute-5.csv");
    m_driver.OnDialog([](HWND hDlg) {
        std::vector<int> visited;
        Focus(hDlg, ContentLanguage);
        for (int i = 0; i < 40 && (visited.empty() || visited.back() != ImportCancel); ++i) {
            visited.push_back(GetDlgCtrlID(GetFocus()));
            PressKey(VK_TAB);
            if (GetDlgCtrlID(GetFocus()) == ImportCancel)
                visited.push_back(ImportCancel);
        }
        std::vector<int> known;
        for (const int nId : visited)
            if (nId == ContentLanguage || (nId >= SettingsSize && nId <= SettingsBarsEndTime) ||
                nId == ImportOk || nId == ImportCancel)
                known.push_back(nId);
        EXPECT_TRUE(std::is_sorted(known.begin(), known.end() - 2))
            << testing::PrintToString(known);
        EXPECT_EQ(known.front(), ContentLanguage);
        EXPECT_THAT(known, testing::Contains(SettingsDateFirst));
        EXPECT_EQ(std::vector<int>(known.end() - 2, known.end()),
                  std::vector<int>({ImportOk, ImportCancel}));
        Press(hDlg, ImportCancel);
        return true;
    });
    Analyse();
}

// The person sees why, and can mend it.
TEST_F(ImportWindow, SettingsThatAreRefusedKeepItOpen)
{
    ListenToWarnings();
    OpenSample("minute-5.csv");
    m_driver.OnDialog([this](HWND hDlg) {
        Choose(hDlg, SettingsResolution, 0); // none
        const std::wstring sRow = TextOf(hDlg, SettingsStartRow);
        SendMessageW(GetDlgItem(hDlg, ImportOk), BM_CLICK, 0, 0);
        EXPECT_EQ(m_warnings, std::vector<std::wstring>({L"未选择周期。"}));
        EXPECT_EQ(TextOf(hDlg, SettingsStartRow), sRow);
        PumpFor(std::chrono::milliseconds(50));
        EXPECT_TRUE(IsWindow(hDlg));
        Press(hDlg, ImportCancel);
        return true;
    });
    EXPECT_EQ(Analyse(), VARIANT_FALSE);
}

// The same message in the system's own box, over the dialog.
TEST_F(ImportWindow, ARefusalIsShownInABoxOverTheDialog)
{
    OpenSample("minute-5.csv");
    HWND hDialog = nullptr;
    m_driver.OnDialog([&](HWND hDlg) {
        hDialog = hDlg;
        Choose(hDlg, SettingsResolution, 0);
        Press(hDlg, ImportOk);
        return true;
    });
    m_driver.OnDialog([&](HWND hBox) {
        EXPECT_EQ(GetWindow(hBox, GW_OWNER), hDialog);
        EXPECT_FALSE(IsWindowEnabled(hDialog));
        const HWND hText = DescendantOfClass(hBox, L"STATIC");
        EXPECT_NE(hText, nullptr);
        PostMessageW(hBox, WM_COMMAND, IDOK, 0);
        PostMessageW(hDialog, WM_COMMAND, ImportCancel, 0);
        return true;
    });
    EXPECT_EQ(Analyse(), VARIANT_FALSE);
}

// Enter there checks the settings, but doesn't close; a click does both.
TEST_F(ImportWindow, EnterOnTheOkButtonOnlyChecks)
{
    ListenToWarnings();
    OpenSample("minute-5.csv");
    m_driver.OnDialog([this](HWND hDlg) {
        Focus(hDlg, ImportOk);
        PressKey(VK_RETURN);
        EXPECT_TRUE(IsWindow(hDlg));
        EXPECT_TRUE(m_warnings.empty());
        Choose(hDlg, SettingsResolution, 0);
        Focus(hDlg, ImportOk);
        PressKey(VK_RETURN);
        EXPECT_EQ(m_warnings.size(), 1u);
        Press(hDlg, ImportCancel);
        return true;
    });
    EXPECT_EQ(Analyse(), VARIANT_FALSE);
}

TEST_F(ImportWindow, EnterOnTheCancelButtonCancels)
{
    m_driver.OnDialog([](HWND hDlg) {
        Focus(hDlg, ImportCancel);
        PostKey(GetDlgItem(hDlg, ImportCancel), VK_RETURN);
        return true;
    });
    EXPECT_EQ(Analyse(), VARIANT_FALSE);
}

// A host's module of texts that has no dialog can't show one.
TEST_F(ImportWindow, AModuleWithoutTheDialogCantShowIt)
{
    com_ptr<IQRLGUITweak> pTweak = front.as<IQRLGUITweak>();
    const LONG_PTR nSystem = reinterpret_cast<LONG_PTR>(GetModuleHandleW(L"kernel32.dll"));
    ASSERT_EQ(pTweak->put_ResourceHandle(nSystem), S_OK);
    EXPECT_EQ(Analyse(), VARIANT_FALSE);
    pTweak->put_ResourceHandle(0);
}

} // namespace
