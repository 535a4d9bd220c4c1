#include "platform/threads/CriticalSection.h"

#include <atomic>
#include <chrono>
#include <memory>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "platform/threads/Event.h"
#include "platform/threads/MessageWindow.h"

namespace {

using namespace std::chrono_literals;

bool CanTake(CriticalSection& section)
{
    bool bTaken = false;
    std::thread([&] {
        bTaken = section.try_lock();
        if (bTaken)
            section.unlock();
    }).join();
    return bTaken;
}

void DontWait(Event&) {}

void WaitForIt(Event& owned)
{
    owned.Wait();
}

// Handles each message by the given call.
class CallingWindow : public MessageWindow
{
public:
    explicit CallingWindow(std::function<void()> handle) : m_handle(std::move(handle)) { Create(); }

private:
    LONG_PTR OnMessage(UINT, ULONG_PTR, LONG_PTR) override
    {
        m_handle();
        return 1;
    }

    std::function<void()> m_handle;
};

TEST(CriticalSection, IsFreeWhenLeftAsOftenAsEntered)
{
    CriticalSection section;
    section.lock();
    EXPECT_TRUE(section.try_lock());
    EXPECT_TRUE(section.lock_ahead(&DontWait));
    section.unlock();
    section.unlock();
    EXPECT_FALSE(CanTake(section));
    section.unlock();
    EXPECT_TRUE(CanTake(section));
}

TEST(CriticalSection, ServesManyThreadsOneAtATime)
{
    constexpr int kThreads = 6;
    constexpr int kTurns = 5000;
    CriticalSection section;
    int nTurns = 0; // guarded by the section
    std::vector<std::thread> threads;
    for (int t = 0; t < kThreads; ++t)
        threads.emplace_back([&, t] {
            for (int n = 0; n < kTurns; ++n) {
                if (t % 3 == 0)
                    while (!section.lock_ahead(&WaitForIt))
                        continue;
                else if (t % 3 == 1)
                    LockPumping(section);
                else
                    section.lock();
                const LockGuard again(section);
                ++nTurns;
                section.unlock();
            }
        });
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(nTurns, kThreads * kTurns);
}

// The last to leave must not look at what another has let go of.
TEST(CriticalSection, MayGoAsSoonAsItIsFree)
{
    struct Object
    {
        CriticalSection section;
        std::atomic<int> nRefs = 2;
    };
    for (int n = 0; n < 3000; ++n) {
        auto* pObject = new Object;
        const auto use = [pObject] {
            bool bLast = false;
            {
                const LockGuard lock(pObject->section);
                bLast = --pObject->nRefs == 0;
                if (!bLast)
                    return;
            }
            delete pObject;
        };
        std::thread other(use);
        use();
        other.join();
    }
}

TEST(CriticalSection, GoesFirstToAThreadThatWaitsAhead)
{
    CriticalSection section;
    std::vector<int> order; // guarded by the section
    section.lock();
    std::vector<std::thread> threads;
    const auto enter = [&](int nWho) {
        order.push_back(nWho);
        section.unlock();
    };
    for (int n = 0; n < 3; ++n)
        threads.emplace_back([&, n] {
            section.lock();
            enter(n);
        });
    std::this_thread::sleep_for(20ms);
    static Event queued(Event::Kind::AutoReset);
    threads.emplace_back([&] {
        EXPECT_TRUE(section.lock_ahead([](Event& owned) {
            queued.Set();
            owned.Wait();
        }));
        enter(7);
    });
    queued.Wait();
    section.unlock();
    for (std::thread& thread : threads)
        thread.join();
    ASSERT_EQ(order.size(), 4u);
    EXPECT_EQ(order.front(), 7);
}

// A worker takes the section again at once, all the time. Gives how often it did so while
// this thread waited.
int TurnsBeforeHandover()
{
    CriticalSection section;
    CallingWindow window([] {});
    std::atomic<bool> waits = false;
    std::atomic<bool> done = false;
    std::atomic<int> nTurns = 0;
    std::thread worker([&] {
        while (!done) {
            const LockGuard lock(section);
            nTurns += waits ? 1 : 0;
            std::this_thread::sleep_for(5ms);
        }
    });
    std::this_thread::sleep_for(12ms);
    waits = true;
    LockPumping(section);
    done = true;
    section.unlock();
    worker.join();
    return nTurns;
}

// A turn may begin while this thread is on its way into the wait, and more on a busy machine.
TEST(CriticalSection, IsHandedOverBeforeItsOwnerCanTakeItAgain)
{
    int nPrompt = 0;
    for (int n = 0; n < 10; ++n)
        nPrompt += TurnsBeforeHandover() <= 1 ? 1 : 0;
    EXPECT_GE(nPrompt, 5);
}

TEST(CriticalSection, OfAWaitThatGaveUpIsFreeAfterwards)
{
    CriticalSection section;
    section.lock();
    std::thread([&] { EXPECT_FALSE(section.lock_ahead(&DontWait)); }).join();
    std::thread([&] {
        EXPECT_FALSE(section.lock_ahead([](Event& owned) { owned.Wait(5ms); }));
    }).join();
    section.unlock();
    EXPECT_TRUE(CanTake(section));
}

TEST(LockPumping, DispatchesNothingWhileTheHolderMerelyWorks)
{
    CriticalSection section;
    bool bHandled = false;
    CallingWindow window([&] { bHandled = true; });
    Event held(Event::Kind::ManualReset);
    std::thread holder([&] {
        const LockGuard lock(section);
        held.Set();
        std::this_thread::sleep_for(10ms);
    });
    held.Wait();
    PostWindowMessage(window.Handle(), kUserMessage, 0, 0);
    LockPumping(section);
    EXPECT_FALSE(bHandled);
    section.unlock();
    holder.join();
}

// The handler waits for a thread that needs the section, which is let go of meanwhile.
TEST(LockPumping, LeavesTheSectionToOthersWhileAMessageIsHandled)
{
    CriticalSection section;
    Event held(Event::Kind::ManualReset);
    Event handling(Event::Kind::ManualReset);
    CallingWindow window([&] {
        handling.Set();
        std::thread([&] { const LockGuard lock(section); }).join();
    });
    std::thread holder([&] {
        const LockGuard lock(section);
        held.Set();
        handling.Wait();
    });
    held.Wait();
    PostWindowMessage(window.Handle(), kUserMessage, 0, 0);
    LockPumping(section);
    section.unlock();
    holder.join();
}

} // namespace
