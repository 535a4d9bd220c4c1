// Sessions and objects started, cancelled, copied and released in any order, on several host
// threads at once. Nothing may be left behind, and a sink hears at most one end.

#include <random>

#include "tests/front/ScriptedHost.h"
#include "tests/front/ScriptedView.h"
#include "tests/support/Seed.h"

namespace {

constexpr int kSequences = 500;
constexpr int kThreads = 10;
constexpr int kSteps = 12;

class RandomSessions : public FrontFixture
{
protected:
    // One host: a few objects, a few sinks, and a thread that pumps now and then.
    class Host
    {
    public:
        Host(unsigned nSeed, const TempFile& file) : m_random(nSeed), m_file(file) {}

        void Run()
        {
            m_objects.push_back(NewFront());
            ASSERT_EQ(Open(*m_objects[0].get(), m_file), S_OK);
            for (int i = 0; i < kSteps && !m_objects.empty(); ++i)
                Step();
            m_objects.clear();
            if (Below(4) > 0) // else the thread ends while its sessions run
                PumpUntil([] { return !OwnsWindows(); });
            for (const auto& receiver : m_sinks)
                ExpectOneEndAtMost(*receiver.get());
        }

    private:
        void Step()
        {
            IqrlTabulexConvertor& object = *m_objects[Below(m_objects.size())].get();
            switch (Below(9)) {
            case 0:
                EXPECT_EQ(object.DoConvert(NewReceiver(), 0), S_OK);
                break;
            case 1:
                ExpectStartedOrRefused(
                    object.DoConvertPortion(0, NewReceiver(), Below(3000), Below(3000)));
                break;
            case 2:
                EXPECT_GE(object.DoEnumSymbols(NewReceiver()), 0);
                break;
            case 3:
                if (!m_sinks.empty()) {
                    EXPECT_GE(object.Unadvise(m_sinks[Below(m_sinks.size())].get()), 0);
                }
                break;
            case 4:
                Copy(object);
                break;
            case 5:
                m_objects.erase(m_objects.begin() +
                                static_cast<std::ptrdiff_t>(Below(m_objects.size())));
                break;
            case 6:
                EXPECT_EQ(object.ReleaseFile(), S_OK);
                EXPECT_EQ(Open(object, m_file), S_OK);
                break;
            default:
                PumpMessages(std::chrono::milliseconds(Below(4)));
            }
        }

        // A host that releases the file closes it for the others too, which may then find
        // neither dates nor records.
        static void ExpectStartedOrRefused(HRESULT hr)
        {
            EXPECT_TRUE(hr == S_OK || hr == E_INVALIDARG) << std::hex << hr;
        }

        void Copy(IqrlTabulexConvertor& object)
        {
            com_ptr<IDispatch> copy;
            EXPECT_EQ(object.Clone(copy.put()), S_OK);
            m_objects.push_back(copy.as<IqrlTabulexConvertor>());
        }

        IDispatch* NewReceiver()
        {
            m_sinks.push_back(NewSink());
            const HRESULT answers[] = {S_OK, S_OK, S_OK, S_FALSE, E_FAIL};
            const std::size_t nLast = 1 + Below(4);
            const HRESULT hrLast = answers[Below(5)];
            m_sinks.back()->onData = [=](std::size_t nBatch) {
                return nBatch == nLast ? hrLast : S_OK;
            };
            return m_sinks.back().get();
        }

        static void ExpectOneEndAtMost(const ScriptedSink& receiver)
        {
            const auto nEnds = std::ranges::count_if(receiver.transcript, [](const auto& entry) {
                return entry == "commit" || entry == "rollback";
            });
            EXPECT_LE(nEnds, 1);
            EXPECT_EQ(std::ranges::count(receiver.transcript, "on another thread"), 0);
            const bool bLast = nEnds == 0 || receiver.transcript.back() == "commit" ||
                               receiver.transcript.back() == "rollback";
            EXPECT_TRUE(bLast);
        }

        std::size_t Below(std::size_t n) { return m_random() % n; }

        std::mt19937 m_random;
        const TempFile& m_file;
        std::vector<com_ptr<IqrlTabulexConvertor>> m_objects;
        std::vector<com_ptr<ScriptedSink>> m_sinks;
    };
};

TEST_F(RandomSessions, LeaveNothingBehind)
{
    front.reset();
    const TempFile file("Symbol,Date,Time,Open,High,Low,Close,Volume\n" + Minutes(3000, "ABC") +
                        Minutes(500, "XYZ"));
    std::vector<std::thread> threads;
    for (int t = 0; t < kThreads; ++t)
        threads.emplace_back([&file, t] {
            for (int i = 0; i < Rounds(kSequences / kThreads); ++i)
                Host(Seed() + static_cast<unsigned>(i * kThreads + t), file).Run();
        });
    for (std::thread& thread : threads)
        thread.join();
}

} // namespace
