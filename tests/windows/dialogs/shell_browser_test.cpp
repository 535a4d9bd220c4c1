// What the shell's view of a folder asks its host.

#include <gtest/gtest.h>

#include "src/UIComponents/windows/shell/ShellBrowser.h"

using namespace Hesperon::specifics::UILayer;

namespace {

class BrowserReports final : public IShellBrowserEvents
{
public:
    bool m_bIncludes = true;
    bool m_bThrows = false;
    int m_nSelections = 0;
    int m_nActions = 0;

    bool Includes(PCUITEMID_CHILD) override
    {
        if (m_bThrows)
            throw std::bad_alloc();
        return m_bIncludes;
    }
    void OnSelectionChange() override { ++m_nSelections; }
    void OnDefaultAction() override
    {
        ++m_nActions;
        if (m_bThrows)
            throw std::bad_alloc();
    }
};

class ShellBrowserTest : public testing::Test
{
protected:
    ShellBrowserTest()
    {
        EXPECT_EQ(CreateObject(m_pBrowser), S_OK);
        m_pBrowser->Connect(GetDesktopWindow(), m_reports);
    }

    BrowserReports m_reports;
    com_ptr<ShellBrowser> m_pBrowser;
};

TEST_F(ShellBrowserTest, IsABrowserAWindowAndADialogsBrowser)
{
    for (const IID& iid : {__uuidof(IUnknown), __uuidof(IOleWindow), __uuidof(IShellBrowser),
                           __uuidof(ICommDlgBrowser)}) {
        com_ptr<IUnknown> pFound;
        EXPECT_EQ(m_pBrowser->QueryInterface(iid, pFound.put_void()), S_OK);
        com_ptr<IUnknown> pIdentity;
        EXPECT_EQ(pFound->QueryInterface(__uuidof(IUnknown), pIdentity.put_void()), S_OK);
        EXPECT_EQ(pIdentity.get(), m_pBrowser->Identity());
    }
    com_ptr<IUnknown> pOther;
    EXPECT_EQ(m_pBrowser->QueryInterface(__uuidof(IShellView), pOther.put_void()), E_NOINTERFACE);
    HWND hWnd = nullptr;
    EXPECT_EQ(m_pBrowser->GetWindow(&hWnd), S_OK);
    EXPECT_EQ(hWnd, GetDesktopWindow());
    EXPECT_EQ(m_pBrowser->GetWindow(nullptr), E_POINTER);
}

TEST_F(ShellBrowserTest, HidesWhatIsNotIncluded)
{
    EXPECT_EQ(m_pBrowser->IncludeObject(nullptr, nullptr), S_OK);
    m_reports.m_bIncludes = false;
    EXPECT_EQ(m_pBrowser->IncludeObject(nullptr, nullptr), S_FALSE);
}

TEST_F(ShellBrowserTest, TellsOfSelectionsOnly)
{
    for (const ULONG nChange : {CDBOSC_SETFOCUS, CDBOSC_KILLFOCUS, CDBOSC_RENAME})
        EXPECT_EQ(m_pBrowser->OnStateChange(nullptr, nChange), S_OK);
    EXPECT_EQ(m_reports.m_nSelections, 0);
    EXPECT_EQ(m_pBrowser->OnStateChange(nullptr, CDBOSC_SELCHANGE), S_OK);
    EXPECT_EQ(m_reports.m_nSelections, 1);
}

TEST_F(ShellBrowserTest, NeverLetsTheShellStartAProgram)
{
    EXPECT_EQ(m_pBrowser->OnDefaultCommand(nullptr), S_OK);
    m_reports.m_bThrows = true;
    EXPECT_EQ(m_pBrowser->OnDefaultCommand(nullptr), S_OK);
    EXPECT_EQ(m_reports.m_nActions, 2);
    m_pBrowser->Disconnect();
    EXPECT_EQ(m_pBrowser->OnDefaultCommand(nullptr), S_OK);
    EXPECT_EQ(m_reports.m_nActions, 2);
}

TEST_F(ShellBrowserTest, LetsNoExceptionOut)
{
    m_reports.m_bThrows = true;
    EXPECT_EQ(m_pBrowser->IncludeObject(nullptr, nullptr), E_OUTOFMEMORY);
}

TEST_F(ShellBrowserTest, DisconnectedItTellsNothing)
{
    m_pBrowser->Disconnect();
    EXPECT_EQ(m_pBrowser->IncludeObject(nullptr, nullptr), S_FALSE);
    EXPECT_EQ(m_pBrowser->OnStateChange(nullptr, CDBOSC_SELCHANGE), S_OK);
    EXPECT_EQ(m_reports.m_nSelections, 0);
}

TEST_F(ShellBrowserTest, LendsNothing)
{
    HWND hWnd = GetDesktopWindow();
    EXPECT_EQ(m_pBrowser->GetControlWindow(FCW_TOOLBAR, &hWnd), E_NOTIMPL);
    EXPECT_EQ(hWnd, nullptr);
    auto* pStream = reinterpret_cast<IStream*>(1);
    EXPECT_EQ(m_pBrowser->GetViewStateStream(STGM_READ, &pStream), E_NOTIMPL);
    EXPECT_EQ(pStream, nullptr);
    auto* pView = reinterpret_cast<IShellView*>(1);
    EXPECT_EQ(m_pBrowser->QueryActiveShellView(&pView), E_NOTIMPL);
    EXPECT_EQ(pView, nullptr);
}

} // namespace
