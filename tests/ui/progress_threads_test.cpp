// A progress box between threads that come and go.

#include "tests/ui/ProgressFixture.h"

#include "platform/threads/Event.h"

using namespace ui_test;

namespace {

class ProgressThreads : public ProgressFixture
{};

TEST_F(ProgressThreads, AWorkerDrivesTheBoxOfAnotherThread)
{
    AnswerWith(ProgressSkip);
    parser->m_fRelative = 0.5f;
    Open();
    OnWorker([this] {
        for (ULONGLONG n = 1; n <= 100; ++n) {
            ++nNow;
            EXPECT_EQ(box->DoProgress(n, 100), S_OK);
            if (n % 10 == 0) {
                EXPECT_EQ(box->OnError2(static_cast<LONG_PTR>(n), 1, nullptr), S_OK);
            }
        }
        EXPECT_EQ(box->SetProcessedRecordCount(100), S_OK);
        EXPECT_EQ(box->Close(), S_OK);
        box.reset();
    });
    const Calls calls = log.Take();
    EXPECT_EQ(std::ranges::count(calls, "ask"), 10);
    EXPECT_EQ(Calls(calls.end() - 3, calls.end()), Calls({"text 402 100", "close", "release"}));
    for (const std::string& sCall : calls)
        EXPECT_EQ(sCall.find("another thread"), sCall.npos) << sCall;
}

// A host may stop dispatching when it has heard the end of its session.
TEST_F(ProgressThreads, TheEndNeedsNobodyToDispatch)
{
    Event opened(Event::Kind::ManualReset), workerDone(Event::Kind::ManualReset);
    std::thread boxThread([&] {
        Open();
        opened.Set();
        workerDone.Wait();
    });
    opened.Wait();
    EXPECT_EQ(box->SetProcessedRecordCount(100), S_OK);
    EXPECT_EQ(box->SetTitle(Bstr(OLESTR("t")).get()), S_OK);
    EXPECT_EQ(box->SetFileName(Bstr(OLESTR("f")).get()), S_OK);
    EXPECT_EQ(box->Close(), S_OK);
    EXPECT_EQ(box->Close(), S_FALSE);
    EXPECT_EQ(box->DoProgress(1, 1), S_FALSE);
    EXPECT_EQ(box->OnError(nullptr), E_UNEXPECTED);
    box.reset();
    EXPECT_THAT(log.Take(), IsEmpty());
    workerDone.Set();
    boxThread.join();
    EXPECT_EQ(log.Take(), Calls({"close", "release"}));
}

TEST_F(ProgressThreads, AWindowGoesWithItsThread)
{
    std::thread([this] { Open(); }).join();
    EXPECT_EQ(log.Take(), Calls({"close", "release"}));
    EXPECT_EQ(box->Close(), S_FALSE);
    EXPECT_EQ(box->DoProgress(1, 1), S_FALSE);
    EXPECT_EQ(box->OnError2(1, 1, nullptr), E_UNEXPECTED);
    Open();
    EXPECT_EQ(box->SetProcessedRecordCount(1), S_OK);
}

TEST_F(ProgressThreads, AWorkerThatWaitsIsWokenWhenTheBoxsThreadEnds)
{
    const auto Check = [this](auto call) {
        std::atomic<bool> bAsked = false;
        onAsk = [&](FakeView&) { bAsked = true; };
        Event opened(Event::Kind::ManualReset);
        std::thread boxThread([&] {
            Open();
            opened.Set();
            while (!bAsked)
                PumpMessages(1ms);
        });
        opened.Wait();
        EXPECT_EQ(call(), 1);
        boxThread.join();
        EXPECT_EQ(log.Take().back(), "release");
    };
    Check([this] { return box->OnError2(1, 1, nullptr); });
    Check([this] { return box->OnError(nullptr); });
}

// The call may come before or after the thread's end; its result is the same.
TEST_F(ProgressThreads, CallsToAThreadThatEndsComeBack)
{
    for (int n = 0; n < 50; ++n) {
        Event opened(Event::Kind::ManualReset);
        std::thread boxThread([&] {
            Open();
            opened.Set();
        });
        opened.Wait();
        if (n % 2)
            EXPECT_EQ(box->DoProgress(1, 1), S_FALSE);
        else
            EXPECT_EQ(box->OnError2(1, 1, nullptr), E_UNEXPECTED);
        boxThread.join();
    }
}

TEST_F(ProgressThreads, QuestionsOfSeveralThreadsAreAskedOneByOne)
{
    int nOpen = 0;
    onAsk = [&](FakeView& v) {
        EXPECT_EQ(++nOpen, 1);
        PumpMessages(1ms); // would bring the next one in
        --nOpen;
        v.Press(ProgressSkip);
    };
    Open();
    OnWorker([this] {
        std::vector<std::future<HRESULT>> results;
        results.reserve(4);
        for (int n = 0; n < 4; ++n)
            results.push_back(std::async(std::launch::async, [this] {
                HRESULT hr = S_OK;
                for (int i = 0; i < 10 && hr == S_OK; ++i)
                    hr = box->OnError2(1, 1, nullptr);
                return hr;
            }));
        for (auto& result : results)
            EXPECT_EQ(result.get(), S_OK);
    });
    EXPECT_EQ(std::ranges::count(log.Take(), "ask"), 40);
}

TEST_F(ProgressThreads, ABoxThatGoesLeavesEveryQuestion)
{
    onAsk = [this](FakeView&) { box->Close(); };
    Open();
    OnWorker([this] {
        std::vector<std::future<HRESULT>> results;
        results.reserve(4);
        for (int n = 0; n < 4; ++n)
            results.push_back(
                std::async(std::launch::async, [this] { return box->OnError2(1, 1, nullptr); }));
        int nAsked = 0;
        for (auto& result : results) {
            const HRESULT hr = result.get();
            EXPECT_TRUE(hr == S_FALSE || hr == E_UNEXPECTED) << hr;
            nAsked += hr == S_FALSE;
        }
        EXPECT_EQ(nAsked, 1);
    });
}

} // namespace
