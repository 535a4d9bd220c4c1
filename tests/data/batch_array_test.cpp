// The array of a batch, which is used again for the next batch.

#include <gtest/gtest.h>

#include "src/data/run/BatchArray.h"

using namespace Hesperon::specifics;

namespace {

std::span<VARIANT> Cells(const BatchArray& array)
{
    return LockedArray<VARIANT>(array.get()).Elements();
}

TEST(BatchArray, ServesTheNextBatchOfItsShapeWithEmptyCells)
{
    BatchArray array;
    ASSERT_EQ(array.Prepare(2, 3), S_OK);
    const SAFEARRAY* const pFirst = array.get();
    VARIANT* const cells = Cells(array).data();
    ASSERT_EQ(Cells(array).size(), 6u);
    cells[0] = Variant::FromText(OLESTR("ABC")).detach();
    cells[1] = Variant::FromDate(40000).detach();
    cells[2].vt = VT_UI2;
    cells[3] = Variant::FromArray(SafeArrayCreateVector(VT_I4, 0, 2), VT_I4).detach();
    ASSERT_EQ(array.Prepare(2, 3), S_OK);
    EXPECT_EQ(array.get(), pFirst);
    for (const VARIANT& cell : Cells(array))
        EXPECT_EQ(cell.vt, VT_EMPTY);
}

TEST(BatchArray, OfAnotherShapeIsMadeAnew)
{
    BatchArray array;
    for (const auto& [nColumns, nRecords] : {std::pair<ULONG, ULONG>{2, 3}, {3, 2}, {3, 1}}) {
        ASSERT_EQ(array.Prepare(nColumns, nRecords), S_OK);
        LONG nColumn = 0, nRecord = 0;
        EXPECT_EQ(SafeArrayGetUBound(array.get(), 1, &nColumn), S_OK);
        EXPECT_EQ(SafeArrayGetUBound(array.get(), 2, &nRecord), S_OK);
        EXPECT_EQ(nColumn + 1, static_cast<LONG>(nColumns));
        EXPECT_EQ(nRecord + 1, static_cast<LONG>(nRecords));
    }
}

TEST(BatchArray, ThatWasCutIsMadeAnew)
{
    BatchArray array;
    ASSERT_EQ(array.Prepare(2, 3), S_OK);
    SAFEARRAYBOUND records{2, 0};
    ASSERT_EQ(SafeArrayRedim(array.get(), &records), S_OK);
    ASSERT_EQ(array.Prepare(2, 3), S_OK);
    EXPECT_EQ(Cells(array).size(), 6u);
}

// Whoever got the array may give its records another lower bound.
TEST(BatchArray, WithAnotherLowerBoundIsMadeAnew)
{
    BatchArray array;
    ASSERT_EQ(array.Prepare(2, 3), S_OK);
    SAFEARRAYBOUND records{3, 5};
    ASSERT_EQ(SafeArrayRedim(array.get(), &records), S_OK);
    ASSERT_EQ(array.Prepare(2, 3), S_OK);
    LONG nFirst = -1;
    EXPECT_EQ(SafeArrayGetLBound(array.get(), 2, &nFirst), S_OK);
    EXPECT_EQ(nFirst, 0);
}

// An array that is locked isn't destroyed: it belongs to whoever holds the lock.
TEST(BatchArray, ThatSomebodyHoldsIsLeftToHim)
{
    BatchArray array;
    ASSERT_EQ(array.Prepare(1, 1), S_OK);
    SAFEARRAY* const pHeld = array.get();
    ASSERT_EQ(SafeArrayLock(pHeld), S_OK);
    static_cast<VARIANT*>(pHeld->pvData)->vt = VT_I4;
    ASSERT_EQ(array.Prepare(1, 1), S_OK);
    EXPECT_NE(array.get(), pHeld);
    EXPECT_EQ(static_cast<VARIANT*>(pHeld->pvData)->vt, VT_I4);
    EXPECT_EQ(SafeArrayUnlock(pHeld), S_OK);
    EXPECT_EQ(SafeArrayDestroy(pHeld), S_OK);
}

} // namespace
