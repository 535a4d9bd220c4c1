#include <atomic>
#include <thread>

#include <gtest/gtest.h>

#include "platform/threads/Thread.h"

namespace {

TEST(Thread, HasANumberOfItsOwn)
{
    EXPECT_EQ(CurrentThreadId(), CurrentThreadId());
    std::uint32_t nOther = 0;
    std::thread([&] { nOther = CurrentThreadId(); }).join();
    EXPECT_NE(nOther, 0u);
    EXPECT_NE(nOther, CurrentThreadId());
}

TEST(Thread, KeepsItsLastSystemError)
{
    constexpr int kOwn = 2;
    constexpr int kOther = 13;
    std::atomic<int> nTurn = 0;
    std::thread other([&] {
        while (nTurn != 1)
            std::this_thread::yield();
        SetLastSystemError(kOther);
        nTurn = 2;
    });
    // No system call in between, since one might set the error.
    SetLastSystemError(kOwn);
    nTurn = 1;
    while (nTurn != 2) {
    }
    EXPECT_EQ(LastSystemError(), kOwn);
    other.join();
}

} // namespace
