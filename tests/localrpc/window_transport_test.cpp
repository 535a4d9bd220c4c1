// The transport over a thread's message queue.

#include <optional>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "LocalRPC/AO_WndMsgPumpTransport.h"
#include "tests/localrpc/Pumping.h"
#include "tests/support/ReportLog.h"

using namespace LocalRPC;
using LocalRPC::details::CWndMsgPump;
using testing::ElementsAre;

namespace {

class WindowTransport : public testing::Test
{
protected:
    WindowTransport()
    {
        m_pump.emplace();
        m_pump->Start();
    }

    bool Post(const std::string& sWord) { return m_pump->PostTask(m_log.Task(sWord)); }

    Log m_log;
    std::optional<CWndMsgPump> m_pump;
};

TEST_F(WindowTransport, RunsTasksOfAnyThreadOnTheOneThatStartedIt)
{
    const auto self = std::this_thread::get_id();
    const auto task = [&](const char* word) {
        return MakeAsyncTask([=, this] {
            EXPECT_EQ(self, std::this_thread::get_id());
            m_log.Say(word);
        });
    };
    EXPECT_TRUE(m_pump->PostTask(task("a")));
    OnAnotherThread([&] { EXPECT_TRUE(m_pump->PostTask(task("b"))); });
    EXPECT_EQ("", m_log.Words());
    PumpAll();
    EXPECT_EQ("a b", m_log.Words());
}

TEST_F(WindowTransport, HasOneMessageForManyPostsOfAWorker)
{
    constexpr int kPosts = 100;
    int nRun = 0;
    OnAnotherThread([&] {
        for (int i = 0; i < kPosts; ++i)
            EXPECT_TRUE(m_pump->PostTask(MakeAsyncTask([&] { ++nRun; })));
    });
    EXPECT_EQ(1U, PumpMessages(kNoWait));
    EXPECT_EQ(kPosts, nRun);
    EXPECT_EQ(0U, PumpMessages(kNoWait));
    OnAnotherThread([&] { EXPECT_TRUE(Post("a")); }); // the next post sends a message again
    EXPECT_EQ(1U, PumpMessages(kNoWait));
    EXPECT_EQ("a", m_log.Words());
}

TEST_F(WindowTransport, HasAMessageForEachPostOfItsOwnThread)
{
    EXPECT_TRUE(Post("a"));
    EXPECT_TRUE(Post("b"));
    EXPECT_TRUE(Post("c"));
    EXPECT_EQ(3U, PumpMessages(kNoWait));
    EXPECT_EQ("a b c", m_log.Words());
}

// A window beside the transport's on the same thread.
class Bystander final : public MessageWindow
{
public:
    explicit Bystander(Log& log) : m_log(log) { Create(); }

private:
    LONG_PTR OnMessage(UINT, ULONG_PTR, LONG_PTR) override
    {
        m_log.Say("other");
        return 0;
    }

    Log& m_log;
};

TEST_F(WindowTransport, LeavesRoomBetweenTasksThatPostThemselvesAgain)
{
    constexpr int kTimes = 3;
    Bystander bystander(m_log);
    const auto postOther = [&] {
        EXPECT_TRUE(PostWindowMessage(bystander.Handle(), kUserMessage, 0, 0));
    };
    std::function<void(int)> post = [&](int n) {
        EXPECT_TRUE(m_pump->PostTask(MakeAsyncTask([&, n] {
            m_log.Say(std::to_string(n));
            if (n < kTimes) {
                postOther();
                post(n + 1);
            }
        })));
    };
    post(1);
    postOther();
    PumpAll();
    EXPECT_EQ("1 other other 2 other 3", m_log.Words());
}

TEST_F(WindowTransport, HearsPostsOfAWorkerDuringATask)
{
    EXPECT_TRUE(m_pump->PostTask(
        MakeAsyncTask([&] { OnAnotherThread([&] { EXPECT_TRUE(Post("meanwhile")); }); })));
    PumpAll();
    EXPECT_EQ("meanwhile", m_log.Words());
}

TEST_F(WindowTransport, GoesOnBehindATaskThatThrows)
{
    ReportLog reports;
    EXPECT_TRUE(m_pump->PostTask(MakeAsyncTask([] { throw 1; })));
    EXPECT_TRUE(Post("a"));
    PumpAll();
    EXPECT_EQ("a", m_log.Words());
    EXPECT_THAT(reports.Texts(), ElementsAre("Unhandled exception occure during execute task."));
}

// ---- synchronous tasks

TEST_F(WindowTransport, RunsSynchronousTasksOfItsOwnThreadBehindWhatIsQueued)
{
    EXPECT_TRUE(Post("a"));
    const auto task = MakeSyncTask([&] { m_log.Say("sync"); });
    EXPECT_TRUE(m_pump->PostTask(task));
    EXPECT_TRUE(task->Wait(kNoWait));
    EXPECT_EQ("a sync", m_log.Words());
}

TEST_F(WindowTransport, RunsSynchronousTasksOfOthersWhenItDispatches)
{
    std::atomic<bool> bDone = false;
    std::thread poster([&] {
        const auto task = MakeSyncTask([&] { m_log.Say("sync"); });
        EXPECT_TRUE(m_pump->PostTask(task));
        EXPECT_TRUE(task->Wait(std::chrono::milliseconds(kDeadline)));
        m_log.Say("waited");
        bDone = true;
    });
    EXPECT_TRUE(PumpUntil([&] { return bDone.load(); }));
    poster.join();
    EXPECT_EQ("sync waited", m_log.Words());
}

// ---- all at once

TEST(WindowTransportUnderLoad, RunsEachTaskOnceOnItsThread)
{
    constexpr int kThreads = 3;
    constexpr int kTasks = 1000;
    const auto self = std::this_thread::get_id();
    CWndMsgPump pump;
    pump.Start();
    int nRun = 0; // no lock: all on one thread
    std::vector<std::thread> posters;
    posters.reserve(kThreads);
    for (int t = 0; t < kThreads; ++t)
        posters.emplace_back([&] {
            for (int i = 0; i < kTasks; ++i)
                EXPECT_TRUE(pump.PostTask(MakeAsyncTask([&] {
                    EXPECT_EQ(self, std::this_thread::get_id());
                    ++nRun;
                })));
        });
    EXPECT_TRUE(PumpUntil([&] { return nRun == kThreads * kTasks; }));
    for (std::thread& poster : posters)
        poster.join();
}

TEST(WindowTransportUnderLoad, GoesWhileOthersPost)
{
    constexpr int kRounds = 100;
    for (int i = 0; i < kRounds; ++i) {
        CWndMsgPump pump;
        pump.Start();
        std::atomic<int> nPosted = 0;
        int nRun = 0;
        std::thread poster([&] {
            while (pump.PostTask(MakeAsyncTask([&] { ++nRun; })))
                ++nPosted;
        });
        EXPECT_TRUE(PumpUntil([&] { return nPosted > 10; }));
        EXPECT_TRUE(pump.StopEx(i % 2 == 0, 0, true));
        poster.join();
        PumpAll();
        EXPECT_LE(nRun, nPosted);
        EXPECT_TRUE(i % 2 == 0 || nRun == nPosted);
        EXPECT_FALSE(OwnsWindows());
    }
}

} // namespace
