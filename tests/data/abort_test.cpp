// Conversions that are aborted: by the worker itself, between steps, and by other threads at any
// moment. Each run calls EndTransaction once.

#include <chrono>
#include <random>
#include <thread>

#include "tests/data/DataParserFixture.h"

#include "src/files/AsyncTransactionPool.h"
#include "src/files/Proxies.h"
#include "tests/support/Seed.h"

using namespace Hesperon::specifics;

namespace {

class AbortTest : public DataParserFixture
{};

TEST_F(AbortTest, AbortBetweenStepsEndsTheRunOnce)
{
    Open(Days(1, 10));
    ASSERT_EQ(Start(), S_OK);
    ASSERT_EQ(file->Step(0), S_OK);
    EXPECT_EQ(parser->AbortConversion(), S_OK);
    EXPECT_EQ(sink->ends, std::vector<bool>{false});
    EXPECT_EQ(file->Step(1), E_FAIL);
    EXPECT_EQ(sink->ends, std::vector<bool>{false});
    EXPECT_TRUE(sink->batches.empty());
    EXPECT_EQ(file->linesRead, std::vector<ULONGLONG>{0});
    EXPECT_FALSE(AsyncTransactionPool::CancelTransaction(kTransaction));
}

TEST_F(AbortTest, CancelByNumberIsAnAbort)
{
    Open(Days(1, 10));
    ASSERT_EQ(Start(), S_OK);
    EXPECT_FALSE(AsyncTransactionPool::CancelTransaction(kTransaction + 1));
    EXPECT_TRUE(AsyncTransactionPool::CancelTransaction(kTransaction));
    EXPECT_EQ(sink->ends, std::vector<bool>{false});
    EXPECT_EQ(file->RunConversion(), E_FAIL);
    EXPECT_FALSE(AsyncTransactionPool::CancelTransaction(kTransaction));
}

TEST_F(AbortTest, AbortBetweenTwoBatchesEndsTheRunOnce)
{
    Open(Days(1, 2500));
    sink->onPutRecords = [&](std::size_t) { return parser->AbortConversion(); };
    EXPECT_EQ(Convert(), E_FAIL);
    EXPECT_EQ(sink->batches.size(), 1u);
    EXPECT_EQ(sink->ends, std::vector<bool>{false});
}

TEST_F(AbortTest, AbortInTheLastBatchEndsTheRunOnce)
{
    Open(Days(1, 5));
    sink->onPutRecords = [&](std::size_t) { return parser->AbortConversion(); };
    Convert();
    EXPECT_EQ(sink->ends, std::vector<bool>{false});
}

TEST_F(AbortTest, AbortOutOfABadLineEndsTheRunOnceWhateverTheAnswer)
{
    for (const HRESULT hrAnswer : {S_OK, S_FALSE}) {
        SCOPED_TRACE(hrAnswer);
        CreateObject(sink);
        sink->onBadLine = [&](const auto&) {
            parser->AbortConversion();
            return hrAnswer;
        };
        Open({"1,1", "?,2", "3,3"});
        Convert();
        EXPECT_EQ(sink->ends, std::vector<bool>{false});
        EXPECT_FALSE(Access::HasSink(*parser.get()));
    }
}

TEST_F(AbortTest, AbortThatWaitsWhileTheSinkStopsTheRunIsHeard)
{
    Open({"1,1", "?,2", "3,3"});
    std::thread aborter;
    sink->onBadLine = [&](const auto&) {
        Event aborting(Event::Kind::ManualReset);
        aborter = std::thread([&] {
            aborting.Set();
            parser->AbortConversion();
        });
        // Time for the other thread to mark the run and to wait for the lock that this one holds.
        aborting.Wait();
        std::this_thread::sleep_for(std::chrono::milliseconds(200));
        return S_FALSE;
    };
    Convert();
    aborter.join();
    EXPECT_EQ(sink->ends, std::vector<bool>{false});
}

// The caller of a cancel relies on the sink having heard the end when the call returns.
TEST_F(AbortTest, CancelThatFindsARunIsHeardThoughTheRunEndsByItself)
{
    Open(Days(1, 5));
    ASSERT_EQ(Start(), S_OK);
    Event delivered(Event::Kind::ManualReset);
    sink->onPutRecords = [&](std::size_t) {
        delivered.Set();
        return S_OK;
    };
    std::thread worker;
    {
        LockGuard lock(ProxyLock()); // as a cancel has it
        worker = std::thread([&] { file->RunConversion(); });
        delivered.Wait();
        std::this_thread::sleep_for(std::chrono::milliseconds(200)); // the run comes to its end
        EXPECT_TRUE(AsyncTransactionPool::CancelTransaction(kTransaction));
        EXPECT_EQ(sink->EndCount(), 1u);
        EXPECT_FALSE(AsyncTransactionPool::CancelTransaction(kTransaction));
    }
    worker.join();
    EXPECT_EQ(sink->ends, std::vector<bool>{false});
}

TEST_F(AbortTest, AbortWithoutARunDoesNotTouchTheNextOne)
{
    Open(Days(1, 5));
    EXPECT_EQ(parser->AbortConversion(), S_OK);
    EXPECT_TRUE(sink->ends.empty());
    EXPECT_EQ(Convert(), S_FALSE);
    EXPECT_EQ(sink->ends, std::vector<bool>{true});
}

TEST_F(AbortTest, SinkThatHoldsTheLastReferenceMayGoInTheAbort)
{
    Open(Days(1, 5));
    ASSERT_EQ(Start(), S_OK);
    com_ptr<RecordingSink> last = std::exchange(sink, nullptr);
    auto pHeld = std::make_shared<com_ptr<CDataParser>>(parser);
    last->onEnd = [pHeld] { pHeld->reset(); };
    CDataParser* const p = std::exchange(parser, nullptr).detach();
    file->pQueued.reset();
    com_ptr<CDataParser>(attach_ref, p).reset();
    last.reset();
    ASSERT_TRUE(*pHeld);
    EXPECT_EQ((*pHeld)->AbortConversion(), S_OK);
    EXPECT_FALSE(*pHeld);
}

TEST_F(AbortTest, OneEndARunUnderAbortsAtRandomMoments)
{
    std::mt19937 random(Seed());
    const int nRuns = Rounds(150);
    Open(Days(1, 1500));
    int nCutOff = 0;
    for (int i = 0; i < nRuns; ++i) {
        CreateObject(sink);
        ASSERT_EQ(Start(), S_OK);
        const auto nDelay = std::chrono::microseconds(random() % 3000);
        std::thread worker([&] { file->RunConversion(); });
        std::thread first([&] {
            std::this_thread::sleep_for(nDelay);
            parser->AbortConversion();
        });
        std::thread second([&] {
            std::this_thread::sleep_for(nDelay);
            AsyncTransactionPool::CancelTransaction(kTransaction);
        });
        worker.join();
        first.join();
        second.join();
        ASSERT_EQ(sink->EndCount(), 1u) << i;
        nCutOff += !sink->ends[0];
        ASSERT_FALSE(Access::HasSink(*parser.get()));
        ASSERT_FALSE(AsyncTransactionPool::CancelTransaction(kTransaction));
    }
    RecordProperty("cut_off", nCutOff);
}

TEST_F(AbortTest, EndTransactionComesWithoutTheLock)
{
    Open(Days(1, 5));
    bool bFree = false;
    sink->onEnd = [&] {
        std::thread other([&] {
            ULONGLONG nPosition = 0;
            bFree = parser->get_Position(&nPosition) == S_OK;
        });
        other.join();
    };
    Convert();
    EXPECT_TRUE(bFree);
}

TEST_F(AbortTest, BatchIsDeliveredWithoutTheLock)
{
    Open(Days(1, 5));
    bool bFree = false;
    sink->onPutRecords = [&](std::size_t) {
        std::thread other([&] {
            ULONGLONG nPosition = 0;
            bFree = parser->get_Position(&nPosition) == S_OK;
        });
        other.join();
        return S_OK;
    };
    Convert();
    EXPECT_TRUE(bFree);
}

} // namespace
