// A host with a window and a message loop that knows no dialogs, and the progress box over it.
#pragma once

#include <future>

#include <gtest/gtest.h>

#include "src/UIComponents/ProgressDlgNoHTML.h"
#include "src/UIComponents/views/ProgressView.h"
#include "src/UIComponents/windows/ProgressBoxWindow.h"
#include "tests/support/Text.h"
#include "tests/ui/FakeParser.h"
#include "tests/windows/dialogs/ModalDriver.h"

namespace progress_test {

using namespace Hesperon::specifics::UILayer;
using namespace IQRL_TabulexConverter;

// A visible window with an edit inside.
class HostWindow
{
public:
    HostWindow()
        : m_hWnd(CreateWindowExW(0, L"#32770", L"host", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 200, 150,
                                 700, 500, nullptr, nullptr, nullptr, nullptr)),
          m_hEdit(CreateWindowExW(0, L"EDIT", L"", WS_CHILD | WS_VISIBLE, 10, 10, 200, 20, m_hWnd,
                                  nullptr, nullptr, nullptr))
    {}
    ~HostWindow() { Destroy(); }
    HostWindow(const HostWindow&) = delete;
    HostWindow& operator=(const HostWindow&) = delete;

    HWND Window() const { return m_hWnd; }
    HWND Edit() const { return m_hEdit; }
    LONG_PTR Handle() const { return reinterpret_cast<LONG_PTR>(m_hWnd); }
    bool IsUsable() const { return IsWindowEnabled(m_hWnd) != FALSE; }
    void Destroy()
    {
        if (IsWindow(m_hWnd))
            DestroyWindow(m_hWnd);
    }

private:
    const HWND m_hWnd;
    const HWND m_hEdit;
};

// The host's message loop, which hands nothing to IsDialogMessage, until the state has come; false
// after ten seconds.
template <class State>
bool RunHostUntil(State state)
{
    constexpr DWORD kTurn = 5; // milliseconds
    const auto tEnd = std::chrono::steady_clock::now() + std::chrono::seconds(10);
    while (!state()) {
        if (std::chrono::steady_clock::now() > tEnd)
            return false;
        MsgWaitForMultipleObjects(0, nullptr, FALSE, kTurn, QS_ALLINPUT);
        MSG message;
        while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
            TranslateMessage(&message);
            DispatchMessageW(&message);
        }
    }
    return true;
}

inline RECT RectOf(HWND hWnd)
{
    RECT rect{};
    GetWindowRect(hWnd, &rect);
    return rect;
}

// The boxes on show of the calling thread.
inline std::vector<HWND> ShownBoxes()
{
    std::vector<HWND> boxes;
    EnumThreadWindows(
        GetCurrentThreadId(),
        [](HWND hWnd, LPARAM lParam) -> BOOL {
            if (IsWindowVisible(hWnd) && GetDlgItem(hWnd, ProgressBar))
                reinterpret_cast<std::vector<HWND>*>(lParam)->push_back(hWnd);
            return TRUE;
        },
        reinterpret_cast<LPARAM>(&boxes));
    return boxes;
}

// The system takes no key from a person here, so a key is posted to where it would go.
inline void TypeKey(UINT nKey)
{
    PostKey(GetFocus(), nKey);
}

// The test's thread is the host's.
class ProgressBoxOverHost : public testing::Test
{
protected:
    ProgressBoxOverHost()
    {
        SetProgressViews(&MakeProgressBoxWindow, nullptr);
        NewBox();
    }
    ~ProgressBoxOverHost() override
    {
        box.reset();
        EXPECT_TRUE(RunHostUntil([] { return ShownBoxes().empty(); }));
        SetProgressViews(nullptr, nullptr);
    }

    void NewBox()
    {
        EXPECT_EQ(CreateObject(box), S_OK);
        EXPECT_EQ(CreateObject(parser), S_OK);
        EXPECT_EQ(box->put_DataParser(parser.get()), S_OK);
    }
    // The window of the box, which is the only one.
    HWND Open()
    {
        EXPECT_EQ(box->ShowProgress(host.Handle()), S_OK);
        const std::vector<HWND> boxes = ShownBoxes();
        EXPECT_EQ(boxes.size(), 1u);
        return boxes.empty() ? nullptr : boxes.front();
    }
    // A worker that reports an error and waits for the answer.
    std::future<HRESULT> StartError2(LONG nLine = 7, LONG nField = 3)
    {
        return std::async(std::launch::async, [this, nLine, nField, sText = NextError()] {
            return box->OnError2(nLine, nField, Bstr(sText).get());
        });
    }
    std::future<HRESULT> StartError()
    {
        return std::async(std::launch::async,
                          [this, sText = NextError()] { return box->OnError(Bstr(sText).get()); });
    }
    // Lets messages through until the last error is before the user, who could press Skip.
    void AwaitQuestion(HWND hBox)
    {
        EXPECT_TRUE(RunHostUntil([=, this] {
            return TextOf(hBox, ProgressErrorText) == m_sError &&
                   GetFocus() == GetDlgItem(hBox, ProgressSkip);
        }));
    }
    static bool IsWaiting(const std::future<HRESULT>& result)
    {
        const auto tEnd = std::chrono::steady_clock::now() + std::chrono::milliseconds(100);
        EXPECT_TRUE(RunHostUntil([=] { return std::chrono::steady_clock::now() > tEnd; }));
        return result.wait_for(std::chrono::seconds(0)) != std::future_status::ready;
    }
    static HRESULT Await(std::future<HRESULT>& result)
    {
        const bool bReady = RunHostUntil(
            [&] { return result.wait_for(std::chrono::seconds(0)) == std::future_status::ready; });
        return bReady ? result.get() : E_PENDING;
    }
    static bool IsShown(HWND hBox, LONG nControl)
    {
        return IsWindowVisible(GetDlgItem(hBox, nControl)) != FALSE;
    }
    static bool IsEnabled(HWND hBox, LONG nControl)
    {
        return IsWindowEnabled(GetDlgItem(hBox, nControl)) != FALSE;
    }

    ModalDriver limit;
    HostWindow host;
    com_ptr<CProgressDlgNoHTML> box;
    com_ptr<ui_test::FakeParser> parser;

private:
    // Each error has a text of its own.
    std::wstring NextError()
    {
        m_sError = L"the value isn't a number: " + std::to_wstring(++m_nErrors);
        return m_sError;
    }

    std::wstring m_sError;
    int m_nErrors = 0;
};

} // namespace progress_test
