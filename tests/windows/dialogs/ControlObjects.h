// Control objects as a host on Windows gets them, made through the component's factories.
#pragma once

#include <gtest/gtest.h>

#include "interfaces/ClassIds.h"
#include "interfaces/Module.h"
#include "module/Module.h"
#include "src/UIComponents/controls/ControlClasses.h"
#include "src/UIComponents/windows/ole/ControlSite.h"
#include "src/UIComponents/windows/ole/HostedControls.h"

struct ControlClass
{
    const char* szName;
    CLSID clsid;
    const wchar_t* pszProgId;
};

inline constexpr ControlClass kControlClasses[] = {
    {"grid", IQRL_TabulexConverter::CLSID_CQRLDataGridViewCtrl,
     L"TabulexConverter.QRLDataGridViewCtrl"},
    {"folder view", IQRL_TabulexConverter::CLSID_CFolderViewCtrl,
     L"TabulexConverter.FolderViewCtrl"},
    {"contained", IQRL_TabulexConverter::CLSID_CQRLCommonCtrlContained,
     L"TabulexConverter.QRLCommonCtrlContained"},
};

// As long as this lives the component's control classes have windows.
class WithHostedControls
{
public:
    WithHostedControls() : m_before(Hesperon::specifics::SetControlClasses({}))
    {
        Hesperon::specifics::UILayer::UseHostedControls();
    }
    ~WithHostedControls() { Hesperon::specifics::SetControlClasses(m_before); }
    WithHostedControls(const WithHostedControls&) = delete;
    WithHostedControls& operator=(const WithHostedControls&) = delete;

private:
    const Hesperon::specifics::ControlClasses m_before;
};

inline com_ptr<IUnknown> CreateOfClass(const CLSID& clsid)
{
    com_ptr<IClassFactory> pFactory;
    com_ptr<IUnknown> pObject;
    EXPECT_EQ(S_OK, DllGetClassObject(clsid, iid_of<IClassFactory>, pFactory.put_void()));
    if (pFactory) {
        EXPECT_EQ(S_OK, pFactory->CreateInstance(nullptr, iid_of<IUnknown>, pObject.put_void()));
    }
    return pObject;
}

template <class Interface>
com_ptr<Interface> CreateOfClass(const CLSID& clsid)
{
    return Hesperon::specifics::UILayer::AskFor<Interface>(CreateOfClass(clsid).get());
}
