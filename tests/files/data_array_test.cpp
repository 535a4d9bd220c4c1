#include "src/files/DataArrayImpl.h"

#include "tests/files/MadeUpFile.h"
#include "tests/files/Vocabulary.h"

using namespace Hesperon::specifics;
using namespace files_test;
using testing::Test;

namespace {

using SmallArray = CDataArray<char, 3, 10>;
using Texts = std::vector<std::string>;

std::string Letters(std::size_t nCount)
{
    std::string bytes;
    for (std::size_t n = 0; n < nCount; ++n)
        bytes += static_cast<char>('a' + n % 26);
    return bytes;
}

template <class Array>
std::string ReadAll(Array& array)
{
    std::string bytes;
    while (bytes.size() < array.GetSize()) {
        const auto span = array.Span(bytes.size());
        bytes.append(span.data(), span.size());
    }
    return bytes;
}

template <class Array>
void ExpectSameBytes(const std::string& bytes)
{
    const TestFile file(bytes);
    Array bySpan;
    ASSERT_TRUE(bySpan.Attach(file.Open()));
    EXPECT_EQ(bySpan.GetSize(), bytes.size());
    EXPECT_EQ(ReadAll(bySpan), bytes);
    Array backwards;
    ASSERT_TRUE(backwards.Attach(file.Open()));
    for (std::size_t n = bytes.size(); n-- != 0;)
        ASSERT_EQ(backwards[n], bytes[n]) << n;
}

TEST(DataArray, GivesTheBytesOfTheFileForAnyPageSize)
{
    for (const std::size_t nSize : {1, 9, 10, 11, 29, 30, 31, 257, 1000}) {
        SCOPED_TRACE(nSize);
        const std::string bytes = Letters(nSize);
        ExpectSameBytes<CDataArray<char, 1, 1>>(bytes);
        ExpectSameBytes<CDataArray<char, 1, 7>>(bytes);
        ExpectSameBytes<SmallArray>(bytes);
        ExpectSameBytes<CDataArray<char, 16, 64>>(bytes);
        ExpectSameBytes<FileBytes>(bytes);
    }
}

TEST(DataArray, AttachesOneFileThatHoldsSomething)
{
    const TestFile empty("");
    const TestFile file("abc");
    const auto pClosed = file.Open();
    pClosed->Close();
    SmallArray array;
    EXPECT_FALSE(array.Attach(nullptr));
    EXPECT_FALSE(array.Attach(pClosed));
    EXPECT_FALSE(array.Attach(empty.Open()));
    EXPECT_EQ(array.GetSize(), 0u);
    EXPECT_TRUE(array.Attach(file.Open()));
    EXPECT_FALSE(array.Attach(file.Open()));
    EXPECT_EQ(array[2], 'c');
}

TEST(DataArray, ReportsAndThrowsBeyondTheEnd)
{
    const TestFile file("abc");
    SmallArray array;
    array.Attach(file.Open());
    for (const ULONGLONG i : {3ull, 4ull, 10ull, ~0ull}) {
        SCOPED_TRACE(i);
        ReportLog reports;
        EXPECT_THROW(array[i], std::invalid_argument);
        EXPECT_EQ(reports.Texts(), Texts{"iElement < m_nSize"});
    }
    EXPECT_EQ(array[0], 'a');
}

// A page that is read once more shows what was written into the file meanwhile.
TEST(DataArray, OverwritesThePageThatEnteredLongestAgo)
{
    struct Row
    {
        std::vector<int> pages; // in the order in which they are asked for
        std::vector<int> kept;  // those in memory afterwards
    };
    const Row rows[] = {
        {{0}, {0}},
        {{0, 1, 2}, {0, 1, 2}},
        {{0, 1, 2, 3}, {1, 2, 3}},
        {{0, 1, 2, 0, 3}, {1, 2, 3}}, // a hit doesn't move a page to the front
        {{0, 1, 2, 3, 0}, {2, 3, 0}},
        {{4, 3, 2, 1, 0}, {2, 1, 0}},
        {{0, 0, 0, 1, 1, 2, 0, 2, 4, 1}, {1, 2, 4}},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(testing::PrintToString(row.pages));
        const TestFile file(std::string(50, 'o'));
        SmallArray array;
        array.Attach(file.Open());
        for (const int nPage : row.pages)
            EXPECT_EQ(array[nPage * 10], 'o');
        file.Write(std::string(50, 'n'));
        for (const int nPage : row.kept)
            EXPECT_EQ(array[nPage * 10], 'o') << "page " << nPage;
        for (int nPage = 0; nPage < 5; ++nPage)
            if (std::ranges::find(row.kept, nPage) == row.kept.end()) {
                EXPECT_EQ(array[nPage * 10 + 9], 'n') << "page " << nPage;
                break; // from here on others are overwritten
            }
    }
}

TEST(DataArray, ReadsWholePagesAtPageOffsets)
{
    const TestFile file(std::string(25, 'o'));
    SmallArray array;
    array.Attach(file.Open());
    EXPECT_EQ(array[14], 'o');
    file.Write(std::string(25, 'n'));
    EXPECT_EQ(array[10], 'o');
    EXPECT_EQ(array[19], 'o');
    EXPECT_EQ(array[9], 'n');
    EXPECT_EQ(array[20], 'n');
    EXPECT_EQ(array.Span(13).size(), 7u);
    EXPECT_EQ(array.Span(23).size(), 2u);
}

// A page that can't be read isn't kept. Trying it costs the oldest page its slot, but only
// the first time.
TEST(DataArray, AFailedReadThrowsEachTimeUntilItSucceeds)
{
    const std::string letters = Letters(80);
    const auto pFile = std::make_shared<MadeUpFile>(letters);
    SmallArray array;
    array.Attach(pFile);
    for (const std::size_t n : {0, 10, 20, 30})
        EXPECT_EQ(array[n], letters[n]);
    ReportLog reports;
    for (int n = 0; n < 3; ++n) {
        pFile->FailAfter(0);
        EXPECT_THROW(array[42], std::invalid_argument);
    }
    EXPECT_EQ(reports.Texts(), (Texts{"0", "0", "0"}));
    pFile->TakeReads();
    for (const std::size_t n : {20, 30})
        EXPECT_EQ(array[n], letters[n]);
    EXPECT_TRUE(pFile->TakeReads().empty());
    EXPECT_EQ(array[42], letters[42]);
    EXPECT_EQ(array[0], letters[0]);
}

TEST(DataArray, AClosedFileFailsButForThePagesThatAreThere)
{
    const TestFile file(Letters(30));
    const auto pFile = file.Open();
    SmallArray array;
    array.Attach(pFile);
    EXPECT_EQ(array[3], 'd');
    pFile->Close();
    EXPECT_EQ(array[4], 'e');
    EXPECT_THROW(array[10], std::invalid_argument);
    array.RefreshFileSize();
    EXPECT_EQ(array.GetSize(), 30u);
    EXPECT_THROW(array[4], std::invalid_argument);
}

TEST(DataArray, RefreshingForgetsPagesAndTakesTheNewSize)
{
    const TestFile file(std::string(15, 'o'));
    SmallArray array;
    array.Attach(file.Open());
    EXPECT_EQ(array[0], 'o');
    file.Write(std::string(27, 'n'));
    EXPECT_EQ(array.GetSize(), 15u);
    EXPECT_EQ(array[0], 'o');
    array.RefreshFileSize();
    EXPECT_EQ(array.GetSize(), 27u);
    EXPECT_EQ(array[0], 'n');
    EXPECT_EQ(array[26], 'n');
}

// The last page of a file is short, so only a file that has grown is read on from
// between two page offsets.
TEST(DataArray, ReportsAForwardMoveByLessThanPages)
{
    const TestFile file(Letters(25));
    SmallArray array;
    array.Attach(file.Open());
    ReportLog reports;
    array[24];
    array[0];
    array[24];
    EXPECT_EQ(reports.Texts(), Texts{});
    array.RefreshFileSize();
    array[24];
    file.Append(Letters(20));
    array.RefreshFileSize();
    EXPECT_EQ(array[31], Letters(20)[6]);
    EXPECT_EQ(reports.Texts(), Texts{"0 == nDistanceToMove % nBlockSize"});
}

} // namespace
