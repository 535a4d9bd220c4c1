#include <thread>

#include <sys/resource.h>

#include <gtest/gtest.h>

#include "platform/threads/Thread.h"

namespace {

int NiceOf(std::uint32_t nThread)
{
    return getpriority(PRIO_PROCESS, nThread);
}

TEST(Thread, LowersItsOwnPriorityOnly)
{
    const int nBefore = NiceOf(CurrentThreadId());
    int nLowered = nBefore;
    std::thread([&] {
        LowerThreadPriority();
        nLowered = NiceOf(CurrentThreadId());
    }).join();
    EXPECT_TRUE(nLowered > nBefore || nBefore == 19) << nLowered << " from " << nBefore;
    EXPECT_EQ(NiceOf(CurrentThreadId()), nBefore);
}

} // namespace
