// The contained control, where there are no windows.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/values.h"
#include "src/UIComponents/controls/QRLCommonCtrlContained.h"
#include "tests/support/ReportLog.h"
#include "tests/support/Text.h"

namespace Hesperon::specifics {

struct ContainedControlTestAccess
{
    static std::string Kept(const CQRLCommonCtrlContained& control)
    {
        const auto& kept = control.m_arguments;
        return Utf8(kept.sClassName) + "," + Utf8(kept.sWindowName) + "," +
               std::to_string(kept.nStyle) + "," + std::to_string(kept.nExStyle) + "," +
               std::to_string(kept.lParam) + "," + std::to_string(kept.pfnSuper);
    }
};

} // namespace Hesperon::specifics

using Hesperon::specifics::ContainedControlTestAccess;
using Hesperon::specifics::CQRLCommonCtrlContained;

namespace {

class ContainedControl : public testing::Test
{
protected:
    ContainedControl() { EXPECT_EQ(CreateObject(m_pControl), S_OK); }

    HRESULT CreateButton(ULONGLONG pfnSuper)
    {
        return m_pControl->CreateControl(Bstr(OLESTR("Button")).get(), Bstr(OLESTR("Go")).get(),
                                         0x50000001, 7, 0xFFFFFFFFFF, pfnSuper);
    }
    std::string Kept() { return ContainedControlTestAccess::Kept(*m_pControl.get()); }

    com_ptr<CQRLCommonCtrlContained> m_pControl;
};

TEST_F(ContainedControl, RefusesANullProcedure)
{
    ReportLog reports;
    EXPECT_EQ(CreateButton(0), E_POINTER);
    EXPECT_THAT(reports.Texts(), testing::ElementsAre("m_pfnSuper"));
}

TEST_F(ContainedControl, KeepsTheArgumentsUntilThereIsAWindow)
{
    EXPECT_EQ(CreateButton(0x123456789A), S_FALSE);
    EXPECT_EQ(Kept(), "Button,Go,1342177281,7,1099511627775,78187493530");
    ULONGLONG hwnd = 0;
    EXPECT_EQ(m_pControl->get_ControlHWND(&hwnd), E_UNEXPECTED);
    EXPECT_EQ(m_pControl->get_ControlHWND(nullptr), E_POINTER);
}

TEST_F(ContainedControl, ASecondCallReplacesTheFirst)
{
    EXPECT_EQ(CreateButton(1), S_FALSE);
    EXPECT_EQ(m_pControl->CreateControl(Bstr(OLESTR("Edit")).get(), nullptr, 2, 0, 0, 9), S_FALSE);
    EXPECT_EQ(Kept(), "Edit,,2,0,0,9");
    ReportLog reports;
    EXPECT_EQ(CreateButton(0), E_POINTER); // nothing of the former window is left then either
    EXPECT_EQ(Kept(), "Button,Go,1342177281,7,1099511627775,0");
}

TEST_F(ContainedControl, ForwardsNothingWithoutAWindow)
{
    const LONGLONG message[6] = {};
    LONG_PTR nResult = 77;
    for (const bool bCreated : {false, true}) {
        if (bCreated) {
            EXPECT_EQ(CreateButton(1), S_FALSE);
        }
        for (LONG_PTR* pnResult : {&nResult, static_cast<LONG_PTR*>(nullptr)}) {
            EXPECT_EQ(m_pControl->DefWindowProc0(pnResult), E_UNEXPECTED);
            EXPECT_EQ(
                m_pControl->DefWindowProcW(reinterpret_cast<std::uintptr_t>(message), pnResult),
                E_UNEXPECTED);
            EXPECT_EQ(m_pControl->DefWindowProcW(0, pnResult), E_POINTER);
        }
    }
    EXPECT_EQ(nResult, 77);
}

TEST_F(ContainedControl, EndsWithItsLastReference)
{
    EXPECT_EQ(CreateButton(1), S_FALSE);
    const LONG nBefore = ModuleLockCount();
    m_pControl.reset();
    EXPECT_EQ(ModuleLockCount(), nBefore - 1);
}

} // namespace
