// Opening, closing and the texts of a progress box; which call does what without one.

#include "tests/ui/ProgressFixture.h"

#include "interfaces/IProgressBox.h"

using namespace ui_test;

namespace {

class ProgressBox : public ProgressFixture
{};

Calls ClosedLayout()
{
    return {"hide 409",     "hide 408", "hide 411", "hide 410",   "hide 413",
            "hide 412",     "hide 422", "grow -60", "move 2 -60", "move 414 -60",
            "move 416 -60", "hide 414", "hide 416"};
}

TEST_F(ProgressBox, OpensWithTheErrorSectionClosed)
{
    EXPECT_EQ(box->SetFileName(Bstr(OLESTR("quotes.csv")).get()), S_FALSE);
    EXPECT_EQ(box->ShowProgress(4711), S_OK);
    EXPECT_EQ(log.Take(), ClosedLayout() + Calls({"text 400 quotes.csv", "open over 4711"}));
    EXPECT_EQ(box->Close(), S_OK);
    EXPECT_EQ(log.Take(), Calls({"close", "release"}));
}

TEST_F(ProgressBox, OpensWithAStoredTitle)
{
    EXPECT_EQ(box->SetTitle(Bstr(OLESTR("Import")).get()), S_FALSE);
    EXPECT_EQ(box->ShowProgress(0), S_OK);
    EXPECT_EQ(log.Take(), ClosedLayout() + Calls({"text 400", "caption Import", "open over 0"}));
}

TEST_F(ProgressBox, WithoutAWindowDoesNothingAndSaysSo)
{
    const auto Check = [this] {
        EXPECT_EQ(box->DoProgress(1, 2), S_FALSE);
        EXPECT_EQ(box->SetProcessedRecordCount(1), S_FALSE);
        EXPECT_EQ(box->Close(), S_FALSE);
        EXPECT_EQ(box->SetTitle(Bstr(OLESTR("a")).get()), S_FALSE);
        EXPECT_EQ(box->SetTitle(nullptr), S_FALSE);
        EXPECT_EQ(box->SetFileName(nullptr), S_FALSE);
        EXPECT_EQ(box->OnError(nullptr), E_UNEXPECTED);
        EXPECT_EQ(box->OnError2(1, 1, nullptr), E_UNEXPECTED);
        EXPECT_THAT(log.Take(), IsEmpty());
    };
    Check();
    Open();
    Close();
    Check();
}

TEST_F(ProgressBox, OpensOnce)
{
    Open();
    EXPECT_EQ(box->ShowProgress(0), S_FALSE);
    EXPECT_THAT(log.Take(), IsEmpty());
    EXPECT_EQ(box->SetProcessedRecordCount(5), S_OK);
    EXPECT_EQ(log.Take(), Calls({"text 402 5"}));
}

TEST_F(ProgressBox, OpensAgainAfterClose)
{
    Open();
    Close();
    Open();
    EXPECT_EQ(box->SetProcessedRecordCount(5), S_OK);
    EXPECT_EQ(log.Take(), Calls({"text 402 5"}));
}

TEST_F(ProgressBox, ShowsTextsAtOnceOnItsOwnThread)
{
    Open();
    EXPECT_EQ(box->SetFileName(Bstr(OLESTR("b.txt")).get()), S_OK);
    EXPECT_EQ(log.Take(), Calls({"text 400 b.txt"}));
    EXPECT_EQ(box->SetTitle(Bstr(OLESTR("t")).get()), S_OK);
    EXPECT_EQ(log.Take(), Calls({"caption t"}));
    EXPECT_EQ(box->SetTitle(Bstr().get()), S_FALSE);
    EXPECT_THAT(log.Take(), IsEmpty());
    EXPECT_EQ(box->SetProcessedRecordCount(18446744073709551615u), S_OK);
    EXPECT_EQ(log.Take(), Calls({"text 402 18446744073709551615"}));
}

TEST_F(ProgressBox, ForgetsATitleThatWasEmptied)
{
    box->SetTitle(Bstr(OLESTR("t")).get());
    box->SetTitle(nullptr);
    EXPECT_EQ(box->ShowProgress(0), S_OK);
    EXPECT_EQ(log.Take(), ClosedLayout() + Calls({"text 400", "open over 0"}));
}

// A worker's last figures must be seen although nobody waits for them, and the box may be
// released right after.
TEST_F(ProgressBox, ShowsWhatAWorkerSaidBeforeItClosed)
{
    Open();
    OnWorker([this] {
        EXPECT_EQ(box->SetFileName(Bstr(OLESTR("b.txt")).get()), S_OK);
        EXPECT_EQ(box->SetTitle(Bstr(OLESTR("t")).get()), S_OK);
        EXPECT_EQ(box->SetProcessedRecordCount(130), S_OK);
        EXPECT_EQ(box->Close(), S_OK);
        EXPECT_EQ(box->DoProgress(1, 2), S_FALSE) << "closed at once";
        box.reset();
    });
    EXPECT_EQ(log.Take(),
              Calls({"text 400 b.txt", "caption t", "text 402 130", "close", "release"}));
}

TEST_F(ProgressBox, AsksTheParserFromItsArgument)
{
    EXPECT_EQ(box->put_DataParser(nullptr), E_POINTER);
    com_ptr<FakeParser> other;
    ASSERT_EQ(CreateObject(other), S_OK);
    EXPECT_EQ(box->put_DataParser(other.get()), S_OK);
    other->AddRef();
    EXPECT_EQ(other->Release(), 2u) << "the box keeps it";
    EXPECT_EQ(box->put_DataParser(static_cast<IProgressDlg*>(box.get())), E_NOINTERFACE);
    other->AddRef();
    EXPECT_EQ(other->Release(), 1u);
}

TEST_F(ProgressBox, LetsGoOfTheParserWithTheWindowStanding)
{
    Open();
    std::thread([this] { box.reset(); }).join();
    EXPECT_THAT(log.Take(), IsEmpty()) << "nobody has dispatched";
    parser->AddRef();
    EXPECT_EQ(parser->Release(), 1u);
    Drain();
    EXPECT_EQ(log.Take(), Calls({"close", "release"}));
}

TEST_F(ProgressBox, ServesOlderHostsInNothing)
{
    com_ptr<IProgressDlg> dialog = box.as<IProgressDlg>();
    ASSERT_TRUE(dialog);
    const VARIANT value{};
    EXPECT_EQ(dialog->put_onselectdebug(value), E_NOTIMPL);
    EXPECT_EQ(dialog->put_onselectnormal(value), E_NOTIMPL);
    EXPECT_TRUE(box.as<IProgressBox>());
    EXPECT_TRUE(box.as<IDispatch>());
}

TEST_F(ProgressBox, WithoutAHostsViewSkipsAllBadLines)
{
    SetProgressViews(nullptr, nullptr);
    ASSERT_EQ(box->ShowProgress(0), S_OK);
    EXPECT_EQ(Progress(5, 10), S_OK);
    EXPECT_EQ(Error2(), S_OK);
    EXPECT_TRUE(parser->m_bErrorsDisabled);
    EXPECT_EQ(parser->m_nAborts, 0);
    EXPECT_EQ(box->OnError2(8, 1, nullptr), S_OK) << "without asking";
    EXPECT_EQ(box->Close(), S_OK);
    EXPECT_THAT(log.Take(), IsEmpty());
}

TEST_F(ProgressBox, AViewThatTheHostDoesNotMakeIsASilentOne)
{
    SetProgressViews([](void*) -> IProgressView* { return nullptr; }, nullptr);
    ASSERT_EQ(box->ShowProgress(0), S_OK);
    EXPECT_EQ(Error(), S_OK);
    EXPECT_EQ(box->Close(), S_OK);
}

} // namespace
