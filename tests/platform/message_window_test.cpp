#include "platform/threads/MessageWindow.h"

#include <atomic>
#include <chrono>
#include <memory>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "platform/threads/CriticalSection.h"
#include "platform/threads/Event.h"

namespace {

using namespace std::chrono_literals;

constexpr UINT kAdd = kUserMessage + 100;     // wParam + lParam, noted
constexpr UINT kForward = kUserMessage + 101; // sends kAdd to the window in wParam
constexpr UINT kDestroy = kUserMessage + 102;

class Recorder : public MessageWindow
{
public:
    explicit Recorder(bool* pbGone = nullptr) : m_pbGone(pbGone) {}

    std::vector<ULONG_PTR> seen;
    std::thread::id thread;

private:
    LONG_PTR OnMessage(UINT nMessage, ULONG_PTR wParam, LONG_PTR lParam) override
    {
        thread = std::this_thread::get_id();
        seen.push_back(nMessage == kTimerMessage ? kTimerMessage : wParam);
        if (nMessage == kForward)
            return SendWindowMessage(static_cast<WindowHandle>(wParam), kAdd, 1, 2);
        if (nMessage == kDestroy)
            Destroy();
        return static_cast<LONG_PTR>(wParam) + lParam;
    }
    void OnFinalMessage() override
    {
        if (m_pbGone)
            *m_pbGone = true;
    }

    bool* m_pbGone;
};

// Pumps until `done` is set, at most for a while: of time, not of rounds, of which a busy
// machine may need one for each message.
void PumpUntil(const std::atomic<bool>& done)
{
    const auto end = std::chrono::steady_clock::now() + 60s;
    while (!done && std::chrono::steady_clock::now() < end)
        PumpMessages(5ms);
    ASSERT_TRUE(done);
}

TEST(MessageWindow, HandlesASendOfItsOwnThreadAtOnce)
{
    Recorder window;
    const WindowHandle hWnd = window.Create();
    ASSERT_NE(hWnd, 0);
    EXPECT_TRUE(IsLiveWindow(hWnd));
    EXPECT_EQ(SendWindowMessage(hWnd, kAdd, 3, 4), 7);
    EXPECT_EQ(window.seen, std::vector<ULONG_PTR>{3});
}

TEST(MessageWindow, CarriesASendToItsThreadAndTheResultBack)
{
    Recorder window;
    const WindowHandle hWnd = window.Create();
    std::atomic<bool> done = false;
    LONG_PTR nResult = 0;
    std::thread sender([&] {
        nResult = SendWindowMessage(hWnd, kAdd, 40, 2);
        done = true;
    });
    PumpUntil(done);
    sender.join();
    EXPECT_EQ(nResult, 42);
    EXPECT_EQ(window.thread, std::this_thread::get_id());
}

TEST(MessageWindow, HandlesPostedMessagesInTheirOrder)
{
    Recorder window;
    const WindowHandle hWnd = window.Create();
    for (ULONG_PTR i = 0; i < 5; ++i)
        EXPECT_TRUE(PostWindowMessage(hWnd, kAdd, i, 0));
    EXPECT_TRUE(window.seen.empty());
    EXPECT_EQ(PumpMessages(0ms), 5u);
    EXPECT_EQ(window.seen, (std::vector<ULONG_PTR>{0, 1, 2, 3, 4}));
}

TEST(MessageWindow, PumpsNothingWhereNothingWaits)
{
    EXPECT_EQ(PumpMessages(0ms), 0u);
    EXPECT_EQ(PumpMessages(1ms), 0u);
}

TEST(MessageWindow, ThatHasGoneTakesNoMessages)
{
    bool bGone = false;
    Recorder window(&bGone);
    const WindowHandle hWnd = window.Create();
    PostWindowMessage(hWnd, kAdd, 1, 0);
    window.Destroy();
    EXPECT_TRUE(bGone);
    EXPECT_FALSE(IsLiveWindow(hWnd));
    EXPECT_EQ(SendWindowMessage(hWnd, kAdd, 1, 1), 0);
    EXPECT_FALSE(PostWindowMessage(hWnd, kAdd, 1, 1));
    EXPECT_EQ(PumpMessages(0ms), 0u);
    EXPECT_TRUE(window.seen.empty());
}

TEST(MessageWindow, MayGoInItsOwnHandler)
{
    Recorder window;
    const WindowHandle hWnd = window.Create();
    EXPECT_EQ(SendWindowMessage(hWnd, kDestroy, 5, 6), 11);
    EXPECT_FALSE(IsLiveWindow(hWnd));
}

TEST(MessageWindow, LetsGoOfSendersThatWaitWhenItGoes)
{
    Recorder window;
    const WindowHandle hWnd = window.Create();
    std::atomic<bool> begun = false;
    LONG_PTR nResult = -1;
    std::thread sender([&] {
        begun = true;
        nResult = SendWindowMessage(hWnd, kAdd, 1, 1);
    });
    while (!begun)
        std::this_thread::yield();
    window.Destroy();
    sender.join();
    EXPECT_EQ(nResult, 0);
    EXPECT_TRUE(window.seen.empty());
}

TEST(MessageWindow, GoesWithItsThread)
{
    auto window = std::make_unique<Recorder>();
    WindowHandle hWnd = 0;
    std::atomic<bool> made = false;
    Event end(Event::Kind::ManualReset);
    std::thread owner([&] {
        hWnd = window->Create();
        made = true;
        end.Wait();
    });
    while (!made)
        std::this_thread::yield();
    std::thread sender([&] { EXPECT_EQ(SendWindowMessage(hWnd, kAdd, 1, 1), 0); });
    end.Set();
    owner.join();
    sender.join();
    EXPECT_FALSE(IsLiveWindow(hWnd));
}

TEST(MessageWindow, GoesWithItsThreadWhileOthersComeAndGo)
{
    std::atomic<bool> done = false;
    constexpr int kOthers = 4;
    std::vector<std::thread> others;
    others.reserve(kOthers);
    for (int i = 0; i < kOthers; ++i)
        others.emplace_back([&] {
            while (!done)
                Recorder().Create();
        });
    for (int i = 0; i < 200; ++i) {
        bool bGone = false;
        Recorder window(&bGone);
        std::thread([&] {
            window.Create();
            std::this_thread::sleep_for(1ms);
        }).join();
        EXPECT_TRUE(bGone) << i;
    }
    done = true;
    for (std::thread& other : others)
        other.join();
}

// A sends to B, whose handler sends back to A: A handles that while it waits.
TEST(MessageWindow, OfAThreadThatWaitsInASendIsServed)
{
    Recorder here;
    const WindowHandle hHere = here.Create();
    std::atomic<WindowHandle> hThere = 0;
    std::atomic<bool> done = false;
    std::thread other([&] {
        Recorder there;
        hThere = there.Create();
        PumpUntil(done);
    });
    while (!hThere)
        std::this_thread::yield();
    EXPECT_EQ(SendWindowMessage(hThere, kForward, static_cast<ULONG_PTR>(hHere), 0), 3);
    EXPECT_EQ(here.seen, std::vector<ULONG_PTR>{1});
    done = true;
    other.join();
}

TEST(MessageWindow, TellsItsTimerUntilThatIsEnded)
{
    Recorder window;
    window.Create();
    window.SetTimer(1ms);
    EXPECT_GE(PumpMessages(std::nullopt), 1u);
    EXPECT_EQ(window.seen.front(), kTimerMessage);
    window.SetTimer(0ms);
    EXPECT_EQ(PumpMessages(3ms), 0u);
}

TEST(MessageWindow, ThreadsAreToldApartByTheirWindows)
{
    EXPECT_FALSE(OwnsWindows());
    Recorder window;
    window.Create();
    EXPECT_TRUE(OwnsWindows());
    std::thread([] { EXPECT_FALSE(OwnsWindows()); }).join();
    window.Destroy();
    EXPECT_FALSE(OwnsWindows());
}

// Who holds the lock waits for a message to be handled by the thread that wants it.
TEST(MessageWindow, ALockThatIsPumpedForCannotLockOutItsHolder)
{
    Recorder window;
    const WindowHandle hWnd = window.Create();
    CriticalSection section;
    std::atomic<bool> held = false;
    std::thread holder([&] {
        LockGuard lock(section);
        held = true;
        EXPECT_EQ(SendWindowMessage(hWnd, kAdd, 1, 1), 2);
    });
    while (!held)
        std::this_thread::yield();
    LockPumping(section);
    section.unlock();
    holder.join();
    EXPECT_EQ(window.seen, std::vector<ULONG_PTR>{1});
}

TEST(MessageWindow, LosesNoMessageOfManySenders)
{
    constexpr int kSenders = 4;
    constexpr int kMessages = 500;
    Recorder window;
    const WindowHandle hWnd = window.Create();
    std::atomic<int> nLeft = kSenders;
    std::atomic<bool> done = false;
    std::vector<std::thread> senders;
    senders.reserve(kSenders);
    for (int i = 0; i < kSenders; ++i)
        senders.emplace_back([&] {
            for (int k = 0; k < kMessages; ++k) {
                EXPECT_EQ(SendWindowMessage(hWnd, kAdd, 1, k), k + 1);
                EXPECT_TRUE(PostWindowMessage(hWnd, kAdd, 2, k));
            }
            if (--nLeft == 0)
                done = true;
        });
    PumpUntil(done);
    for (std::thread& sender : senders)
        sender.join();
    PumpMessages(0ms);
    EXPECT_EQ(window.seen.size(), std::size_t{2} * kSenders * kMessages);
}

} // namespace
