#include "src/files/Proxies.h"

#include "tests/files/Consumers.h"

using namespace Hesperon::specifics;
using namespace files_test;

namespace {

TEST(FileEventsProxy, HandsCallsToItsTarget)
{
    const auto consumer = Make<Consumer>();
    consumer->m_onRecord = [](ULONGLONG nIndex) { return nIndex == 3 ? E_FAIL : S_OK; };
    const auto proxy = Make<CFileHandlerEventsProxy>();
    proxy->Attach(consumer.get());
    consumer->AddRef();
    EXPECT_EQ(consumer->Release(), 1u) << "the target isn't counted";
    EXPECT_EQ(proxy->RecordCountChange(42, 1), S_OK);
    EXPECT_EQ(proxy->ProcessRecord(2, nullptr, 0), S_OK);
    EXPECT_EQ(proxy->ProcessRecord(3, nullptr, 1), E_FAIL);
    EXPECT_EQ(proxy->PutData(Variant(), 0, 0), E_NOTIMPL);
    EXPECT_EQ(consumer->Counts(), (std::vector<CountHeard>{{42, 1}}));
    EXPECT_EQ(consumer->Records(), (std::vector<ULONGLONG>{2, 3}));
    consumer->AddRef();
    EXPECT_EQ(consumer->Release(), 1u);
    proxy->Detach();
}

TEST(FileEventsProxy, DoesNothingWithoutATarget)
{
    const auto consumer = Make<Consumer>();
    const auto proxy = Make<CFileHandlerEventsProxy>();
    EXPECT_EQ(proxy->RecordCountChange(42, 1), S_OK);
    proxy->Attach(consumer.get());
    proxy->Detach();
    EXPECT_EQ(proxy->RecordCountChange(42, 1), S_OK);
    EXPECT_EQ(proxy->ProcessRecord(3, nullptr, 1), S_OK);
    EXPECT_EQ(proxy->PutData(Variant(), 0, 0), S_OK);
    EXPECT_TRUE(consumer->Counts().empty());
}

TEST(FileEventsProxy, IsAConsumerToItsCaller)
{
    const auto proxy = Make<CFileHandlerEventsProxy>();
    com_ptr<IFileHandlerEvents> pEvents;
    EXPECT_EQ(query(proxy->Identity(), pEvents), S_OK);
    com_ptr<IFileHandlerEvents2> pStart;
    EXPECT_EQ(query(proxy->Identity(), pStart), E_NOINTERFACE);
}

// As a data parser does: cut the link when the last reference has gone.
class Target : public ComObject<Target, Dual<IFileHandlerEvents>>
{
public:
    com_ptr<CFileHandlerEventsProxy> m_proxy;
    std::atomic<bool> m_bAlive = true;

    void FinalRelease()
    {
        m_proxy->Detach();
        m_bAlive = false;
    }
    HRESULT STDMETHODCALLTYPE RecordCountChange(ULONGLONG, VARIANT_BOOL) override
    {
        return m_bAlive ? S_OK : E_UNEXPECTED;
    }
    HRESULT STDMETHODCALLTYPE PutData(VARIANT, ULONGLONG, ULONGLONG) override { return S_OK; }
    HRESULT STDMETHODCALLTYPE ProcessRecord(ULONGLONG, BSTR, VARIANT_BOOL) override { return S_OK; }
};

TEST(FileEventsProxy, NeverReachesATargetThatIsGoing)
{
    for (int n = 0; n < 300; ++n) {
        const auto proxy = Make<CFileHandlerEventsProxy>();
        auto target = Make<Target>();
        target->m_proxy = proxy;
        proxy->Attach(target.get());
        std::atomic<bool> bStop = false;
        std::atomic<int> nWrong = 0;
        std::thread caller([&] {
            while (!bStop)
                nWrong += proxy->RecordCountChange(1, 0) != S_OK;
        });
        if (n % 2)
            std::this_thread::yield();
        target.reset();
        bStop = true;
        caller.join();
        ASSERT_EQ(nWrong, 0);
    }
}

} // namespace
