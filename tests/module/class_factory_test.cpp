// From a class identifier to an object.

#include <gtest/gtest.h>

#include "interfaces/IFileHandlerEvents.h"
#include "module/ComObject.h"
#include "module/Module.h"

using namespace IQRL_TabulexConverter;

namespace {

class Product final : public ComObject<Product, Dual<IFileHandlerEvents2>>
{
public:
    HRESULT STDMETHODCALLTYPE get_StartPosition(ULONGLONG*) override { return S_OK; }
};

HRESULT FailToCreate(REFIID, void**)
{
    return E_ACCESSDENIED;
}

constexpr CLSID kProduct = {0x6A0C3A53, 1, 2, {1, 2, 3, 4, 5, 6, 7, 8}};
constexpr CLSID kBroken = {0x6A0C3A53, 1, 2, {1, 2, 3, 4, 5, 6, 7, 9}};

const ObjectMapEntry kMap[] = {
    {kProduct, OLESTR("Test.Product"), &CreateClass<Product>},
    {kBroken, OLESTR("Test.Broken"), &FailToCreate},
};

com_ptr<IClassFactory> FactoryOf(REFCLSID clsid)
{
    com_ptr<IClassFactory> factory;
    const ObjectMapEntry* entry = FindClass(kMap, clsid);
    EXPECT_TRUE(entry);
    if (entry) {
        EXPECT_EQ(S_OK, CreateClassFactory(*entry, iid_of<IClassFactory>, factory.put_void()));
    }
    return factory;
}

TEST(ObjectMap, IsSearchedByTheWholeIdentifier)
{
    EXPECT_EQ(&kMap[0], FindClass(kMap, kProduct));
    EXPECT_EQ(&kMap[1], FindClass(kMap, kBroken));
    EXPECT_EQ(nullptr, FindClass(kMap, GUID_NULL));
    EXPECT_EQ(nullptr, FindClass({}, kProduct));
}

TEST(ClassFactory, CreatesObjectsOfItsClass)
{
    const auto factory = FactoryOf(kProduct);
    com_ptr<IFileHandlerEvents2> object;
    EXPECT_EQ(S_OK,
              factory->CreateInstance(nullptr, iid_of<IFileHandlerEvents2>, object.put_void()));
    EXPECT_TRUE(object);
    com_ptr<IUnknown> other;
    EXPECT_EQ(S_OK, factory->CreateInstance(nullptr, iid_of<IUnknown>, other.put_void()));
    EXPECT_NE(object.as<IUnknown>().get(), other.get());
}

TEST(ClassFactory, RefusesWhatItCanNotCreate)
{
    const auto factory = FactoryOf(kProduct);
    void* p = &p;
    EXPECT_EQ(E_NOINTERFACE, factory->CreateInstance(nullptr, iid_of<IClassFactory>, &p));
    EXPECT_EQ(nullptr, p);
    p = &p;
    EXPECT_EQ(CLASS_E_NOAGGREGATION, factory->CreateInstance(factory.get(), iid_of<IUnknown>, &p));
    EXPECT_EQ(nullptr, p);
    EXPECT_EQ(E_POINTER, factory->CreateInstance(nullptr, iid_of<IUnknown>, nullptr));
    p = &p;
    EXPECT_EQ(E_ACCESSDENIED, FactoryOf(kBroken)->CreateInstance(nullptr, iid_of<IUnknown>, &p));
    EXPECT_EQ(nullptr, p);
}

TEST(ClassFactory, AnswersForItselfAlone)
{
    const auto factory = FactoryOf(kProduct);
    void* p = nullptr;
    EXPECT_EQ(S_OK, factory->QueryInterface(iid_of<IUnknown>, &p));
    EXPECT_EQ(factory.get(), p);
    EXPECT_EQ(1u, factory->Release());
    EXPECT_EQ(E_NOINTERFACE, factory->QueryInterface(iid_of<IFileHandlerEvents2>, &p));
    EXPECT_EQ(nullptr, p);
    EXPECT_EQ(E_POINTER, factory->QueryInterface(iid_of<IUnknown>, nullptr));
    EXPECT_EQ(E_NOINTERFACE, CreateClassFactory(kMap[0], iid_of<IDispatch>, &p));
    EXPECT_EQ(nullptr, p);
}

TEST(ClassFactory, KeepsTheModuleOnlyWhileItIsLocked)
{
    const LONG nLocks = ModuleLockCount();
    auto factory = FactoryOf(kProduct);
    EXPECT_EQ(nLocks, ModuleLockCount());
    EXPECT_EQ(S_OK, factory->LockServer(true));
    EXPECT_EQ(S_OK, factory->LockServer(true));
    EXPECT_EQ(nLocks + 2, ModuleLockCount());
    EXPECT_EQ(S_OK, factory->LockServer(false));
    factory.reset();
    EXPECT_EQ(nLocks + 1, ModuleLockCount());
    EXPECT_EQ(S_OK, FactoryOf(kBroken)->LockServer(false)); // from any factory
    EXPECT_EQ(nLocks, ModuleLockCount());
}

} // namespace
