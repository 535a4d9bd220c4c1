// Counting, identity and life of the objects of the frame.

#include <gtest/gtest.h>

#include <thread>
#include <vector>

#include "interfaces/IFileHandlerEvents.h"
#include "module/ComObject.h"

using namespace IQRL_TabulexConverter;

struct IPlain : IUnknown
{
    virtual int STDMETHODCALLTYPE Number() = 0;
};

template <>
inline constexpr GUID iid_of<IPlain> = {0x6A0C3A52, 1, 2, {1, 2, 3, 4, 5, 6, 7, 8}};

namespace {

struct Life
{
    HRESULT hrConstruct = S_OK;
    int nConstructs = 0;
    int nReleases = 0;
    int nDestructions = 0;
    ULONG nRefsWhileDying = 0;
};

Life* g_life = nullptr; // of the objects that the test makes

class Object final
    : public ComObject<Object, IPlain, Dual<IFileHandlerEvents2>, Dual<IFileHandlerEvents>>
{
public:
    ~Object() override { ++g_life->nDestructions; }

    HRESULT FinalConstruct()
    {
        ++g_life->nConstructs;
        return g_life->hrConstruct;
    }
    void FinalRelease()
    {
        ++g_life->nReleases;
        g_life->nRefsWhileDying = AddRef();
        Release();
    }

    int STDMETHODCALLTYPE Number() override { return 42; }
    HRESULT STDMETHODCALLTYPE get_StartPosition(ULONGLONG*) override { return S_OK; }
    HRESULT STDMETHODCALLTYPE RecordCountChange(ULONGLONG, VARIANT_BOOL) override { return S_OK; }
    HRESULT STDMETHODCALLTYPE PutData(VARIANT, ULONGLONG, ULONGLONG) override { return S_OK; }
    HRESULT STDMETHODCALLTYPE ProcessRecord(ULONGLONG, BSTR, VARIANT_BOOL) override { return S_OK; }
};

class Objects : public testing::Test
{
protected:
    Objects() { g_life = &m_life; }
    ~Objects() override { g_life = nullptr; }

    Life m_life;
    const LONG m_nLocks = ModuleLockCount();
};

TEST_F(Objects, LiveFromTheirCreationToTheirLastRelease)
{
    com_ptr<Object> object;
    ASSERT_EQ(S_OK, CreateObject(object));
    EXPECT_EQ(1, m_life.nConstructs);
    EXPECT_EQ(2u, object->AddRef());
    EXPECT_EQ(1u, object->Release());
    EXPECT_EQ(0, m_life.nReleases);
    EXPECT_EQ(0u, object.detach()->Release());
    EXPECT_EQ(1, m_life.nReleases);
    EXPECT_EQ(1, m_life.nDestructions);
}

TEST_F(Objects, MayBeReferredToWhileTheyDie)
{
    com_ptr<Object> object;
    ASSERT_EQ(S_OK, CreateObject(object));
    object.reset();
    EXPECT_GT(m_life.nRefsWhileDying, kDyingRefs);
    EXPECT_EQ(1, m_life.nReleases);
    EXPECT_EQ(1, m_life.nDestructions);
}

TEST_F(Objects, AnswerForTheirInterfaces)
{
    com_ptr<Object> object;
    ASSERT_EQ(S_OK, CreateObject(object));
    void* p = nullptr;
    struct Row
    {
        const char* szInterface;
        GUID iid;
        void* pExpected;
    };
    const Row kRows[] = {
        {"IPlain", iid_of<IPlain>, static_cast<IPlain*>(object.get())},
        {"IUnknown", iid_of<IUnknown>, static_cast<IPlain*>(object.get())},
        {"IFileHandlerEvents", iid_of<IFileHandlerEvents>,
         static_cast<IFileHandlerEvents*>(object.get())},
        {"IFileHandlerEvents2", iid_of<IFileHandlerEvents2>,
         static_cast<IFileHandlerEvents2*>(object.get())},
        // That of the first dual base.
        {"IDispatch", iid_of<IDispatch>,
         static_cast<IDispatch*>(static_cast<IFileHandlerEvents2*>(object.get()))},
    };
    for (const Row& row : kRows) {
        SCOPED_TRACE(row.szInterface);
        EXPECT_EQ(S_OK, object->QueryInterface(row.iid, &p));
        EXPECT_EQ(row.pExpected, p);
        EXPECT_EQ(1u, object->Release());
    }
    EXPECT_EQ(E_NOINTERFACE, object->QueryInterface(iid_of<IClassFactory>, &p));
    EXPECT_EQ(nullptr, p);
    EXPECT_EQ(E_POINTER, object->QueryInterface(iid_of<IPlain>, nullptr));
}

TEST_F(Objects, HaveOneIdentityThroughAllInterfaces)
{
    com_ptr<Object> object;
    ASSERT_EQ(S_OK, CreateObject(object));
    const auto plain = com_ptr<IPlain>(object.get()).as<IUnknown>();
    const auto events = com_ptr<IFileHandlerEvents>(object.get()).as<IUnknown>();
    EXPECT_EQ(plain.get(), events.get());
    EXPECT_EQ(plain.get(), object->Identity());
}

TEST_F(Objects, ThatFailToConstructAreGone)
{
    m_life.hrConstruct = E_ACCESSDENIED;
    com_ptr<Object> object;
    EXPECT_EQ(E_ACCESSDENIED, CreateObject(object));
    EXPECT_FALSE(object);
    EXPECT_EQ(1, m_life.nDestructions);
    EXPECT_EQ(m_nLocks, ModuleLockCount());
    void* p = nullptr;
    EXPECT_EQ(E_ACCESSDENIED, CreateClass<Object>(iid_of<IPlain>, &p));
    EXPECT_EQ(nullptr, p);
}

TEST_F(Objects, AreMadeWithTheInterfaceAskedFor)
{
    com_ptr<IPlain> plain;
    EXPECT_EQ(S_OK, CreateClass<Object>(iid_of<IPlain>, plain.put_void()));
    EXPECT_EQ(42, plain->Number());
    plain.reset();
    void* p = &m_life;
    EXPECT_EQ(E_NOINTERFACE, CreateClass<Object>(iid_of<IClassFactory>, &p));
    EXPECT_EQ(nullptr, p);
    EXPECT_EQ(2, m_life.nDestructions);
}

TEST_F(Objects, CountInTheModule)
{
    com_ptr<Object> first, second;
    ASSERT_EQ(S_OK, CreateObject(first));
    EXPECT_EQ(m_nLocks + 1, ModuleLockCount());
    ASSERT_EQ(S_OK, CreateObject(second));
    const com_ptr<Object> again = first;
    EXPECT_EQ(m_nLocks + 2, ModuleLockCount());
    second.reset();
    EXPECT_EQ(m_nLocks + 1, ModuleLockCount());
    LockModule();
    EXPECT_EQ(m_nLocks + 2, ModuleLockCount());
    UnlockModule();
    EXPECT_EQ(m_nLocks + 1, ModuleLockCount());
}

TEST_F(Objects, AreCountedFromAnyThread)
{
    com_ptr<Object> object;
    ASSERT_EQ(S_OK, CreateObject(object));
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i)
        threads.emplace_back([copy = object]() mutable {
            for (int n = 0; n < 2000; ++n)
                com_ptr<Object> held = copy;
            copy.reset();
        });
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(2u, object->AddRef());
    EXPECT_EQ(1u, object->Release());
    EXPECT_EQ(0, m_life.nReleases);
    object.reset();
    EXPECT_EQ(1, m_life.nDestructions);
    EXPECT_EQ(m_nLocks, ModuleLockCount());
}

} // namespace
