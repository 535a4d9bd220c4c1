// The buttons and keys of the progress box while a worker waits, and windows that go meanwhile.

#include "tests/windows/dialogs/ProgressHost.h"

namespace progress_test {

namespace {

class ProgressWindowButtons : public ProgressBoxOverHost
{
protected:
    ProgressWindowButtons() : hBox(Open()) {}

    HWND hBox;
};

// A modeless dialog with two buttons, as a host has one.
class OtherDialog
{
public:
    OtherDialog()
    {
        m_hWnd = CreateWindowExW(0, L"#32770", L"", WS_POPUP | WS_VISIBLE, 0, 0, 100, 100, nullptr,
                                 nullptr, nullptr, nullptr);
        for (HWND& hButton : m_buttons)
            hButton = CreateWindowExW(0, L"BUTTON", L"", WS_CHILD | WS_VISIBLE | WS_TABSTOP, 0, 0,
                                      50, 20, m_hWnd, nullptr, nullptr, nullptr);
        SetFocus(m_buttons[0]);
    }
    ~OtherDialog() { DestroyWindow(m_hWnd); }
    OtherDialog(const OtherDialog&) = delete;
    OtherDialog& operator=(const OtherDialog&) = delete;

    HWND Window() const { return m_hWnd; }
    HWND Button(int n) const { return m_buttons[n]; }

private:
    HWND m_hWnd = nullptr;
    HWND m_buttons[2] = {};
};

void PumpAWhile()
{
    const ULONGLONG nEnd = GetTickCount64() + 50;
    EXPECT_TRUE(RunHostUntil([=] { return GetTickCount64() > nEnd; }));
}

} // namespace

// ---- the mouse

TEST_F(ProgressWindowButtons, TheWorkerWaitsUntilAButtonIsPressed)
{
    auto result = StartError2();
    AwaitQuestion(hBox);
    EXPECT_TRUE(IsWaiting(result));
    Press(hBox, ProgressSkip);
    EXPECT_EQ(Await(result), S_OK);
    EXPECT_FALSE(parser->m_bErrorsDisabled);
    auto next = StartError2();
    AwaitQuestion(hBox);
    EXPECT_TRUE(IsWaiting(next)) << "each error asks again";
    Press(hBox, ProgressSkip);
    EXPECT_EQ(Await(next), S_OK);
}

TEST_F(ProgressWindowButtons, SkipAllAsksNoMore)
{
    auto result = StartError2();
    AwaitQuestion(hBox);
    Press(hBox, ProgressSkipAll);
    EXPECT_EQ(Await(result), S_OK);
    EXPECT_TRUE(parser->m_bErrorsDisabled);
    for (const LONG nControl : {414, 416, 409, 408, 411, 410, 413, 412})
        EXPECT_FALSE(IsEnabled(hBox, nControl)) << nControl;
    EXPECT_EQ(GetFocus(), GetDlgItem(hBox, ProgressCancel));
    auto next = StartError2();
    EXPECT_EQ(Await(next), S_OK);
}

TEST_F(ProgressWindowButtons, CancelEndsTheConversion)
{
    auto result = StartError();
    AwaitQuestion(hBox);
    Press(hBox, ProgressCancel);
    EXPECT_EQ(Await(result), 1);
    EXPECT_EQ(parser->m_nAborts, 1);
    for (const LONG nControl : {2, 414, 416})
        EXPECT_TRUE(RunHostUntil([&] { return !IsEnabled(hBox, nControl); })) << nControl;
    EXPECT_TRUE(IsWindow(hBox));
    EXPECT_FALSE(host.IsUsable()) << "until the session closes the box";
}

TEST_F(ProgressWindowButtons, TheCloseBoxAndAltF4Cancel)
{
    SendMessageW(hBox, WM_CLOSE, 0, 0);
    EXPECT_TRUE(RunHostUntil([this] { return parser->m_nAborts == 1; }));
    EXPECT_TRUE(IsWindow(hBox));
    PumpAWhile();
    SendMessageW(hBox, WM_CLOSE, 0, 0);
    PumpAWhile();
    EXPECT_EQ(parser->m_nAborts, 1) << "it is cancelled already";
}

TEST_F(ProgressWindowButtons, TheSessionMayEndInsideAPress)
{
    parser->m_onAbort = [this] {
        box->Close();
        box.reset();
    };
    auto result = std::async(std::launch::async, [own = box] { return own->OnError(nullptr); });
    AwaitQuestion(hBox);
    Press(hBox, ProgressCancel);
    EXPECT_EQ(Await(result), 1);
    EXPECT_FALSE(IsWindow(hBox));
    EXPECT_TRUE(host.IsUsable());
}

// ---- the keyboard

TEST_F(ProgressWindowButtons, EscCancels)
{
    TypeKey(VK_ESCAPE);
    EXPECT_TRUE(RunHostUntil([this] { return parser->m_nAborts == 1; }));
    PumpAWhile();
    PostKey(hBox, VK_ESCAPE);
    PumpAWhile();
    EXPECT_EQ(parser->m_nAborts, 1);
}

TEST_F(ProgressWindowButtons, EnterCancelsWhileNothingIsAsked)
{
    TypeKey(VK_RETURN);
    EXPECT_TRUE(RunHostUntil([this] { return parser->m_nAborts == 1; }));
}

TEST_F(ProgressWindowButtons, EnterSkipsAnError)
{
    auto result = StartError();
    AwaitQuestion(hBox);
    TypeKey(VK_RETURN);
    EXPECT_EQ(Await(result), S_OK);
    EXPECT_EQ(parser->m_nAborts, 0);
}

TEST_F(ProgressWindowButtons, TabAndTheSpaceBarReachEachButton)
{
    auto result = StartError();
    AwaitQuestion(hBox);
    TypeKey(VK_TAB);
    EXPECT_TRUE(RunHostUntil([this] { return GetFocus() == GetDlgItem(hBox, ProgressSkipAll); }));
    TypeKey(VK_TAB);
    EXPECT_TRUE(RunHostUntil([this] { return GetFocus() == GetDlgItem(hBox, ProgressCancel); }));
    TypeKey(VK_TAB);
    EXPECT_TRUE(RunHostUntil([this] { return GetFocus() == GetDlgItem(hBox, ProgressSkip); }));
    TypeKey(VK_TAB);
    EXPECT_TRUE(RunHostUntil([this] { return GetFocus() == GetDlgItem(hBox, ProgressSkipAll); }));
    TypeKey(VK_SPACE);
    EXPECT_EQ(Await(result), S_OK);
    EXPECT_TRUE(parser->m_bErrorsDisabled);
}

TEST_F(ProgressWindowButtons, TheFocusIsGivenOnceAQuestion)
{
    auto result = StartError();
    AwaitQuestion(hBox);
    TypeKey(VK_TAB);
    EXPECT_TRUE(RunHostUntil([this] { return GetFocus() == GetDlgItem(hBox, ProgressSkipAll); }));
    const HostWindow other;
    SetActiveWindow(other.Window());
    SetActiveWindow(hBox);
    PumpAWhile();
    EXPECT_EQ(GetFocus(), GetDlgItem(hBox, ProgressSkipAll));
    Press(hBox, ProgressSkip);
    EXPECT_EQ(Await(result), S_OK);
}

// The host's dialogs are its own matter, before, beside and after a box.
TEST_F(ProgressWindowButtons, OtherDialogsOfTheHostAreLeftAlone)
{
    const OtherDialog other;
    for (const bool bOpen : {true, false}) {
        if (!bOpen)
            box->Close();
        SetFocus(other.Button(0));
        PostKey(other.Button(0), VK_TAB);
        PumpAWhile();
        EXPECT_EQ(GetFocus(), other.Button(0)) << bOpen;
    }
}

// ---- windows that go

TEST_F(ProgressWindowButtons, AParentThatGoesCancelsAQuestion)
{
    auto result = StartError();
    AwaitQuestion(hBox);
    host.Destroy();
    EXPECT_FALSE(IsWindow(hBox));
    EXPECT_EQ(Await(result), 1);
    EXPECT_EQ(parser->m_nAborts, 1);
    EXPECT_EQ(box->Close(), S_OK);
}

TEST_F(ProgressWindowButtons, AParentThatGoesLetsAConversionWithoutErrorsGoOn)
{
    host.Destroy();
    EXPECT_FALSE(IsWindow(hBox));
    PumpAWhile();
    EXPECT_EQ(parser->m_nAborts, 0);
    auto progress = std::async(std::launch::async, [this] { return box->DoProgress(1, 2); });
    EXPECT_EQ(Await(progress), S_OK);
    EXPECT_EQ(box->SetTitle(Bstr(L"t").get()), S_OK);
    auto result = StartError();
    EXPECT_EQ(Await(result), 1) << "nobody can be asked";
    EXPECT_EQ(parser->m_nAborts, 1);
    EXPECT_EQ(box->Close(), S_OK);
}

TEST_F(ProgressWindowButtons, ABoxDestroyedByOthersFreesItsParent)
{
    auto result = StartError();
    AwaitQuestion(hBox);
    DestroyWindow(hBox);
    EXPECT_TRUE(host.IsUsable());
    EXPECT_EQ(Await(result), 1);
    EXPECT_EQ(box->Close(), S_OK);
    EXPECT_EQ(box->ShowProgress(host.Handle()), S_OK) << "and it can be opened again";
    EXPECT_FALSE(host.IsUsable());
}

TEST_F(ProgressWindowButtons, TheSessionMayEndInsideTheEndOfItsParent)
{
    parser->m_onAbort = [this] {
        box->Close();
        box.reset();
    };
    auto result = std::async(std::launch::async, [own = box] { return own->OnError(nullptr); });
    AwaitQuestion(hBox);
    host.Destroy();
    EXPECT_EQ(Await(result), 1);
    EXPECT_FALSE(IsWindow(hBox));
}

} // namespace progress_test
