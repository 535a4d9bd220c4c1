// The receiving side of a run: what it hands on, and how it answers.
#include <new>
#include <optional>

#include <gtest/gtest.h>

#include "platform/com_ptr.h"
#include "platform/values.h"
#include "tools/tabulex/run/ConversionSink.h"

using namespace tabulex;

namespace {

// An output that counts rows, and refuses them when a test says so.
class FakeOutput : public RowOutput
{
public:
    bool Write(const VARIANT*, ULONGLONG nRows) override
    {
        if (m_nRows >= m_nThrowAfter)
            throw std::bad_alloc();
        m_bFull = m_bFull || m_nRows >= m_nFullAfter;
        m_bReaderGone = m_bReaderGone || (m_bFull && m_bGoneWhenFull);
        m_nRows += nRows;
        return !m_bFull && !m_bReaderGone;
    }
    bool Commit() override { return true; }
    void Discard() override {}
    bool IsReaderGone() const override { return m_bReaderGone; }
    std::string FaultText() const override { return {}; }

    static constexpr ULONGLONG kNever = ~0ULL;

    ULONGLONG m_nRows = 0;
    ULONGLONG m_nFullAfter = kNever;  // rows
    ULONGLONG m_nThrowAfter = kNever; // the same
    bool m_bGoneWhenFull = false;
    bool m_bFull = false;
    bool m_bReaderGone = false;
};

class RunTest : public testing::Test
{
protected:
    RunTest()
    {
        for (const auto& resolution : DefaultResolutions())
            m_offers.Add(resolution);
        m_host.emplace(m_offers);
        m_errors.emplace(*m_host, m_console, "file", ErrorReporter::Options(), m_lines, nullptr,
                         nullptr);
        m_sink = com_ptr<ConversionSink>(new ConversionSink(m_path, m_queue, *m_errors));
    }

    // A batch of empty cells.
    static Variant Batch(ULONG nColumns, ULONG nRows)
    {
        SAFEARRAYBOUND bounds[] = {{nColumns, 0}, {nRows, 0}};
        return Variant::FromArray(SafeArrayCreate(VT_VARIANT, 2, bounds), VT_VARIANT);
    }

    ResolutionOffers m_offers{"None"};
    Console m_console{false, true, false};
    std::optional<Host> m_host;
    LineMap m_lines{"file", 0, nullptr};
    std::optional<ErrorReporter> m_errors;
    ReshapedRows m_rows{{0, 0}, {0, 0}, std::nullopt};
    FakeOutput m_output;
    RowPath m_path{m_rows, &m_output};
    RowQueue m_queue{m_path, RowQueue::Threads::One};
    com_ptr<ConversionSink> m_sink;
};

TEST_F(RunTest, CountsBatchesAndRows)
{
    EXPECT_EQ(m_sink->DataChanged(Batch(2, 3)), S_OK);
    EXPECT_EQ(m_sink->DataChanged(Batch(2, 0)), S_OK);
    EXPECT_EQ(m_sink->Batches(), 2u);
    EXPECT_EQ(m_sink->Rows(), 3u);
}

TEST_F(RunTest, HandsRowsToTheOutput)
{
    m_sink->DataChanged(Batch(2, 3));
    m_sink->DataChanged(Batch(2, 4));
    EXPECT_EQ(m_output.m_nRows, 7u);
}

TEST_F(RunTest, EndsAsAFailureWhenTheOutputIsFullAndWellWhenItsReaderIsGone)
{
    m_output.m_bFull = true;
    EXPECT_TRUE(FAILED(m_sink->DataChanged(Batch(2, 1))));
    m_output.m_bReaderGone = true;
    EXPECT_EQ(m_sink->DataChanged(Batch(2, 1)), S_FALSE);
    EXPECT_EQ(m_sink->Batches(), 1u) << "what comes after the refusal isn't counted";
}

// The last batches are written after the component has ended the run.
class LateFaults : public RunTest
{
protected:
    void RunTwoBatches()
    {
        m_sink = com_ptr<ConversionSink>(new ConversionSink(m_path, m_late, *m_errors));
        EXPECT_EQ(m_sink->DataChanged(Batch(2, 3)), S_OK);
        EXPECT_EQ(m_sink->DataChanged(Batch(2, 4)), S_OK);
        m_sink->Commit();
        m_sink->FinishRows();
        EXPECT_EQ(m_sink->Batches(), 2u);
    }

    RowQueue m_late{m_path, RowQueue::Threads::Two};
};

TEST_F(LateFaults, LeaveAnEndThatIsGoodWhereThereAreNone)
{
    RunTwoBatches();
    EXPECT_TRUE(m_sink->IsCommitted());
    EXPECT_EQ(m_sink->Rows(), 7u);
}

TEST_F(LateFaults, TakeTheRunBack)
{
    m_output.m_nFullAfter = 3;
    RunTwoBatches();
    EXPECT_FALSE(m_sink->IsCommitted());
    EXPECT_FALSE(m_sink->IsOutOfMemory());
    EXPECT_EQ(m_sink->Rows(), 7u);
}

TEST_F(LateFaults, AreNoneWhereTheReaderIsGone)
{
    m_output.m_nFullAfter = 3;
    m_output.m_bGoneWhenFull = true;
    RunTwoBatches();
    EXPECT_TRUE(m_sink->IsCommitted());
}

TEST_F(LateFaults, MayBeThatMemoryRunsOut)
{
    m_output.m_nThrowAfter = 3;
    RunTwoBatches();
    EXPECT_FALSE(m_sink->IsCommitted());
    EXPECT_TRUE(m_sink->IsOutOfMemory());
}

TEST_F(RunTest, EndsAsAFailureWhenMemoryRunsOut)
{
    m_output.m_nThrowAfter = 0;
    EXPECT_EQ(m_sink->DataChanged(Batch(2, 1)), E_OUTOFMEMORY);
    m_sink->Commit();
    m_sink->FinishRows();
    EXPECT_TRUE(m_sink->IsOutOfMemory());
    EXPECT_FALSE(m_sink->IsCommitted());
}

TEST_F(RunTest, NeedsNoOutput)
{
    RowPath path{m_rows, nullptr};
    RowQueue queue{path, RowQueue::Threads::One};
    const com_ptr<ConversionSink> sink(new ConversionSink(path, queue, *m_errors));
    EXPECT_EQ(sink->DataChanged(Batch(2, 3)), S_OK);
    EXPECT_EQ(sink->Rows(), 3u);
}

TEST_F(RunTest, RefusesBatchesOfAnotherShape)
{
    const Variant flat = Variant::FromArray(SafeArrayCreateVector(VT_VARIANT, 0, 2), VT_VARIANT);
    EXPECT_EQ(m_sink->DataChanged(Batch(3, 1)), E_UNEXPECTED);
    EXPECT_EQ(m_sink->DataChanged(flat), E_UNEXPECTED);
    EXPECT_EQ(m_sink->DataChanged(Variant::FromI4(1)), E_UNEXPECTED);
    EXPECT_EQ(m_sink->Batches(), 0u);
}

TEST_F(RunTest, KnowsItsEndAndWhoHoldsIt)
{
    EXPECT_FALSE(m_sink->HasEnded());
    EXPECT_TRUE(m_sink->IsLetGoOf());
    {
        const com_ptr<IQRL_TabulexConverter::IqrlTabulexDataSink> session(m_sink.get());
        EXPECT_FALSE(m_sink->IsLetGoOf());
        session->Rollback();
    }
    EXPECT_TRUE(m_sink->HasEnded());
    EXPECT_FALSE(m_sink->IsCommitted());
    m_sink->Commit();
    EXPECT_TRUE(m_sink->IsCommitted());
}

} // namespace
