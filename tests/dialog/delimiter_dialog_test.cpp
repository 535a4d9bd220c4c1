// The delimiter dialog.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "src/UIComponents/DelDialog.h"
#include "tests/dialog/fakes/FakeViews.h"

using namespace dialog_test;
using Hesperon::specifics::UILayer::CSelectDelimitersDialog;

namespace {

struct DelimiterRow
{
    LONG nControl;
    LONG nMask;
};

constexpr DelimiterRow kDelimiterBoxes[] = {
    {203, 1 << 1}, {204, 1 << 5}, {205, 1 << 3}, {206, 1 << 2}, {207, 1 << 0}, {208, 1 << 4},
};

// The check boxes that are ticked.
std::vector<LONG> Ticked(FakeDialog& dialog)
{
    std::vector<LONG> ticked;
    for (const DelimiterRow& row : kDelimiterBoxes)
        if (dialog.Check(row.nControl) != 0)
            ticked.push_back(row.nControl);
    return ticked;
}

// The mask after OK.
LONG Confirmed(LONG nDividers, const std::function<void(FakeDialog&)>& user = {})
{
    FakeViews views;
    views.m_onRun = [&](FakeDialog& dialog) {
        if (user)
            user(dialog);
        dialog.Click(SmallDialogOk);
    };
    CSelectDelimitersDialog dialog;
    dialog.m_nDividers = nDividers;
    EXPECT_EQ(dialog.DoModal(), kDialogOk);
    return dialog.m_nDividers;
}

TEST(DelimiterDialog, HasOneBoxForEachBit)
{
    for (const DelimiterRow& row : kDelimiterBoxes) {
        SCOPED_TRACE(row.nControl);
        std::vector<LONG> ticked;
        EXPECT_EQ(Confirmed(row.nMask, [&](FakeDialog& dialog) { ticked = Ticked(dialog); }),
                  row.nMask);
        EXPECT_THAT(ticked, testing::ElementsAre(row.nControl));
        EXPECT_EQ(Confirmed(0, [&](FakeDialog& dialog) { dialog.Tick(row.nControl, 1); }),
                  row.nMask);
        EXPECT_EQ(Confirmed(0x3F, [&](FakeDialog& dialog) { dialog.Tick(row.nControl, 0); }),
                  0x3F & ~row.nMask);
    }
}

TEST(DelimiterDialog, KeepsEveryMaskOfItsBits)
{
    for (LONG nMask = 0; nMask <= 0x3F; ++nMask)
        EXPECT_EQ(Confirmed(nMask), nMask);
}

TEST(DelimiterDialog, LosesBitsWithoutABoxAtOk)
{
    EXPECT_EQ(Confirmed(0x40), 0);
    EXPECT_EQ(Confirmed(0x40 | 0x24), 0x24);
    EXPECT_EQ(Confirmed(-1), 0x3F);
}

TEST(DelimiterDialog, CountsEveryStateButOffAsTicked)
{
    EXPECT_EQ(Confirmed(0, [](FakeDialog& dialog) { dialog.Tick(DelimiterTab, 2); }), 1 << 5);
}

TEST(DelimiterDialog, CancelKeepsTheMask)
{
    for (const bool bPress : {true, false}) { // pressed, or closed in another way
        FakeViews views;
        views.m_onRun = [&](FakeDialog& dialog) {
            dialog.Tick(DelimiterComma, 1);
            if (bPress)
                dialog.Click(SmallDialogCancel);
        };
        CSelectDelimitersDialog dialog;
        dialog.m_nDividers = 0x41;
        EXPECT_EQ(dialog.DoModal(), kDialogCancel);
        EXPECT_EQ(dialog.m_nDividers, 0x41);
    }
}

TEST(DelimiterDialog, OpensCentredOverTheActiveWindow)
{
    CallLog log;
    FakeViews views(&log);
    views.m_onRun = [&](FakeDialog& dialog) {
        EXPECT_EQ(dialog.m_dialog, DialogDelimiters);
        EXPECT_EQ(dialog.m_hwndParent, views.m_hwndActive);
        EXPECT_THAT(log.Take(), testing::ElementsAre("dialog: check 203 1", "dialog: check 204 1",
                                                     "dialog: check 205 0", "dialog: check 206 1",
                                                     "dialog: check 207 0", "dialog: check 208 0",
                                                     "dialog: centre"));
    };
    CSelectDelimitersDialog dialog;
    dialog.m_nDividers = 0x26;
    dialog.DoModal();
}

TEST(DelimiterDialog, EnterIsOk)
{
    FakeViews views;
    views.m_onRun = [](FakeDialog& dialog) {
        dialog.Tick(DelimiterBar, 1);
        dialog.PressEnter(0, DelimiterBar);
    };
    CSelectDelimitersDialog dialog;
    EXPECT_EQ(dialog.DoModal(), kDialogOk);
    EXPECT_EQ(dialog.m_nDividers, 1 << 4);
}

TEST(DelimiterDialog, WithoutViewsDoesNothing)
{
    CSelectDelimitersDialog dialog;
    dialog.m_nDividers = 0x40;
    EXPECT_EQ(dialog.DoModal(), kDialogFailed);
    EXPECT_EQ(dialog.m_nDividers, 0x40);
}

} // namespace
