// Errors, and what the buttons answer.

#include "tests/ui/ProgressFixture.h"

#include "Simples/interface/ResourceStrings.h"

using namespace ui_test;

namespace {

class ProgressErrors : public ProgressFixture
{
protected:
    void SetUp() override { Open(); }

    // The layout comes with the first error only.
    void ExpandErrors()
    {
        AnswerWith(ProgressSkip);
        EXPECT_EQ(Error2(), S_OK);
        log.Take();
    }
};

const Calls kSkipAllDisables{"disable 414", "disable 416", "disable 409", "disable 408",
                             "disable 411", "disable 410", "disable 413", "disable 412"};
const Calls kCancelDisables{"disable 2", "disable 416", "disable 414"};

TEST_F(ProgressErrors, OfALineOpenTheSectionAndAsk)
{
    AnswerWith(ProgressSkip);
    EXPECT_EQ(Error2(7, 3, "bad"), S_OK);
    EXPECT_EQ(log.Take(), kOpenLayout + Calls({"text 408 7", "text 410 3", "text 412 bad", "ask"}));
}

TEST_F(ProgressErrors, WithoutAPlaceLeaveLineAndField)
{
    AnswerWith(ProgressSkip);
    EXPECT_EQ(Error("bad"), S_OK);
    EXPECT_EQ(log.Take(), kOpenLayout + Calls({"text 412 bad", "ask"}));
}

TEST_F(ProgressErrors, ASecondOneWaitsAgainAndDoesNotGrowTheBox)
{
    ExpandErrors();
    EXPECT_EQ(Error2(8, 1, "worse"), S_OK);
    EXPECT_EQ(log.Take(), Calls({"text 408 8", "text 410 1", "text 412 worse", "ask"}));
    EXPECT_EQ(Error("worst"), S_OK);
    EXPECT_EQ(log.Take(), Calls({"text 412 worst", "ask"}));
}

TEST_F(ProgressErrors, TheSectionIsClosedAgainInABoxThatIsOpenedAgain)
{
    ExpandErrors();
    Close();
    Open();
    EXPECT_EQ(Error("bad"), S_OK);
    EXPECT_EQ(log.Take(), kOpenLayout + Calls({"text 412 bad", "ask"}));
}

TEST_F(ProgressErrors, PlacesAreWrittenAs32Bits)
{
    struct Row
    {
        LONG_PTR nLine;
        LONG nField;
        const char* sLine;
        const char* sField;
    };
    constexpr Row kRows[] = {
        {1, 1, "1", "1"},
        {126, 65534, "126", "65534"},
        {126, 65535, "126", "N/A"},
        {126, 65536, "126", "65536"},
        {4294967295, 0, "4294967295", "0"},
        {4294967297, -1, "1", "4294967295"},
        {-1, 2, "4294967295", "2"},
    };
    ExpandErrors();
    for (const Language language : {Language::Chinese, Language::English}) {
        SetResourceLanguage(language);
        for (const Row& row : kRows) {
            EXPECT_EQ(Error2(row.nLine, row.nField, ""), S_OK);
            EXPECT_EQ(log.Take(),
                      Calls({std::string("text 408 ") + row.sLine,
                             std::string("text 410 ") + row.sField, "text 412", "ask"}));
        }
    }
    SetResourceLanguage(Language::Chinese);
}

TEST_F(ProgressErrors, WithoutATextAreEmpty)
{
    ExpandErrors();
    EXPECT_EQ(OnWorker([this] { return box->OnError(nullptr); }), S_OK);
    EXPECT_EQ(log.Take(), Calls({"text 412", "ask"}));
}

TEST_F(ProgressErrors, SkipAllAsksNoMore)
{
    ExpandErrors();
    AnswerWith(ProgressSkipAll);
    EXPECT_EQ(Error("bad"), S_OK);
    EXPECT_EQ(log.Take(), Calls({"text 412 bad", "ask"}) + kSkipAllDisables);
    EXPECT_TRUE(parser->m_bErrorsDisabled);
    EXPECT_EQ(parser->m_nAborts, 0);
    EXPECT_EQ(box->OnError(nullptr), S_OK) << "without the box's thread";
    EXPECT_EQ(box->OnError2(1, 1, nullptr), S_OK);
    EXPECT_THAT(log.Take(), IsEmpty());
    Close();
    EXPECT_EQ(box->OnError(nullptr), S_OK) << "also without a window";
}

TEST_F(ProgressErrors, CancelGivesTheResultAsItStands)
{
    AnswerWith(ProgressCancel);
    EXPECT_EQ(Error2(), S_OK) << "nothing has been answered yet";
    EXPECT_EQ(log.Take(), kOpenLayout + Calls({"text 408 7", "text 410 3", "text 412 bad", "ask"}) +
                              kCancelDisables);
    EXPECT_TRUE(parser->m_bErrorsDisabled);
    EXPECT_EQ(parser->m_nAborts, 1);
}

TEST_F(ProgressErrors, CancelOfAPlainErrorGivesOne)
{
    AnswerWith(ProgressCancel);
    EXPECT_EQ(Error(), 1);
    EXPECT_EQ(parser->m_nAborts, 1);
}

TEST_F(ProgressErrors, CancelGivesTheEarlierValueToTheErrorOfALine)
{
    AnswerWith(ProgressCancel);
    EXPECT_EQ(Error(), 1);
    Close();
    Open();
    EXPECT_EQ(Error2(), 1);
    Close();
    Open();
    AnswerWith(ProgressSkip);
    EXPECT_EQ(Error2(), S_OK);
    AnswerWith(ProgressCancel);
    EXPECT_EQ(Error2(), S_OK);
}

TEST_F(ProgressErrors, CancelOutsideAnErrorAbortsAndDisables)
{
    view->Press(ProgressCancel);
    Drain();
    EXPECT_EQ(log.Take(), kCancelDisables);
    EXPECT_TRUE(parser->m_bErrorsDisabled);
    EXPECT_EQ(parser->m_nAborts, 1);
    EXPECT_EQ(Progress(1, 1), S_OK) << "the box stays";
}

// After a cancel no button can be pressed, so no error may wait for one.
TEST_F(ProgressErrors, AnErrorAfterCancelIsAnsweredAtOnce)
{
    view->Press(ProgressCancel);
    Drain();
    log.Take();
    EXPECT_EQ(Error("late"), 1);
    EXPECT_EQ(Error2(1, 1, "later"), 1);
    EXPECT_EQ(log.Take(),
              kOpenLayout + Calls({"text 412 late", "text 408 1", "text 410 1", "text 412 later"}));
}

TEST_F(ProgressErrors, APressBeforeAnErrorDoesNotAnswerIt)
{
    view->Press(ProgressSkip);
    AnswerWith(ProgressSkip);
    EXPECT_EQ(Error("bad"), S_OK);
    EXPECT_EQ(log.Take(), kOpenLayout + Calls({"text 412 bad", "ask"}));
}

// The worker isn't waiting yet, but its error is on show and can be answered.
TEST_F(ProgressErrors, APressWhileAnErrorIsShownAnswersIt)
{
    Close();
    onErrorText = [](FakeView& v) { v.Press(ProgressSkip); };
    Open();
    EXPECT_EQ(Error(), S_OK);
    EXPECT_EQ(log.Take(), kOpenLayout + Calls({"text 412 bad"})) << "nobody is left to ask";
}

TEST_F(ProgressErrors, TheUserMayAnswerByAnEventOfTheView)
{
    onAsk = nullptr; // only shows itself
    auto result = std::async(std::launch::async, [this] { return box->OnError(nullptr); });
    Calls calls;
    while (calls.empty() || calls.back() != "ask") {
        PumpMessages(1ms);
        for (std::string& s : log.Take())
            calls.push_back(std::move(s));
    }
    EXPECT_EQ(result.wait_for(0s), std::future_status::timeout);
    view->Press(ProgressSkip);
    EXPECT_EQ(result.get(), S_OK);
}

// A parser holds its lock until the error is answered, and AbortConversion takes that lock.
TEST_F(ProgressErrors, CancelLetsTheWorkerGoBeforeItAborts)
{
    CriticalSection parserLock;
    parser->m_onAbort = [&] { const LockGuard lock(parserLock); };
    AnswerWith(ProgressCancel);
    OnWorker([&] {
        const LockGuard lock(parserLock);
        return box->OnError2(1, 1, nullptr);
    });
    EXPECT_EQ(parser->m_nAborts, 1);
}

TEST_F(ProgressErrors, ErrorsAreOffBeforeTheWorkerGoesOn)
{
    for (const ProgressControl button : {ProgressSkipAll, ProgressCancel}) {
        parser->m_bErrorsDisabled = false;
        AnswerWith(button);
        OnWorker([&] {
            box->OnError2(1, 1, nullptr);
            EXPECT_TRUE(parser->m_bErrorsDisabled);
        });
        com_ptr<CProgressDlgNoHTML> next;
        ASSERT_EQ(CreateObject(next), S_OK);
        box->Close();
        box = next;
        box->put_DataParser(parser.get());
        Open();
    }
}

TEST_F(ProgressErrors, ButtonsOfABoxWithoutAParserOnlyAnswer)
{
    box->put_DataParser(nullptr);
    AnswerWith(ProgressCancel);
    EXPECT_EQ(Error(), 1);
    Close();
    Open();
    AnswerWith(ProgressSkipAll);
    EXPECT_EQ(Error(), S_OK);
}

TEST_F(ProgressErrors, OtherControlsAreNoButtons)
{
    view->Press(ProgressBar);
    EXPECT_THAT(log.Take(), IsEmpty());
    EXPECT_EQ(parser->m_nAborts, 0);
}

TEST_F(ProgressErrors, MayBeToldOnTheBoxsOwnThread)
{
    AnswerWith(ProgressSkip);
    EXPECT_EQ(box->OnError(Bstr(OLESTR("bad")).get()), S_OK);
    EXPECT_EQ(log.Take(), kOpenLayout + Calls({"text 412 bad", "ask"}));
    onAsk = [this](FakeView&) { box->Close(); };
    EXPECT_EQ(box->OnError2(1, 1, nullptr), S_FALSE);
}

} // namespace
