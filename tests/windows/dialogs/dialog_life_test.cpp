// What stays behind when dialogs have gone: nothing.

#include "tests/front/ProcessCounts.h"
#include "tests/windows/SystemObjects.h"
#include "tests/windows/dialogs/WindowSession.h"

using namespace IQRL_TabulexConverter;

namespace {

class DialogLife : public WindowSession
{
protected:
    void OpenAndCancel(bool bWait)
    {
        OpenSample("minute-5.csv");
        m_driver.OnDialog([bWait](HWND hDlg) {
            if (bWait && !HasRows(hDlg))
                return false;
            PostMessageW(hDlg, WM_COMMAND, ImportCancel, 0);
            return true;
        });
        EXPECT_EQ(Analyse(), VARIANT_FALSE);
        front->ReleaseFile();
    }
};

// The first ones fill the caches of the system's controls and of the shell.
TEST_F(DialogLife, FiftyDialogsLeaveNothing)
{
    for (int i = 0; i < 3; ++i)
        OpenAndCancel(true);
    const unsigned nObjects = CountGdiObjects(), nMenus = CountUserObjects();
    const unsigned nWindows = CountWindows();
    const ProcessCounts counts = CountProcessAtRest();
    for (int i = 0; i < 50; ++i)
        OpenAndCancel(i % 2 == 0);
    EXPECT_EQ(CountWindows(), nWindows);
    EXPECT_LE(CountGdiObjects(), nObjects);
    EXPECT_LE(CountUserObjects(), nMenus);
    PumpUntil([&] { return CountProcess().nThreads <= counts.nThreads; });
    EXPECT_LE(CountProcessAtRest().nHandles, counts.nHandles + 8);
}

// What opens over the dialog goes with it, and then the dialog is no place to write to.
class DialogLifeOverOwner : public DialogLife
{
protected:
    void SetUp() override
    {
        DialogLife::SetUp();
        OpenSample("date-06.csv");
        m_hOwner = CreateWindowExW(0, L"STATIC", L"owner", WS_POPUP | WS_VISIBLE, 40, 60, 1100, 800,
                                   nullptr, nullptr, nullptr, nullptr);
    }
    // The first step opens something, and its owner's owner is destroyed over that.
    void OpenAndDestroyOwner(std::function<void(HWND)> fnOpen)
    {
        m_driver.OnDialog([fnOpen = std::move(fnOpen)](HWND hDlg) {
            if (!HasRows(hDlg))
                return false;
            fnOpen(hDlg);
            return true;
        });
        m_driver.OnDialog([this](HWND) {
            DestroyWindow(m_hOwner);
            return true;
        });
        EXPECT_EQ(Analyse(m_hOwner), VARIANT_FALSE);
        EXPECT_FALSE(IsWindow(m_hOwner));
        EXPECT_TRUE(m_driver.AllRan());
    }

    HWND m_hOwner = nullptr;
};

TEST_F(DialogLifeOverOwner, TheOwnerMayGoWhileDelimitersAreChosen)
{
    OpenAndDestroyOwner(
        [](HWND hDlg) { PostMessageW(Descendant(hDlg, SettingsDelimiters), BM_CLICK, 0, 0); });
}

TEST_F(DialogLifeOverOwner, TheOwnerMayGoWhileASettingIsRefused)
{
    OpenAndDestroyOwner([](HWND hDlg) {
        Choose(hDlg, SettingsResolution, 0);
        Press(hDlg, ImportOk);
    });
}

TEST_F(DialogLifeOverOwner, TheOwnerMayGoWhileAColumnsMenuIsOpen)
{
    m_driver.OnDialog([this, bPressed = false](HWND hDlg) mutable {
        if (!HasRows(hDlg))
            return false;
        if (!bPressed)
            PressHeading(hDlg, 1);
        bPressed = true;
        if (!OpenMenu())
            return false;
        DestroyWindow(m_hOwner);
        return true;
    });
    EXPECT_EQ(Analyse(m_hOwner), VARIANT_FALSE);
    EXPECT_FALSE(IsWindow(m_hOwner));
    EXPECT_EQ(OpenMenu(), nullptr);
}

// The window goes, as when a host is closed behind it.
TEST_F(DialogLife, ADialogThatIsDestroyedIsCancelled)
{
    OpenSample("minute-5.csv");
    m_driver.OnDialog([](HWND hDlg) {
        if (!HasRows(hDlg))
            return false;
        DestroyWindow(hDlg);
        return true;
    });
    EXPECT_EQ(Analyse(), VARIANT_FALSE);
}

// The host lets go of its object while the dialog is open.
TEST_F(DialogLife, AnObjectThatIsReleasedMeanwhileLivesAsLongAsItsDialog)
{
    OpenSample("minute-5.csv");
    m_driver.OnDialog([this](HWND hDlg) {
        front.reset();
        Press(hDlg, ImportCancel);
        return true;
    });
    VARIANT_BOOL bStatus = VARIANT_TRUE;
    EXPECT_EQ(front->DoAnalyse(&bStatus, 0), S_OK);
    EXPECT_EQ(bStatus, VARIANT_FALSE);
}

} // namespace
