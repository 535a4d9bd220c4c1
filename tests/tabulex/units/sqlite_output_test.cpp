// Rows in a table: types, names, what becomes of an old table, and what is left when a
// run ends without a commit.
#include <fstream>
#include <sstream>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/tabulex/units/Cells.h"
#include "tests/tabulex/units/TestFolder.h"
#include "tools/tabulex/output/SqliteOutput.h"
#include "tools/tabulex/system/Fault.h"
#include "tools/tabulex/system/SqliteLibrary.h"

using namespace tabulex;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
namespace fs = std::filesystem;

namespace {

class SqliteOutputs : public testing::Test
{
protected:
    void SetUp() override
    {
        if (!HasSqlite())
            GTEST_SKIP() << "the system has no library of SQLite";
    }

    OutputOptions Options(OldTable oldTable = OldTable::Refuse) const
    {
        OutputOptions options;
        options.sPath = m_sPath;
        options.format = OutputFormat::Sqlite;
        options.oldTable = oldTable;
        return options;
    }

    // Writes a row for each symbol, and commits.
    void Load(const OutputOptions& options, std::initializer_list<string_view_t> symbols)
    {
        SqliteOutput output(options, kColumns);
        for (string_view_t symbol : symbols)
            ASSERT_TRUE(output.Write(RowFor(symbol).data(), 1));
        ASSERT_TRUE(output.Commit()) << output.FaultText();
    }

    // The first column of a statement's rows.
    std::vector<std::string> Query(const std::string& sql) const
    {
        SqliteDatabase database;
        EXPECT_TRUE(database.Open(m_sPath)) << database.FaultText();
        auto texts = database.Texts(sql + " -- ?1", {});
        EXPECT_EQ(database.FaultText(), "");
        return texts;
    }

    void Execute(const std::string& sql) const
    {
        if (!fs::exists(m_sPath))
            std::ofstream(m_sPath).close();
        SqliteDatabase database;
        ASSERT_TRUE(database.Open(m_sPath)) << database.FaultText();
        ASSERT_TRUE(database.Execute(sql)) << database.FaultText();
    }

    // What the constructor, and the check that writes nothing, throw.
    void ExpectRefusal(const OutputOptions& options, ExitStatus status, const char* pszText) const
    {
        ExpectFault([&] { SqliteOutput(options, kColumns); }, status, pszText);
        ExpectFault([&] { CheckSqliteOutput(options, kColumns); }, status, pszText);
    }

    template <class Action>
    static void ExpectFault(Action action, ExitStatus status, const char* pszText)
    {
        try {
            action();
            ADD_FAILURE() << "no fault";
        } catch (const Fault& fault) {
            EXPECT_EQ(fault.status, status);
            EXPECT_THAT(fault.sMessage, HasSubstr(pszText));
        }
    }

    std::string Bytes() const
    {
        std::ostringstream text;
        text << std::ifstream(m_sPath, std::ios::binary).rdbuf();
        return text.str();
    }

    TestFolder m_folder;
    std::string m_sPath = m_folder / "out.db";
};

} // namespace

TEST_F(SqliteOutputs, KeepValuesInTheirTypes)
{
    Load(Options(), {OLESTR("\u80A1 A")});
    const auto columns = Query("SELECT name || ' ' || type FROM pragma_table_info('quotes')");
    EXPECT_THAT(columns, ElementsAre("Symbol TEXT", "Date TEXT", "Time TEXT", "Price REAL",
                                     "Up Volume INTEGER"));
    const struct
    {
        const char* pszColumn;
        const char* pszType;
        const char* pszValue;
    } rows[] = {{"Symbol", "text", "\xE8\x82\xA1 A"},
                {"Date", "text", "2003-12-25"},
                {"Time", "text", "12:00:00"},
                {"Price", "real", "1.25"},
                {"Up Volume", "integer", "-3"}};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.pszColumn);
        const std::string name = QuotedName(row.pszColumn);
        EXPECT_THAT(Query("SELECT typeof(" + name + ") FROM quotes"), ElementsAre(row.pszType));
        EXPECT_THAT(Query("SELECT " + name + " FROM quotes"), ElementsAre(row.pszValue));
    }
}

TEST_F(SqliteOutputs, KeepNumbersExactly)
{
    SqliteOutput output(Options(), {{"Price", ColumnKind::Price}, {"Volume", ColumnKind::Whole}});
    const Variant cells[] = {Number(0.1 + 0.2), Whole(9'007'199'254'740'993),
                             Number(3),         Whole(INT64_MIN),
                             Variant(),         Variant(),
                             Number(NAN),       Whole(0)};
    ASSERT_TRUE(output.Write(cells, 4));
    ASSERT_TRUE(output.Commit());
    EXPECT_THAT(Query("SELECT Price = 0.1 + 0.2 FROM quotes WHERE Volume = 9007199254740993"),
                ElementsAre("1"));
    EXPECT_THAT(Query("SELECT typeof(Price) FROM quotes"),
                ElementsAre("real", "real", "null", "null"));
    EXPECT_THAT(Query("SELECT Volume FROM quotes"),
                ElementsAre("9007199254740993", "-9223372036854775808", "", "0"));
}

TEST_F(SqliteOutputs, GiveColumnsOfOneNameTwoNames)
{
    const auto columns = WithDistinctNames({{"Date", ColumnKind::Date},
                                            {"Close", ColumnKind::Price},
                                            {"Close", ColumnKind::Price},
                                            {"close", ColumnKind::Price},
                                            {"Close 2", ColumnKind::Price}});
    const char* names[] = {"Date", "Close", "Close 2", "close 3", "Close 2 2"};
    ASSERT_EQ(columns.size(), std::size(names));
    for (std::size_t i = 0; i < columns.size(); ++i)
        EXPECT_EQ(columns[i].sName, names[i]);
}

TEST_F(SqliteOutputs, TakeAnyNameForTheTable)
{
    for (const char* pszName :
         {"quotes 2003", "select", "a\"b", "a'b; DROP TABLE quotes", "\xE8\x82\xA1"}) {
        SCOPED_TRACE(pszName);
        OutputOptions options = Options();
        options.sTable = pszName;
        Load(options, {OLESTR("A")});
        EXPECT_THAT(Query("SELECT Symbol FROM " + QuotedName(pszName)), ElementsAre("A"));
        ExpectRefusal(options, ExitStatus::Refused, "--append or --replace");
    }
}

TEST_F(SqliteOutputs, RefuseANameThatSqliteKeepsToItself)
{
    OutputOptions options = Options();
    options.sTable = "sqlite_quotes";
    ExpectFault([&] { SqliteOutput(options, kColumns); }, ExitStatus::Refused, "reserved");
    EXPECT_EQ(m_folder.Entries(), 0u);
}

// ---- new databases

TEST_F(SqliteOutputs, AppearOnlyWhenCommitted)
{
    SqliteOutput output(Options(), kColumns);
    output.Write(RowFor(OLESTR("A")).data(), 1);
    EXPECT_FALSE(fs::exists(m_sPath));
    EXPECT_TRUE(output.Commit());
    EXPECT_TRUE(fs::exists(m_sPath));
    EXPECT_EQ(m_folder.Entries(), 1u);
}

TEST_F(SqliteOutputs, LeaveNothingWithoutACommit)
{
    {
        SqliteOutput discarded(Options(), kColumns);
        discarded.Write(RowFor(OLESTR("A")).data(), 1);
        discarded.Discard();
        EXPECT_EQ(m_folder.Entries(), 0u);
        EXPECT_FALSE(discarded.Commit());
        SqliteOutput forgotten(Options(), kColumns);
        forgotten.Write(RowFor(OLESTR("A")).data(), 1);
    }
    EXPECT_EQ(m_folder.Entries(), 0u);
}

TEST_F(SqliteOutputs, DoNotReplaceADatabaseThatCameMeanwhile)
{
    SqliteOutput output(Options(), kColumns);
    output.Write(RowFor(OLESTR("A")).data(), 1);
    Load(Options(), {OLESTR("B")});
    EXPECT_FALSE(output.Commit());
    EXPECT_EQ(output.FaultText(), "File exists");
    EXPECT_EQ(output.FaultStatus(), ExitStatus::FileFault);
    EXPECT_THAT(Query("SELECT Symbol FROM quotes"), ElementsAre("B"));
    EXPECT_EQ(m_folder.Entries(), 1u);
}

TEST_F(SqliteOutputs, ReportThatTheyCannotBeMade)
{
    OutputOptions options = Options();
    options.sPath = m_folder / "missing/out.db";
    ExpectFault([&] { SqliteOutput(options, kColumns); }, ExitStatus::FileFault,
                "No such file or directory");
}

// ---- existing databases

TEST_F(SqliteOutputs, RefuseATableThatIsThereAlready)
{
    Load(Options(), {OLESTR("A")});
    const std::string before = Bytes();
    ExpectRefusal(Options(), ExitStatus::Refused, "has a table 'quotes' already");
    EXPECT_EQ(Bytes(), before);
}

TEST_F(SqliteOutputs, AppendToItOrReplaceItOnRequest)
{
    for (OldTable oldTable : {OldTable::Append, OldTable::Replace}) {
        m_sPath = m_folder / (oldTable == OldTable::Append ? "a.db" : "r.db");
        Load(Options(oldTable), {OLESTR("A")}); // there is no table yet
        Load(Options(oldTable), {OLESTR("B"), OLESTR("C")});
    }
    EXPECT_THAT(Query("SELECT Symbol FROM quotes"), ElementsAre("B", "C"));
    m_sPath = m_folder / "a.db";
    EXPECT_THAT(Query("SELECT Symbol FROM quotes"), ElementsAre("A", "B", "C"));
}

TEST_F(SqliteOutputs, PutANewTableBesideOthers)
{
    Execute("CREATE TABLE other (a); INSERT INTO other VALUES (1)");
    Load(Options(), {OLESTR("A")});
    EXPECT_THAT(Query("SELECT a FROM other"), ElementsAre("1"));
    EXPECT_THAT(Query("SELECT Symbol FROM quotes"), ElementsAre("A"));
}

TEST_F(SqliteOutputs, AppendByNameWhateverTheOrderOfTheColumns)
{
    Execute("CREATE TABLE Quotes (\"up volume\", Price, Time, Date, Symbol)");
    Load(Options(OldTable::Append), {OLESTR("A")});
    EXPECT_THAT(Query("SELECT Date FROM quotes WHERE Symbol = 'A'"), ElementsAre("2003-12-25"));
}

TEST_F(SqliteOutputs, UniteTheirColumnsWithThoseOfATable)
{
    for (const char* pszNote : {"", ", Note"}) {
        SCOPED_TRACE(pszNote);
        Execute(std::string("DROP TABLE IF EXISTS quotes; "
                            "CREATE TABLE quotes (Symbol, Date, Time, Price") +
                pszNote + "); INSERT INTO quotes (Symbol) VALUES ('old')");
        Load(Options(OldTable::Append), {OLESTR("A")});
        EXPECT_THAT(Query("SELECT name FROM pragma_table_info('quotes') WHERE cid = (SELECT "
                          "max(cid) FROM pragma_table_info('quotes'))"),
                    ElementsAre("Up Volume"));
        EXPECT_THAT(Query("SELECT Symbol FROM quotes WHERE \"Up Volume\" IS NULL"),
                    ElementsAre("old"));
        EXPECT_THAT(Query("SELECT Symbol FROM quotes WHERE \"Up Volume\" IS NOT NULL"),
                    ElementsAre("A"));
    }
}

TEST_F(SqliteOutputs, RefuseWhatIsNoTable)
{
    Execute("CREATE TABLE other (a); CREATE VIEW quotes AS SELECT * FROM other");
    for (OldTable oldTable : {OldTable::Refuse, OldTable::Append, OldTable::Replace})
        ExpectRefusal(Options(oldTable), ExitStatus::Refused, "is a view and no table");
}

TEST_F(SqliteOutputs, RollBackToTheTableThatWasThere)
{
    Load(Options(), {OLESTR("A")});
    for (OldTable oldTable : {OldTable::Append, OldTable::Replace}) {
        SqliteOutput output(Options(oldTable), kColumns);
        // More than SQLite keeps in memory, so that part of it is in the file.
        const auto cells = RowFor(string_t(1000, OLECHAR('x')));
        for (int i = 0; i < 10'000; ++i)
            ASSERT_TRUE(output.Write(cells.data(), 1));
        EXPECT_GT(fs::file_size(m_sPath), 1'000'000u);
        output.Discard();
        EXPECT_THAT(Query("SELECT Symbol FROM quotes"), ElementsAre("A"));
        EXPECT_THAT(Query("PRAGMA integrity_check"), ElementsAre("ok"));
        EXPECT_EQ(m_folder.Entries(), 1u) << "the journal is there";
    }
}

// Many rows go in by groups, whose texts mustn't be mixed up.
TEST_F(SqliteOutputs, KeepEachRowOfAnyNumberOfThem)
{
    std::vector<Variant> cells;
    std::vector<std::string> symbols;
    SqliteOutput output(Options(), kColumns);
    for (const int nRows : {1, 15, 16, 17, 100}) {
        cells.clear();
        for (int i = 0; i < nRows; ++i) {
            const std::size_t n = symbols.size();
            symbols.emplace_back(n % 3 * 20, static_cast<char>('A' + n % 26));
            const auto row = RowFor(string_t(n % 3 * 20, static_cast<OLECHAR>('A' + n % 26)));
            cells.insert(cells.end(), row.begin(), row.end());
        }
        EXPECT_TRUE(output.Write(cells.data(), static_cast<ULONGLONG>(nRows)));
    }
    EXPECT_TRUE(output.Commit());
    EXPECT_EQ(Query("SELECT Symbol FROM quotes ORDER BY rowid"), symbols);
    EXPECT_THAT(Query("SELECT DISTINCT Date || Time || Price || \"Up Volume\" FROM quotes"),
                ElementsAre("2003-12-2512:00:001.25-3"));
}

// So many that a statement takes smaller groups.
TEST_F(SqliteOutputs, MayHaveManyColumns)
{
    constexpr int kMany = 70;
    constexpr int kRows = 40;
    std::vector<Column> columns;
    std::vector<Variant> cells;
    std::vector<std::string> last;
    for (int i = 0; i < kMany; ++i)
        columns.push_back({"c" + std::to_string(i), ColumnKind::Whole});
    for (int i = 0; i < kRows * kMany; ++i)
        cells.push_back(Whole(i));
    for (int i = 1; i <= kRows; ++i)
        last.push_back(std::to_string(i * kMany - 1));
    SqliteOutput output(Options(), columns);
    EXPECT_TRUE(output.Write(cells.data(), kRows));
    EXPECT_TRUE(output.Commit());
    EXPECT_EQ(Query("SELECT c69 FROM quotes ORDER BY rowid"), last);
}

TEST_F(SqliteOutputs, RollBackAGroupThatATableRefuses)
{
    Execute("CREATE TABLE quotes (Symbol UNIQUE, Date, Time, Price, \"Up Volume\")");
    std::vector<Variant> cells;
    for (int i = 0; i < 40; ++i) {
        const auto row = RowFor(string_t(i == 30 ? 7 : static_cast<std::size_t>(i), OLECHAR('A')));
        cells.insert(cells.end(), row.begin(), row.end());
    }
    SqliteOutput output(Options(OldTable::Append), kColumns);
    EXPECT_FALSE(output.Write(cells.data(), 40));
    EXPECT_EQ(output.FaultText(), "UNIQUE constraint failed: quotes.Symbol");
    EXPECT_EQ(output.FaultStatus(), ExitStatus::Refused);
    EXPECT_FALSE(output.Commit());
    EXPECT_THAT(Query("SELECT Symbol FROM quotes"), IsEmpty());
}

TEST_F(SqliteOutputs, RollBackWhatATableRefuses)
{
    Execute("CREATE TABLE quotes (Symbol UNIQUE, Date, Time, Price, \"Up Volume\")");
    SqliteOutput output(Options(OldTable::Append), kColumns);
    EXPECT_TRUE(output.Write(RowFor(OLESTR("A")).data(), 1));
    EXPECT_FALSE(output.Write(RowFor(OLESTR("A")).data(), 1));
    EXPECT_FALSE(output.Write(RowFor(OLESTR("B")).data(), 1));
    EXPECT_EQ(output.FaultText(), "UNIQUE constraint failed: quotes.Symbol");
    EXPECT_EQ(output.FaultStatus(), ExitStatus::Refused);
    EXPECT_FALSE(output.Commit());
    EXPECT_THAT(Query("SELECT Symbol FROM quotes"), IsEmpty());
}

TEST_F(SqliteOutputs, KeepOtherWritersOutWhileTheyAreWritten)
{
    Load(Options(), {OLESTR("A")});
    SqliteOutput output(Options(OldTable::Append), kColumns);
    ExpectFault([&] { SqliteOutput(Options(OldTable::Append), kColumns); }, ExitStatus::FileFault,
                "database is locked");
    EXPECT_THAT(Query("SELECT Symbol FROM quotes"), ElementsAre("A"));
}

TEST_F(SqliteOutputs, LeaveAFileThatIsNoDatabaseAsItIs)
{
    for (const std::string& content :
         {std::string("x"), std::string("Date,Open\n"), std::string(100, 'x'),
          std::string(100'000, '\0'), "SQLite format 3" + std::string(5000, '\0')}) {
        SCOPED_TRACE(content.substr(0, 20));
        std::ofstream(m_sPath, std::ios::binary) << content;
        for (OldTable oldTable : {OldTable::Refuse, OldTable::Append, OldTable::Replace})
            ExpectRefusal(Options(oldTable), ExitStatus::FileFault, "file is not a database");
        EXPECT_EQ(Bytes(), content);
        EXPECT_EQ(m_folder.Entries(), 1u);
    }
}

TEST_F(SqliteOutputs, TakeAnEmptyFileAsAnEmptyDatabase)
{
    std::ofstream(m_sPath).close();
    {
        SqliteOutput output(Options(), kColumns);
        output.Write(RowFor(OLESTR("A")).data(), 1);
    }
    EXPECT_EQ(Bytes(), "");
    Load(Options(), {OLESTR("A")});
    EXPECT_THAT(Query("SELECT Symbol FROM quotes"), ElementsAre("A"));
}

TEST_F(SqliteOutputs, AreRegularFiles)
{
    OutputOptions options = Options();
    options.sPath = m_folder / "";
    ExpectRefusal(options, ExitStatus::FileFault, "isn't a regular file");
}

TEST_F(SqliteOutputs, AreCheckedWithoutATrace)
{
    CheckSqliteOutput(Options(), kColumns);
    EXPECT_EQ(m_folder.Entries(), 0u);
    Execute("PRAGMA journal_mode = WAL; CREATE TABLE other (a)");
    const std::string before = Bytes();
    CheckSqliteOutput(Options(), kColumns);
    EXPECT_EQ(Bytes(), before);
    EXPECT_EQ(m_folder.Entries(), 1u);
}
