// Four hosts on threads of their own do to each other what hosts may do: they start sessions,
// cancel their own and those of others, change files, copy objects and let them go. No call may
// wait for ever, no sink may hear two ends, and nothing may be left behind.
//
// The operations follow from the seed; TABULEX_ROUNDS multiplies their number.

#include <array>
#include <atomic>
#include <mutex>
#include <random>

#include "tests/front/ScriptedHost.h"
#include "tests/front/ScriptedView.h"
#include "tests/support/Seed.h"

namespace {

constexpr int kHostThreads = 4;
constexpr int kOperations = 2000; // of all hosts together

// The sinks of sessions that may still be on, of all hosts. Holds no references: a sink belongs
// to its host, and its address is only a number to those who cancel.
class SharedSinks
{
public:
    void Add(IDispatch* pSink)
    {
        const std::lock_guard lock(m_lock);
        m_sinks.push_back(pSink);
    }
    void Remove(IDispatch* pSink)
    {
        const std::lock_guard lock(m_lock);
        std::erase(m_sinks, pSink);
    }
    // Null where there is none.
    IDispatch* Any(std::size_t nRandom)
    {
        const std::lock_guard lock(m_lock);
        return m_sinks.empty() ? nullptr : m_sinks[nRandom % m_sinks.size()];
    }

private:
    std::mutex m_lock;
    std::vector<IDispatch*> m_sinks;
};

// Leaves most questions open until the box closes or its run is cancelled.
void AnswerSome(IQRL_TabulexConverter::IProgressButtons& buttons)
{
    using namespace IQRL_TabulexConverter;
    static std::atomic<unsigned> nQuestions = 0;
    switch (++nQuestions % 8) {
    case 0:
        return buttons.Press(ProgressCancel);
    case 1:
        return buttons.Press(ProgressSkip);
    case 2:
        return buttons.Press(ProgressSkipAll);
    default:
        return;
    }
}

class LazyView final
    : public IQRL_TabulexConverter::ControlTable<IQRL_TabulexConverter::IProgressView>
{
public:
    void Show(LONG_PTR, IQRL_TabulexConverter::IProgressButtons* pButtons) override
    {
        m_pButtons = pButtons;
    }
    void Hide() override {}
    void SetPercent(ULONG) override {}
    void AskUser() override { AnswerSome(*m_pButtons); }
    void Release() override { delete this; }

private:
    IQRL_TabulexConverter::IProgressButtons* m_pButtons = nullptr;
};

class SessionsOfFourHosts : public FrontFixture
{
protected:
    struct Shared
    {
        std::array<TempFile, 2> files;
        SharedSinks sinks;
        std::atomic<int> nDone = 0; // operations, for a watch over their progress
        std::atomic<int> nBusy = kHostThreads;
    };

    class Host
    {
    public:
        Host(unsigned nSeed, Shared& shared) : m_random(nSeed), m_shared(shared) {}

        void Run(int nOperations)
        {
            for (int i = 0; i < nOperations; ++i) {
                if (m_objects.empty())
                    AddObject();
                Operate(*m_objects[Below(m_objects.size())].get());
                ++m_shared.nDone;
            }
            CancelOwn();
            m_objects.clear();
            // Enumerations run one after the other: one that is cancelled goes when it has its
            // turn, and until then those of other hosts are in its way.
            --m_shared.nBusy;
            while (m_shared.nBusy > 0)
                PumpMessages(std::chrono::milliseconds(5));
            PumpUntil([] { return !OwnsWindows(); });
            for (const auto& sink : m_sinks)
                Forget(sink);
        }

    private:
        void AddObject()
        {
            m_objects.push_back(NewFront());
            Open(*m_objects.back().get(), AnyFile());
        }

        void Operate(IqrlTabulexConvertor& object)
        {
            switch (Below(12)) {
            case 0:
            case 1:
                Start([&](IDispatch* p) { return object.DoConvert(p, 0); });
                break;
            case 2:
                Start([&](IDispatch* p) {
                    return object.DoConvertPortion(0, p, Below(3000), Below(3000));
                });
                break;
            case 3:
                Start([&](IDispatch* p) { return object.DoEnumSymbols(p); });
                break;
            case 4:
                if (!m_sinks.empty())
                    object.Unadvise(m_sinks[Below(m_sinks.size())].get());
                break;
            case 5:
            case 6:
                if (IDispatch* pForeign = m_shared.sinks.Any(m_random()))
                    object.Unadvise(pForeign);
                break;
            case 7:
                Open(object, AnyFile());
                break;
            case 8:
                Copy(object);
                break;
            case 9:
                m_objects.erase(m_objects.begin() +
                                static_cast<std::ptrdiff_t>(Below(m_objects.size())));
                break;
            case 10:
                object.ReleaseFile();
                break;
            default:
                PumpMessages(std::chrono::milliseconds(Below(4)));
            }
            ForgetEnded();
        }

        template <class Call>
        void Start(Call call)
        {
            m_sinks.push_back(NewSink());
            ScriptedSink* const pSink = m_sinks.back().get();
            const HRESULT answers[] = {S_OK, S_OK, S_OK, S_FALSE, E_FAIL};
            const HRESULT hrLast = answers[Below(5)];
            pSink->onData = [=](std::size_t nBatch) { return nBatch == 2 ? hrLast : S_OK; };
            m_shared.sinks.Add(pSink);
            call(pSink); // a file that another host has just closed may refuse
        }

        void Copy(IqrlTabulexConvertor& object)
        {
            com_ptr<IDispatch> copy;
            if (SUCCEEDED(object.Clone(copy.put())) && m_objects.size() < 8)
                m_objects.push_back(copy.as<IqrlTabulexConvertor>());
        }

        void CancelOwn()
        {
            const auto canceller = NewFront();
            for (std::size_t i = 0; i < m_sinks.size(); ++i)
                canceller->Unadvise(m_sinks[i].get());
        }

        // Sinks of sessions that have ended go now and then, so that addresses come again.
        void ForgetEnded()
        {
            std::erase_if(m_sinks, [this](const com_ptr<ScriptedSink>& sink) {
                if (!sink->bEnded)
                    return false;
                Forget(sink);
                return true;
            });
        }

        void Forget(const com_ptr<ScriptedSink>& sink)
        {
            m_shared.sinks.Remove(sink.get());
            const Strings& heard = sink->transcript;
            const auto nEnds = std::ranges::count_if(
                heard, [](const auto& s) { return s == "commit" || s == "rollback"; });
            EXPECT_LE(nEnds, 1);
            EXPECT_EQ(std::ranges::count(heard, "on another thread"), 0);
            EXPECT_TRUE(nEnds == 0 || heard.back() == "commit" || heard.back() == "rollback");
        }

        const TempFile& AnyFile() { return m_shared.files[Below(m_shared.files.size())]; }
        std::size_t Below(std::size_t n) { return m_random() % n; }

        std::mt19937 m_random;
        Shared& m_shared;
        std::vector<com_ptr<IqrlTabulexConvertor>> m_objects;
        std::vector<com_ptr<ScriptedSink>> m_sinks;
    };

    // Ends the program where no operation has been done for a long time: the threads that hang
    // can't be joined.
    static void WatchUntil(const Shared& shared, const std::atomic<int>& nRunning, unsigned nSeed)
    {
        constexpr auto kTooLong = std::chrono::seconds(120);
        int nSeen = -1, nSeenRunning = -1;
        auto tSeen = std::chrono::steady_clock::now();
        while (nRunning > 0) {
            std::this_thread::sleep_for(std::chrono::milliseconds(20));
            const auto tNow = std::chrono::steady_clock::now();
            if (nSeen != shared.nDone || nSeenRunning != nRunning) {
                nSeen = shared.nDone;
                nSeenRunning = nRunning;
                tSeen = tNow;
            }
            if (tNow - tSeen > kTooLong) {
                std::fprintf(stderr, "hangs after %d operations, seed %u\n", nSeen, nSeed);
                std::abort();
            }
        }
    }

    // Some lines of a minute file that can't be read, beyond those that the layout comes from.
    static std::string WithBadLines(std::string text)
    {
        for (std::size_t nAt = text.size() / 2; nAt < text.size(); nAt += text.size() / 5)
            text.replace(text.find('\n', nAt) + 5, 4, "????");
        return text;
    }
};

TEST_F(SessionsOfFourHosts, NeverWaitForEachOtherForEver)
{
    const unsigned nSeed = Seed();
    front.reset();
    sink.reset();
    TabulexSetProgressViews(
        [](void*) -> IQRL_TabulexConverter::IProgressView* { return new LazyView; }, nullptr);
    Shared shared{{TempFile("Symbol,Date,Time,Open,High,Low,Close,Volume\n" +
                            WithBadLines(Minutes(3000, "ABC")) + Minutes(300, "XYZ")),
                   TempFile(WithBadLines(Minutes(2500)))},
                  {},
                  {}};
    std::atomic<int> nRunning = kHostThreads;
    std::vector<std::thread> threads;
    for (unsigned t = 0; t < kHostThreads; ++t)
        threads.emplace_back([&, t] {
            Host(nSeed + t, shared).Run(Rounds(kOperations) / kHostThreads);
            --nRunning;
        });
    WatchUntil(shared, nRunning, nSeed);
    for (std::thread& thread : threads)
        thread.join();
}

} // namespace
