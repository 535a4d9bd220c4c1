// What a cursor saves its reader, measured by the pages that are read.
#include "src/files/LineIndexImpl.h"
#include "tests/files/MadeUpFile.h"
#include "tests/files/Vocabulary.h"

using namespace Hesperon::specifics;
using namespace files_test;

namespace {

using Offsets = std::vector<std::uint64_t>;

// Few small pages, so that each walk shows in the reads.
using SmallPages = CDataArray<char, 4, 256>;

class SmallLines
{
public:
    explicit SmallLines(const std::string& bytes) : file(std::make_shared<MadeUpFile>(bytes))
    {
        index.Attach(file);
        index.SeekRecord(~0ull);
        file->TakeReads();
    }

    template <class... Cursor>
    std::string Record(ULONGLONG nIndex, Cursor&... cursor)
    {
        std::string_view bytes;
        return index.GetRecord(bytes, nIndex, cursor...) ? std::string(bytes) : "<none>";
    }

    std::shared_ptr<MadeUpFile> file;
    LineIndexOf<SmallPages> index;
};

constexpr std::size_t kLines = 5000;

std::uint64_t PageOf(const std::string& bytes, std::size_t nLine)
{
    return bytes.find("line " + std::to_string(nLine) + "\n") / 256 * 256;
}

TEST(LineCursor, ReadersWithACursorEachReadEachPageOnce)
{
    const std::string bytes = NumberedLines(kLines);
    SmallLines lines(bytes);
    LineCursor first, second;
    const auto step = [&](std::size_t n) {
        EXPECT_EQ(lines.Record(n, first), "line " + std::to_string(n));
        EXPECT_EQ(lines.Record(2500 + n, second), "line " + std::to_string(2500 + n));
    };
    step(1); // finds the two places
    lines.file->TakeReads();
    for (std::size_t n = 2; n < 2400; ++n)
        step(n);
    EXPECT_LE(lines.file->TakeReads().size(), bytes.size() / 256);
}

TEST(LineCursor, ReadersWithoutOneShareACursor)
{
    SmallLines lines(NumberedLines(kLines));
    LineCursor own;
    lines.Record(3000);
    lines.Record(100, own);
    lines.file->TakeReads();
    EXPECT_EQ(lines.Record(3001), "line 3001");
    EXPECT_LE(lines.file->TakeReads().size(), 2u) << "not moved by the reader's own";
}

// From the index entry before the record, or from the beginning of the file where there is
// none, and never from the cursor.
TEST(LineCursor, AWalkBackwardsStartsAtTheNearestIndexEntry)
{
    struct Row
    {
        std::size_t nFrom;
        std::size_t nTo;
        std::size_t nStart; // line at which the walk begins
    };
    const Row rows[] = {
        {4000, 3999, 3071}, {4000, 3072, 3071}, {4000, 3071, 2047},
        {4000, 2048, 2047}, {2048, 2047, 1023}, {2048, 1024, 1023},
        {2048, 1023, 0},    {500, 499, 0},      {4999, 1, 0},
    };
    const std::string bytes = NumberedLines(kLines);
    for (const Row& row : rows) {
        SCOPED_TRACE(std::to_string(row.nFrom) + " to " + std::to_string(row.nTo));
        SmallLines lines(bytes);
        lines.Record(row.nFrom);
        lines.index.RefreshFileSize(); // so that all pages are read again
        lines.file->TakeReads();
        EXPECT_EQ(lines.Record(row.nTo), "line " + std::to_string(row.nTo));
        const Offsets reads = lines.file->TakeReads();
        ASSERT_FALSE(reads.empty());
        EXPECT_EQ(reads.front(), PageOf(bytes, row.nStart));
        EXPECT_TRUE(std::ranges::is_sorted(reads));
    }
}

TEST(LineCursor, AReaderGoingBackwardsWalksEachStrideOnce)
{
    const std::string bytes = NumberedLines(kLines);
    SmallLines lines(bytes);
    LineCursor cursor;
    for (std::size_t n = kLines; n-- != 0;)
        EXPECT_EQ(lines.Record(n, cursor), "line " + std::to_string(n));
    // A page is read for the walk, for its records, and for the line that crosses into it.
    EXPECT_LE(lines.file->TakeReads().size(), 3 * (bytes.size() / 256));
}

TEST(LineCursor, SurvivesAFileThatChanges)
{
    struct Row
    {
        const char* name;
        std::function<void(LineIndexOf<SmallPages>&)> change;
    };
    const Row rows[] = {
        {"refreshed", [](auto& index) { index.RefreshFileSize(); }},
        {"invalidated", [](auto& index) { index.Invalidate(false); }},
        {"erased", [](auto& index) { index.Invalidate(true); }},
        {"erased twice",
         [](auto& index) {
             index.Invalidate(true);
             index.Invalidate(true);
         }},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        SmallLines lines(NumberedLines(kLines));
        LineCursor cursor;
        for (const std::size_t n : {3000, 2999, 2998})
            lines.Record(n, cursor);
        row.change(lines.index);
        for (const std::size_t n : {2997, 2998, 2999, 3000, 4000, 3999, 10})
            EXPECT_EQ(lines.Record(n, cursor), "line " + std::to_string(n));
    }
}

TEST(LineCursor, FindsTheLinesOfAFileThatWasRewritten)
{
    const TestFile file(NumberedLines(3000));
    LineIndex index;
    index.Attach(file.Open());
    LineCursor cursor;
    std::string_view bytes;
    for (const ULONGLONG n : {2000, 1999, 1998})
        ASSERT_TRUE(index.GetRecord(bytes, n, cursor));
    file.Write(NumberedLines(3000, " and more"));
    index.Invalidate(true);
    for (const ULONGLONG n : {1997, 1996, 1998}) {
        ASSERT_TRUE(index.GetRecord(bytes, n, cursor));
        EXPECT_EQ(bytes, "line " + std::to_string(n) + " and more");
    }
    EXPECT_EQ(index.RecordCount(), 1998u);
}

} // namespace
