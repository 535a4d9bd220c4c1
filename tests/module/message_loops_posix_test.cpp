// On Windows the library's entry ends a thread's record; see the tests of the library there.

#include <thread>

#include <gtest/gtest.h>

#include "module/MessageLoops.h"

TEST(MessageLoops, TheRecordOfAThreadGoesWhenTheThreadEnds)
{
    const std::size_t nRecords = MessageLoopCount();
    for (int n = 0; n < 5; ++n)
        std::thread([nRecords] {
            ThisMessageLoop()->m_nModelessProgress = 1;
            EXPECT_EQ(nRecords + 1, MessageLoopCount());
        }).join();
    EXPECT_EQ(nRecords, MessageLoopCount());
}
