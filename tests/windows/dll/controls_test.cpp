// The library with windows of its controls: all of it goes before the library does.

#include <gtest/gtest.h>

#include "interfaces/ClassIds.h"
#include "tests/front/ProcessCounts.h"
#include "tests/windows/ComponentLibrary.h"

#include <commctrl.h>
#include <oleidl.h>

using namespace IQRL_TabulexConverter;

namespace {

class ControlWindows : public testing::Test
{
protected:
    ControlWindows() { EXPECT_TRUE(SUCCEEDED(OleInitialize(nullptr))); }
    ~ControlWindows() override
    {
        DestroyWindow(m_hHost);
        OleUninitialize();
    }

    com_ptr<IOleObject> Show(const ComponentLibrary& library, const CLSID& clsid)
    {
        const RECT place = {0, 0, 300, 200};
        com_ptr<IUnknown> pObject;
        EXPECT_EQ(S_OK, library.Create(clsid, pObject));
        com_ptr<IOleObject> pControl;
        EXPECT_EQ(S_OK, pObject->QueryInterface(__uuidof(IOleObject), pControl.put_void()));
        EXPECT_EQ(S_OK, pControl->DoVerb(OLEIVERB_SHOW, nullptr, nullptr, 0, m_hHost, &place));
        EXPECT_TRUE(GetWindow(m_hHost, GW_CHILD));
        return pControl;
    }
    void ShowEach(const ComponentLibrary& library)
    {
        for (const CLSID& clsid :
             {CLSID_CQRLDataGridViewCtrl, CLSID_CFolderViewCtrl, CLSID_CQRLCommonCtrlContained}) {
            const com_ptr<IOleObject> pControl = Show(library, clsid);
            EXPECT_EQ(S_FALSE, CanUnload(library));
            EXPECT_EQ(S_OK, pControl->Close(OLECLOSE_NOSAVE));
            EXPECT_FALSE(GetWindow(m_hHost, GW_CHILD));
        }
        EXPECT_EQ(S_OK, CanUnload(library));
    }
    static HRESULT CanUnload(const ComponentLibrary& library)
    {
        return library.Entry<decltype(DllCanUnloadNow)>("DllCanUnloadNow")();
    }

    const HWND m_hHost = CreateWindowExW(0, L"STATIC", L"Host", WS_POPUP | WS_VISIBLE, 0, 0, 400,
                                         300, nullptr, nullptr, nullptr, nullptr);
};

TEST_F(ControlWindows, LeaveNothing)
{
    const ComponentLibrary library;
    ASSERT_TRUE(library);
    ShowEach(library); // what the system makes once
    const ProcessCounts before = CountProcessAtRest();
    for (int i = 0; i < 10; ++i)
        ShowEach(library);
    EXPECT_EQ(before, CountProcessAtRest());
}

// Their classes of windows go with it, so that the next one can have its own.
TEST_F(ControlWindows, LetTheLibraryGoAndComeAgain)
{
    for (int i = 0; i < 3; ++i) {
        ComponentLibrary library;
        ASSERT_TRUE(library);
        ShowEach(library);
        library.Free();
        EXPECT_EQ(nullptr, GetModuleHandleW(L"TabulexConverter.dll"));
    }
}

} // namespace
