// Random lives of boxes, between threads that come and go.

#include "tests/support/Seed.h"
#include "tests/ui/ProgressFixture.h"

#include <random>

#include "platform/threads/Event.h"

using namespace ui_test;

namespace {

// One box: its own thread, which dispatches for a while or not at all, a worker, and a third
// thread that may close the box or release it.
class Life
{
public:
    explicit Life(unsigned nSeed) : m_random(nSeed)
    {
        EXPECT_EQ(CreateObject(m_box), S_OK);
        com_ptr<FakeParser> parser;
        EXPECT_EQ(CreateObject(parser), S_OK);
        parser->m_fRelative = 0.25f;
        m_box->put_DataParser(parser.get());
        SetProgressViews(&MakeView, this);
    }

    void Run()
    {
        const unsigned nBox = m_random(), nWorker = m_random(), nThird = m_random();
        std::thread box([=, this, own = m_box]() mutable { RunBox(std::move(own), nBox); });
        m_opened.Wait();
        std::thread worker([nWorker, own = m_box]() mutable {
            Work(*own.get(), nWorker);
            own.reset();
        });
        std::thread third([nThird, own = std::move(m_box)]() mutable {
            if (nThird % 3 == 0)
                own->Close();
            own.reset();
        });
        third.join();
        worker.join();
        m_bWorkerDone = true;
        box.join();
        SetProgressViews(nullptr, nullptr);
        Check();
    }

private:
    using Box = com_ptr<CProgressDlgNoHTML>;

    static IProgressView* MakeView(void* pContext)
    {
        auto& life = *static_cast<Life*>(pContext);
        auto* pView = new FakeView(life.m_log);
        pView->m_onAsk = [&life](FakeView& v) { life.Answer(v); };
        return pView;
    }

    // On the box's thread; every branch ends the question.
    void Answer(FakeView& v)
    {
        switch ((*m_pBoxRandom)() % 6) {
        case 0:
            v.Press(ProgressSkipAll);
            break;
        case 1:
            v.Press(ProgressCancel);
            break;
        case 2:
            m_bEnd = true;
            break;
        default:
            v.Press(ProgressSkip);
        }
    }

    void RunBox(Box box, unsigned nSeed)
    {
        std::mt19937 random(nSeed);
        m_pBoxRandom = &random;
        EXPECT_EQ(box->ShowProgress(0), S_OK);
        const bool bDispatches = random() % 5 != 0;
        const bool bCloses = random() % 3 == 0;
        const bool bToTheEnd = random() % 2 == 0;
        const unsigned nTurns = random() % 20;
        if (random() % 2)
            box.reset();
        m_opened.Set();
        if (bDispatches)
            for (unsigned n = 0; !m_bEnd && (bToTheEnd ? !m_bWorkerDone : n < nTurns); ++n)
                PumpMessages(1ms);
        if (box && bCloses)
            box->Close();
    }

    static void Work(CProgressDlgNoHTML& box, unsigned nSeed)
    {
        std::mt19937 random(nSeed);
        for (unsigned nLeft = random() % 30; nLeft > 0; --nLeft) {
            const HRESULT hr = WorkerCall(box, random);
            EXPECT_TRUE(hr == S_OK || hr == S_FALSE || hr == E_UNEXPECTED) << hr;
        }
    }
    static HRESULT WorkerCall(CProgressDlgNoHTML& box, std::mt19937& random)
    {
        const Bstr sText(OLESTR("some text"));
        switch (random() % 16) {
        case 0:
            return box.SetTitle(sText.get());
        case 1:
            return box.SetFileName(sText.get());
        case 2:
            return box.OnError(sText.get());
        case 3:
        case 4:
        case 5:
            return box.OnError2(1, 1, sText.get());
        case 6:
            return box.SetProcessedRecordCount(random());
        case 7:
            return random() % 4 ? S_OK : box.Close();
        default:
            return box.DoProgress(random() % 100, 100);
        }
    }

    void Check()
    {
        const Calls calls = m_log.Take();
        EXPECT_EQ(std::ranges::count(calls, "close"), 1);
        EXPECT_EQ(std::ranges::count(calls, "release"), 1);
        ASSERT_FALSE(calls.empty());
        EXPECT_EQ(calls.back(), "release");
        for (const std::string& sCall : calls)
            EXPECT_EQ(sCall.find("another thread"), sCall.npos) << sCall;
    }

    std::mt19937 m_random;
    ViewLog m_log;
    Box m_box;
    Event m_opened{Event::Kind::ManualReset};
    std::mt19937* m_pBoxRandom = nullptr; // of the box's thread
    std::atomic<bool> m_bEnd = false, m_bWorkerDone = false;
};

TEST(ProgressRandom, BoxesEndWellHoweverTheirThreadsRun)
{
    for (int n = 0; n < Rounds(200); ++n) {
        SCOPED_TRACE("life " + std::to_string(n));
        Life(Seed() + static_cast<unsigned>(n)).Run();
        if (testing::Test::HasFailure())
            break;
    }
}

} // namespace
