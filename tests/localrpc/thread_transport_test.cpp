// The transport with a thread of its own.

#include <memory>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "LocalRPC/AO_ThreadTransport.h"
#include "tests/localrpc/Tasks.h"
#include "tests/support/ReportLog.h"

using namespace LocalRPC;
using LocalRPC::details::CThread;
using testing::ElementsAre;

namespace {

class ThreadTransport : public testing::Test
{
protected:
    Log m_log;
    CThread m_thread; // destroyed first
};

TEST_F(ThreadTransport, RunsTasksInOrderOnOneThreadOfItsOwn)
{
    m_thread.Start();
    std::vector<std::thread::id> threads;
    for (const char* word : {"a", "b", "c"})
        EXPECT_TRUE(m_thread.PostTask(MakeAsyncTask([&, word] {
            m_log.Say(word);
            threads.push_back(std::this_thread::get_id());
        })));
    EXPECT_TRUE(m_thread.StopEx(false, kNoTimeLimit, true));
    EXPECT_EQ("a b c", m_log.Words());
    ASSERT_EQ(3U, threads.size());
    EXPECT_NE(std::this_thread::get_id(), threads[0]);
    EXPECT_EQ(threads[0], threads[1]);
    EXPECT_EQ(threads[0], threads[2]);
}

TEST_F(ThreadTransport, TakesTasksWhileItRunsOnly)
{
    EXPECT_FALSE(m_thread.IsRunning());
    EXPECT_FALSE(m_thread.PostTask(m_log.Task("early")));
    EXPECT_FALSE(m_thread.StopEx(false, kNoTimeLimit, true));
    m_thread.Start();
    EXPECT_TRUE(m_thread.IsRunning());
    EXPECT_TRUE(m_thread.PostTask(m_log.Task("a")));
    EXPECT_TRUE(m_thread.StopEx(false, kNoTimeLimit, true));
    EXPECT_FALSE(m_thread.IsRunning());
    EXPECT_FALSE(m_thread.PostTask(m_log.Task("late")));
    EXPECT_FALSE(m_thread.StopEx(false, kNoTimeLimit, true));
    EXPECT_EQ("a", m_log.Words());
}

TEST_F(ThreadTransport, RunsAgainAfterAnotherStart)
{
    for (int i = 0; i < 3; ++i) {
        m_thread.Start();
        EXPECT_TRUE(m_thread.PostTask(m_log.Task("a")));
        EXPECT_TRUE(m_thread.StopEx(false, kNoTimeLimit, i % 2 == 0));
    }
    EXPECT_EQ("a a a", m_log.Words());
}

TEST_F(ThreadTransport, RunsWhatIsQueuedBeforeItStartsAnew)
{
    m_thread.Start();
    EXPECT_TRUE(m_thread.PostTask(m_log.Task("a")));
    m_thread.Start();
    m_log.Say("started");
    EXPECT_TRUE(m_thread.PostTask(m_log.Task("b")));
    EXPECT_TRUE(m_thread.StopEx(false, kNoTimeLimit, true));
    EXPECT_EQ("a started b", m_log.Words());
}

TEST_F(ThreadTransport, GoesOnBehindATaskThatThrows)
{
    ReportLog reports;
    m_thread.Start();
    EXPECT_TRUE(m_thread.PostTask(MakeAsyncTask([] { throw std::runtime_error("no"); })));
    EXPECT_TRUE(m_thread.PostTask(MakeAsyncTask([] { throw 1; })));
    EXPECT_TRUE(m_thread.PostTask(m_log.Task("a")));
    EXPECT_TRUE(m_thread.StopEx(false, kNoTimeLimit, true));
    EXPECT_EQ("a", m_log.Words());
    EXPECT_THAT(reports.Texts(), ElementsAre("Unhandled exception occure during execute task.",
                                             "Unhandled exception occure during execute task."));
}

TEST_F(ThreadTransport, RunsTasksOfManyThreadsOneAtATime)
{
    constexpr int kThreads = 4;
    constexpr int kTasks = 500;
    m_thread.Start();
    int nRunning = 0, nRun = 0; // no lock: the tasks don't overlap
    std::vector<std::thread> posters;
    posters.reserve(kThreads);
    for (int t = 0; t < kThreads; ++t)
        posters.emplace_back([&] {
            for (int i = 0; i < kTasks; ++i)
                EXPECT_TRUE(m_thread.PostTask(MakeAsyncTask([&] {
                    EXPECT_EQ(1, ++nRunning);
                    ++nRun;
                    --nRunning;
                })));
        });
    for (std::thread& poster : posters)
        poster.join();
    EXPECT_TRUE(m_thread.StopEx(false, kNoTimeLimit, true));
    EXPECT_EQ(kThreads * kTasks, nRun);
}

// ---- synchronous tasks

TEST_F(ThreadTransport, RunsSynchronousTasksOfOthersInTheirTurn)
{
    m_thread.Start();
    EXPECT_TRUE(m_thread.PostTask(m_log.Task("a")));
    const auto task = MakeSyncTask([&] { m_log.Say("sync"); });
    ASSERT_TRUE(m_thread.PostTask(task));
    EXPECT_TRUE(task->Wait(std::chrono::milliseconds(kDeadline)));
    EXPECT_EQ("a sync", m_log.Words());
}

TEST_F(ThreadTransport, RunsSynchronousTasksOfItsOwnAtOnce)
{
    m_thread.Start();
    EXPECT_TRUE(m_thread.PostTask(MakeAsyncTask([&] {
        m_log.Say("begin");
        EXPECT_TRUE(m_thread.PostTask(m_log.Task("next")));
        const auto task = MakeSyncTask([&] { m_log.Say("sync"); });
        EXPECT_TRUE(m_thread.PostTask(task));
        EXPECT_TRUE(task->Wait(std::chrono::milliseconds(0)));
        m_log.Say("end");
    })));
    const auto last = MakeSyncTask([] {});
    ASSERT_TRUE(m_thread.PostTask(last));
    EXPECT_TRUE(last->Wait(std::chrono::milliseconds(kDeadline)));
    EXPECT_TRUE(m_thread.StopEx(false, kNoTimeLimit, true));
    EXPECT_EQ("begin sync end next", m_log.Words());
}

// ---- all at once

TEST(ThreadTransportUnderLoad, SurvivesStartsStopsAndPostsAtOnce)
{
    constexpr int kRounds = 200;
    constexpr int kPosters = 2;
    constexpr unsigned long kTimes[] = {0, 1, kNoTimeLimit};
    CThread thread;
    std::atomic<bool> bOver = false;
    std::atomic<int> nPosted = 0;
    int nRunning = 0; // no lock: the tasks don't overlap
    const auto nRun = std::make_shared<int>(0);
    std::vector<std::thread> posters;
    posters.reserve(kPosters);
    for (int t = 0; t < kPosters; ++t)
        posters.emplace_back([&, nRun] {
            while (!bOver)
                nPosted += thread.PostTask(MakeAsyncTask([&nRunning, nRun] {
                    EXPECT_EQ(1, ++nRunning);
                    ++*nRun;
                    --nRunning;
                }));
        });
    for (int i = 0; i < kRounds; ++i) {
        thread.Start();
        // Without a limit the queue must come to an end.
        const unsigned long nTime = kTimes[i % 3];
        thread.StopEx(i % 5 == 0, nTime, nTime == kNoTimeLimit || i % 2 == 0);
    }
    thread.Start();
    EXPECT_TRUE(Eventually([&] { return nPosted > 0; }));
    bOver = true;
    for (std::thread& poster : posters)
        poster.join();
    EXPECT_TRUE(thread.StopEx(false, kNoTimeLimit, true));
    EXPECT_GT(*nRun, 0);
    EXPECT_LE(*nRun, nPosted);
}

} // namespace
