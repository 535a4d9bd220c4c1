#include <thread>

#include <gtest/gtest.h>

#include "platform/threads/Thread.h"

namespace {

TEST(Thread, LowersItsOwnPriorityOnly)
{
    int nLowered = THREAD_PRIORITY_NORMAL;
    std::thread([&] {
        LowerThreadPriority();
        nLowered = GetThreadPriority(GetCurrentThread());
    }).join();
    EXPECT_EQ(nLowered, THREAD_PRIORITY_BELOW_NORMAL);
    EXPECT_EQ(GetThreadPriority(GetCurrentThread()), THREAD_PRIORITY_NORMAL);
}

} // namespace
