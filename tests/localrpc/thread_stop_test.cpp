// Stops of the transport with a thread of its own.

#include <memory>
#include <optional>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "LocalRPC/AO_ThreadTransport.h"
#include "tests/localrpc/Tasks.h"
#include "tests/support/ReportLog.h"

using namespace LocalRPC;
using LocalRPC::details::CThread;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class ThreadStop : public testing::Test
{
protected:
    Log m_log;
    Hold m_hold;
    CThread m_thread; // destroyed first
};

TEST_F(ThreadStop, ThrowsAwayWhatIsQueuedIfToldSo)
{
    m_thread.Start();
    EXPECT_TRUE(m_thread.PostTask(m_hold.Task()));
    ASSERT_TRUE(m_hold.entered.Pass());
    auto pUsed = std::make_shared<int>(0);
    EXPECT_TRUE(m_thread.PostTask(MakeAsyncTask([this, pUsed] { m_log.Say("queued"); })));
    std::thread stopper([&] { EXPECT_TRUE(m_thread.StopEx(true, kNoTimeLimit, true)); });
    EXPECT_TRUE(Eventually([&] { return pUsed.use_count() == 1; }));
    m_hold.leave.Open();
    stopper.join();
    EXPECT_EQ("", m_log.Words());
}

TEST_F(ThreadStop, RefusesTasksDuringAStopIfToldSo)
{
    m_thread.Start();
    EXPECT_TRUE(m_thread.PostTask(MakeAsyncTask([&] {
        m_hold.entered.Open();
        EXPECT_TRUE(Eventually([&] { return !m_thread.PostTask(MakeAsyncTask([] {})); }));
    })));
    ASSERT_TRUE(m_hold.entered.Pass());
    EXPECT_TRUE(m_thread.StopEx(false, kNoTimeLimit, true));
}

TEST_F(ThreadStop, TakesTasksOfItsOwnDuringAStopOtherwise)
{
    m_thread.Start();
    EXPECT_TRUE(m_thread.PostTask(MakeAsyncTask([&] {
        m_hold.entered.Open();
        m_hold.leave.Pass();
        EXPECT_TRUE(m_thread.PostTask(MakeAsyncTask([&] {
            m_log.Say("a");
            EXPECT_TRUE(m_thread.PostTask(m_log.Task("b")));
        })));
    })));
    ASSERT_TRUE(m_hold.entered.Pass());
    std::thread opener([&] { m_hold.leave.Open(); });
    EXPECT_TRUE(m_thread.StopEx(false, kNoTimeLimit, false));
    opener.join();
    EXPECT_EQ("a b", m_log.Words());
}

TEST_F(ThreadStop, CantBeStoppedOrStartedFromItsOwnThread)
{
    ReportLog reports;
    m_thread.Start();
    EXPECT_TRUE(m_thread.PostTask(MakeAsyncTask([&] {
        EXPECT_FALSE(m_thread.StopEx(true, kNoTimeLimit, true));
        m_thread.Start();
        EXPECT_TRUE(m_thread.PostTask(m_log.Task("still runs")));
    })));
    const auto last = MakeSyncTask([] {});
    ASSERT_TRUE(m_thread.PostTask(last));
    EXPECT_TRUE(last->Wait(std::chrono::milliseconds(kDeadline)));
    EXPECT_TRUE(m_thread.StopEx(false, kNoTimeLimit, true));
    EXPECT_EQ("still runs", m_log.Words());
    EXPECT_THAT(reports.Texts(), ElementsAre("!\"Can't stop thread from itself!\"",
                                             "!\"Can't stop thread from itself!\""));
}

TEST_F(ThreadStop, IsStoppedByOneOfManyStoppers)
{
    constexpr int kStoppers = 4;
    m_thread.Start();
    EXPECT_TRUE(m_thread.PostTask(m_hold.Task()));
    ASSERT_TRUE(m_hold.entered.Pass());
    std::atomic<int> nStopped = 0;
    std::vector<std::thread> stoppers;
    stoppers.reserve(kStoppers);
    for (int i = 0; i < kStoppers; ++i)
        stoppers.emplace_back([&] { nStopped += m_thread.StopEx(false, kNoTimeLimit, true); });
    m_hold.leave.Open();
    for (std::thread& stopper : stoppers)
        stopper.join();
    EXPECT_EQ(1, nStopped);
}

TEST_F(ThreadStop, ReportsAThreadWithoutAnObject)
{
    struct Exposed : details::CThreadBase
    {
        using CThreadBase::ThreadMain;
    };
    ReportLog reports;
    Exposed::ThreadMain(nullptr);
    EXPECT_THAT(reports.Texts(), ElementsAre("!IsBadReadPtr(This,sizeof(CThreadBase))"));
}

// ---- a thread that doesn't answer

class BusyThread : public testing::Test
{
protected:
    BusyThread()
    {
        m_thread.emplace();
        m_thread->Start();
        EXPECT_TRUE(m_thread->PostTask(MakeAsyncTask([this, p = m_pUsed] {
            m_hold.entered.Open();
            m_hold.leave.Pass();
            m_log.Say("held");
        })));
        EXPECT_TRUE(m_hold.entered.Pass());
        EXPECT_TRUE(
            m_thread->PostTask(MakeAsyncTask([this, p = m_pUsed] { m_log.Say("queued"); })));
    }
    // When its tasks are gone, the thread uses nothing of this object any more.
    ~BusyThread() override
    {
        EXPECT_TRUE(Eventually([&] { return m_pUsed.use_count() == 1; }));
        EXPECT_TRUE(m_log.Words().starts_with("held")); // its lock orders this after them
    }

    const std::shared_ptr<int> m_pUsed = std::make_shared<int>(0);
    Log m_log;
    Hold m_hold;
    std::optional<CThread> m_thread;
};

TEST_F(BusyThread, IsLeftWhenTheTimeIsOver)
{
    EXPECT_FALSE(m_thread->StopEx(false, 1, true));
    EXPECT_FALSE(m_thread->IsRunning());
    EXPECT_FALSE(m_thread->PostTask(m_log.Task("late")));
    m_thread.reset();
    m_hold.leave.Open();
    EXPECT_TRUE(Eventually([&] { return m_pUsed.use_count() == 1; }));
    EXPECT_EQ("held", m_log.Words());
}

TEST_F(BusyThread, IsLeftAtOnceWithoutTime)
{
    EXPECT_FALSE(m_thread->StopEx(true, 0, true));
    EXPECT_EQ(2, m_pUsed.use_count()); // the running task's
    m_hold.leave.Open();
}

TEST_F(BusyThread, IsWaitedForByTheThreadOfTheNextStart)
{
    EXPECT_FALSE(m_thread->StopEx(false, 0, true));
    m_thread->Start();
    EXPECT_TRUE(m_thread->PostTask(m_log.Task("new")));
    EXPECT_FALSE(m_thread->StopEx(false, 0, true)); // this thread waits and is left, too
    m_thread->Start();
    EXPECT_TRUE(m_thread->PostTask(m_log.Task("newest")));
    m_hold.leave.Open();
    EXPECT_TRUE(m_thread->StopEx(false, kNoTimeLimit, true));
    EXPECT_EQ("held queued new newest", m_log.Words());
}

TEST_F(BusyThread, IsWaitedForWhenTheTransportGoes)
{
    std::thread opener([&] { m_hold.leave.Open(); });
    m_thread.reset();
    EXPECT_TRUE(m_log.Words().starts_with("held")) << m_log.Words();
    EXPECT_EQ(1, m_pUsed.use_count());
    opener.join();
}

TEST(ThreadStopInATask, MayGoOnItsOwnThread)
{
    ReportLog reports;
    const auto pUsed = std::make_shared<int>(0);
    auto pThread = std::make_unique<CThread>();
    CThread& thread = *pThread;
    thread.Start();
    Gate handedOver, gone;
    std::unique_ptr<CThread> pOwned;
    EXPECT_TRUE(thread.PostTask(MakeAsyncTask([&, pUsed] {
        handedOver.Pass();
        pOwned.reset();
        gone.Open();
    })));
    EXPECT_TRUE(thread.PostTask(MakeAsyncTask([pUsed] { ++*pUsed; })));
    pOwned = std::move(pThread);
    handedOver.Open();
    EXPECT_TRUE(gone.Pass());
    EXPECT_TRUE(Eventually([&] { return pUsed.use_count() == 1; }));
    EXPECT_EQ(0, *pUsed); // what was queued is thrown away
    EXPECT_THAT(reports.Texts(), IsEmpty());
}

} // namespace
