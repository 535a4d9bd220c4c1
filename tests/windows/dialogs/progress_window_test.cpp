// The progress box as a window: its place and layout, and its parent.

#include <filesystem>

#include <commctrl.h>

#include "Simples/interface/ResourceStrings.h"
#include "tests/front/ProcessCounts.h"
#include "tests/windows/SystemObjects.h"
#include "tests/windows/dialogs/Pictures.h"
#include "tests/windows/dialogs/ProgressHost.h"

namespace progress_test {

namespace {

class ProgressWindowLayout : public ProgressBoxOverHost
{
protected:
    // The box with an error on show.
    HWND OpenWithError()
    {
        const HWND hBox = Open();
        m_result = StartError2();
        AwaitQuestion(hBox);
        return hBox;
    }
    void Skip(HWND hBox)
    {
        Press(hBox, ProgressSkip);
        EXPECT_EQ(Await(m_result), S_OK);
    }

    std::future<HRESULT> m_result;
};

LONG HeightOf(const RECT& rect)
{
    return rect.bottom - rect.top;
}

RECT RectOf(HWND hBox, LONG nControl)
{
    return progress_test::RectOf(GetDlgItem(hBox, nControl));
}

// Of the section that comes and goes.
LONG SectionHeight(HWND hBox)
{
    return RectOf(hBox, ProgressErrorBottom).top - RectOf(hBox, ProgressErrorTop).top;
}

std::vector<HWND> ShownControls(HWND hBox)
{
    std::vector<HWND> controls;
    for (HWND h = GetWindow(hBox, GW_CHILD); h; h = GetWindow(h, GW_HWNDNEXT))
        if (IsWindowVisible(h))
            controls.push_back(h);
    return controls;
}

void ExpectNothingOverlaps(HWND hBox)
{
    RECT client{};
    GetClientRect(hBox, &client);
    MapWindowPoints(hBox, nullptr, reinterpret_cast<POINT*>(&client), 2);
    const std::vector<HWND> controls = ShownControls(hBox);
    for (const HWND hOne : controls) {
        const RECT one = progress_test::RectOf(hOne);
        RECT common{};
        EXPECT_TRUE(IntersectRect(&common, &one, &client) && EqualRect(&common, &one))
            << GetDlgCtrlID(hOne) << " is cut off";
        for (const HWND hOther : controls) {
            const RECT other = progress_test::RectOf(hOther);
            EXPECT_TRUE(hOne == hOther || !IntersectRect(&common, &one, &other))
                << GetDlgCtrlID(hOne) << " lies over " << GetDlgCtrlID(hOther);
        }
    }
}

// Whether the text of each label that is on show has the room that it needs.
void ExpectTextsFit(HWND hBox)
{
    for (const HWND hLabel : ShownControls(hBox)) {
        const std::wstring sText = TextOf(hLabel);
        const HDC hdc = GetDC(hLabel);
        const HGDIOBJ hBefore =
            SelectObject(hdc, reinterpret_cast<HFONT>(SendMessageW(hLabel, WM_GETFONT, 0, 0)));
        SIZE size{};
        GetTextExtentPoint32W(hdc, sText.c_str(), static_cast<int>(sText.size()), &size);
        SelectObject(hdc, hBefore);
        ReleaseDC(hLabel, hdc);
        const RECT rect = progress_test::RectOf(hLabel);
        const bool bCuts = (GetWindowLongW(hLabel, GWL_STYLE) & SS_ELLIPSISMASK) != 0;
        EXPECT_TRUE(bCuts || size.cx <= rect.right - rect.left) << Utf8(sText);
    }
}

class Texts
{
public:
    explicit Texts(Language language) : m_before(ResourceHandle())
    {
        SetResourceLanguage(language);
    }
    ~Texts() { SetResourceHandle(m_before); }
    Texts(const Texts&) = delete;
    Texts& operator=(const Texts&) = delete;

private:
    const LONG_PTR m_before;
};

} // namespace

// ---- the parent

TEST_F(ProgressWindowLayout, StandsInTheMiddleOfItsParent)
{
    const HWND hBox = Open();
    EXPECT_EQ(GetWindow(hBox, GW_OWNER), host.Window());
    const RECT around = progress_test::RectOf(host.Window());
    const RECT rect = progress_test::RectOf(hBox);
    EXPECT_NEAR(rect.left + rect.right, around.left + around.right, 2);
    EXPECT_NEAR(rect.top + rect.bottom, around.top + around.bottom, 2);
}

TEST_F(ProgressWindowLayout, StaysOnTheScreenOverAParentAtItsEdge)
{
    SetWindowPos(host.Window(), nullptr, -600, 900, 0, 0, SWP_NOSIZE | SWP_NOZORDER);
    const HWND hBox = OpenWithError();
    RECT area{};
    SystemParametersInfoW(SPI_GETWORKAREA, 0, &area, 0);
    const RECT rect = progress_test::RectOf(hBox);
    EXPECT_EQ(rect.left, area.left);
    EXPECT_EQ(rect.bottom, area.bottom) << "it has grown there";
    Skip(hBox);
}

TEST_F(ProgressWindowLayout, TheParentCannotBeUsedUntilTheBoxIsClosed)
{
    EXPECT_TRUE(host.IsUsable());
    const HWND hBox = Open();
    EXPECT_FALSE(host.IsUsable());
    EXPECT_EQ(box->Close(), S_OK);
    EXPECT_TRUE(host.IsUsable());
    EXPECT_FALSE(IsWindow(hBox));
    EXPECT_EQ(GetActiveWindow(), host.Window());
}

TEST_F(ProgressWindowLayout, AWorkersCloseComesWithTheNextMessages)
{
    Open();
    std::thread([this] { EXPECT_EQ(box->Close(), S_OK); }).join();
    EXPECT_FALSE(host.IsUsable());
    EXPECT_TRUE(RunHostUntil([this] { return host.IsUsable(); }));
    EXPECT_TRUE(ShownBoxes().empty());
    EXPECT_EQ(GetActiveWindow(), host.Window());
}

TEST_F(ProgressWindowLayout, AChildStandsForTheWindowThatItIsIn)
{
    EXPECT_EQ(box->ShowProgress(reinterpret_cast<LONG_PTR>(host.Edit())), S_OK);
    EXPECT_FALSE(host.IsUsable());
    EXPECT_TRUE(IsWindowEnabled(host.Edit()));
    EXPECT_EQ(GetWindow(ShownBoxes().at(0), GW_OWNER), host.Window());
}

TEST_F(ProgressWindowLayout, WithoutAParentTheActiveWindowIsIt)
{
    SetActiveWindow(host.Window());
    EXPECT_EQ(box->ShowProgress(0), S_OK);
    EXPECT_FALSE(host.IsUsable());
    EXPECT_EQ(GetWindow(ShownBoxes().at(0), GW_OWNER), host.Window());
}

TEST_F(ProgressWindowLayout, WithoutAnyWindowItStandsInTheMiddleOfTheScreen)
{
    host.Destroy();
    SetActiveWindow(nullptr);
    const HWND hBox = Open();
    EXPECT_EQ(GetWindow(hBox, GW_OWNER), nullptr);
    RECT area{};
    SystemParametersInfoW(SPI_GETWORKAREA, 0, &area, 0);
    const RECT rect = progress_test::RectOf(hBox);
    EXPECT_NEAR(rect.left + rect.right, area.left + area.right, 2);
    EXPECT_NEAR(rect.top + rect.bottom, area.top + area.bottom, 2);
    EXPECT_TRUE(IsWindowEnabled(GetDesktopWindow()));
}

// Two sessions at once: the parent comes back with the later end, and no box hangs on another.
TEST_F(ProgressWindowLayout, TwoBoxesShareAParent)
{
    const auto first = box;
    const HWND hFirst = Open();
    NewBox();
    EXPECT_EQ(box->ShowProgress(0), S_OK) << "over the active window, which is a box";
    EXPECT_EQ(ShownBoxes().size(), 2u);
    EXPECT_TRUE(IsWindowEnabled(hFirst));
    EXPECT_EQ(first->Close(), S_OK);
    EXPECT_EQ(ShownBoxes().size(), 1u);
    EXPECT_FALSE(host.IsUsable());
    EXPECT_EQ(box->Close(), S_OK);
    EXPECT_TRUE(host.IsUsable());
}

// What a host's window does when it is disabled, or enabled again.
class HostAnswer
{
public:
    HostAnswer(HWND hHost, bool bEnabled, std::function<void()> fnAnswer)
        : m_hHost(hHost), m_bEnabled(bEnabled), m_fnAnswer(std::move(fnAnswer))
    {
        SetWindowSubclass(hHost, &OnMessage, 1, reinterpret_cast<DWORD_PTR>(this));
    }
    ~HostAnswer() { RemoveWindowSubclass(m_hHost, &OnMessage, 1); }
    HostAnswer(const HostAnswer&) = delete;
    HostAnswer& operator=(const HostAnswer&) = delete;

private:
    static LRESULT CALLBACK OnMessage(HWND hWnd, UINT nMessage, WPARAM wParam, LPARAM lParam,
                                      UINT_PTR nId, DWORD_PTR pThis)
    {
        auto& self = *reinterpret_cast<HostAnswer*>(pThis);
        if (nMessage == WM_ENABLE && (wParam != FALSE) == self.m_bEnabled) {
            RemoveWindowSubclass(hWnd, &OnMessage, nId);
            self.m_fnAnswer();
        }
        return DefSubclassProc(hWnd, nMessage, wParam, lParam);
    }

    const HWND m_hHost;
    const bool m_bEnabled;
    const std::function<void()> m_fnAnswer;
};

TEST_F(ProgressWindowLayout, TheHostMayEndTheSessionWhenItIsDisabled)
{
    const HostAnswer answer(host.Window(), false, [this] { EXPECT_EQ(box->Close(), S_OK); });
    EXPECT_EQ(box->ShowProgress(host.Handle()), S_OK);
    EXPECT_TRUE(ShownBoxes().empty());
    EXPECT_TRUE(host.IsUsable());
}

TEST_F(ProgressWindowLayout, TheHostMayEndTheSessionWhenItsBoxHasGone)
{
    const HWND hBox = Open();
    const HostAnswer answer(host.Window(), true, [this] { EXPECT_EQ(box->Close(), S_OK); });
    DestroyWindow(hBox);
    EXPECT_TRUE(host.IsUsable());
    EXPECT_EQ(box->Close(), S_FALSE);
}

// ---- layout

TEST_F(ProgressWindowLayout, OpensWithoutTheErrorSection)
{
    const HWND hBox = Open();
    for (const LONG nControl : {409, 408, 411, 410, 413, 412, 422, 414, 416})
        EXPECT_FALSE(IsShown(hBox, nControl)) << nControl;
    for (const LONG nControl : {400, 402, 404, 406, 1003, 420, 2})
        EXPECT_TRUE(IsShown(hBox, nControl)) << nControl;
    EXPECT_GT(RectOf(hBox, ProgressCancel).top, RectOf(hBox, ProgressErrorTop).bottom);
    EXPECT_EQ(GetFocus(), GetDlgItem(hBox, ProgressCancel));
    ExpectNothingOverlaps(hBox);
}

TEST_F(ProgressWindowLayout, GrowsOnceByTheErrorSection)
{
    const HWND hBox = Open();
    const RECT closed = progress_test::RectOf(hBox);
    const LONG nButtonTop = RectOf(hBox, ProgressCancel).top;
    m_result = StartError2(12, 65535);
    AwaitQuestion(hBox);
    const LONG nGrowth = SectionHeight(hBox);
    const RECT open = progress_test::RectOf(hBox);
    EXPECT_GT(nGrowth, 0);
    EXPECT_EQ(HeightOf(open), HeightOf(closed) + nGrowth);
    EXPECT_EQ(open.top, closed.top);
    EXPECT_EQ(open.right - open.left, closed.right - closed.left);
    for (const LONG nButton : {2, 414, 416})
        EXPECT_EQ(RectOf(hBox, nButton).top, nButtonTop + nGrowth) << nButton;
    ExpectNothingOverlaps(hBox);
    EXPECT_EQ(TextOf(hBox, ProgressErrorLine), L"12");
    EXPECT_EQ(TextOf(hBox, ProgressErrorField), LoadResourceString(IDS_NO_FIELD));
    EXPECT_EQ(TextOf(hBox, ProgressErrorText), L"the value isn't a number: 1");
    Skip(hBox);
    m_result = StartError2();
    AwaitQuestion(hBox);
    const RECT again = progress_test::RectOf(hBox);
    EXPECT_TRUE(EqualRect(&again, &open));
    Skip(hBox);
}

TEST_F(ProgressWindowLayout, ShowsFiguresAndTheBar)
{
    parser->m_fRelative = 0.5f;
    EXPECT_EQ(box->SetTitle(Bstr(L"quotes").get()), S_FALSE);
    EXPECT_EQ(box->SetFileName(Bstr(L"C:\\data\\day.csv").get()), S_FALSE);
    const HWND hBox = Open();
    EXPECT_EQ(TextOf(hBox), L"quotes");
    EXPECT_EQ(TextOf(hBox, ProgressFileName), L"C:\\data\\day.csv");
    const HWND hBar = GetDlgItem(hBox, ProgressBar);
    EXPECT_EQ(SendMessageW(hBar, PBM_GETRANGE, FALSE, 0), 100);
    auto progress = std::async(std::launch::async, [this] {
        EXPECT_EQ(box->DoProgress(1, 4), S_OK); // starts the clock
        Sleep(30);
        return box->DoProgress(1000, 4000);
    });
    EXPECT_EQ(Await(progress), S_OK);
    EXPECT_EQ(SendMessageW(hBar, PBM_GETPOS, 0, 0), 25);
    EXPECT_EQ(TextOf(hBox, ProgressRecords), L"1000");
    EXPECT_EQ(TextOf(hBox, ProgressElapsed), L"0 min 0 sec");
    EXPECT_EQ(TextOf(hBox, ProgressRemaining), L"0 min 1 sec");
}

TEST_F(ProgressWindowLayout, TextsHaveRoomInBothLanguages)
{
    for (const Language language : {Language::Chinese, Language::English}) {
        const Texts texts(language);
        NewBox();
        const HWND hBox = OpenWithError();
        EXPECT_EQ(TextOf(hBox, ProgressSkip), LoadResourceString(IDS_SKIP));
        ExpectTextsFit(hBox);
        ExpectNothingOverlaps(hBox);
        Skip(hBox);
        EXPECT_EQ(box->Close(), S_OK);
    }
}

TEST_F(ProgressWindowLayout, IsSeenInPictures)
{
    if (!HasScreen())
        GTEST_SKIP() << "no screen";
    const Bstr file(LR"(C:\Users\Trader\Documents\Market data\Intraday\Exchange of the North\)"
                    LR"(2026\November\minutes-of-all-symbols.csv)");
    for (const auto& [language, sName] :
         {std::pair(Language::Chinese, L"zh"), std::pair(Language::English, L"en")}) {
        const Texts texts(language);
        NewBox();
        EXPECT_EQ(box->SetFileName(file.get()), S_FALSE);
        parser->m_fRelative = 0.4f;
        const HWND hBox = Open();
        auto progress = std::async(std::launch::async, [this] {
            EXPECT_EQ(box->DoProgress(1, 4), S_OK);
            Sleep(30);
            return box->DoProgress(41000, 102500);
        });
        EXPECT_EQ(Await(progress), S_OK);
        UpdateWindow(hBox);
        EXPECT_TRUE(TakePicture(hBox, std::wstring(L"progress-closed-") + sName));
        m_result = StartError2(41872, 5);
        AwaitQuestion(hBox);
        EXPECT_TRUE(TakePicture(hBox, std::wstring(L"progress-open-") + sName));
        Skip(hBox);
        EXPECT_EQ(box->Close(), S_OK);
    }
}

// ---- what stays

// The first dialogs leave things that the system and the compiler's library keep for the next
// ones; a lot of later ones leaves nothing.
TEST_F(ProgressWindowLayout, FiftyBoxesLeaveNothing)
{
    constexpr int kLots = 6;
    const auto openAndClose = [this] {
        NewBox();
        Skip(OpenWithError());
        EXPECT_EQ(box->Close(), S_OK);
        box.reset();
    };
    openAndClose();
    const LONG nLocks = ModuleLockCount();
    const unsigned nObjects = CountGdiObjects();
    ProcessCounts before, after = CountProcessAtRest();
    for (int n = 0; n < kLots && !(after == before); ++n) {
        before = after;
        for (int i = 0; i < 50; ++i)
            openAndClose();
        after = CountProcessAtRest();
    }
    EXPECT_EQ(after, before);
    EXPECT_GT(nObjects, 0u);
    EXPECT_EQ(CountGdiObjects(), nObjects);
    EXPECT_EQ(ModuleLockCount(), nLocks);
    EXPECT_TRUE(ShownBoxes().empty());
    EXPECT_TRUE(host.IsUsable());
}

} // namespace progress_test
