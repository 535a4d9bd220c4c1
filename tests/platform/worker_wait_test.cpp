// Waits of worker threads: events and messages at once.

#include <gtest/gtest.h>

#include <atomic>
#include <thread>

#include "platform/threads/WorkerWait.h"

namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;

constexpr milliseconds kNoTime(0);
constexpr milliseconds kPatience(10000);

class CountingWindow : public MessageWindow
{
public:
    unsigned nSeen = 0;

protected:
    LONG_PTR OnMessage(UINT, ULONG_PTR, LONG_PTR) override { return ++nSeen; }
};

// A thread that owns a window and waits as a worker does, until it is stopped.
class Worker
{
public:
    explicit Worker(Event::Timeout timeout) : m_thread([this, timeout] { Run(timeout); })
    {
        m_ready.Wait();
    }
    ~Worker()
    {
        m_stop.Set();
        m_thread.join();
    }

    WindowHandle Window() const { return m_hWnd; }
    void Request() { m_request.Set(); }
    bool WaitForRequestTaken() { return m_taken.Wait(kPatience); }
    unsigned Passes() const { return m_nPasses; }

private:
    void Run(Event::Timeout timeout)
    {
        CountingWindow window;
        m_hWnd = window.Create();
        m_ready.Set();
        WorkerWait wait;
        for (;;) {
            const auto nEvent = wait.WaitAny(m_stop, m_request, timeout);
            ++m_nPasses;
            if (nEvent == 0)
                break;
            if (nEvent == 1)
                m_taken.Set();
        }
        window.Destroy();
    }

    Event m_ready{Event::Kind::ManualReset};
    Event m_stop{Event::Kind::ManualReset};
    Event m_request{Event::Kind::AutoReset};
    Event m_taken{Event::Kind::AutoReset};
    WindowHandle m_hWnd = 0;
    std::atomic<unsigned> m_nPasses = 0;
    std::thread m_thread;
};

TEST(WorkerWait, GivesTheEventThatLetsItThrough)
{
    Event first(Event::Kind::AutoReset, true), second(Event::Kind::AutoReset, true);
    WorkerWait wait;
    EXPECT_EQ(wait.WaitAny(first, second, kNoTime), 0);
    EXPECT_EQ(wait.WaitAny(first, second, milliseconds(1)), 1);
    EXPECT_EQ(wait.WaitAny(first, second, kNoTime), std::nullopt);
    EXPECT_EQ(wait.WaitAny(first, second, milliseconds(1)), std::nullopt);
}

TEST(WorkerWait, LastsAsLongAsTold)
{
    Event first(Event::Kind::AutoReset), second(Event::Kind::AutoReset);
    WorkerWait wait;
    const auto tStart = steady_clock::now();
    EXPECT_EQ(wait.WaitAny(first, second, milliseconds(30)), std::nullopt);
    EXPECT_GE(steady_clock::now() - tStart, milliseconds(30));
}

TEST(WorkerWait, HandlesMessagesWhileItWaits)
{
    Worker worker(std::nullopt);
    EXPECT_EQ(SendWindowMessage(worker.Window(), kUserMessage, 0, 0), 1);
    EXPECT_EQ(SendWindowMessage(worker.Window(), kUserMessage, 0, 0), 2);
    worker.Request();
    EXPECT_TRUE(worker.WaitForRequestTaken());
    EXPECT_EQ(SendWindowMessage(worker.Window(), kUserMessage, 0, 0), 3);
}

TEST(WorkerWait, HandlesMessagesInALoopThatNeverWaits)
{
    Worker worker(kNoTime);
    EXPECT_EQ(SendWindowMessage(worker.Window(), kUserMessage, 0, 0), 1);
    worker.Request();
    EXPECT_TRUE(worker.WaitForRequestTaken());
    EXPECT_EQ(SendWindowMessage(worker.Window(), kUserMessage, 0, 0), 2);
    EXPECT_GT(worker.Passes(), 2u);
}

TEST(WorkerWait, MessagesDontEndItEarly)
{
    Event first(Event::Kind::AutoReset), second(Event::Kind::AutoReset);
    CountingWindow window;
    const WindowHandle hWnd = window.Create();
    std::thread sender([hWnd] {
        for (int i = 0; i < 5; ++i)
            SendWindowMessage(hWnd, kUserMessage, 0, 0);
    });
    WorkerWait wait;
    const auto tStart = steady_clock::now();
    while (window.nSeen < 5 && steady_clock::now() - tStart < kPatience)
        EXPECT_EQ(wait.WaitAny(first, second, milliseconds(50)), std::nullopt);
    EXPECT_GE(steady_clock::now() - tStart, milliseconds(50));
    EXPECT_EQ(window.nSeen, 5u);
    sender.join();
    window.Destroy();
}

TEST(WaitPumping, HandlesMessagesUntilTheEventIsSet)
{
    CountingWindow window;
    const WindowHandle hWnd = window.Create();
    Event done(Event::Kind::ManualReset);
    std::thread other([&] {
        EXPECT_EQ(SendWindowMessage(hWnd, kUserMessage, 0, 0), 1);
        done.Set();
    });
    WaitPumping(done);
    EXPECT_EQ(window.nSeen, 1u);
    other.join();
    window.Destroy();
}

} // namespace
