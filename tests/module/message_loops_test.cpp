// The module's records of threads: when they come and when they go.

#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "module/MessageLoops.h"

TEST(MessageLoops, ARecordIsMadeAtFirstUseAndStays)
{
    std::thread([] {
        CTabulexConvMessageLoop* const pLoop = ThisMessageLoop();
        ASSERT_NE(nullptr, pLoop);
        EXPECT_EQ(0u, pLoop->m_nModelessProgress);
        pLoop->m_nModelessProgress = 1;
        EXPECT_EQ(pLoop, ThisMessageLoop());
        EXPECT_EQ(1u, ThisMessageLoop()->m_nModelessProgress);
        ForgetMessageLoop();
    }).join();
}

TEST(MessageLoops, EachThreadHasItsOwn)
{
    ThisMessageLoop()->m_nModelessProgress = 1;
    std::thread([] {
        EXPECT_EQ(0u, ThisMessageLoop()->m_nModelessProgress);
        ForgetMessageLoop();
    }).join();
    EXPECT_EQ(1u, ThisMessageLoop()->m_nModelessProgress);
    ForgetMessageLoop();
}

TEST(MessageLoops, AForgottenRecordBeginsAgain)
{
    ThisMessageLoop()->m_nModelessProgress = 1;
    const std::size_t nRecords = MessageLoopCount();
    ForgetMessageLoop();
    EXPECT_EQ(nRecords - 1, MessageLoopCount());
    EXPECT_EQ(0u, ThisMessageLoop()->m_nModelessProgress);
    ForgetMessageLoop();
    ForgetMessageLoop();
    EXPECT_EQ(nRecords - 1, MessageLoopCount());
}
