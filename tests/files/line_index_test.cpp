#include "src/files/LineIndexImpl.h"

#include "tests/files/CodePageInForce.h"
#include "tests/files/Vocabulary.h"

using namespace Hesperon::specifics;
using namespace files_test;
using namespace std::string_literals;

namespace {

using Texts = std::vector<std::string>;
constexpr ULONGLONG kEnd = ~0ull;

constexpr UINT kGb18030 = 54936; // Wine has none

bool HasCodePage(UINT nCodePage)
{
    const UINT nBefore = AnsiCodePage();
    const bool bHas = SetAnsiCodePage(nCodePage);
    SetAnsiCodePage(nBefore);
    return bHas;
}

// An index on a file of these bytes.
class Lines
{
public:
    explicit Lines(const std::string& bytes) : m_file(bytes)
    {
        m_index.Attach(m_file.Open());
        m_index.DetectUnicode();
    }

    LineIndex* operator->() { return &m_index; }
    const TestFile& File() const { return m_file; }

    // The record's bytes, or "<none>".
    std::string Record(ULONGLONG nIndex)
    {
        std::string_view bytes;
        return m_index.GetRecord(bytes, nIndex) ? std::string(bytes) : "<none>";
    }
    std::string LastRecord()
    {
        string_t sText;
        return m_index.GetLastRecord(sText) ? Narrow(sText) : "<none>";
    }
    std::string LastRecordHead()
    {
        string_t sText;
        return m_index.GetLastRecordHead(sText) ? Narrow(sText) : "<none>";
    }
    Texts Records()
    {
        m_index.SeekRecord(kEnd);
        Texts texts;
        for (ULONGLONG n = 0; n < m_index.RecordCount(); ++n)
            texts.push_back(Record(n));
        return texts;
    }

private:
    TestFile m_file;
    LineIndex m_index;
};

TEST(LineIndex, FindsTheRecordsOfAFile)
{
    const CodePageInForce latin(kLatinCodePage);
    struct Row
    {
        std::string bytes;
        Texts records;
    };
    const std::string sLong(600, 'x');
    const Row rows[] = {
        {"", {}},
        {"\n\n\r\n", {}},
        {"one line", {"one line"}},
        {"one line\n", {"one line"}},
        {"ab\ncd\nef", {"ab", "cd", "ef"}},
        {"ab\rcd\r\nef\r\n", {"ab", "cd", "ef"}},
        {"\r\n\r\n  ab\n\n\n\tcd  \n", {"ab", "cd  "}},
        // The gap after a line may hold zeros.
        {"ab\n\0\0cd\n"s, {"ab", "cd"}},
        // A line of one byte goes with the line after it.
        {"a\nbcd\nef\n", {"a\nbcd", "ef"}},
        {"ab\nc\ndef\n", {"ab", "c\ndef"}},
        {"ab\nc\n", {"ab", "c\n"}},
        // So does a line of separators, which isn't a record then.
        {"ab\n,,,,\ncd\nef\n", {"ab", "ef"}},
        // A bar is content to the search for lines, but makes no record.
        {"ab\n,;|\ncd\n", {"ab", "cd"}},
        {"|||\nab\n", {"ab"}},
        {",a\n:b\n", {",a", ":b"}},
        {sLong + "\nab\n", {sLong.substr(0, 512), "ab"}},
        {"\xE4\xFF\n\x80z\n", {"\xE4\xFF", "\x80z"}},
        // Two bytes per character, with and without a byte-order mark.
        {"\xFF\xFE"
         "a\0b\0\r\0\n\0c\0d\0\r\0\n\0"s,
         {"\xFF\xFE"s + "ab", "cd"}},
        {"a\0b\0\n\0c\0d\0"s, {"ab", "cd"}},
        // A file of fewer than five bytes has one byte per character.
        {"a\0b\0"s, {"ab"}},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(testing::PrintToString(row.bytes));
        Lines lines(row.bytes);
        Texts records;
        lines->SeekRecord(kEnd);
        EXPECT_TRUE(lines->IsComplete());
        EXPECT_EQ(lines->RecordCount(), row.records.size());
        std::string_view bytes;
        for (ULONGLONG n = 0; lines->GetRecord(bytes, n); ++n)
            records.emplace_back(bytes);
        EXPECT_EQ(records, row.records);
    }
}

TEST(LineIndex, ReadsTheLastRecordBackwards)
{
    struct Row
    {
        std::string bytes;
        std::string record;
        Texts reports;
    };
    const std::string sLong(600, 'x');
    const std::string sInvalid = "IsValidRecord(_nNextPos, nPrevPos + (is_unicode ? 2 : 1))";
    const Row rows[] = {
        {"", "<none>", {}},
        {"a", "", {}}, // a file of one byte gives an empty text
        {"a\n", "a", {}},
        {"ab", "ab", {}},
        {"ab\ncd", "cd", {}},
        {"ab\ncd\r\n\r\n \t\n", "cd", {}},
        {"ab\n  cd", "cd", {}},
        {"ab\n,;|\n", "ab", {}},
        {"ab\n|\t|\n,,\n", "ab", {}},
        {"ab\nc\n", "c", {}}, // one byte is a line of its own here
        {"ab\n" + sLong, sLong, {}},
        {"ab\n" + sLong + "\n", sLong, {}},
        {"\n\n\n", "\n", {sInvalid}},
        {",;", ",;", {sInvalid}},
        {",;\n\n", ",;", {sInvalid}},
        {"a\0b\0\r\0\n\0c\0d\0\r\0\n\0"s, "cd", {}},
        {"a\0b\0\n\0c\0d\0"s, "cd", {}},
        {"a\0b\0c\0"s, "abc", {}},
        // Zeros are no text, wherever they stand.
        {"ab\ncd\n" + std::string(1000, '\0'), "cd", {}},
        {"ab\ncd" + std::string(1000, '\0'), "cd", {}},
        {"abcd\n\0\0c\0\0d\0\0\n"s, "cd", {}},
        {"ab\ncd\n,,\0,\0\0"s, "cd", {}},
        {"\0\0\0\0\0"s, "", {sInvalid}},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(testing::PrintToString(row.bytes));
        Lines lines(row.bytes);
        for (int n = 0; n < 2; ++n) { // found, and remembered
            ReportLog reports;
            EXPECT_EQ(lines.LastRecord(), row.record);
            EXPECT_EQ(reports.Texts(), row.reports);
        }
        EXPECT_EQ(lines.LastRecordHead(), row.record.substr(0, 512));
        EXPECT_EQ(lines->RecordCount(), 0u) << "nothing is counted";
    }
}

// The head has the first 512 characters of the whole record, in each code page.
TEST(LineIndex, TheHeadOfTheLastRecordIsTheBeginningOfTheWhole)
{
    const auto repeated = [](const std::string& piece) {
        std::string bytes;
        while (bytes.size() < 5000)
            bytes += piece;
        return bytes;
    };
    struct Row
    {
        UINT nCodePage;
        std::string piece;
    };
    const Row rows[] = {
        {1252, "abc,1.5,"},
        {936, "\xD6\xD0"},
        {936, "a\xD6\xD0"},
        {65001, "\xC3\xA4"},
        {65001, "\xE4\xB8\xAD"},
        {65001, "x\xF0\x9F\x98\x80"},
        {kGb18030, "\x81\x30\x81\x30"},
        {1252, "a\0"s},
        {1252, "a" + std::string(700, '\0')},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(std::to_string(row.nCodePage) + " " + testing::PrintToString(row.piece));
        if (row.nCodePage == kGb18030 && !HasCodePage(kGb18030))
            continue;
        const CodePageInForce codePage(row.nCodePage);
        Lines lines("ab\n" + repeated(row.piece));
        string_t sWhole, sHead;
        ASSERT_TRUE(lines->GetLastRecord(sWhole));
        ASSERT_TRUE(lines->GetLastRecordHead(sHead));
        EXPECT_EQ(sHead, sWhole.substr(0, 512));
    }
}

TEST(LineIndex, FindsTheLastRecordAfreshInAFileThatHasChanged)
{
    for (const bool bErase : {false, true}) {
        Lines lines("ab\ncd\n");
        EXPECT_EQ(lines.LastRecord(), "cd");
        lines.File().Append("ef\n");
        EXPECT_EQ(lines.LastRecord(), "cd") << "not before the index is told to look";
        lines->Invalidate(bErase);
        EXPECT_EQ(lines.LastRecord(), "ef");
        lines.File().Append("gh\n");
        lines->RefreshFileSize();
        EXPECT_EQ(lines.LastRecord(), "gh");
    }
}

TEST(LineIndex, SeeksTheNextLine)
{
    struct Row
    {
        std::string bytes;
        ULONGLONG nFrom;
        bool bStop;
        bool bMore;
        ULONGLONG nTo;
        ULONGLONG nLength;
    };
    const Row rows[] = {
        {"ab\ncd\n", 0, true, true, 2, 2},
        {"ab\ncd\n", 0, false, true, 3, 3},
        {"ab\ncd\n", 3, true, true, 5, 2},
        {"ab\ncd\n", 3, false, false, 6, 3},
        {"ab\ncd", 3, false, false, 5, 5}, // no line end: the size, not a distance
        {"ab\ncd \t\r\n", 3, false, false, 9, 9 - 3},
        {"ab\r\n \t\n\0cd\n"s, 0, false, true, 8, 8},
        {"\n\n\nab\n", 0, true, true, 5, 5}, // the distance counts empty lines
        {",,\nab\n", 0, true, true, 5, 5},
        {"a\nbc\n", 0, true, true, 4, 4},
        {"||\nab\n", 0, true, true, 2, 2},
        {"\t\t\nab\n", 0, true, true, 2, 2},
        {"\0\0\nab\n"s, 0, true, true, 2, 2},
        {",,\n", 0, true, false, 3, 3},
        {"\x85\xA0\n\xA0z\n", 0, false, true, 3, 3}, // the high bit ends a gap
        {"", 0, false, false, 0, 0},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(testing::PrintToString(row.bytes) + " from " + std::to_string(row.nFrom));
        Lines lines(row.bytes);
        ULONGLONG nPos = row.nFrom;
        ULONGLONG nLength = 99;
        EXPECT_EQ(lines->Lines().SeekNextLine(nPos, row.bStop, &nLength), row.bMore);
        EXPECT_EQ(nPos, row.nTo);
        EXPECT_EQ(nLength, row.nLength);
        ULONGLONG nAgain = row.nFrom;
        EXPECT_EQ(lines->Lines().SeekNextLine(nAgain, row.bStop), row.bMore) << "without a length";
        EXPECT_EQ(nAgain, row.nTo);
    }
}

TEST(LineIndex, ValidRecordsBeginWithContentAfterSeparators)
{
    struct Row
    {
        std::string bytes;
        bool bValid;
    };
    const Row rows[] = {
        {"a", true},           {",a", true},
        {": ,;|\t\0a"s, true}, {",;|\t ", false},
        {",\nabc", false},     {"\rabc", false},
        {"a\n", true},         {"\0\0"s, false},
        {"\xFF", true},        {std::string(512, ',') + "a", true},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(testing::PrintToString(row.bytes));
        Lines lines(row.bytes);
        EXPECT_EQ(lines->Lines().IsValidRecord(0, row.bytes.size()), row.bValid);
    }
    Lines lines(",,,a");
    EXPECT_FALSE(lines->Lines().IsValidRecord(0, 3));
    EXPECT_FALSE(lines->Lines().IsValidRecord(3, 3));
    EXPECT_TRUE(lines->Lines().IsValidRecord(3, 4));
}

TEST(LineIndex, AnEmptyFileIsCompleteAfterTheFirstLook)
{
    Lines lines("");
    EXPECT_FALSE(lines->IsComplete());
    EXPECT_FALSE(lines->SeekRecord(1));
    EXPECT_TRUE(lines->IsComplete());
    EXPECT_EQ(lines->RecordCount(), 0u);
    EXPECT_FALSE(lines->SeekRecord(0));
    EXPECT_EQ(lines.Record(0), "<none>");
    EXPECT_EQ(lines->GetApproxCount(), 0u);
}

TEST(LineIndex, ALineWithoutEndIsTheLastRecord)
{
    Lines lines("ab");
    EXPECT_TRUE(lines->SeekRecord(0));
    EXPECT_FALSE(lines->IsComplete());
    EXPECT_FALSE(lines->SeekRecord(1));
    EXPECT_TRUE(lines->IsComplete());
    EXPECT_EQ(lines->RecordCount(), 1u);
    EXPECT_EQ(lines.Record(0), "ab");
}

TEST(LineIndex, KeepsThePlaceOfEach1024thRecord)
{
    struct Row
    {
        std::size_t nLines;
        bool bLastEnds;
        ULONGLONG nEntries;
    };
    const Row rows[] = {
        {1023, true, 0}, {1024, true, 1},  {1024, false, 1}, {1025, true, 1},
        {2047, true, 1}, {2048, false, 2}, {5000, true, 4},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(std::to_string(row.nLines) + (row.bLastEnds ? "" : " without last end"));
        std::string bytes = NumberedLines(row.nLines);
        if (!row.bLastEnds)
            bytes.pop_back();
        Lines lines(bytes);
        lines->SeekRecord(kEnd);
        EXPECT_EQ(lines->RecordCount(), row.nLines);
        for (ULONGLONG k = 0; k < row.nEntries; ++k) {
            const std::string sLine = "line " + std::to_string(1024 * (k + 1) - 1);
            EXPECT_EQ(lines->IndexEntry(k), bytes.find(sLine)) << k;
        }
        EXPECT_THROW(lines->IndexEntry(row.nEntries), std::invalid_argument);
    }
}

TEST(LineIndex, ReadsAnyRecordInAnyOrder)
{
    Lines lines(NumberedLines(5000));
    for (const ULONGLONG n : {4999, 0, 2500, 2499, 1023, 1024, 1022, 4096, 4095, 1, 4998, 2048})
        EXPECT_EQ(lines.Record(n), "line " + std::to_string(n));
    EXPECT_EQ(lines.Record(5000), "<none>");
    EXPECT_EQ(lines.Record(kEnd), "<none>");
    EXPECT_EQ(lines.Record(4999), "line 4999");
}

TEST(LineIndex, TheCountGrowsOnlyWhenAWalkPassesItsEnd)
{
    Lines lines(NumberedLines(3000));
    struct Row
    {
        ULONGLONG nIndex;
        bool bFound;
        ULONGLONG nCount;
        bool bComplete;
    };
    const Row rows[] = {
        {0, true, 0, false},       {1, true, 1, false},       {64, true, 64, false},
        {10, true, 64, false},     {2999, true, 2999, false}, {500, true, 2999, false},
        {3000, false, 3000, true}, {2999, true, 3000, true},  {4000, false, 3000, true},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.nIndex);
        EXPECT_EQ(lines->SeekRecord(row.nIndex), row.bFound);
        EXPECT_EQ(lines->RecordCount(), row.nCount);
        EXPECT_EQ(lines->IsComplete(), row.bComplete);
    }
}

// The line begins within the 512 bytes that are looked at, its content doesn't.
TEST(LineIndex, PassesOverALineWhoseContentComesTooLate)
{
    Lines lines("ab\n" + std::string(512, ',') + "late\ncd\n");
    EXPECT_EQ(lines.Records(), (Texts{"ab", "cd", "cd"}));
}

TEST(LineIndex, TellsWhereARecordLies)
{
    const std::string bytes = NumberedLines(5000);
    Lines lines(bytes);
    FLOAT fPos = -1;
    EXPECT_EQ(lines->GetRelativePos(0, &fPos), E_UNEXPECTED);
    lines->SeekRecord(2500);
    const auto entry = [&](ULONGLONG n) {
        return static_cast<FLOAT>(static_cast<double>(bytes.find("line " + std::to_string(n))) /
                                  static_cast<double>(bytes.size()));
    };
    struct Row
    {
        ULONGLONG nCursor;
        ULONGLONG nIndex;
        HRESULT hr;
        FLOAT fPos;
    };
    const Row rows[] = {
        {2500, 0, S_OK, 0},
        {2500, 1023, S_OK, 0},
        {2500, 1024, S_OK, entry(1023)},
        {2500, 2047, S_OK, entry(1023)},
        {2500, 2048, S_OK, entry(2047)},
        {2500, 2900, S_OK, entry(2047)},
        {2500, 3072, E_UNEXPECTED, 0},
        {100, 2048, S_OK, entry(2047)},
        {2046, 2048, S_OK, entry(2047)},
        {2047, 2048, S_OK, entry(2047)}, // the cursor, which stands on that very line
        {3, 900, S_OK, 0},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(std::to_string(row.nCursor) + " to " + std::to_string(row.nIndex));
        lines->SeekRecord(row.nCursor);
        fPos = 0;
        EXPECT_EQ(lines->GetRelativePos(row.nIndex, &fPos), row.hr);
        EXPECT_EQ(fPos, row.fPos);
        EXPECT_EQ(lines->RecordCount(), 2500u);
    }
}

TEST(LineIndex, EstimatesTheCountByTheFirstLineOnce)
{
    struct Row
    {
        std::string bytes;
        ULONGLONG nCount;
    };
    const Row rows[] = {
        {"0123456789", 1},         {"abc\nabc\nabc\nabc\n", 4},
        {"abc\r\n\r\nabc\r\n", 1}, {"abcd\n" + std::string(94, 'x') + "\n", 20},
        {"\n\n\nab\nabcdef", 2}, // what lies before the line counts with it
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(testing::PrintToString(row.bytes));
        Lines lines(row.bytes);
        EXPECT_EQ(lines->GetApproxCount(), row.nCount);
        lines.File().Append(std::string(500, 'y'));
        lines->Invalidate(true);
        EXPECT_EQ(lines->GetApproxCount(), row.nCount);
    }
}

// ---- files that change --------------------------------------------------------

TEST(LineIndex, ScansAGrownFileFurtherFromTheOldIndex)
{
    Lines lines(NumberedLines(1023) + "line 10");
    lines->SeekRecord(kEnd);
    ASSERT_EQ(lines->RecordCount(), 1024u);
    const ULONGLONG nEntry = lines->IndexEntry(0);
    for (int n = 0; n < 3; ++n) {
        lines->Invalidate(false);
        EXPECT_FALSE(lines->IsComplete());
        EXPECT_FALSE(lines->SeekRecord(kEnd));
        EXPECT_EQ(lines->RecordCount(), 1024u);
        EXPECT_EQ(lines->IndexEntry(0), nEntry);
        EXPECT_THROW(lines->IndexEntry(1), std::invalid_argument);
    }
    lines.File().Append("23\nline 1024\n");
    EXPECT_FALSE(lines->SeekRecord(1024)) << "not before the index is told to look";
    lines->Invalidate(false);
    EXPECT_EQ(lines.Record(1023), "line 1023");
    EXPECT_EQ(lines.Record(1024), "line 1024");
    EXPECT_FALSE(lines->SeekRecord(kEnd));
    EXPECT_EQ(lines->RecordCount(), 1025u);
}

TEST(LineIndex, ScansAnErasedFileAfresh)
{
    Lines lines(NumberedLines(3000));
    lines->SeekRecord(kEnd);
    lines->SeekRecord(2000);
    lines.File().Write("ab\ncd\n");
    lines->Invalidate(true);
    EXPECT_EQ(lines->RecordCount(), 0u);
    EXPECT_FALSE(lines->IsComplete());
    EXPECT_EQ(lines.Records(), (Texts{"ab", "cd"}));
    EXPECT_THROW(lines->IndexEntry(0), std::invalid_argument);
}

// Positions of the larger file are never followed beyond the end of the smaller one.
TEST(LineIndex, AShrunkFileFailsOrEndsButDoesNotHang)
{
    Lines lines(NumberedLines(5000));
    lines->SeekRecord(kEnd);
    lines->SeekRecord(4000);
    lines.File().Truncate(1000);
    lines->Invalidate(false);
    EXPECT_THROW(lines.Record(4001), std::invalid_argument);
    EXPECT_THROW(lines.Record(4000), std::invalid_argument);
    EXPECT_THROW(lines->SeekRecord(3000), std::invalid_argument);
    EXPECT_EQ(lines.Record(5), "line 5");
    EXPECT_FALSE(lines->SeekRecord(1000));
    EXPECT_LT(lines->RecordCount(), 200u);
    EXPECT_TRUE(lines->IsComplete());
    EXPECT_EQ(lines.Record(6), "line 6");
    FLOAT fPos = 0;
    EXPECT_EQ(lines->GetRelativePos(4000, &fPos), E_UNEXPECTED);
    lines->Invalidate(true);
    EXPECT_EQ(lines.Records().front(), "line 0");
}

TEST(LineIndex, AFileThatShrinksUnseenFailsWhereItIsRead)
{
    Lines lines(NumberedLines(60000, std::string(100, 'x'))); // more than the cached pages
    lines->SeekRecord(kEnd);
    lines.File().Truncate(1000);
    ReportLog reports;
    EXPECT_THROW(lines.Record(0), std::invalid_argument);
    EXPECT_EQ(reports.Texts(), Texts{"0"});
}

TEST(LineIndex, AFailedWalkKeepsWhatItHasFound)
{
    Lines lines(NumberedLines(60000));
    lines->SeekRecord(10);
    lines.File().Truncate(300000); // page 0 is there, page 1 comes short
    EXPECT_THROW(lines->SeekRecord(kEnd), std::invalid_argument);
    EXPECT_FALSE(lines->IsComplete());
    const ULONGLONG nKnown = lines->RecordCount();
    EXPECT_GT(nKnown, 20000u);
    EXPECT_EQ(lines.Record(nKnown - 1), "line " + std::to_string(nKnown - 1));
}

TEST(LineIndex, AnEstimateOfAClosedFileFails)
{
    const TestFile file("ab\ncd\n");
    const auto pFile = file.Open();
    LineIndex index;
    index.Attach(pFile);
    pFile->Close();
    EXPECT_THROW(index.GetApproxCount(), std::invalid_argument);
}

} // namespace
