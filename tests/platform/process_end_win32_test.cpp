// The end of a process that still has windows.

#include <gtest/gtest.h>

#include "platform/Process.h"
#include "platform/component.h"
#include "platform/threads/MessageWindow.h"

namespace {

constexpr int kTold = 7;

class Owner : public MessageWindow
{
private:
    LONG_PTR OnMessage(UINT, ULONG_PTR, LONG_PTR) override { return 0; }
    void OnFinalMessage() override { EndProcess(OtherThreadsAreGone() ? kTold : kTold + 1); }
};

void LeaveWithAWindow()
{
    auto* pOwner = new Owner;
    ExitProcess(pOwner->Create() ? 0 : kTold + 2);
}

} // namespace

// An owner that were told might wait for a lock whose holder was ended.
TEST(ProcessEndDeathTest, NoOwnerOfAWindowIsTold)
{
    EXPECT_EXIT(LeaveWithAWindow(), testing::ExitedWithCode(0), "");
}

TEST(ProcessEndDeathTest, ThreadsAreThereUntilThen)
{
    EXPECT_FALSE(OtherThreadsAreGone());
}
