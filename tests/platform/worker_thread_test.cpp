#include "platform/threads/WorkerThread.h"

#include <optional>

#include <gtest/gtest.h>

#include "platform/threads/MessageWindow.h"

namespace {

using Priority = WorkerThread::Priority;
using Runtime = WorkerThread::Runtime;

class OwnersWindow : public MessageWindow
{
public:
    int nSeen = 0;

private:
    LONG_PTR OnMessage(UINT, ULONG_PTR, LONG_PTR) override { return ++nSeen; }
};

} // namespace

TEST(WorkerThread, KnowsItself)
{
    WorkerThread thread;
    EXPECT_FALSE(thread.IsSelf());
    Event go(Event::Kind::ManualReset);
    bool bSelf = false;
    thread.Start(Priority::Normal, Runtime::None, [&] {
        go.Wait();
        bSelf = thread.IsSelf();
    });
    EXPECT_FALSE(thread.IsSelf());
    go.Set();
    thread.Join();
    EXPECT_TRUE(bSelf);
}

TEST(WorkerThread, HasEndedOnlyAfterItsWork)
{
    WorkerThread thread;
    EXPECT_FALSE(thread.HasEnded());
    Event go(Event::Kind::ManualReset);
    thread.Start(Priority::Lowered, Runtime::Apartment, [&] { go.Wait(); });
    EXPECT_FALSE(thread.HasEnded());
    go.Set();
    while (!thread.HasEnded())
        std::this_thread::yield();
    thread.Join();
    EXPECT_TRUE(thread.HasEnded());
}

TEST(WorkerThread, CanBeJoinedByAThreadThatItNeeds)
{
    OwnersWindow window;
    const WindowHandle hWnd = window.Create();
    WorkerThread thread;
    thread.Start(Priority::Normal, Runtime::None,
                 [hWnd] { EXPECT_EQ(SendWindowMessage(hWnd, kUserMessage, 0, 0), 1); });
    thread.JoinPumping();
    EXPECT_EQ(window.nSeen, 1);
}

TEST(WorkerThread, ThatWasLeftOutlivesItsObject)
{
    Event go(Event::Kind::ManualReset);
    Event done(Event::Kind::ManualReset);
    {
        WorkerThread thread;
        thread.Start(Priority::Normal, Runtime::None, [&] {
            go.Wait();
            done.Set();
        });
        thread.Leave();
    }
    go.Set();
    EXPECT_TRUE(done.Wait(std::chrono::seconds(20)));
}

TEST(WorkerThread, MayBeStartedAgainAfterItWasJoined)
{
    WorkerThread thread;
    int nRuns = 0;
    for (int n = 1; n <= 3; ++n) {
        thread.Start(Priority::Normal, Runtime::None, [&] { ++nRuns; });
        thread.Join();
        EXPECT_EQ(nRuns, n);
    }
}
