// A warning where there are no windows.

#include <gtest/gtest.h>

#include "platform/MessageBox.h"

namespace {

TEST(WarningTest, GoesToStandardErrorAsOneLine)
{
    testing::internal::CaptureStderr();
    ShowWarning(0, OLESTR("未选择周期。"));
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "未选择周期。\n");
}

} // namespace
