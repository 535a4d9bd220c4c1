// What a typed message puts into wParam and lParam, and how the window reads it.

#include "platform/threads/WindowMessage.h"

#include <atomic>
#include <thread>

#include <gtest/gtest.h>

#include "platform/values.h"

namespace {

using namespace std::chrono_literals;

struct Place
{
    int nLine;
};

constexpr WindowMessage<> kBare{kUserMessage + 1};
constexpr WindowMessage<ULONG> kNumber{kUserMessage + 2};
constexpr WindowMessage<bool> kFlag{kUserMessage + 3};
constexpr WindowMessage<const VARIANT&> kValue{kUserMessage + 4};
constexpr WindowMessage<const ULONGLONG&, ULONGLONG&> kBoth{kUserMessage + 5};
constexpr WindowMessage<const OLECHAR*, const Place*> kTextAndPlace{kUserMessage + 6};

// Keeps the last message as it came, and handles the typed ones.
class ListeningWindow : public MessageWindow
{
public:
    UINT nMessage = 0;
    ULONG_PTR wParam = 0;
    LONG_PTR lParam = 0;

private:
    LONG_PTR OnMessage(UINT nGiven, ULONG_PTR wGiven, LONG_PTR lGiven) override
    {
        nMessage = nGiven;
        wParam = wGiven;
        lParam = lGiven;
        switch (nMessage) {
        case kNumber:
            return static_cast<LONG_PTR>(kNumber.First(wParam)) + 1;
        case kFlag:
            return kFlag.First(wParam) ? 7 : 8;
        case kValue:
            return kValue.First(wParam).lVal;
        case kBoth:
            kBoth.Second(lParam) = kBoth.First(wParam) + 1;
            return 1;
        case kTextAndPlace:
            return kTextAndPlace.Second(lParam) ? kTextAndPlace.Second(lParam)->nLine
                                                : kTextAndPlace.First(wParam)[0];
        default:
            return 0;
        }
    }
};

class WindowMessages : public testing::Test
{
protected:
    ListeningWindow window;
    const WindowHandle hWnd = window.Create();
};

TEST_F(WindowMessages, WithoutPartsCarriesZeros)
{
    EXPECT_EQ(kBare.Send(hWnd), 0);
    EXPECT_EQ(window.nMessage, kUserMessage + 1);
    EXPECT_EQ(window.wParam, 0u);
    EXPECT_EQ(window.lParam, 0);
}

TEST_F(WindowMessages, ANumberGoesAsItself)
{
    EXPECT_EQ(kNumber.Send(hWnd, 41), 42);
    EXPECT_EQ(window.wParam, 41u);
    EXPECT_EQ(kFlag.Send(hWnd, true), 7);
    EXPECT_EQ(window.wParam, 1u);
    EXPECT_EQ(kFlag.Send(hWnd, false), 8);
    EXPECT_EQ(window.wParam, 0u);
}

TEST_F(WindowMessages, AnyNumberButZeroReadsAsTrue)
{
    EXPECT_EQ(SendWindowMessage(hWnd, kFlag, 2, 0), 7);
}

TEST_F(WindowMessages, APostedNumberComesWithTheNextPump)
{
    EXPECT_TRUE(kNumber.Post(hWnd, 41));
    EXPECT_EQ(window.nMessage, 0u);
    EXPECT_EQ(PumpMessages(0ms), 1u);
    EXPECT_EQ(window.nMessage, kUserMessage + 2);
    EXPECT_EQ(window.wParam, 41u);
}

TEST_F(WindowMessages, AReferenceGoesAsItsAddress)
{
    const Variant value = Variant::FromI4(5);
    EXPECT_EQ(kValue.Send(hWnd, value), 5);
    EXPECT_EQ(window.wParam, reinterpret_cast<ULONG_PTR>(&value));

    const ULONGLONG nGiven = ~0ull - 1;
    ULONGLONG nChanged = 0;
    EXPECT_EQ(kBoth.Send(hWnd, nGiven, nChanged), 1);
    EXPECT_EQ(nChanged, ~0ull);
    EXPECT_EQ(window.lParam, reinterpret_cast<LONG_PTR>(&nChanged));
}

TEST_F(WindowMessages, APointerMayBeNull)
{
    const Place place{12};
    EXPECT_EQ(kTextAndPlace.Send(hWnd, OLESTR("a"), &place), 12);
    EXPECT_EQ(kTextAndPlace.Send(hWnd, OLESTR("a"), nullptr), 'a');
    EXPECT_EQ(window.lParam, 0);
}

TEST_F(WindowMessages, AReferenceIsGoodOnTheWindowsThread)
{
    std::atomic<bool> done = false;
    LONG_PTR nResult = 0;
    std::thread sender([&] {
        nResult = kValue.Send(hWnd, Variant::FromI4(6));
        done = true;
    });
    while (!done)
        PumpMessages(1ms);
    sender.join();
    EXPECT_EQ(nResult, 6);
}

TEST_F(WindowMessages, AWindowThatHasGoneTakesNone)
{
    window.Destroy();
    EXPECT_EQ(kNumber.Send(hWnd, 41), 0);
    EXPECT_FALSE(kNumber.Post(hWnd, 41));
}

} // namespace
