#include <atomic>
#include <chrono>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "platform/threads/Event.h"

namespace {

using namespace std::chrono_literals;
using Kind = Event::Kind;

// Long enough for a thread to go on that was let through.
constexpr auto kSoon = 20ms;
constexpr auto kNever = 20s;

TEST(Event, OfManualResetStaysSignalled)
{
    Event event(Kind::ManualReset);
    EXPECT_FALSE(event.Wait(0ms));
    event.Set();
    EXPECT_TRUE(event.Wait(0ms));
    EXPECT_TRUE(event.Wait());
    event.Reset();
    EXPECT_FALSE(event.Wait(0ms));
    EXPECT_FALSE(event.Wait(kSoon));
}

TEST(Event, OfAutoResetLetsOneThrough)
{
    Event event(Kind::AutoReset, true);
    EXPECT_TRUE(event.Wait(0ms));
    EXPECT_FALSE(event.Wait(0ms));
    event.Set();
    event.Set();
    EXPECT_TRUE(event.Wait());
    EXPECT_FALSE(event.Wait(kSoon));
    event.Set();
    event.Reset();
    EXPECT_FALSE(event.Wait(0ms));
}

TEST(Event, TimesOutNotBeforeItsTime)
{
    Event event(Kind::AutoReset);
    const auto start = std::chrono::steady_clock::now();
    EXPECT_FALSE(event.Wait(kSoon));
    EXPECT_GE(std::chrono::steady_clock::now() - start, kSoon);
    EXPECT_FALSE(event.Wait(-5ms));
}

TEST(Event, WakesAWaiterWithAnyTimeout)
{
    for (const Event::Timeout timeout : {Event::Timeout(), Event::Timeout(kNever),
                                         Event::Timeout(std::chrono::milliseconds::max())}) {
        Event event(Kind::AutoReset);
        std::thread setter([&] {
            std::this_thread::sleep_for(kSoon);
            event.Set();
        });
        EXPECT_TRUE(event.Wait(timeout));
        setter.join();
        EXPECT_FALSE(event.Wait(0ms));
    }
}

TEST(Event, OfManualResetLetsAllWaitersThrough)
{
    Event event(Kind::ManualReset);
    std::atomic<int> nThrough = 0;
    std::vector<std::thread> threads;
    for (int n = 0; n < 4; ++n)
        threads.emplace_back([&] { nThrough += event.Wait(kNever) ? 1 : 0; });
    std::this_thread::sleep_for(kSoon);
    EXPECT_EQ(nThrough, 0);
    event.Set();
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(nThrough, 4);
}

TEST(Event, LetsOneWaiterThroughForEachSignal)
{
    Event event(Kind::AutoReset);
    std::atomic<int> nThrough = 0;
    std::vector<std::thread> threads;
    for (int n = 0; n < 4; ++n)
        threads.emplace_back([&] { nThrough += event.Wait(kNever) ? 1 : 0; });
    for (int n = 1; n <= 4; ++n) {
        // A signal without a waiter stays set, so wait until it has been taken.
        event.Set();
        while (nThrough < n)
            std::this_thread::yield();
        std::this_thread::sleep_for(1ms);
        EXPECT_EQ(nThrough, n);
    }
    for (std::thread& thread : threads)
        thread.join();
}

TEST(WaitAny, TellsWhichEventItWas)
{
    struct Row
    {
        bool bFirst;
        bool bSecond;
        std::optional<int> nResult;
    };
    const Row rows[] = {{false, false, {}}, {true, false, 0}, {false, true, 1}, {true, true, 0}};
    for (const Kind kind : {Kind::AutoReset, Kind::ManualReset})
        for (const Row& row : rows)
            for (const auto timeout : {0ms, 1ms}) {
                SCOPED_TRACE(testing::Message()
                             << row.bFirst << row.bSecond << ' ' << timeout.count());
                Event first(kind, row.bFirst);
                Event second(kind, row.bSecond);
                EXPECT_EQ(Event::WaitAny(first, second, timeout), row.nResult);
            }
}

TEST(WaitAny, TakesOnlyTheSignalItReports)
{
    Event first(Kind::AutoReset, true);
    Event second(Kind::AutoReset, true);
    EXPECT_EQ(Event::WaitAny(first, second), 0);
    EXPECT_FALSE(first.Wait(0ms));
    EXPECT_EQ(Event::WaitAny(first, second), 1);
    EXPECT_FALSE(second.Wait(0ms));
    EXPECT_EQ(Event::WaitAny(first, second, 0ms), std::nullopt);
}

TEST(WaitAny, LeavesTheOtherQueueWhenLetThrough)
{
    Event first(Kind::AutoReset);
    Event second(Kind::AutoReset);
    std::optional<int> nResult;
    std::thread waiter([&] { nResult = Event::WaitAny(first, second, kNever); });
    std::this_thread::sleep_for(kSoon);
    second.Set();
    // Nobody waits for this event any more: it must stay set.
    first.Set();
    waiter.join();
    EXPECT_TRUE(nResult == 0 || nResult == 1);
    EXPECT_TRUE(nResult == 0 ? second.Wait(0ms) : first.Wait(0ms));
    EXPECT_FALSE(nResult == 0 ? first.Wait(0ms) : second.Wait(0ms));
}

TEST(WaitAny, LeavesBothQueuesOnTimeout)
{
    Event first(Kind::AutoReset);
    Event second(Kind::AutoReset);
    EXPECT_EQ(Event::WaitAny(first, second, 1ms), std::nullopt);
    first.Set();
    second.Set();
    EXPECT_TRUE(first.Wait(0ms));
    EXPECT_TRUE(second.Wait(0ms));
}

// Each signal is answered before the next one, so that none may be merged: every
// one must be taken exactly once, whatever the threads and timeouts do.
TEST(WaitAny, NeitherLosesNorDoublesSignals)
{
    constexpr int kSignals = 3000;
    Event first(Kind::AutoReset);
    Event second(Kind::AutoReset);
    Event stop(Kind::ManualReset);
    std::atomic<int> taken[2] = {0, 0};
    std::vector<std::thread> takers;
    for (int t = 0; t < 3; ++t)
        takers.emplace_back([&, t] {
            while (!stop.Wait(0ms)) {
                const auto timeout = t == 0 ? 0ms : std::chrono::milliseconds(t);
                if (const auto n = Event::WaitAny(first, second, timeout))
                    ++taken[*n];
            }
        });
    const auto feed = [&](Event& event, int nIndex) {
        for (int n = 1; n <= kSignals; ++n) {
            event.Set();
            while (taken[nIndex] < n)
                std::this_thread::yield();
        }
    };
    std::thread other([&] { feed(second, 1); });
    feed(first, 0);
    other.join();
    std::this_thread::sleep_for(5ms);
    stop.Set();
    for (std::thread& taker : takers)
        taker.join();
    EXPECT_EQ(taken[0], kSignals);
    EXPECT_EQ(taken[1], kSignals);
}

} // namespace
