// The receiving side of a run: its end, and how a run is noticed that never ends.
#include <chrono>
#include <filesystem>
#include <fstream>
#include <optional>
#include <random>
#include <thread>

#include <gtest/gtest.h>

#include "platform/values.h"
#include "tools/tabulex/CsvWriter.h"
#include "tools/tabulex/RunWatch.h"

using namespace tabulex;
using namespace std::chrono_literals;

namespace {

class RunTest : public testing::Test
{
protected:
    RunTest()
    {
        std::ofstream file(m_sPath);
        file << "Date,Open,High,Low,Close\n";
        for (int nDay = 13; nDay < 30; ++nDay)
            file << "2003/01/" << nDay << ",10.5,11.5,9.5,10.25\n";
        file.close();
        for (const auto& resolution : DefaultResolutions())
            m_offers.Add(resolution);
        m_host.emplace(m_offers);
        m_host->Open(m_sPath);
        m_errors.emplace(*m_host, m_console, "file", ErrorReporter::Options(), std::nullopt);
        m_sink = com_ptr<ConversionSink>(new ConversionSink(
            m_offers, std::make_unique<CsvWriter>(std::vector<Column>(2)), 2, nullptr, *m_errors));
    }
    ~RunTest() override { std::filesystem::remove(m_sPath); }

    // A batch of empty cells.
    static Variant Batch(ULONG nColumns, ULONG nRows)
    {
        SAFEARRAYBOUND bounds[] = {{nColumns, 0}, {nRows, 0}};
        return Variant::FromArray(SafeArrayCreate(VT_VARIANT, 2, bounds), VT_VARIANT);
    }

    std::string m_sPath = (std::filesystem::temp_directory_path() /
                           ("tabulex-run-" + std::to_string(std::random_device()()) + ".csv"))
                              .string();
    ResolutionOffers m_offers{"None"};
    Console m_console{false, true, false};
    std::optional<Host> m_host;
    std::optional<ErrorReporter> m_errors;
    com_ptr<ConversionSink> m_sink;
};

} // namespace

TEST_F(RunTest, CountsRowsAndTheLinesThatFellAway)
{
    EXPECT_EQ(m_sink->PutRecords(Batch(2, 3), 5), S_OK);
    EXPECT_EQ(m_sink->PutRecords(Batch(2, 0), 1), S_OK);
    EXPECT_EQ(m_sink->Totals().nBatches, 2u);
    EXPECT_EQ(m_sink->Totals().nDelivered, 3u);
    EXPECT_EQ(m_sink->Totals().nSkipped, 3u);
    EXPECT_EQ(m_sink->LinesDone(), 6u);
}

// E_INVALIDARG would tell the component that the sink knows of the end already.
TEST_F(RunTest, RefusesBatchesOfAnotherShapeWithAFailureThatIsTold)
{
    const Variant flat = Variant::FromArray(SafeArrayCreateVector(VT_VARIANT, 0, 2), VT_VARIANT);
    EXPECT_EQ(m_sink->PutRecords(Batch(3, 1), 1), E_UNEXPECTED);
    EXPECT_EQ(m_sink->PutRecords(flat, 1), E_UNEXPECTED);
    EXPECT_EQ(m_sink->PutRecords(Variant::FromI4(1), 1), E_UNEXPECTED);
    EXPECT_EQ(m_sink->Totals().nBatches, 0u);
}

TEST_F(RunTest, KeepsTheFirstEnd)
{
    EXPECT_FALSE(m_sink->WaitForEnd(0ms));
    m_sink->EndTransaction(VARIANT_TRUE);
    m_sink->EndTransaction(VARIANT_FALSE);
    m_sink->Close();
    EXPECT_TRUE(m_sink->WaitForEnd(0ms));
    EXPECT_TRUE(m_sink->IsCommitted());
}

TEST_F(RunTest, RollsBackWhatIsClosedBeforeItsEndAndTakesNothingMore)
{
    m_sink->Close();
    EXPECT_FALSE(m_sink->IsCommitted());
    EXPECT_EQ(m_sink->PutRecords(Batch(2, 1), 1), E_ABORT);
    EXPECT_NE(m_sink->OnError2(1, 1, nullptr), S_OK);
    EXPECT_EQ(m_sink->Totals().nDelivered, 0u);
}

TEST_F(RunTest, WakesTheWaitingSideFromAnotherThread)
{
    std::thread worker([this] { m_sink->EndTransaction(VARIANT_TRUE); });
    EXPECT_TRUE(m_sink->WaitForEnd(60s));
    worker.join();
}

TEST_F(RunTest, IsDeadAfterASilenceAndOnlyThen)
{
    RunWatch watch(m_host->LineReader(), *m_sink.get(), 300ms);
    const auto start = std::chrono::steady_clock::now();
    while (std::chrono::steady_clock::now() - start < 600ms) {
        m_sink->PutRecords(Batch(2, 1), 1); // a sign of life
        ASSERT_FALSE(watch.IsDead());
        std::this_thread::sleep_for(20ms);
    }
    const auto silence = std::chrono::steady_clock::now();
    while (!watch.IsDead()) {
        ASSERT_LT(std::chrono::steady_clock::now() - silence, 60s);
        std::this_thread::sleep_for(20ms);
    }
    EXPECT_GE(std::chrono::steady_clock::now() - silence, 250ms);
}

TEST_F(RunTest, KnowsTheLinesOfTheFile)
{
    m_host->CountRecords();
    EXPECT_EQ(RunWatch(m_host->LineReader(), *m_sink.get()).TotalLines(), 18u);
}

TEST_F(RunTest, NamesResolutionsAsTheyWereOffered)
{
    Bstr name;
    EXPECT_EQ(m_sink->GetResolutionName(5, name.put()), S_OK);
    EXPECT_EQ(name.view(), OLESTR("Minutes"));
    EXPECT_EQ(m_sink->GetResolutionName(5, nullptr), E_POINTER);
}
