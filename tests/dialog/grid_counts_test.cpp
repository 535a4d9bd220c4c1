// How the number of rows follows the file while its worker counts.

#include <thread>

#include "tests/dialog/GridFakes.h"
#include "tests/support/Waits.h"

using namespace dialog_test;

namespace {

constexpr LONG kNonePosted = -1;

class GridCounts : public GridTest
{
protected:
    // The rows that the view is told of after this; kNonePosted for none.
    LONG PostedAfter(ULONGLONG nNewCount, VARIANT_BOOL bComplete = VARIANT_FALSE)
    {
        m_pView->m_nPosted = kNonePosted;
        EXPECT_EQ(S_OK, m_pGrid->RecordCountChange(nNewCount, bComplete));
        return m_pView->m_nPosted;
    }
    void Open(ULONGLONG nCount)
    {
        MakeView();
        PutParser();
        m_pParser->m_nCount = nCount;
    }
};

TEST_F(GridCounts, TheHundredthRecordChangesTheList)
{
    Open(5000);
    EXPECT_EQ(kNonePosted, PostedAfter(99));
    EXPECT_EQ(5000, PostedAfter(100));
    EXPECT_EQ(kNonePosted, PostedAfter(199));
    EXPECT_EQ(5000, PostedAfter(200));
}

TEST_F(GridCounts, TheFinalNoticeChangesTheListWhateverTheCount)
{
    Open(5000);
    EXPECT_EQ(5000, PostedAfter(0, VARIANT_TRUE));
    EXPECT_EQ(5000, PostedAfter(1, 1)); // as the file's worker writes it
    EXPECT_EQ(5000, PostedAfter(1, VARIANT_TRUE));
}

TEST_F(GridCounts, TheViewGetsTheParsersCount)
{
    Open(7);
    EXPECT_EQ(7, PostedAfter(1000));
}

TEST_F(GridCounts, CountsAreCappedAtTheMostRowsOfAList)
{
    const std::pair<ULONGLONG, LONG> kRows[] = {
        {0x7FFFFFFE, 0x7FFFFFFE},  {0x7FFFFFFF, 0x7FFFFFFF}, {0x80000000, 0x7FFFFFFF},
        {0x100000005, 0x7FFFFFFF}, {~0ull, 0x7FFFFFFF}, // a file shorter than its header
    };
    Open(0);
    for (const auto& [nCount, nRows] : kRows) {
        m_pParser->m_nCount = nCount;
        EXPECT_EQ(nRows, PostedAfter(1, VARIANT_TRUE));
        m_pGrid->CreateFields();
        EXPECT_EQ(nRows, m_pView->m_nRows);
    }
}

TEST_F(GridCounts, ALowerCountOfAnotherFilePasses)
{
    Open(5000);
    PostedAfter(100000);
    EXPECT_EQ(5000, PostedAfter(3));
    EXPECT_EQ(kNonePosted, PostedAfter(4));
}

TEST_F(GridCounts, ACountThatFailsIsForgotten)
{
    Open(5000);
    m_pParser->m_failures["GetCount"] = E_FAIL;
    EXPECT_EQ(kNonePosted, PostedAfter(150));
    m_pParser->m_failures.clear();
    EXPECT_EQ(5000, PostedAfter(151)) << "150 was not stored";
    EXPECT_EQ(kNonePosted, PostedAfter(250));
}

TEST_F(GridCounts, WithoutAViewOrAParserTheNoticeIsIgnored)
{
    bool bAsked = false;
    m_pParser->m_onCount = [&] { bAsked = true; };
    PutParser();
    EXPECT_EQ(S_OK, m_pGrid->RecordCountChange(5000, VARIANT_TRUE));
    EXPECT_FALSE(bAsked);
    m_pGrid->put_DataParser(nullptr);
    MakeView();
    EXPECT_EQ(kNonePosted, PostedAfter(5000, VARIANT_TRUE));
    m_pParser->m_nCount = 5;
    PutParser();
    EXPECT_EQ(5, PostedAfter(100)) << "nothing was stored";
}

// ---- the worker's thread

TEST_F(GridCounts, AViewThatGoesWhileTheWorkerCountsIsNotTold)
{
    Open(5000);
    Signal counting, closed;
    m_pParser->m_onCount = [&] {
        counting.Raise();
        closed.Await();
    };
    std::thread worker([this] { m_pGrid->RecordCountChange(100, VARIANT_FALSE); });
    ASSERT_TRUE(counting.Await());
    m_pView->m_nPosted = kNonePosted;
    m_pGrid->Events().OnClose(); // doesn't wait for the worker
    EXPECT_EQ(kNonePosted, m_pView->m_nPosted);
    m_pView.reset();
    closed.Raise();
    worker.join();
}

TEST_F(GridCounts, TheWorkerMayHoldTheLastReference)
{
    Open(5000);
    Signal counting, released;
    m_pParser->m_onCount = [&] {
        counting.Raise();
        released.Await();
    };
    std::thread worker([&, pGrid = m_pGrid]() mutable {
        pGrid->RecordCountChange(100, VARIANT_FALSE);
        pGrid.reset();
    });
    ASSERT_TRUE(counting.Await());
    CloseView();
    m_pGrid.reset();
    released.Raise();
    worker.join();
    EXPECT_EQ(1u, RefsOf(m_pParser.get()));
    ASSERT_EQ(S_OK, CreateObject(m_pGrid)); // for the end of the test
}

TEST_F(GridCounts, ViewsAndParsersComeAndGoWhileTheWorkerCounts)
{
    std::atomic<bool> bStop = false;
    com_ptr<GridDataParser> pOther;
    ASSERT_EQ(S_OK, CreateObject(pOther));
    pOther->m_pRecordParser = m_pRecords.get();
    pOther->m_nCount = 5;
    m_pParser->m_nCount = 6;
    std::thread worker([&] {
        for (ULONGLONG n = 0; !bStop; n += 50)
            m_pGrid->RecordCountChange(n, VARIANT_FALSE);
    });
    for (int n = 0; n < 300; ++n) {
        FakeGrid view("grid", nullptr, m_pGrid->Events());
        m_pGrid->Attach(&view);
        m_pGrid->put_DataParser(n % 2 ? static_cast<IDispatch*>(pOther.get()) : m_pParser.get());
        m_pGrid->CreateFields();
        m_pGrid->NotifySourceDetach();
        m_pGrid->Events().OnClose();
    }
    bStop = true;
    worker.join();
    EXPECT_TRUE(pOther->m_listeners.empty());
    EXPECT_TRUE(m_pParser->m_listeners.empty());
}

} // namespace
