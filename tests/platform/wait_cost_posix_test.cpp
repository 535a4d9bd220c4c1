// Waits sleep: what a thread spends on a long one, as the system counts it.

#include <atomic>
#include <functional>
#include <thread>

#include <sys/resource.h>
#include <time.h>

#include <gtest/gtest.h>

#include "platform/threads/CriticalSection.h"
#include "platform/threads/MessageWindow.h"

namespace {

using namespace std::chrono_literals;

constexpr auto kLong = 300ms;

struct Cost
{
    long nSwitches; // times that the thread gave the processor up
    std::chrono::milliseconds processor;
};

Cost Spent()
{
    rusage usage{};
    getrusage(RUSAGE_THREAD, &usage);
    timespec time{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return {usage.ru_nvcsw + usage.ru_nivcsw,
            std::chrono::milliseconds(time.tv_sec * 1000 + time.tv_nsec / 1'000'000)};
}

class AnsweringWindow : public MessageWindow
{
    LONG_PTR OnMessage(UINT, ULONG_PTR, LONG_PTR) override { return 1; }
};

// What the calling thread, which has a window, spends on a wait that another thread ends.
Cost CostOf(const std::function<void()>& wait, const std::function<void()>& end)
{
    AnsweringWindow window;
    window.Create();
    std::thread other([&] {
        std::this_thread::sleep_for(kLong);
        end();
    });
    const Cost before = Spent();
    wait();
    const Cost after = Spent();
    other.join();
    return {after.nSwitches - before.nSwitches, after.processor - before.processor};
}

void ExpectASleep(const Cost& cost)
{
    EXPECT_LT(cost.nSwitches, 20);
    EXPECT_LT(cost.processor, 20ms);
}

} // namespace

TEST(WaitCost, AWaitForAnEventSleepsUntilItIsSet)
{
    Event event(Event::Kind::AutoReset);
    ExpectASleep(CostOf([&] { WaitPumping(event); }, [&] { event.Set(); }));
}

TEST(WaitCost, AWaitForOneOfTwoEventsSleepsUntilOneIsSet)
{
    Event first(Event::Kind::AutoReset);
    Event second(Event::Kind::AutoReset);
    ExpectASleep(
        CostOf([&] { EXPECT_EQ(WaitAnyPumping(first, second, {}), 1); }, [&] { second.Set(); }));
}

TEST(WaitCost, AWaitForALockSleepsUntilItIsFree)
{
    CriticalSection section;
    Event held(Event::Kind::ManualReset);
    Event free(Event::Kind::ManualReset);
    std::thread holder([&] {
        const LockGuard lock(section);
        held.Set();
        free.Wait();
    });
    held.Wait();
    ExpectASleep(CostOf(
        [&] {
            LockPumping(section);
            section.unlock();
        },
        [&] { free.Set(); }));
    holder.join();
}
