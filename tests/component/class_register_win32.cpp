// The system makes objects of the classes that it finds in its register. The library is
// linked to the test, so its classes are registered with the process only.

#include <gtest/gtest.h>

#include <vector>

#include "component/ObjectMap.h"
#include "interfaces/Module.h"
#include "platform/com_ptr.h"

namespace {

class ClassRegister : public testing::Environment
{
public:
    void SetUp() override
    {
        ASSERT_EQ(S_OK, CoInitialize(nullptr));
        for (const ObjectMapEntry& entry : ObjectMap())
            Register(entry.clsid);
    }

    void TearDown() override
    {
        for (const DWORD nClass : m_classes)
            EXPECT_EQ(S_OK, CoRevokeClassObject(nClass));
        CoUninitialize();
    }

private:
    void Register(REFCLSID clsid)
    {
        com_ptr<IUnknown> factory;
        ASSERT_EQ(S_OK, DllGetClassObject(clsid, iid_of<IUnknown>, factory.put_void()));
        DWORD nClass = 0;
        ASSERT_EQ(S_OK, CoRegisterClassObject(clsid, factory.get(), CLSCTX_INPROC_SERVER,
                                              REGCLS_MULTIPLEUSE, &nClass));
        m_classes.push_back(nClass);
    }

    std::vector<DWORD> m_classes;
};

const testing::Environment* const g_pRegister =
    testing::AddGlobalTestEnvironment(new ClassRegister);

} // namespace
