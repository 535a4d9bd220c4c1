// What is written: rows of both formats, and files that appear only when committed.
#include <filesystem>
#include <fstream>

#include <gtest/gtest.h>

#include "tests/tabulex/units/Cells.h"
#include "tests/tabulex/units/TestFolder.h"
#include "tools/tabulex/output/CsvWriter.h"
#include "tools/tabulex/output/JsonLinesWriter.h"
#include "tools/tabulex/output/OutputFile.h"

using namespace tabulex;
namespace fs = std::filesystem;

namespace {

std::string RowOf(RowWriter& writer, string_view_t symbol)
{
    const auto cells = RowFor(symbol);
    TextBuffer text;
    writer.Rows(cells.data(), 1, text);
    return std::string(text.View());
}

} // namespace

TEST(CsvRows, QuoteOnlyWhatNeedsIt)
{
    CsvWriter writer(kColumns);
    TextBuffer header;
    writer.Begin(header);
    EXPECT_EQ(header.View(), "Symbol,Date,Time,Price,Up Volume\n");
    struct Row
    {
        string_view_t symbol;
        const char* pszField;
    };
    const Row rows[] = {{OLESTR("ABC"), "ABC"},
                        {OLESTR("A B"), "A B"},
                        {OLESTR("A,B"), "\"A,B\""},
                        {OLESTR("A\"B"), "\"A\"\"B\""},
                        {OLESTR("A\nB"), "\"A\nB\""},
                        {OLESTR("\u80A1"), "\xE8\x82\xA1"},
                        {OLESTR(""), ""}};
    for (const Row& row : rows) {
        SCOPED_TRACE(row.pszField);
        EXPECT_EQ(RowOf(writer, row.symbol),
                  std::string(row.pszField) + ",2003-12-25,12:00:00,1.25,-3\n");
    }
}

// A column's last text is kept, and the buffer grows under rows with texts of any length.
TEST(Rows, HaveTheTextsOfTheirOwnCells)
{
    CsvWriter csv(kColumns);
    JsonLinesWriter json(kColumns);
    TextBuffer rows, objects;
    std::string sRows, sObjects;
    for (const std::size_t nLength : {3, 3, 0, 1, 1000, 1000, 3, 70'000, 0, 3}) {
        const auto cells = RowFor(string_t(nLength, OLECHAR('x')));
        csv.Rows(cells.data(), 1, rows);
        json.Rows(cells.data(), 1, objects);
        const std::string sSymbol(nLength, 'x');
        sRows += sSymbol + ",2003-12-25,12:00:00,1.25,-3\n";
        sObjects += "{\"Symbol\":\"" + sSymbol +
                    "\",\"Date\":\"2003-12-25\",\"Time\":\"12:00:00\",\"Price\":1.25,"
                    "\"Up Volume\":-3}\n";
    }
    EXPECT_EQ(rows.View(), sRows);
    EXPECT_EQ(objects.View(), sObjects);
}

TEST(Rows, TakeSeveralAtOnceAndEmptyCells)
{
    CsvWriter csv({{"Date", ColumnKind::Date}, {"Price", ColumnKind::Price}});
    JsonLinesWriter json({{"Date", ColumnKind::Date}, {"Price", ColumnKind::Price}});
    const Variant cells[] = {Variant::FromDate(37980), Number(-0.5), Variant(), Variant()};
    TextBuffer rows, objects;
    csv.Rows(cells, 2, rows);
    json.Rows(cells, 2, objects);
    EXPECT_EQ(rows.View(), "2003-12-25,-0.5\n,\n");
    EXPECT_EQ(objects.View(),
              "{\"Date\":\"2003-12-25\",\"Price\":-0.5}\n{\"Date\":null,\"Price\":null}\n");
}

TEST(JsonRows, EscapeWhatJsonAsksFor)
{
    JsonLinesWriter writer(kColumns);
    struct Row
    {
        string_view_t symbol;
        const char* pszText;
    };
    const Row rows[] = {{OLESTR("ABC"), "ABC"},
                        {OLESTR("A\"B\\"), "A\\\"B\\\\"},
                        {OLESTR("A\nB\t"), "A\\u000aB\\u0009"},
                        {OLESTR("\u80A1"), "\xE8\x82\xA1"}};
    for (const Row& row : rows) {
        SCOPED_TRACE(row.pszText);
        EXPECT_EQ(RowOf(writer, row.symbol),
                  "{\"Symbol\":\"" + std::string(row.pszText) +
                      "\",\"Date\":\"2003-12-25\",\"Time\":\"12:00:00\",\"Price\":1.25,"
                      "\"Up Volume\":-3}\n");
    }
}

TEST(JsonRows, HaveNullForWhatIsNoNumber)
{
    JsonLinesWriter writer({{"Price", ColumnKind::Price}});
    TextBuffer text;
    const Variant cell = Number(std::numeric_limits<double>::infinity());
    writer.Rows(&cell, 1, text);
    EXPECT_EQ(text.View(), "{\"Price\":null}\n");
}

TEST(OutputFiles, AppearOnlyWhenCommitted)
{
    const TestFolder folder;
    OutputFile file;
    ASSERT_TRUE(file.Open(folder / "out.csv"));
    EXPECT_TRUE(file.HidesUntilCommit());
    EXPECT_TRUE(file.Write("text"));
    EXPECT_FALSE(fs::exists(folder / "out.csv"));
    EXPECT_TRUE(file.Commit());
    EXPECT_EQ(ContentOf(folder / "out.csv"), "text");
    EXPECT_EQ(folder.Entries(), 1u);
}

TEST(OutputFiles, LeaveNothingWithoutACommit)
{
    const TestFolder folder;
    {
        OutputFile file;
        ASSERT_TRUE(file.Open(folder / "out.csv"));
        file.Write("text");
        EXPECT_EQ(folder.Entries(), 1u);
    }
    EXPECT_EQ(folder.Entries(), 0u);
}

TEST(OutputFiles, KeepTheOldContentUntilTheyAreCommitted)
{
    const TestFolder folder;
    std::ofstream(folder / "out.csv") << "old";
    OutputFile discarded;
    ASSERT_TRUE(discarded.Open(folder / "out.csv"));
    discarded.Write("new");
    discarded.Discard();
    EXPECT_EQ(ContentOf(folder / "out.csv"), "old");
    OutputFile committed;
    ASSERT_TRUE(committed.Open(folder / "out.csv"));
    committed.Write("new");
    EXPECT_TRUE(committed.Commit());
    EXPECT_EQ(ContentOf(folder / "out.csv"), "new");
}

TEST(OutputFiles, MayBeWrittenTwoAtATimeUnderOneName)
{
    const TestFolder folder;
    OutputFile first, second;
    ASSERT_TRUE(first.Open(folder / "out.csv"));
    ASSERT_TRUE(second.Open(folder / "out.csv"));
    first.Write("first");
    second.Write("second");
    EXPECT_TRUE(first.Commit());
    EXPECT_EQ(ContentOf(folder / "out.csv"), "first");
    EXPECT_TRUE(second.Commit());
    EXPECT_EQ(ContentOf(folder / "out.csv"), "second");
}

TEST(OutputFiles, ReportWhyTheyCannotBeWritten)
{
    const TestFolder folder;
    OutputFile file;
    EXPECT_FALSE(file.Open(folder / "missing/out.csv"));
    EXPECT_EQ(file.FaultText(), "No such file or directory");
    EXPECT_FALSE(file.Write("text"));
    EXPECT_FALSE(file.Commit());
}
