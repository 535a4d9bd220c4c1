// Files that no disk gives on demand: each read in turn fails, sizes beyond 4 GiB, more
// records than 32 bits can count.
#include "src/files/LineIndexImpl.h"
#include "tests/files/MadeUpFile.h"
#include "tests/files/Vocabulary.h"

namespace Hesperon::specifics {

// Lets an index begin in the middle of a file, as if everything before had been scanned.
struct LineIndexTestAccess
{
    template <class Data, class Position>
    static void BeginAt(LineIndexOf<Data>& index, ULONGLONG nRecord, Position position)
    {
        for (ULONGLONG n = 1023; n < nRecord; n += 1024)
            index.m_index.Append(position(n));
        index.m_nRecordCount = nRecord;
    }
};

} // namespace Hesperon::specifics

using namespace Hesperon::specifics;
using namespace files_test;
using namespace std::string_literals;

namespace {

using Texts = std::vector<std::string>;

// ---- failed reads

using TinyPages = CDataArray<char, 3, 512>;
using TinyIndex = LineIndexOf<TinyPages>;

template <class Index>
std::string Record(Index& index, ULONGLONG nIndex)
{
    std::string_view bytes;
    return index.GetRecord(bytes, nIndex) ? std::string(bytes) : "<none>";
}

std::string LastRecord(TinyIndex& index)
{
    string_t sText;
    return index.GetLastRecord(sText) ? Narrow(sText) : "<none>";
}

// All that an index says of a file.
struct Answers
{
    Texts records;
    std::string last;
    ULONGLONG nEstimate;
    bool operator==(const Answers&) const = default;
};

Answers AllOf(TinyIndex& index)
{
    Answers answers{{}, LastRecord(index), index.GetApproxCount()};
    index.SeekRecord(~0ull);
    EXPECT_TRUE(index.IsComplete());
    for (ULONGLONG n = 0; n < index.RecordCount(); ++n)
        answers.records.push_back(Record(index, n));
    return answers;
}

struct Operation
{
    const char* name;
    ULONGLONG nCursor; // where the shared cursor stands before
    std::function<std::string(TinyIndex&)> call;
};

const Operation kOperations[] = {
    {"scan", 0, [](auto& index) { return std::to_string(index.SeekRecord(~0ull)); }},
    {"scan on", 900, [](auto& index) { return std::to_string(index.SeekRecord(~0ull)); }},
    {"record", 0, [](auto& index) { return Record(index, 1500); }},
    {"next record", 1500, [](auto& index) { return Record(index, 1501); }},
    {"record before", 1500, [](auto& index) { return Record(index, 1499); }},
    {"record of another stride", 1500, [](auto& index) { return Record(index, 700); }},
    {"last record", 0, LastRecord},
    {"two-byte characters", 0,
     [](auto& index) {
         index.DetectUnicode();
         return ""s;
     }},
    {"estimate", 0, [](auto& index) { return std::to_string(index.GetApproxCount()); }},
};

// A failure is reported each time, is never taken for the end or for zeros, and leaves
// later reads right.
void FailEachReadOf(const Operation& operation, const std::string& bytes)
{
    TinyIndex healthy;
    healthy.Attach(std::make_shared<MadeUpFile>(bytes));
    const Answers expected = AllOf(healthy);
    for (std::size_t nRead = 0;; ++nRead) {
        SCOPED_TRACE("read " + std::to_string(nRead));
        const auto pFile = std::make_shared<MadeUpFile>(bytes);
        TinyIndex index, untouched;
        index.Attach(pFile);
        untouched.Attach(std::make_shared<MadeUpFile>(bytes));
        index.SeekRecord(operation.nCursor);
        untouched.SeekRecord(operation.nCursor);
        ReportLog unheard;
        pFile->FailAfter(nRead);
        std::string answer;
        try {
            answer = operation.call(index);
        } catch (const std::invalid_argument&) {
            ASSERT_TRUE(pFile->HasFailed());
            EXPECT_EQ(unheard.Texts(), Texts(1, "0")) << "one report";
            EXPECT_FALSE(index.IsComplete());
            pFile->FailAfter(0);
            EXPECT_THROW(operation.call(index), std::invalid_argument) << "again";
            EXPECT_FALSE(index.IsComplete());
            EXPECT_EQ(operation.call(index), operation.call(untouched));
            EXPECT_EQ(AllOf(index), expected);
            continue;
        }
        ASSERT_FALSE(pFile->HasFailed()) << "a failure that nobody heard of";
        EXPECT_EQ(answer, operation.call(untouched));
        EXPECT_GT(nRead, 0u) << "the operation reads";
        return;
    }
}

TEST(MadeUpPages, AFailedReadIsReportedAndLeavesNoTrace)
{
    const std::string plain = NumberedLines(1600) + "\n,,\n \n"; // no content in the last page
    std::string wide;
    for (const char c : NumberedLines(1600))
        wide += {c, '\0'};
    for (const std::string& bytes : {plain, wide})
        for (const Operation& operation : kOperations) {
            SCOPED_TRACE(operation.name + ", "s + std::to_string(bytes.size()) + " bytes");
            FailEachReadOf(operation, bytes);
        }
}

// Lines that were read before the failure are there, and the next try goes on behind them.
TEST(MadeUpPages, AFailedReadInARangeKeepsTheLinesBeforeIt)
{
    std::string bytes;
    for (int n = 0; n < 400; ++n)
        bytes += "line " + std::to_string(n) + "\n";
    for (std::size_t nGood = 0; nGood < 6; ++nGood) {
        const auto pFile = std::make_shared<MadeUpFile>(bytes);
        TinyIndex index;
        ASSERT_TRUE(index.Attach(pFile));
        index.DetectUnicode();
        pFile->FailAfter(nGood);
        LineCursor cursor;
        LineBuffer lines;
        int nFailures = 0;
        while (lines.size() < 400) {
            const ULONGLONG nNext = lines.size();
            try {
                std::string_view line;
                if (index.AppendPlain({nNext, 400 - nNext}, cursor, lines) == 0 &&
                    index.GetRecord(line, nNext, cursor))
                    lines.AddBytes(line);
            } catch (const std::invalid_argument&) {
                ASSERT_LT(nFailures++, 1);
            }
        }
        EXPECT_EQ(nFailures, 1) << nGood;
        for (std::size_t n = 0; n < lines.size(); ++n)
            ASSERT_EQ(lines.Bytes(n), "line " + std::to_string(n));
    }
}

// The file was cut since its size was asked for.
TEST(MadeUpPages, APageThatComesShortIsAFailedRead)
{
    const TestFile file(NumberedLines(200));
    TinyIndex index;
    index.Attach(file.Open());
    Record(index, 0);
    file.Truncate(700);
    ReportLog unheard;
    for (int n = 0; n < 3; ++n)
        EXPECT_THROW(index.SeekRecord(~0ull), std::invalid_argument);
    EXPECT_FALSE(index.IsComplete());
    file.Write(NumberedLines(200));
    EXPECT_FALSE(index.SeekRecord(~0ull));
    EXPECT_EQ(index.RecordCount(), 200u);
    EXPECT_EQ(Record(index, 199), "line 199");
}

TEST(MadeUpPages, NoPageOfAnEmptyFileIsRead)
{
    const auto pFile = std::make_shared<MadeUpFile>("");
    LineIndex index;
    EXPECT_FALSE(index.Attach(pFile));
    index.DetectUnicode();
    string_t sText;
    FLOAT fPos = 0;
    EXPECT_FALSE(index.SeekRecord(~0ull));
    EXPECT_TRUE(index.IsComplete());
    std::string_view bytes;
    EXPECT_FALSE(index.GetRecord(bytes, 0));
    EXPECT_FALSE(index.GetLastRecord(sText));
    EXPECT_EQ(index.GetRelativePos(0, &fPos), E_UNEXPECTED);
    EXPECT_EQ(index.GetApproxCount(), 0u);
    index.Invalidate(true);
    EXPECT_FALSE(index.SeekRecord(~0ull));
    EXPECT_TRUE(index.IsComplete());
    EXPECT_TRUE(pFile->TakeReads().empty());
}

// ---- what is read

// By the count of the lines and by the search for the last one, in any order; not even the
// pages that leave the memory in between.
TEST(MadeUpPages, ZerosAtTheEndAreReadOnce)
{
    const auto count = [](TinyIndex& index) {
        EXPECT_FALSE(index.SeekRecord(~0ull));
        EXPECT_EQ(index.RecordCount(), 1000u);
    };
    const auto last = [](TinyIndex& index) {
        string_t sText;
        EXPECT_EQ(LastRecord(index), "line 999");
        EXPECT_TRUE(index.GetLastRecordHead(sText));
    };
    const auto first = [](TinyIndex& index) { EXPECT_EQ(Record(index, 0), "line 0"); };
    const std::vector<std::function<void(TinyIndex&)>> orders[] = {
        {count, last, last}, {last, count, last}, {last, last, first, count}, {count, first, last}};
    const std::string lines = NumberedLines(1000);
    const std::string noLineEnd = lines.substr(0, lines.size() - 1);
    const std::string zeros(500'000, '\0');
    for (const std::string& bytes :
         {lines + zeros, noLineEnd + zeros, lines + zeros + "\r\n \n", lines + " \t" + zeros})
        for (const auto& order : orders) {
            const auto pFile = std::make_shared<MadeUpFile>(bytes);
            TinyIndex index;
            index.Attach(pFile);
            for (const auto& call : order)
                call(index);
            constexpr std::size_t kAgain = 8; // around the lines' end, with three pages in memory
            const std::size_t nLinePages = lines.size() / 512 + 1;
            EXPECT_LE(pFile->TakeReads().size(), bytes.size() / 512 + 1 + nLinePages + kAgain);
        }
}

TEST(MadeUpPages, ZerosAtTheEndMayBecomeLines)
{
    const TestFile file("abcd\n" + std::string(5000, '\0'));
    TinyIndex index;
    index.Attach(file.Open());
    index.SeekRecord(~0ull);
    EXPECT_EQ(LastRecord(index), "abcd");
    file.Write("abcd\n" + std::string(2500, '\0') + "\nefgh\n" + std::string(2494, '\0'));
    index.Invalidate(false);
    EXPECT_EQ(LastRecord(index), "efgh");
    EXPECT_FALSE(index.SeekRecord(~0ull));
    EXPECT_EQ(index.RecordCount(), 2u);
}

TEST(MadeUpPages, TheHeadOfALongLastRecordReadsLittle)
{
    const auto pFile = std::make_shared<MadeUpFile>("ab\n" + std::string(500'000, 'x') + "\n");
    TinyIndex index;
    index.Attach(pFile);
    string_t sText;
    index.GetLastRecordHead(sText);
    pFile->TakeReads();
    for (int n = 0; n < 10; ++n)
        EXPECT_TRUE(index.GetLastRecordHead(sText));
    EXPECT_EQ(sText, string_t(512, 'x'));
    EXPECT_LE(pFile->TakeReads().size(), 60u);
}

TEST(MadeUpPages, ALineWithoutEndIsSearchedOnce)
{
    const std::string bytes(500'000, 'x');
    const auto pFile = std::make_shared<MadeUpFile>(bytes);
    TinyIndex index;
    index.Attach(pFile);
    EXPECT_FALSE(index.SeekRecord(1));
    for (int n = 0; n < 10; ++n)
        EXPECT_EQ(Record(index, 0), bytes.substr(0, 512));
    EXPECT_LE(pFile->TakeReads().size(), bytes.size() / 512 + 30);
}

// ---- huge files

// Line n is n in 15 digits; lines take kLine bytes.
constexpr ULONGLONG kLine = 16;

std::string LineText(ULONGLONG n)
{
    std::string digits = std::to_string(n);
    return std::string(kLine - 1 - digits.size(), '0') + digits;
}

std::shared_ptr<MadeUpFile> HugeFile(ULONGLONG nLines)
{
    return std::make_shared<MadeUpFile>(
        nLines * kLine, [](std::uint64_t nOffset, char* p, std::size_t nCount) {
            for (std::size_t n = 0; n < nCount; n += kLine) {
                const std::string line = LineText((nOffset + n) / kLine) + '\n';
                std::memcpy(p + n, line.data(), kLine);
            }
        });
}

TEST(MadeUpPages, RecordsAndPositionsGoBeyond32Bits)
{
    struct Row
    {
        const char* name;
        ULONGLONG nMiddle; // the record in question; the file ends 3000 lines after it
    };
    const Row rows[] = {
        {"4 GiB", (1ull << 32) / kLine},
        {"2^31 records", 1ull << 31},
        {"2^32 records", 1ull << 32},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        const ULONGLONG nLines = row.nMiddle + 3000;
        LineIndex index;
        ASSERT_TRUE(index.Attach(HugeFile(nLines)));
        LineIndexTestAccess::BeginAt(index, row.nMiddle - 1500,
                                     [](ULONGLONG n) { return n * kLine; });
        for (const ULONGLONG n :
             {row.nMiddle - 1, row.nMiddle, row.nMiddle + 1, row.nMiddle - 1, row.nMiddle - 1025})
            EXPECT_EQ(Record(index, n), LineText(n));
        EXPECT_EQ(index.RecordCount(), row.nMiddle + 1);
        EXPECT_FALSE(index.SeekRecord(nLines));
        EXPECT_TRUE(index.IsComplete());
        EXPECT_EQ(index.RecordCount(), nLines);
        EXPECT_EQ(index.IndexEntry(nLines / 1024 - 1), (nLines / 1024 * 1024 - 1) * kLine);
        string_t sText;
        EXPECT_TRUE(index.GetLastRecord(sText));
        EXPECT_EQ(Narrow(sText), LineText(nLines - 1));
        EXPECT_EQ(Record(index, nLines - 1), LineText(nLines - 1));
        EXPECT_EQ(index.GetApproxCount(), nLines);
        FLOAT fPos = 0;
        EXPECT_EQ(index.GetRelativePos(row.nMiddle, &fPos), S_OK);
        EXPECT_EQ(fPos, static_cast<FLOAT>(static_cast<double>((row.nMiddle - 1) * kLine) /
                                           static_cast<double>(nLines * kLine)));
    }
}

} // namespace
