// The checks of a line: their order, what they report, and with which line and field numbers.

#include "tests/data/DataParserFixture.h"

using namespace Hesperon::specifics;

namespace {

using BadLine = RecordingSink::BadLine;

class LineChecksTest : public DataParserFixture
{};

TEST_F(LineChecksTest, FirstFaultOfALineIsReported)
{
    records->types = {TypeDate, TypeTime, TypeSymbol, TypeClose};
    const std::string good = "10,0.25,AB,1";
    struct
    {
        std::string line;
        std::vector<BadLine> told;
    } const rows[] = {
        {"11,0.5,AB,1", {}},
        {"?,0.5,AB,1", {{2, 1, "bad ?"}}},
        {"11,?,AB,1", {{2, 2, "bad ?"}}},
        {"?,?,AB,?", {{2, 1, "bad ?"}}},       // date before time, time before fields
        {"?,0.5,XY,1", {{2, 1, "bad ?"}}},     // date before the filter
        {"11,0.5,XY,?", {}},                   // the filter is silent and stops the rest
        {"9,0.5,AB,?", {{2, 65535, "order"}}}, // order before fields
        {"11,0.5,AB,?", {{2, 4, "bad ?"}}},
        {"99,0.5,AB,?", {}}, // after the range: silent
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.line);
        CreateObject(sink);
        Open({good, row.line, "12,0,AB,1"});
        parser->put_SymbolName(Bstr(OLESTR("AB")).get());
        Access::PutDates(*parser.get(), 1, 20);
        Convert();
        EXPECT_EQ(sink->badLines, row.told);
        EXPECT_EQ(sink->ends, std::vector<bool>{true});
    }
}

TEST_F(LineChecksTest, DateBeforeTheRangeIsSilentEvenWithABadField)
{
    Open({"1,?", "5,5"});
    Access::PutDates(*parser.get(), 4, 9);
    Convert();
    EXPECT_TRUE(sink->badLines.empty());
    EXPECT_EQ(sink->AllRows(), std::vector<std::string>{"5|5"});
}

TEST_F(LineChecksTest, OrderIsComparedWithTheLastLineThatPassedTheOrderCheck)
{
    struct
    {
        const char* szWhat;
        std::vector<std::string> lines;
        std::vector<std::string> rows;
        std::vector<BadLine> told;
    } const rows[] = {
        {"a line out of order isn't compared with",
         {"5,1", "3,1", "4,1", "6,1"},
         {"5|1", "6|1"},
         {{2, 65535, "order"}, {3, 65535, "order"}}},
        {"a line with a bad field is",
         {"5,1", "8,?", "6,1"},
         {"5|1"},
         {{2, 2, "bad ?"}, {3, 65535, "order"}}},
        {"a line before the range is", {"2,1", "1,1", "6,1"}, {"6|1"}, {{2, 65535, "order"}}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.szWhat);
        CreateObject(sink);
        Open(row.lines);
        Access::PutDates(*parser.get(), 3, 20);
        Convert();
        EXPECT_EQ(sink->AllRows(), row.rows);
        EXPECT_EQ(sink->badLines, row.told);
    }
}

TEST_F(LineChecksTest, FirstRecordIsComparedWithTheDateZero)
{
    std::vector<DATE> last;
    records->checkResolution = [&](DATE date, BSTR*) {
        last.push_back(date);
        return S_OK;
    };
    Open({"5,1", "7,1"});
    Convert();
    EXPECT_EQ(last, (std::vector<DATE>{0, 5}));
}

TEST_F(LineChecksTest, NewSymbolBeginsASequenceOfItsOwn)
{
    records->types = {TypeDate, TypeSymbol, TypeClose};
    OpenForwards({"5,AB,1", "6,AB,2", "2,XY,3", "3,XY,4", "1,XY,5"});
    Convert();
    EXPECT_EQ(sink->AllRows(), (std::vector<std::string>{"5|AB|1", "6|AB|2", "2|XY|3", "3|XY|4"}));
    EXPECT_EQ(sink->badLines, (std::vector<BadLine>{{5, 65535, "order"}}));
}

TEST_F(LineChecksTest, SymbolOfABatchCountsForTheNextOne)
{
    records->types = {TypeDate, TypeSymbol, TypeClose};
    std::vector<std::string> lines;
    for (int n = 1; n <= 1000; ++n)
        lines.push_back(std::to_string(n) + ",AB,1");
    lines.push_back("999,AB,1");
    OpenForwards(lines);
    Convert();
    EXPECT_EQ(sink->badLines, (std::vector<BadLine>{{1001, 65535, "order"}}));
}

TEST_F(LineChecksTest, SymbolFilterMindsCase)
{
    records->types = {TypeDate, TypeSymbol, TypeClose};
    Open({"1,AB,1", "2,ab,2", "3,ABC,3", "4,AB,4"});
    parser->put_SymbolName(Bstr(OLESTR("AB")).get());
    Convert();
    EXPECT_EQ(sink->AllRows(), (std::vector<std::string>{"1|AB|1", "4|AB|4"}));
    EXPECT_TRUE(sink->badLines.empty());
}

TEST_F(LineChecksTest, FilteredLineDoesNotCountForTheOrder)
{
    records->types = {TypeDate, TypeSymbol, TypeClose};
    OpenForwards({"5,AB,1", "9,XY,1", "6,AB,2"});
    parser->put_SymbolName(Bstr(OLESTR("AB")).get());
    Convert();
    EXPECT_EQ(sink->AllRows(), (std::vector<std::string>{"5|AB|1", "6|AB|2"}));
    EXPECT_TRUE(sink->badLines.empty());
}

TEST_F(LineChecksTest, SymbolIsFetchedOnlyWhereTheFileHasSymbols)
{
    Open(Days(1, 3));
    Convert();
    EXPECT_EQ(records->nFieldTexts, 0);
}

TEST_F(LineChecksTest, LastDateWithDayBitsAllOnesSkipsTheOrderCheck)
{
    // Day 65535 stands for "no earlier record", and so does each day with the same low 16 bits.
    OpenForwards({"65535,1", "3,2", "2,3"});
    Convert();
    EXPECT_EQ(sink->AllRows(), (std::vector<std::string>{"65535|1", "3|2"}));
    EXPECT_EQ(sink->badLines, (std::vector<BadLine>{{3, 65535, "order"}}));
}

TEST_F(LineChecksTest, BadDateThatIsRejectedSilentlyIsNotReported)
{
    for (const std::string line : {"?,1", "0,1", "3,?"}) {
        SCOPED_TRACE(line);
        CreateObject(sink);
        Open({"2,1", line, "4,4"});
        parser->put_DisableErrorNotify(VARIANT_TRUE);
        Access::PutDates(*parser.get(), 1, 9);
        Convert();
        EXPECT_TRUE(sink->badLines.empty());
        EXPECT_EQ(sink->AllRows(), (std::vector<std::string>{"2|1", "4|4"}));
        EXPECT_EQ(sink->ends, std::vector<bool>{true});
    }
}

TEST_F(LineChecksTest, TimeColumnIsToBlameWhereTheDateIsFine)
{
    records->types = {TypeClose, TypeTime, TypeDate};
    OpenForwards({"1,0.5,3", "1,?,4"});
    Convert();
    EXPECT_EQ(sink->badLines, (std::vector<BadLine>{{2, 2, "bad ?"}}));
}

TEST_F(LineChecksTest, FieldNumbersAreThoseOfTheFileNotOfTheDeliveredColumns)
{
    records->types = {kNoType, TypeDate, kNoType, TypeClose};
    Open({"x,1,y,1", "x,?,y,1", "x,3,y,?"});
    Convert();
    EXPECT_EQ(sink->badLines, (std::vector<BadLine>{{2, 2, "bad ?"}, {3, 4, "bad ?"}}));
}

// ---- line numbers

struct LineNumberRow
{
    const char* szWhat;
    int nLines;   // data lines
    int nHeaders; // header offset, with a header line after it if not 0
    bool bInverted;
    std::vector<int> badLines; // lines of the file from 1 whose field is spoilt
    std::vector<LONG_PTR> told;
};

// The last batch of an inverted file counts from the position before, which is the next line
// of the file.
const LineNumberRow kLineNumbers[] = {
    {"first and last line", 10, 0, false, {1, 10}, {1, 10}},
    {"behind a header", 10, 3, false, {5, 14}, {5, 14}},
    {"several batches", 2500, 0, false, {1, 1000, 1001, 2500}, {1, 1000, 1001, 2500}},
    {"neighbours", 10, 0, false, {4, 5, 6}, {4, 5, 6}},
    {"inverted, one batch", 10, 0, true, {10, 4, 1}, {11, 5, 2}},
    {"inverted, behind a header", 10, 2, true, {13, 4}, {14, 5}},
    {"inverted, full batch", 1005, 0, true, {1005, 6, 5, 1}, {1005, 6, 6, 2}},
};

TEST_F(LineChecksTest, LineNumbersAreThoseOfTheFileFromOne)
{
    for (const LineNumberRow& row : kLineNumbers) {
        SCOPED_TRACE(row.szWhat);
        CreateObject(sink);
        const int nFirst = row.nHeaders ? row.nHeaders + 1 : 0; // lines before the data
        std::vector<std::string> lines(nFirst, "junk");
        for (int n = 0; n < row.nLines; ++n)
            lines.push_back(std::to_string(row.bInverted ? row.nLines - n : n + 1) + ",1");
        parser->put_HeaderOffset(row.nHeaders);
        parser->put_HasHeader(row.nHeaders ? VARIANT_TRUE : VARIANT_FALSE);
        Open(lines);
        ASSERT_EQ(Inverted(), row.bInverted);
        for (const int n : row.badLines)
            file->lines[n - 1] = file->lines[n - 1].substr(0, file->lines[n - 1].find(',')) + ",?";
        Convert();
        std::vector<LONG_PTR> told;
        for (const BadLine& bad : sink->badLines)
            told.push_back(bad.nLine);
        EXPECT_EQ(told, row.told);
    }
}

} // namespace
