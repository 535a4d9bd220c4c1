// The contained control with its window, and the contained window in it.

#include <cstring>
#include <functional>

#include <gtest/gtest.h>

#include "platform/values.h"
#include "src/UIComponents/windows/ole/HostedControl.h"
#include "tests/support/ReportLog.h"
#include "tests/windows/dialogs/Container.h"
#include "tests/windows/dialogs/ModalDriver.h"

using namespace Hesperon::specifics;
using namespace Hesperon::specifics::UILayer;

namespace {

constexpr UINT kNestedMessage = WM_APP + 1;
constexpr UINT kEndMessage = WM_APP + 2;

// A host's own procedure: what it was called with, and what it does meanwhile.
struct HostProcedure
{
    static LRESULT CALLBACK Procedure(HWND hWnd, UINT nMessage, WPARAM wParam, LPARAM lParam)
    {
        ++nCalls;
        last = {hWnd, nMessage, wParam, lParam, 0, {}};
        if (nMessage == kNestedMessage && std::exchange(bNest, false)) {
            pControl->DefWindowProc0(&nNested);
            return 7;
        }
        if (nMessage == kEndMessage)
            pControl->CreateControl(nullptr, nullptr, 0, 0, 0, 0);
        if (nMessage == WM_DESTROY && onDestroy)
            std::exchange(onDestroy, {})();
        if (nMessage >= WM_APP)
            return static_cast<LRESULT>(wParam) + lParam;
        return DefWindowProcW(hWnd, nMessage, wParam, lParam);
    }
    static ULONGLONG Address() { return reinterpret_cast<std::uintptr_t>(&Procedure); }

    static inline int nCalls = 0;
    static inline MSG last{};
    static inline bool bNest = false;
    static inline LONG_PTR nNested = 0;
    static inline std::function<void()> onDestroy;
    static inline CQRLCommonCtrlContained* pControl = nullptr;
};

// A class of the host's whose windows call back while they are made.
class CallingClass
{
public:
    explicit CallingClass(std::function<void(HWND hWnd)> onCreate)
    {
        s_onCreate = std::move(onCreate);
        WNDCLASSW info{};
        info.lpfnWndProc = &Procedure;
        info.hInstance = GetModuleHandleW(nullptr);
        info.lpszClassName = kName;
        EXPECT_TRUE(RegisterClassW(&info));
    }
    ~CallingClass() { EXPECT_TRUE(UnregisterClassW(kName, GetModuleHandleW(nullptr))); }
    CallingClass(const CallingClass&) = delete;
    CallingClass& operator=(const CallingClass&) = delete;

    static constexpr wchar_t kName[] = L"TabulexTestCalling";

private:
    static LRESULT CALLBACK Procedure(HWND hWnd, UINT nMessage, WPARAM wParam, LPARAM lParam)
    {
        if (nMessage == WM_CREATE)
            s_onCreate(hWnd);
        return DefWindowProcW(hWnd, nMessage, wParam, lParam);
    }

    static inline std::function<void(HWND)> s_onCreate;
};

ULONGLONG ProcedureOf(const wchar_t* pszClass)
{
    WNDCLASSW info{};
    EXPECT_TRUE(GetClassInfoW(nullptr, pszClass, &info)) << pszClass;
    return reinterpret_cast<std::uintptr_t>(info.lpfnWndProc);
}

class ContainedWindows : public testing::Test
{
protected:
    using Hosted = HostedControl<CQRLCommonCtrlContained>;

    ContainedWindows()
    {
        EXPECT_EQ(S_OK, CreateObject(m_pControl));
        HostProcedure::nCalls = 0;
        HostProcedure::pControl = m_pControl.get();
    }
    ~ContainedWindows() override
    {
        if (m_pControl)
            m_pControl->Close(OLECLOSE_NOSAVE);
    }

    HRESULT Activate()
    {
        const RECT rect = {10, 20, 210, 120};
        return m_pControl->DoVerb(OLEIVERB_INPLACEACTIVATE, nullptr, nullptr, 0, m_host.get(),
                                  &rect);
    }
    HRESULT Create(const wchar_t* pszClass, const wchar_t* pszName, ULONG nStyle,
                   ULONGLONG pfnSuper, ULONGLONG lParam = 0)
    {
        return m_pControl->CreateControl(Bstr(pszClass).get(), Bstr(pszName).get(), nStyle, 0,
                                         lParam, pfnSuper);
    }
    HRESULT CreateEdit(const wchar_t* pszText = L"text")
    {
        return Create(L"EDIT", pszText, WS_VISIBLE, ProcedureOf(L"EDIT"));
    }
    HWND Contained()
    {
        ULONGLONG nWindow = 0;
        const HRESULT hr = m_pControl->get_ControlHWND(&nWindow);
        EXPECT_TRUE(nWindow ? hr == S_OK : hr == E_UNEXPECTED);
        return reinterpret_cast<HWND>(static_cast<std::uintptr_t>(nWindow));
    }
    HWND Own()
    {
        HWND hWnd = nullptr;
        m_pControl->GetWindow(&hWnd);
        return hWnd;
    }

    HostWindow m_host;
    com_ptr<Hosted> m_pControl;
};

TEST_F(ContainedWindows, FillsTheControl)
{
    ASSERT_EQ(S_OK, Activate());
    EXPECT_EQ(nullptr, Contained());
    EXPECT_EQ(S_OK, CreateEdit());
    const HWND hEdit = Contained();
    EXPECT_EQ(Own(), GetParent(hEdit));
    EXPECT_EQ(L"text", ::TextOf(hEdit));
    const RECT larger = {0, 0, 400, 300};
    for (const RECT& place : {m_host.PlaceOf(Own()), larger}) {
        EXPECT_EQ(S_OK, m_pControl->SetObjectRects(&place, &place));
        const RECT found = m_host.PlaceOf(hEdit);
        EXPECT_TRUE(EqualRect(&place, &found));
    }
}

TEST_F(ContainedWindows, IsMadeWhenTheControlsWindowComes)
{
    EXPECT_EQ(S_FALSE, CreateEdit(L"early"));
    EXPECT_EQ(nullptr, Contained());
    for (int nRound = 0; nRound < 2; ++nRound) {
        ASSERT_EQ(S_OK, Activate());
        EXPECT_EQ(L"early", ::TextOf(Contained()));
        EXPECT_EQ(S_OK, m_pControl->InPlaceDeactivate());
        EXPECT_EQ(nullptr, Contained());
    }
}

TEST_F(ContainedWindows, ARefusedProcedureIsNotKept)
{
    ReportLog reports;
    EXPECT_EQ(E_POINTER, Create(L"EDIT", L"", 0, 0));
    ASSERT_EQ(S_OK, Activate());
    EXPECT_EQ(nullptr, Contained());
    EXPECT_EQ(S_OK, CreateEdit());
    const HWND hEdit = Contained();
    EXPECT_EQ(E_POINTER, Create(L"EDIT", L"", 0, 0));
    EXPECT_FALSE(IsWindow(hEdit)); // gone all the same
    EXPECT_EQ(nullptr, Contained());
    EXPECT_EQ(std::vector<std::string>({"m_pfnSuper", "m_pfnSuper"}), reports.Texts());
}

TEST_F(ContainedWindows, ASecondOneReplacesTheFirst)
{
    ASSERT_EQ(S_OK, Activate());
    EXPECT_EQ(S_OK, CreateEdit());
    const HWND hEdit = Contained();
    EXPECT_EQ(S_OK, Create(L"BUTTON", L"Go", WS_VISIBLE, ProcedureOf(L"BUTTON")));
    EXPECT_FALSE(IsWindow(hEdit));
    EXPECT_EQ(L"Go", ::TextOf(Contained()));
    EXPECT_EQ(Contained(), GetWindow(Own(), GW_CHILD));
    EXPECT_EQ(nullptr, GetWindow(Contained(), GW_HWNDNEXT));
}

TEST_F(ContainedWindows, AClassThatIsNotThereFails)
{
    ASSERT_EQ(S_OK, Activate());
    const HRESULT hr = Create(L"NoSuchClass", L"", 0, HostProcedure::Address());
    EXPECT_TRUE(hr == HRESULT_FROM_WIN32(ERROR_CANNOT_FIND_WND_CLASS) ||
                hr == HRESULT_FROM_WIN32(ERROR_CLASS_DOES_NOT_EXIST))
        << hr; // systems differ
    EXPECT_EQ(nullptr, Contained());
    EXPECT_EQ(S_OK, CreateEdit());
}

TEST_F(ContainedWindows, IsAChildWhateverTheStyle)
{
    ASSERT_EQ(S_OK, Activate());
    EXPECT_EQ(S_OK, Create(L"STATIC", L"", WS_POPUP | WS_BORDER, ProcedureOf(L"STATIC")));
    const LONG nStyle = GetWindowLongW(Contained(), GWL_STYLE);
    EXPECT_EQ(WS_CHILD | WS_BORDER, nStyle & (WS_CHILD | WS_POPUP | WS_BORDER));
    EXPECT_EQ(Own(), GetParent(Contained()));
}

TEST_F(ContainedWindows, ItsMessagesGoToTheProcedureGiven)
{
    ASSERT_EQ(S_OK, Activate());
    EXPECT_EQ(S_OK, Create(L"STATIC", L"", 0, HostProcedure::Address()));
    EXPECT_EQ(0, HostProcedure::nCalls); // its making is the class's
    EXPECT_EQ(30, SendMessageW(Contained(), WM_APP, 10, 20));
    EXPECT_EQ(1, HostProcedure::nCalls);
    EXPECT_EQ(Contained(), HostProcedure::last.hwnd);
}

TEST_F(ContainedWindows, TextGoesThroughTheObject)
{
    ASSERT_EQ(S_OK, Activate());
    ASSERT_EQ(S_OK, CreateEdit());
    wchar_t szText[32] = L"typed";
    MSG message{};
    message.message = WM_SETTEXT;
    message.lParam = reinterpret_cast<LPARAM>(szText);
    LONG_PTR nResult = 0;
    const auto nMessage = reinterpret_cast<std::uintptr_t>(&message);
    EXPECT_EQ(S_OK, m_pControl->DefWindowProcW(nMessage, &nResult));
    EXPECT_EQ(1, nResult);
    EXPECT_EQ(L"typed", ::TextOf(Contained()));
    message.message = WM_GETTEXTLENGTH;
    EXPECT_EQ(S_OK, m_pControl->DefWindowProcW(nMessage, &nResult));
    EXPECT_EQ(5, nResult);
    EXPECT_EQ(S_OK, m_pControl->DefWindowProcW(nMessage, nullptr));
    EXPECT_EQ(E_POINTER, m_pControl->DefWindowProcW(0, &nResult));
}

TEST_F(ContainedWindows, ARecordGoesToTheContainedWindowWhateverItNames)
{
    ASSERT_EQ(S_OK, Activate());
    ASSERT_EQ(S_OK, Create(L"STATIC", L"", 0, HostProcedure::Address()));
    MSG message{};
    message.hwnd = m_host.get();
    message.message = WM_APP;
    LONG_PTR nResult = 0;
    EXPECT_EQ(S_OK,
              m_pControl->DefWindowProcW(reinterpret_cast<std::uintptr_t>(&message), &nResult));
    EXPECT_EQ(Contained(), HostProcedure::last.hwnd);
}

TEST_F(ContainedWindows, TheMessageBeingHandledIsPassedOn)
{
    ASSERT_EQ(S_OK, Activate());
    ASSERT_EQ(S_OK, Create(L"STATIC", L"", 0, HostProcedure::Address()));
    HostProcedure::bNest = true;
    EXPECT_EQ(7, SendMessageW(Contained(), kNestedMessage, 3, 4));
    EXPECT_EQ(2, HostProcedure::nCalls);
    EXPECT_EQ(7, HostProcedure::nNested); // 3 + 4, by the inner call
    EXPECT_EQ(kNestedMessage, HostProcedure::last.message);
}

TEST_F(ContainedWindows, OutsideOfAMessageAnEmptyOneIsPassed)
{
    ASSERT_EQ(S_OK, Activate());
    ASSERT_EQ(S_OK, Create(L"STATIC", L"", 0, HostProcedure::Address()));
    SendMessageW(Contained(), WM_APP, 1, 2);
    LONG_PTR nResult = 77;
    for (LONG_PTR* pnResult : {&nResult, static_cast<LONG_PTR*>(nullptr)}) {
        HostProcedure::last = {};
        HostProcedure::nCalls = 0;
        EXPECT_EQ(S_OK, m_pControl->DefWindowProc0(pnResult));
        EXPECT_EQ(1, HostProcedure::nCalls);
        EXPECT_EQ(WM_NULL, HostProcedure::last.message);
        EXPECT_EQ(0u, HostProcedure::last.wParam);
        EXPECT_EQ(0, HostProcedure::last.lParam);
    }
    EXPECT_EQ(0, nResult);
}

TEST_F(ContainedWindows, CanBeEndedInTheMiddleOfAMessage)
{
    ASSERT_EQ(S_OK, Activate());
    ASSERT_EQ(S_OK, Create(L"STATIC", L"", 0, HostProcedure::Address()));
    const HWND hContained = Contained();
    ReportLog reports;
    EXPECT_EQ(11, SendMessageW(hContained, kEndMessage, 5, 6));
    EXPECT_FALSE(IsWindow(hContained));
    EXPECT_EQ(nullptr, Contained());
}

TEST_F(ContainedWindows, MayBeDestroyedByItsHandle)
{
    ASSERT_EQ(S_OK, Activate());
    ASSERT_EQ(S_OK, CreateEdit());
    DestroyWindow(Contained());
    EXPECT_EQ(nullptr, Contained());
    LONG_PTR nResult = 0;
    EXPECT_EQ(E_UNEXPECTED, m_pControl->DefWindowProc0(&nResult));
    const RECT place = {0, 0, 50, 50};
    EXPECT_EQ(S_OK, m_pControl->SetObjectRects(&place, &place));
    EXPECT_EQ(S_OK, CreateEdit());
}

TEST_F(ContainedWindows, GoesWithTheControlsWindow)
{
    ASSERT_EQ(S_OK, Activate());
    ASSERT_EQ(S_OK, CreateEdit());
    const HWND hEdit = Contained();
    m_host.Destroy();
    EXPECT_FALSE(IsWindow(hEdit));
    EXPECT_EQ(nullptr, Contained());
    EXPECT_EQ(S_FALSE, CreateEdit());
}

TEST_F(ContainedWindows, MayEndTheControlsWindowWhileItIsMade)
{
    const CallingClass endsItsParent([](HWND hWnd) { DestroyWindow(GetParent(hWnd)); });
    EXPECT_EQ(S_FALSE, Create(CallingClass::kName, L"", 0, HostProcedure::Address()));
    EXPECT_TRUE(FAILED(Activate()));
    EXPECT_EQ(nullptr, Own());
    EXPECT_EQ(S_FALSE, CreateEdit());
    ASSERT_EQ(S_OK, Activate());
    EXPECT_TRUE(FAILED(Create(CallingClass::kName, L"", 0, HostProcedure::Address())));
    EXPECT_EQ(nullptr, Own());
}

TEST_F(ContainedWindows, OneThatIsMadeMeanwhileMayEndTheControlAsItGoes)
{
    const CallingClass makesAnother(
        [&](HWND) { EXPECT_EQ(S_OK, Create(L"STATIC", L"", 0, HostProcedure::Address())); });
    ASSERT_EQ(S_OK, Activate());
    HostProcedure::onDestroy = [&] { m_pControl->Close(OLECLOSE_NOSAVE); };
    Create(CallingClass::kName, L"", 0, HostProcedure::Address());
    EXPECT_FALSE(HostProcedure::onDestroy);
    EXPECT_EQ(nullptr, Own());
    EXPECT_EQ(nullptr, Contained());
    EXPECT_EQ(nullptr, m_host.FirstChild());
}

TEST_F(ContainedWindows, GetsTheCreationParameter)
{
    ASSERT_EQ(S_OK, Activate());
    CLIENTCREATESTRUCT children{};
    children.idFirstChild = 100;
    EXPECT_EQ(S_OK, Create(L"MDICLIENT", L"", 0, ProcedureOf(L"MDICLIENT"),
                           reinterpret_cast<std::uintptr_t>(&children)));
}

TEST_F(ContainedWindows, HasTheKeyboardWhenTheControlGetsIt)
{
    ASSERT_EQ(S_OK, Activate());
    ASSERT_EQ(S_OK, CreateEdit());
    SetFocus(m_host.get());
    EXPECT_EQ(S_OK,
              m_pControl->DoVerb(OLEIVERB_UIACTIVATE, nullptr, nullptr, 0, m_host.get(), nullptr));
    EXPECT_EQ(Contained(), GetFocus());
}

} // namespace
