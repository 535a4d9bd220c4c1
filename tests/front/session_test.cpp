// What a host hears of a session, in which order and on which thread.

#include "tests/front/Messages.h"
#include "tests/front/ScriptedHost.h"
#include "tests/front/ScriptedView.h"

#include "interfaces/FieldsAndResolutions.h"
#include "interfaces/IDataParser.h"
#include "interfaces/IDataParserEvents.h"
#include "interfaces/IRecordParser.h"

using namespace IQRL_TabulexConverter;

namespace {

class Session : public FrontFixture
{
protected:
    void OpenFile(const std::string& sContent)
    {
        file.Write(sContent);
        ASSERT_EQ(Open(*front.get(), file), S_OK);
    }

    // Runs to the end and gives what the sink heard.
    Strings Convert()
    {
        EXPECT_EQ(front->DoConvert(sink.get(), 0), S_OK);
        PumpToTheEnd();
        return sink->transcript;
    }
    Strings ConvertPortion(ULONGLONG nStart, ULONGLONG nCount, HRESULT hrExpected = S_OK)
    {
        EXPECT_EQ(front->DoConvertPortion(0, sink.get(), nStart, nCount), hrExpected);
        PumpToTheEnd();
        return sink->transcript;
    }
    Strings EnumSymbols()
    {
        EXPECT_EQ(front->DoEnumSymbols(sink.get()), S_OK);
        PumpToTheEnd();
        return sink->transcript;
    }

    // A date that can't be read on each of these lines, counted from 1.
    static std::string WithBadLines(std::string text, const std::vector<int>& lines)
    {
        std::size_t nAt = 0;
        int nLine = 1;
        for (const int nBad : lines) {
            for (; nLine < nBad; ++nLine)
                nAt = text.find('\n', nAt) + 1;
            text[nAt] = 'x';
        }
        return text;
    }

    TempFile file;
};

// ---- ends

TEST_F(Session, DeliversAllBatchesAndCommits)
{
    OpenFile(Minutes(2500));
    EXPECT_EQ(Convert(), DataEntries(2, 500, "commit"));
    EXPECT_EQ(sink->rows.size(), 2500u);
}

TEST_F(Session, DeliversNothingAfterAFullLastBatch)
{
    OpenFile(Minutes(1000));
    EXPECT_EQ(Convert(), DataEntries(1, 0, "commit"));
}

TEST_F(Session, EndsWellAfterASoftStop)
{
    OpenFile(Minutes(5000));
    sink->onData = [](std::size_t nBatch) { return nBatch == 2 ? S_FALSE : S_OK; };
    EXPECT_EQ(Convert(), DataEntries(2, 0, "commit"));
}

TEST_F(Session, RollsBackAfterAFailure)
{
    OpenFile(Minutes(5000));
    sink->onData = [](std::size_t nBatch) { return nBatch == 2 ? E_FAIL : S_OK; };
    EXPECT_EQ(Convert(), DataEntries(2, 0, "rollback"));
}

TEST_F(Session, RollsBackAfterAFailureThatNamesAnArgument)
{
    OpenFile(Minutes(5000));
    sink->onData = [](std::size_t) { return E_INVALIDARG; };
    EXPECT_EQ(Convert(), DataEntries(1, 0, "rollback"));
}

TEST_F(Session, DeliversABatchWithoutRows)
{
    OpenFile("Symbol,Date,Time,Open,High,Low,Close,Volume\n" + Minutes(30, "ABC"));
    front->put_SymbolName(Bstr(OLESTR("XYZ")).get());
    EXPECT_EQ(Convert(), (Strings{"data 0 rows", "commit"}));
}

// ---- forms

TEST_F(Session, GivesDatesAsDaysAndTimesAsMilliseconds)
{
    OpenFile("1990-01-01,12:34:56.789,1.5,1.5,1.5,1.5,7\n"
             "1990-01-01,12:34:57.000,1.5,1.5,1.5,1.5,7\n"
             "1990-01-01,12:34:58.500,1.5,1.5,1.5,1.5,7\n"
             "1990-01-02,12:00:00.000,1.5,1.5,1.5,1.5,7\n"
             "1990-01-02,12:00:01.000,1.5,1.5,1.5,1.5,7\n");
    Convert();
    ASSERT_FALSE(sink->rows.empty());
    // Day 32874 as the bits of a signed number.
    EXPECT_EQ(sink->rows.front().substr(0, 20), "2:-32662|3:45296789|");
    bool bNoon = false;
    for (const std::string& row : sink->rows)
        bNoon = bNoon || row.starts_with("2:-32661|3:43200000|");
    EXPECT_TRUE(bNoon);
}

TEST_F(Session, GivesColumnsInTheOrderOfTheFields)
{
    OpenFile("Symbol,Volume,Date,Time,Open,High,Low,Close\n"
             "ABC,7,1990-01-01,00:01:00,1.5,2.5,0.5,1.25\n"
             "ABC,8,1990-01-01,00:02:00,1.5,2.5,0.5,1.25\n"
             "ABC,9,1990-01-01,00:03:00,1.5,2.5,0.5,1.25\n");
    Convert();
    ASSERT_EQ(sink->rows.size(), 3u);
    EXPECT_EQ(sink->rows[0], "8:ABC|20:7|2:-32662|3:60000|5:1.5|5:2.5|5:0.5|5:1.25");
}

// ---- refused starts

TEST_F(Session, NeedsASinkAndAFile)
{
    EXPECT_EQ(front->DoConvert(nullptr, 0), E_POINTER);
    EXPECT_EQ(front->DoConvert(front.get(), 0), E_NOINTERFACE);
    EXPECT_EQ(front->DoConvert(sink.get(), 0), E_FAIL); // the parser's answer without a file
    EXPECT_EQ(front->DoConvertPortion(0, nullptr, 0, 1), E_POINTER);
    EXPECT_EQ(front->DoConvertPortion(0, front.get(), 0, 1), E_NOINTERFACE);
    EXPECT_EQ(front->DoEnumSymbols(nullptr), E_NOINTERFACE);
    EXPECT_EQ(front->DoEnumSymbols(front.get()), E_NOINTERFACE);
    EXPECT_EQ(sink->transcript, Strings{});
}

TEST_F(Session, PortionWithoutAFileIsRolledBack)
{
    EXPECT_EQ(ConvertPortion(0, 10, E_FAIL), Strings{"rollback"});
}

TEST_F(Session, EnumerationWithoutAFileIsRolledBack)
{
    EXPECT_EQ(front->DoEnumSymbols(sink.get()), E_UNEXPECTED);
    EXPECT_EQ(sink->transcript, Strings{"rollback"});
}

TEST_F(Session, PortionTellsWhatStandsAgainstTheSettings)
{
    OpenFile(Minutes(50));
    front->put_ResolutionTemplate(HostResolutionNone);
    EXPECT_EQ(ConvertPortion(0, 10, E_INVALIDARG), (Strings{kNoResolutionFault, "rollback"}));
}

// ---- portions

TEST_F(Session, PortionDeliversItsRecords)
{
    OpenFile(Minutes(2500));
    EXPECT_EQ(ConvertPortion(500, 1500), DataEntries(1, 500, "commit"));
    EXPECT_EQ(sink->rows.size(), 1500u);
}

TEST_F(Session, PortionOfNothingCommitsAtOnce)
{
    OpenFile(Minutes(50));
    EXPECT_EQ(front->DoConvertPortion(0, sink.get(), 0, 0), S_OK);
    EXPECT_EQ(sink->transcript, Strings{"commit"});
}

TEST_F(Session, PortionSkipsBadLinesWithoutAWord)
{
    ScriptedView::Script script;
    ScriptedView::Install(script);
    OpenFile(WithBadLines(Minutes(100), {50, 60}));
    EXPECT_EQ(ConvertPortion(0, 100), DataEntries(0, 98, "commit"));
    EXPECT_EQ(script.life, Strings{});
}

// ---- bad lines

TEST_F(Session, AsksAboutEachBadLineUntilTheAnswerIsForAll)
{
    ScriptedView::Script script;
    script.onAsk = [&script](IProgressButtons& buttons) {
        buttons.Press(script.questions.size() < 2 ? ProgressSkip : ProgressSkipAll);
    };
    ScriptedView::Install(script);
    OpenFile(WithBadLines(Minutes(1200), {50, 60, 70, 1100}));
    EXPECT_EQ(Convert(), (Strings{"data 997 rows", "data 199 rows", "commit"}));
    ASSERT_EQ(script.questions.size(), 2u);
    EXPECT_THAT(script.questions[0], testing::StartsWith("50 1 "));
    EXPECT_THAT(script.questions[1], testing::StartsWith("60 1 "));
    EXPECT_EQ(Utf8(file.Name()), script.sFileName);
    PumpUntil([&] { return script.life.size() == 3; });
    EXPECT_EQ(script.life, (Strings{"show", "hide", "release"}));
}

TEST_F(Session, CancelAtABadLineRollsBackOnce)
{
    ScriptedView::Script script;
    script.onAsk = [](IProgressButtons& buttons) { buttons.Press(ProgressCancel); };
    ScriptedView::Install(script);
    OpenFile(WithBadLines(Minutes(5000), {1500}));
    EXPECT_EQ(Convert(), DataEntries(1, 0, "rollback"));
    EXPECT_EQ(script.questions.size(), 1u);
}

// The worker holds its parser's lock while it waits for the answer. The host's thread wants
// that lock, and handles the worker's messages while it waits.
TEST_F(Session, UnadviseWhileABadLineIsAskedAbout)
{
    ScriptedView::Script script;
    script.onAsk = [](IProgressButtons& buttons) { buttons.Press(ProgressSkip); };
    ScriptedView::Install(script);
    OpenFile(WithBadLines(Minutes(50000), {50, 51, 52, 53, 54, 55, 56, 57, 58}));
    for (int nPumps = 0; nPumps < 12; ++nPumps) {
        sink->transcript.clear();
        ASSERT_EQ(front->DoConvert(sink.get(), 0), S_OK);
        for (int i = 0; i < nPumps; ++i)
            PumpMessages(std::chrono::milliseconds(100));
        ASSERT_EQ(front->Unadvise(sink.get()), S_OK);
        EXPECT_EQ(sink->transcript.back(), "rollback");
        EXPECT_EQ(std::ranges::count(sink->transcript, "rollback"), 1);
    }
}

// Another thread cancels the session while nobody answers its question, and this one wants the
// lock that the cancel holds.
TEST_F(Session, MayBeCancelledByAnotherThreadWhileABadLineIsAskedAbout)
{
    const TempFile other(Minutes(100));
    std::thread canceller;
    ScriptedView::Script script;
    script.onAsk = [&](IProgressButtons&) {
        Event cancelling(Event::Kind::ManualReset);
        canceller = std::thread([&] {
            const auto object = NewFront();
            cancelling.Set();
            EXPECT_EQ(object->Unadvise(sink.get()), S_OK);
        });
        cancelling.Wait();
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
        EXPECT_EQ(Open(*front.get(), other), S_OK);
        const auto second = NewSink();
        EXPECT_EQ(front->DoConvert(second.get(), 0), S_OK);
        PumpUntil([&] { return second->bEnded; });
        EXPECT_EQ(second->transcript, DataEntries(0, 100, "commit"));
    };
    ScriptedView::Install(script);
    OpenFile(WithBadLines(Minutes(5000), {1500, 1600}));
    EXPECT_EQ(Convert(), DataEntries(1, 0, "rollback"));
    canceller.join();
    EXPECT_EQ(script.questions.size(), 1u);
    PumpUntil([] { return !OwnsWindows(); }); // the views write to the script
}

TEST_F(Session, WithoutAViewBadLinesAreSkipped)
{
    OpenFile(WithBadLines(Minutes(1200), {50, 60}));
    EXPECT_EQ(Convert(), (Strings{"data 998 rows", "data 200 rows", "commit"}));
}

// ---- cancelling

TEST_F(Session, UnadviseOfAnUnknownSinkIsASoftNo)
{
    EXPECT_EQ(front->Unadvise(sink.get()), S_FALSE);
    EXPECT_EQ(front->Unadvise(nullptr), S_FALSE);
}

TEST_F(Session, CanBeCancelledBeforeTheFirstBatch)
{
    OpenFile(Minutes(20000));
    ASSERT_EQ(front->DoConvert(sink.get(), 0), S_OK);
    EXPECT_EQ(front->Unadvise(sink.get()), S_OK);
    EXPECT_EQ(sink->transcript, Strings{"rollback"});
    PumpMessages(std::chrono::milliseconds(20));
    EXPECT_EQ(sink->transcript, Strings{"rollback"});
    EXPECT_EQ(front->Unadvise(sink.get()), S_FALSE);
}

TEST_F(Session, CanBeCancelledDuringABatch)
{
    OpenFile(Minutes(20000));
    sink->onData = [this](std::size_t nBatch) {
        return nBatch == 3 ? front->Unadvise(sink.get()) : S_OK;
    };
    EXPECT_EQ(Convert(), DataEntries(3, 0, "rollback"));
    PumpMessages(std::chrono::milliseconds(20));
    EXPECT_EQ(sink->transcript, DataEntries(3, 0, "rollback"));
}

TEST_F(Session, CanBeCancelledAfterABatch)
{
    OpenFile(Minutes(20000));
    ASSERT_EQ(front->DoConvert(sink.get(), 0), S_OK);
    PumpUntil([this] { return sink->nBatches >= 2; });
    const std::size_t nBatches = sink->nBatches;
    EXPECT_EQ(front->Unadvise(sink.get()), S_OK);
    EXPECT_EQ(sink->transcript, DataEntries(nBatches, 0, "rollback"));
    PumpMessages(std::chrono::milliseconds(20));
    EXPECT_EQ(sink->transcript.size(), nBatches + 1);
}

// A session is known by the address of its sink.
TEST_F(Session, CanBeCancelledWhenItFollowsAnotherOfTheSameSink)
{
    OpenFile("Symbol,Date,Time,Open,High,Low,Close,Volume\n" + Minutes(20000, "ABC"));
    const auto startAnew = [this](bool bSymbols) {
        sink->transcript.clear();
        sink->bEnded = false;
        sink->onData = [](std::size_t) { return S_FALSE; }; // ends after one batch
        EXPECT_EQ(bSymbols ? front->DoEnumSymbols(sink.get()) : front->DoConvert(sink.get(), 0),
                  S_OK);
    };
    for (int i = 0; i < 20; ++i) {
        startAnew(i % 2 != 0);
        PumpToTheEnd();
        EXPECT_EQ(sink->transcript.back(), "commit");
        startAnew(false);
        EXPECT_EQ(front->Unadvise(sink.get()), S_OK);
        EXPECT_EQ(sink->transcript, Strings{"rollback"});
    }
}

TEST_F(Session, AnotherObjectCanCancelIt)
{
    OpenFile(Minutes(20000));
    ASSERT_EQ(front->DoConvert(sink.get(), 0), S_OK);
    EXPECT_EQ(NewFront()->Unadvise(sink.get()), S_OK);
    EXPECT_EQ(sink->transcript, Strings{"rollback"});
}

// ---- hosts of several kinds

TEST_F(Session, TwoOnOneFileDeliverInTurn)
{
    OpenFile(Minutes(3000));
    const auto second = NewSink();
    ASSERT_EQ(front->DoConvert(sink.get(), 0), S_OK);
    ASSERT_EQ(front->DoConvert(second.get(), 0), S_OK);
    PumpUntil([&] { return sink->bEnded && second->bEnded; });
    EXPECT_EQ(sink->transcript, DataEntries(3, 0, "commit"));
    EXPECT_EQ(second->transcript, DataEntries(3, 0, "commit"));
    EXPECT_EQ(second->rows, sink->rows);
}

TEST_F(Session, SettingsChangedMeanwhileDontTouchIt)
{
    OpenFile(Minutes(3000));
    ASSERT_EQ(front->DoConvert(sink.get(), 0), S_OK);
    front->put_PriceMultiplier(0x43);
    front->SetField(6, HostFieldUndefined, nullptr);
    front->put_SymbolName(Bstr(OLESTR("none")).get());
    PumpToTheEnd();
    EXPECT_EQ(sink->transcript, DataEntries(3, 0, "commit"));
    EXPECT_THAT(sink->rows[0], testing::EndsWith("5:10.5|5:10.75|5:10.25|5:10.5|20:100"));
}

TEST_F(Session, OutlivesTheObjectThatStartedIt)
{
    OpenFile(Minutes(3000));
    ASSERT_EQ(front->DoConvert(sink.get(), 0), S_OK);
    front.reset();
    PumpToTheEnd();
    EXPECT_EQ(sink->transcript, DataEntries(3, 0, "commit"));
}

TEST_F(Session, SinkLivesUntilItHasHeardTheEnd)
{
    OpenFile(Minutes(3000));
    bool bEnded = false;
    sink->onEnd = [&bEnded] { bEnded = true; };
    ASSERT_EQ(front->DoConvert(sink.get(), 0), S_OK);
    sink.reset();
    front.reset();
    PumpUntil([&bEnded] { return bEnded; });
}

TEST_F(Session, WaitsForAHostThatIsSlowToPump)
{
    OpenFile(Minutes(3000));
    ASSERT_EQ(front->DoConvert(sink.get(), 0), S_OK);
    sink->onData = [](std::size_t) {
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
        return S_OK;
    };
    for (int i = 0; i < 100 && !sink->bEnded; ++i) {
        std::this_thread::sleep_for(std::chrono::milliseconds(3));
        PumpMessages(std::chrono::milliseconds(0));
    }
    PumpToTheEnd();
    EXPECT_EQ(sink->transcript, DataEntries(3, 0, "commit"));
}

TEST_F(Session, HostThreadMayEndWithoutPumping)
{
    file.Write(Minutes(3000));
    std::thread([this] {
        const auto object = NewFront();
        const auto receiver = NewSink();
        ASSERT_EQ(Open(*object.get(), file), S_OK);
        ASSERT_EQ(object->DoConvert(receiver.get(), 0), S_OK);
    }).join();
}

TEST_F(Session, FileWithoutADateColumnEndsWithoutAWord)
{
    OpenFile(Minutes(3000));
    front->SetField(0, HostFieldUndefined, nullptr);
    front->InitFieldsInfo();
    ASSERT_EQ(front->DoConvert(sink.get(), 0), S_OK);
    // The window goes when the last reference to the worker is released.
    PumpUntil([] { return !OwnsWindows(); });
    EXPECT_EQ(sink->transcript, Strings{});
}

TEST_F(Session, RunsAgainAndAgain)
{
    OpenFile(Minutes(1500));
    for (int i = 0; i < 5; ++i) {
        sink->transcript.clear();
        sink->bEnded = false;
        EXPECT_EQ(Convert(), DataEntries(1, 500, "commit"));
    }
}

// ---- enumerations

TEST_F(Session, TellsEachSymbolOnce)
{
    OpenFile("Symbol,Date,Time,Open,High,Low,Close,Volume\n" + Minutes(30, "ABC") +
             Minutes(30, "XYZ") + Minutes(5, "ABC"));
    EXPECT_EQ(EnumSymbols(), (Strings{"symbol ABC", "symbol XYZ", "commit"}));
}

TEST_F(Session, EnumerationEndsAsTheSinkSays)
{
    OpenFile("Symbol,Date,Time,Open,High,Low,Close,Volume\n" + Minutes(30, "ABC") +
             Minutes(30, "XYZ"));
    sink->onData = [](std::size_t) { return S_FALSE; };
    EXPECT_EQ(EnumSymbols(), (Strings{"symbol ABC", "commit"}));
    sink->transcript.clear();
    sink->bEnded = false;
    sink->onData = [](std::size_t) { return E_FAIL; };
    EXPECT_EQ(EnumSymbols(), (Strings{"symbol ABC", "rollback"}));
}

TEST_F(Session, EnumerationOfAFileWithoutSymbolsIsRolledBack)
{
    OpenFile(Minutes(30));
    EXPECT_EQ(EnumSymbols(), Strings{"rollback"});
}

TEST_F(Session, CancelledEnumerationEndsWithoutAWord)
{
    OpenFile("Symbol,Date,Time,Open,High,Low,Close,Volume\n" + Minutes(2000, "ABC"));
    ASSERT_EQ(front->DoEnumSymbols(sink.get()), S_OK);
    EXPECT_EQ(front->Unadvise(sink.get()), S_OK);
    PumpUntil([] { return !OwnsWindows(); });
    EXPECT_THAT(sink->transcript, testing::Not(testing::Contains("commit")));
    EXPECT_THAT(sink->transcript, testing::Not(testing::Contains("rollback")));
}

TEST_F(Session, EventsOfAnEnumerationHaveNoOtherAnswers)
{
    com_ptr<IDataParserEvents> events;
    ASSERT_EQ(CreateOwnInstance(CLSID_CqrlDataParserEventsProxy, iid_of<IDataParserEvents>,
                                events.put_void()),
              S_OK);
    EXPECT_EQ(events->OnError(Variant()), E_NOTIMPL);
    EXPECT_EQ(events->OnError2(1, 1, nullptr), E_NOTIMPL);
    EXPECT_EQ(events->GetResolutionName(1, nullptr), E_NOTIMPL);
    EXPECT_EQ(events->EndTransaction(VARIANT_TRUE), S_OK); // to no window
}

} // namespace
