// Rows that another thread takes along their path: none is lost or changes its place, and every
// way in which the path or the caller may end is one for the queue, too.
#include <atomic>
#include <chrono>
#include <stdexcept>
#include <thread>

#include <gtest/gtest.h>

#include "tests/tabulex/units/Cells.h"
#include "tools/tabulex/run/RowQueue.h"

using namespace tabulex;

namespace {

// Notes the symbols that it is given, each with its price, and on which threads.
class NotingOutput : public RowOutput
{
public:
    bool Write(const VARIANT* cells, ULONGLONG nRows) override
    {
        if (m_before)
            m_before(m_nBatches);
        m_bOther = m_bOther || std::this_thread::get_id() != m_home;
        for (ULONGLONG i = 0; i < nRows; ++i, cells += 2) {
            m_symbols.emplace_back(TextOf(cells[0].bstrVal));
            m_prices.push_back(cells[1].dblVal);
        }
        return m_nBatches++ < m_nMost;
    }
    bool Commit() override { return true; }
    void Discard() override {}
    bool IsReaderGone() const override { return false; }
    std::string FaultText() const override { return {}; }

    std::function<void(int nBatch)> m_before; // called for each batch, which count from 0
    int m_nMost = 1'000'000;                  // batches that it takes
    int m_nBatches = 0;
    bool m_bOther = false; // not all came on the thread that made it
    std::vector<string_t> m_symbols;
    std::vector<double> m_prices;

private:
    std::thread::id m_home = std::this_thread::get_id();
};

string_t SymbolOf(int nRow)
{
    return string_t(static_cast<std::size_t>(nRow) % 5, static_cast<OLECHAR>('A' + nRow % 26));
}

class RowQueues : public testing::Test
{
protected:
    // Hands over a batch, whose memory is gone and used for other things after that.
    bool Take(RowQueue& queue, int nRows)
    {
        std::vector<Variant> cells;
        for (int i = 0; i < nRows; ++i, ++m_nRows) {
            cells.push_back(m_nRows % 7 == 6 ? Variant::FromText(OLESTR(""))
                                             : Variant::FromText(SymbolOf(m_nRows)));
            cells.push_back(Number(m_nRows));
        }
        return queue.Take(cells.data(), static_cast<ULONGLONG>(nRows));
    }

    void ExpectAllRows() const
    {
        ASSERT_EQ(m_output.m_prices.size(), static_cast<std::size_t>(m_nRows));
        for (int i = 0; i < m_nRows; ++i) {
            const auto n = static_cast<std::size_t>(i);
            ASSERT_EQ(m_output.m_prices[n], i);
            ASSERT_EQ(m_output.m_symbols[n], i % 7 == 6 ? string_t() : SymbolOf(i));
        }
    }

    int m_nRows = 0; // handed over
    NotingOutput m_output;
    ReshapedRows m_rows{{0, 0}, {0, 0}, std::nullopt};
    RowPath m_path{m_rows, &m_output};
    RowQueue m_queue{m_path, RowQueue::Threads::Two};
};

TEST_F(RowQueues, KeepAllRowsInTheirOrder)
{
    for (int i = 0; i < 500; ++i)
        EXPECT_TRUE(Take(m_queue, i % 37 == 5 ? 0 : 1 + i * 7919 % 200));
    EXPECT_TRUE(m_queue.Finish());
    EXPECT_TRUE(m_output.m_bOther);
    ExpectAllRows();
    EXPECT_EQ(m_path.Rows(), static_cast<ULONGLONG>(m_nRows));
}

TEST_F(RowQueues, WaitForAnOutputThatIsSlow)
{
    m_output.m_before = [](int) { std::this_thread::sleep_for(std::chrono::milliseconds(2)); };
    for (int i = 0; i < 30; ++i)
        EXPECT_TRUE(Take(m_queue, 10));
    EXPECT_TRUE(m_queue.Finish());
    ExpectAllRows();
}

TEST_F(RowQueues, WaitForRowsThatAreSlow)
{
    for (int i = 0; i < 15; ++i) {
        EXPECT_TRUE(Take(m_queue, 10));
        std::this_thread::sleep_for(std::chrono::milliseconds(i % 3));
    }
    EXPECT_TRUE(m_queue.Finish());
    ExpectAllRows();
}

TEST_F(RowQueues, HaveNothingLeftWhenTheyAreDrained)
{
    m_queue.Drain();
    for (int i = 0; i < 20; ++i) {
        EXPECT_TRUE(Take(m_queue, 10));
        if (i % 3 == 0) {
            m_queue.Drain();
            ExpectAllRows();
        }
    }
    EXPECT_TRUE(m_queue.Finish());
    ExpectAllRows();
}

TEST_F(RowQueues, StartNoThreadForOneBatchNorWhereTheyMayNot)
{
    EXPECT_TRUE(Take(m_queue, 10));
    ExpectAllRows();
    EXPECT_TRUE(m_queue.Finish());
    RowQueue alone(m_path, RowQueue::Threads::One);
    for (int i = 0; i < 5; ++i) {
        EXPECT_TRUE(Take(alone, 10));
        ExpectAllRows();
    }
    EXPECT_TRUE(alone.Finish());
    EXPECT_FALSE(m_output.m_bOther);
}

TEST_F(RowQueues, TellOfRowsThatWereRefused)
{
    m_output.m_nMost = 5;
    bool bTaken = true;
    int nBatches = 0;
    for (; bTaken && nBatches < 1000; ++nBatches)
        bTaken = Take(m_queue, 10);
    EXPECT_GT(nBatches, 5);
    EXPECT_LT(nBatches, 20);
    EXPECT_FALSE(Take(m_queue, 10)) << "what has failed stays so";
    EXPECT_FALSE(m_queue.Finish());
    // Whatever came meanwhile.
    EXPECT_EQ(m_path.Batches(), 6u);
    EXPECT_EQ(m_path.Rows(), 60u);
}

TEST_F(RowQueues, TellOfTheLastRowsAtTheEnd)
{
    m_output.m_nMost = 1;
    m_output.m_before = [](int) { std::this_thread::sleep_for(std::chrono::milliseconds(20)); };
    EXPECT_TRUE(Take(m_queue, 10));
    EXPECT_TRUE(Take(m_queue, 10));
    EXPECT_FALSE(m_queue.Finish());
}

TEST_F(RowQueues, ThrowAtTheEndWhatThePathThrew)
{
    m_output.m_before = [](int nBatch) {
        if (nBatch == 3)
            throw std::runtime_error("third");
    };
    bool bTaken = true;
    int nBatches = 0;
    for (; bTaken && nBatches < 1000; ++nBatches)
        bTaken = Take(m_queue, 10);
    EXPECT_LT(nBatches, 20);
    EXPECT_THROW(m_queue.Finish(), std::runtime_error);
    EXPECT_EQ(m_output.m_nBatches, 3) << "nothing came after it";
}

// The first of the thread's batches ends only after the queue has begun to go.
TEST_F(RowQueues, DropWhatWaitsWhenTheyGo)
{
    std::atomic<bool> bBegun = false, bGoes = false;
    const auto waitFor = [](const std::atomic<bool>& flag) {
        while (!flag)
            std::this_thread::yield();
    };
    m_output.m_before = [&](int nBatch) {
        if (nBatch == 0)
            return;
        bBegun = true;
        waitFor(bGoes);
        std::this_thread::sleep_for(std::chrono::milliseconds(200));
    };
    {
        RowQueue queue(m_path, RowQueue::Threads::Two);
        for (int i = 0; i < 4; ++i)
            Take(queue, 10);
        waitFor(bBegun);
        bGoes = true;
    }
    EXPECT_EQ(m_output.m_nBatches, 2);
}

TEST_F(RowQueues, MayGoWithoutHavingBeenUsed)
{
    RowQueue unused(m_path, RowQueue::Threads::Two);
    RowQueue ended(m_path, RowQueue::Threads::Two);
    EXPECT_TRUE(ended.Finish());
}

} // namespace
