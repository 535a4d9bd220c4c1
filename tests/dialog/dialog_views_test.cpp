// The dialog's views, where there are none.

#include <gtest/gtest.h>

#include "tests/dialog/fakes/FakeViews.h"

using namespace dialog_test;

TEST(DialogViews, WithoutAnyNoDialogOpens)
{
    struct Events : IDialogEvents
    {
        void OnOpen(IDialogView&) override { FAIL(); }
        void OnDefaultCommand() override { FAIL(); }
        void OnDestroy() override { FAIL(); }
        void OnText(LONG) override { FAIL(); }
        void OnSelect(LONG) override { FAIL(); }
        void OnClick(LONG) override { FAIL(); }
        void OnDate(LONG) override { FAIL(); }
        void OnResize() override { FAIL(); }
    } events;
    EXPECT_EQ(Hesperon::specifics::UILayer::RunDialog(DialogTemplate, events), kDialogFailed);
}
