#include "src/files/HeapArray.h"

#include "tests/files/Vocabulary.h"

using namespace Hesperon::specifics;
using namespace files_test;

namespace {

TEST(HeapArray, KeepsItsElementsInPlaceWhileItGrows)
{
    CHeapArray<int, 4> array;
    std::vector<const int*> places;
    for (int n = 0; n < 21; ++n) {
        array.Append(n * n);
        places.push_back(&array[n]);
    }
    ASSERT_EQ(array.GetSize(), 21u);
    for (int n = 0; n < 21; ++n) {
        EXPECT_EQ(array[n], n * n);
        EXPECT_EQ(&array[n], places[n]);
    }
}

TEST(HeapArray, ReportsAnIndexBeyondTheSize)
{
    CHeapArray<int, 4> array;
    array.Append(7);
    for (const ULONGLONG i : {1ull, 3ull, 4ull, ~0ull}) {
        SCOPED_TRACE(i);
        ReportLog reports;
        EXPECT_THROW(array[i], std::invalid_argument);
        EXPECT_EQ(reports.Texts(), std::vector<std::string>{"iElement < m_nSize"});
    }
}

TEST(HeapArray, StartsAfreshWhenCleared)
{
    CHeapArray<int, 4> array;
    for (int n = 0; n < 9; ++n)
        array.Append(n);
    array.Clear();
    EXPECT_EQ(array.GetSize(), 0u);
    EXPECT_THROW(array[0], std::invalid_argument);
    array.Append(5);
    EXPECT_EQ(array[0], 5);
}

} // namespace
