#include "src/files/AsyncTransactionPool.h"

#include "module/ComObject.h"
#include "tests/files/Vocabulary.h"

using namespace Hesperon::specifics;
using namespace files_test;
using IQRL_TabulexConverter::IAsyncTransaction;

namespace {

using Texts = std::vector<std::string>;

class Transaction : public ComObject<Transaction, IAsyncTransaction>
{
public:
    int m_nCancelled = 0;
    HRESULT STDMETHODCALLTYPE Cancel() override
    {
        ++m_nCancelled;
        return S_OK;
    }
};

struct Life
{
    bool bGone = false;
    bool bThereAtTheEndOfCancel = false;
};

// Cancel lets go of its only reference.
class LeavingTransaction : public ComObject<LeavingTransaction, IAsyncTransaction>
{
public:
    ~LeavingTransaction() override { m_pLife->bGone = true; }
    HRESULT STDMETHODCALLTYPE Cancel() override
    {
        Life& life = *m_pLife;
        AsyncTransactionPool::UnregisterTransaction(this);
        m_pOnly->reset();
        life.bThereAtTheEndOfCancel = !life.bGone;
        return S_OK;
    }

    com_ptr<LeavingTransaction>* m_pOnly = nullptr;
    Life* m_pLife = nullptr;
};

class OtherObject : public ComObject<OtherObject, ISupportErrorInfo>
{
public:
    HRESULT STDMETHODCALLTYPE InterfaceSupportsErrorInfo(REFIID) override { return S_FALSE; }
};

template <class Class>
com_ptr<Class> Make()
{
    com_ptr<Class> object;
    EXPECT_EQ(CreateObject(object), S_OK);
    return object;
}

ULONG RefsOf(Transaction* transaction)
{
    transaction->AddRef();
    return transaction->Release();
}

TEST(Transactions, AreCancelledByTheirNumber)
{
    const auto first = Make<Transaction>();
    const auto second = Make<Transaction>();
    EXPECT_EQ(AsyncTransactionPool::RegisterTransaction(11, first->Identity()), 11u);
    EXPECT_EQ(AsyncTransactionPool::RegisterTransaction(12, second->Identity()), 12u);
    EXPECT_EQ(RefsOf(first.get()), 1u) << "held uncounted";
    EXPECT_TRUE(AsyncTransactionPool::CancelTransaction(12));
    EXPECT_TRUE(AsyncTransactionPool::CancelTransaction(12));
    EXPECT_EQ(first->m_nCancelled, 0);
    EXPECT_EQ(second->m_nCancelled, 2);
    AsyncTransactionPool::UnregisterTransaction(second.get());
    EXPECT_FALSE(AsyncTransactionPool::CancelTransaction(12));
    EXPECT_TRUE(AsyncTransactionPool::CancelTransaction(11));
    AsyncTransactionPool::UnregisterTransaction(first.get());
    EXPECT_EQ(RefsOf(first.get()), 1u);
}

TEST(Transactions, ANumberInUseStaysWithTheEarlierOne)
{
    const auto first = Make<Transaction>();
    const auto second = Make<Transaction>();
    EXPECT_EQ(AsyncTransactionPool::RegisterTransaction(5, first->Identity()), 5u);
    EXPECT_EQ(AsyncTransactionPool::RegisterTransaction(5, second->Identity()), 0u);
    EXPECT_TRUE(AsyncTransactionPool::CancelTransaction(5));
    EXPECT_EQ(first->m_nCancelled, 1);
    EXPECT_EQ(second->m_nCancelled, 0);
    AsyncTransactionPool::UnregisterTransaction(first.get());
}

TEST(Transactions, ObjectsThatCannotBeCancelledAreReported)
{
    const auto other = Make<OtherObject>();
    for (IUnknown* pObject : {other->Identity(), static_cast<IUnknown*>(nullptr)}) {
        ReportLog reports;
        EXPECT_EQ(AsyncTransactionPool::RegisterTransaction(5, pObject), 0u);
        EXPECT_EQ(reports.Texts(), Texts{"pAsyncTrans"});
    }
    EXPECT_FALSE(AsyncTransactionPool::CancelTransaction(5));
}

TEST(Transactions, AnUnknownNumberCancelsNothing)
{
    const auto transaction = Make<Transaction>();
    AsyncTransactionPool::RegisterTransaction(5, transaction->Identity());
    EXPECT_FALSE(AsyncTransactionPool::CancelTransaction(6));
    EXPECT_FALSE(AsyncTransactionPool::CancelTransaction(0));
    EXPECT_EQ(transaction->m_nCancelled, 0);
    AsyncTransactionPool::UnregisterTransaction(transaction.get());
}

TEST(Transactions, UnregisteringAStrangerTakesTheLastEntry)
{
    const auto registered = Make<Transaction>();
    const auto stranger = Make<Transaction>();
    AsyncTransactionPool::RegisterTransaction(5, registered->Identity());
    AsyncTransactionPool::UnregisterTransaction(stranger.get());
    EXPECT_FALSE(AsyncTransactionPool::CancelTransaction(5));
    AsyncTransactionPool::UnregisterTransaction(stranger.get()); // nothing is left
    EXPECT_EQ(RefsOf(stranger.get()), 1u);
}

TEST(Transactions, UnregisteringNothingIsReported)
{
    const auto transaction = Make<Transaction>();
    AsyncTransactionPool::RegisterTransaction(5, transaction->Identity());
    ReportLog reports;
    AsyncTransactionPool::UnregisterTransaction(nullptr);
    EXPECT_EQ(reports.Texts(), Texts{"pAsyncTrans"});
    EXPECT_TRUE(AsyncTransactionPool::CancelTransaction(5));
    AsyncTransactionPool::UnregisterTransaction(transaction.get());
}

TEST(Transactions, StayWhileTheyAreCancelled)
{
    Life life;
    auto leaving = Make<LeavingTransaction>();
    leaving->m_pOnly = &leaving;
    leaving->m_pLife = &life;
    AsyncTransactionPool::RegisterTransaction(5, leaving->Identity());
    EXPECT_TRUE(AsyncTransactionPool::CancelTransaction(5));
    EXPECT_TRUE(life.bThereAtTheEndOfCancel);
    EXPECT_TRUE(life.bGone);
}

TEST(Transactions, AreSafeFromSeveralThreads)
{
    std::vector<std::thread> threads;
    std::atomic<int> nWrong = 0;
    for (ULONG_PTR nThread = 0; nThread < 4; ++nThread)
        threads.emplace_back([&, nThread] {
            for (ULONG_PTR n = 1; n < 300; ++n) {
                const auto transaction = Make<Transaction>();
                const ULONG_PTR nNumber = n * 4 + nThread;
                nWrong += AsyncTransactionPool::RegisterTransaction(
                              nNumber, transaction->Identity()) != nNumber;
                nWrong += !AsyncTransactionPool::CancelTransaction(nNumber);
                AsyncTransactionPool::CancelTransaction(nNumber + 1);
                AsyncTransactionPool::UnregisterTransaction(transaction.get());
            }
        });
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(nWrong, 0);
}

} // namespace
