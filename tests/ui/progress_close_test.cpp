// Boxes that go while a button is pressed, or while a worker waits for one.

#include "tests/ui/ProgressFixture.h"

using namespace ui_test;

namespace {

class ProgressClose : public ProgressFixture
{
protected:
    void SetUp() override { Open(); }
};

// The abort ends the session, which closes and releases its box before the press of the
// button has returned to the view.
TEST_F(ProgressClose, TheBoxMayGoInsideAButton)
{
    parser->m_onAbort = [this] {
        box->Close();
        box.reset();
    };
    AnswerWith(ProgressCancel);
    EXPECT_EQ(OnWorker([own = box] { return own->OnError(nullptr); }), 1);
    EXPECT_EQ(log.Take(), kOpenLayout + Calls({"text 412", "ask", "close", "release"}));
}

TEST_F(ProgressClose, TheBoxMayCloseWhileErrorsAreSwitchedOff)
{
    for (const ProgressControl button : {ProgressSkipAll, ProgressCancel}) {
        parser->m_onDisable = [this] { box->Close(); };
        view->Press(button);
        EXPECT_EQ(log.Take(), Calls({"close", "release"}));
        Open();
    }
}

TEST_F(ProgressClose, AButtonMayBePressedWhileTheBoxOpens)
{
    Close();
    onShow = [](FakeView& v) { v.Press(ProgressCancel); };
    parser->m_onAbort = [this] { box->Close(); };
    EXPECT_EQ(box->ShowProgress(0), S_OK);
    EXPECT_EQ(log.Take().back(), "release");
    EXPECT_EQ(parser->m_nAborts, 1);
}

TEST_F(ProgressClose, TheWindowKeepsTheLibraryUntilItsThreadDispatches)
{
    const LONG nLocks = ModuleLockCount();
    std::thread([this] { EXPECT_EQ(box->Close(), S_OK); }).join();
    EXPECT_EQ(ModuleLockCount(), nLocks);
    box.reset();
    EXPECT_EQ(ModuleLockCount(), nLocks - 1);
    Drain();
    EXPECT_EQ(ModuleLockCount(), nLocks - 2);
}

// The window lives until its thread dispatches, but is no longer the box's own.
TEST_F(ProgressClose, ButtonsOfABoxThatWasClosedDoNothing)
{
    std::thread([this] { EXPECT_EQ(box->Close(), S_OK); }).join();
    for (const ProgressControl button : {ProgressSkip, ProgressSkipAll, ProgressCancel})
        view->Press(button);
    EXPECT_FALSE(parser->m_bErrorsDisabled);
    EXPECT_EQ(parser->m_nAborts, 0);
    Drain();
    EXPECT_EQ(log.Take(), Calls({"close", "release"}));
    EXPECT_EQ(box->OnError(nullptr), E_UNEXPECTED) << "nothing is skipped";
}

TEST_F(ProgressClose, CloseEndsAQuestion)
{
    onAsk = [this](FakeView&) { EXPECT_EQ(box->Close(), S_OK); };
    EXPECT_EQ(Error2(), S_FALSE);
    Open();
    EXPECT_EQ(Error(), 1);
}

TEST_F(ProgressClose, CloseOnAThirdThreadEndsAQuestion)
{
    std::thread closer;
    onAsk = [&](FakeView&) { closer = std::thread([this] { EXPECT_EQ(box->Close(), S_OK); }); };
    EXPECT_EQ(Error2(), S_FALSE);
    closer.join();
    Drain();
    EXPECT_EQ(log.Take().back(), "release");
}

TEST_F(ProgressClose, ACancelFromElsewhereEndsTheQuestionAndAsksNoMore)
{
    onAsk = [this](FakeView&) { std::thread([this] { box->EndQuestions(); }).join(); };
    EXPECT_EQ(Error2(), S_FALSE);
    log.Take();
    EXPECT_EQ(Error2(), S_OK);
    EXPECT_THAT(log.Take(), testing::Not(testing::Contains("ask")));
}

TEST_F(ProgressClose, APressBeforeCloseStillCounts)
{
    onAsk = [this](FakeView& v) {
        v.Press(ProgressSkip);
        box->Close();
    };
    EXPECT_EQ(Error2(), S_OK);
}

TEST_F(ProgressClose, AQuestionThatWasLeftDoesNotAnswerTheNext)
{
    onAsk = [this](FakeView&) { box->Close(); };
    EXPECT_EQ(Error2(), S_FALSE);
    Open();
    AnswerWith(ProgressSkip);
    EXPECT_EQ(Error2(), S_OK);
    EXPECT_EQ(log.Take().back(), "ask");
}

} // namespace
