// Everything that can be refused is refused before the first row: the kind of place, the lock for
// writing, the table and its columns. Rows then go in by prepared statements within one
// transaction, which is what makes many rows fast, and what takes them all back after a fault. A
// statement costs as much to begin and to end as a row costs, so most rows go in by one that takes
// a group of them, and those that are left over of a call by one that takes a single row.

#include "tools/tabulex/output/SqliteOutput.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <exception>

#include <fmt/format.h>
#include <fmt/ranges.h>

#include "tools/tabulex/output/SqliteTable.h"
#include "tools/tabulex/system/Fault.h"
#include "tools/tabulex/system/OutputPlace.h"
#include "tools/tabulex/system/Paths.h"
#include "tools/tabulex/system/SqliteLibrary.h"
#include "tools/tabulex/text/Text.h"

namespace tabulex {

namespace fs = std::filesystem;

namespace {

// A staged database is removed if anything fails, so it needs no journal; it is synchronised
// once, by the commit.
constexpr const char* kStagedPragmas = "PRAGMA journal_mode = OFF; PRAGMA locking_mode = EXCLUSIVE";

constexpr const char* kFindObject = "SELECT type FROM sqlite_master WHERE name = ?1 COLLATE NOCASE "
                                    "AND type IN ('table', 'view', 'index')";

[[noreturn]] void ThrowUnwritable(const std::string& path, std::string_view reason,
                                  ExitStatus status = ExitStatus::FileFault)
{
    throw Fault{status, fmt::format("'{}' can't be written: {}", path, reason)};
}

void RequireNoFault(const std::string& path, const SqliteDatabase& database)
{
    if (!database.FaultText().empty())
        ThrowUnwritable(path, database.FaultText(), database.FaultStatus());
}

// The result of `text` for each column.
template <class Text>
std::vector<std::string> ForEachColumn(const std::vector<Column>& columns, Text text)
{
    std::vector<std::string> texts(columns.size());
    std::ranges::transform(columns, texts.begin(), text);
    return texts;
}

// Whether the table exists; throws Fault if it may not be changed.
bool FindTable(SqliteDatabase& database, const OutputOptions& options)
{
    const auto kinds = database.Texts(kFindObject, options.sTable);
    RequireNoFault(options.sPath, database);
    if (kinds.empty())
        return false;
    if (kinds.front() != "table")
        throw Fault{ExitStatus::Refused, fmt::format("'{}' of '{}' is a {} and no table",
                                                     options.sTable, options.sPath, kinds.front())};
    if (options.oldTable == OldTable::Refuse)
        throw Fault{ExitStatus::Refused,
                    fmt::format("'{}' has a table '{}' already; give --append or --replace",
                                options.sPath, options.sTable)};
    return true;
}

std::string DeclarationOf(const Column& column)
{
    return QuotedName(column.sName) + ' ' + SqlTypeOf(column.kind);
}

// The remark about a table that rows are to be added to. Throws Fault if it can't take them.
std::string RequireFit(SqliteDatabase& database, const OutputOptions& options,
                       const std::vector<Column>& columns)
{
    const SqliteTable table(database, options);
    RequireNoFault(options.sPath, database);
    table.RequireKinds(columns);
    return table.Remark(columns);
}

void AddColumns(SqliteDatabase& database, const OutputOptions& options,
                const std::vector<Column>& columns)
{
    for (const Column& column : SqliteTable(database, options).Lacking(columns))
        database.Execute(fmt::format("ALTER TABLE {} ADD COLUMN {}", QuotedName(options.sTable),
                                     DeclarationOf(column)));
}

std::string CreationOf(const std::string& table, const std::vector<Column>& columns)
{
    const auto parts = ForEachColumn(columns, DeclarationOf);
    return fmt::format("CREATE TABLE {} ({})", QuotedName(table), fmt::join(parts, ", "));
}

void RequireSqlite(const std::string& path)
{
    if (!HasSqlite())
        ThrowUnwritable(path, "the library of SQLite, winsqlite3.dll, is missing; Windows has it "
                              "since its version 10");
}

// The path of the file, whether it exists or not. Devices and pipes can't hold a database. A file
// of one byte can't either, but SQLite would take it for an empty one.
std::string RequireTarget(const std::string& path)
{
    const OutputPlace place = FindWritablePlace(path);
    if (!place.sFault.empty())
        ThrowUnwritable(path, place.sFault);
    if (place.kind != PlaceKind::File)
        ThrowUnwritable(path, "it isn't a regular file");
    std::error_code error;
    if (place.bExists && fs::file_size(PathOf(place.sTarget), error) == 1)
        ThrowUnwritable(path, "file is not a database");
    return place.sTarget;
}

} // namespace

SqliteOutput::SqliteOutput(const OutputOptions& options, std::vector<Column> columns)
    : m_sTarget(RequireTarget(options.sPath)), m_columns(WithDistinctNames(std::move(columns)))
{
    RequireSqlite(options.sPath);
    OpenDatabase(options);
    MakeTable(options);
    m_insertion.Prepare(m_database, options.sTable, m_columns);
    RequireNoFault(options.sPath, m_database);
}

// The file of a new database is made first, since SQLite may open one here but not make it: the
// name must be one that nobody else has. IMMEDIATE takes the lock for writing at the beginning, not
// at the first row, so another writer is met before any work is done.
void SqliteOutput::OpenDatabase(const OutputOptions& options)
{
    std::error_code error;
    if (fs::exists(PathOf(m_sTarget), error)) {
        m_database.Open(m_sTarget);
    } else {
        if (!m_staged.Create(m_sTarget))
            ThrowUnwritable(options.sPath, std::strerror(errno));
        if (m_database.Open(m_staged.Name()))
            m_database.Execute(kStagedPragmas);
    }
    RequireNoFault(options.sPath, m_database);
    m_database.Execute("BEGIN IMMEDIATE");
    RequireNoFault(options.sPath, m_database);
}

void SqliteOutput::MakeTable(const OutputOptions& options)
{
    bool bThere = FindTable(m_database, options);
    if (bThere && options.oldTable == OldTable::Replace) {
        m_database.Execute("DROP TABLE " + QuotedName(options.sTable));
        RequireNoFault(options.sPath, m_database);
        bThere = false;
    }
    if (bThere) {
        m_sRemark = RequireFit(m_database, options, m_columns);
        AddColumns(m_database, options, m_columns);
    } else {
        m_database.Execute(CreationOf(options.sTable, m_columns));
    }
    RequireNoFault(options.sPath, m_database);
}

bool SqliteOutput::Write(const VARIANT* cells, ULONGLONG nRows)
{
    return m_database.FaultText().empty() &&
           (m_insertion.Insert(cells, nRows) || m_database.Fail());
}

bool SqliteOutput::Commit()
{
    m_insertion.Release();
    const bool bSound = m_database.FaultText().empty();
    if (bSound && m_database.Execute("COMMIT") && m_database.Close() && Publish())
        return true;
    Discard();
    return false;
}

// Another program may have made the database meanwhile, whose tables must not be replaced.
bool SqliteOutput::Publish()
{
    if (m_staged.Name().empty())
        return true;
    const std::error_code error = m_staged.Publish(false);
    if (error)
        m_sPublishFault = error.message();
    return !error;
}

// Memory may run out here as well, where nobody is left to be told.
SqliteOutput::~SqliteOutput()
{
    try {
        Discard();
    } catch (const std::exception&) {
    }
}

// Closing a database takes back what isn't committed. After a fault of the disk that is
// left to the next reader, so the database is read here.
void SqliteOutput::Discard()
{
    m_insertion.Release();
    m_database.Close();
    if (m_staged.Name().empty() && !m_database.FaultText().empty()) {
        SqliteDatabase reader;
        if (reader.Open(m_sTarget))
            reader.Execute("SELECT 1 FROM sqlite_master");
    }
    m_staged.Remove();
}

std::string SqliteOutput::FaultText() const
{
    return m_sPublishFault.empty() ? m_database.FaultText() : m_sPublishFault;
}

std::string CheckSqliteOutput(const OutputOptions& options, const std::vector<Column>& columns)
{
    RequireSqlite(options.sPath);
    const std::string target = RequireTarget(options.sPath);
    std::error_code error;
    if (!fs::exists(PathOf(target), error))
        return {};
    SqliteDatabase database;
    database.Open(target);
    RequireNoFault(options.sPath, database);
    return FindTable(database, options) && options.oldTable == OldTable::Append
               ? RequireFit(database, options, WithDistinctNames(columns))
               : std::string();
}

bool AppendsToColumn(const OutputOptions& options, std::string_view column)
{
    std::error_code error;
    const std::string target = FindPlace(options.sPath).sTarget;
    if (options.format != OutputFormat::Sqlite || options.oldTable != OldTable::Append ||
        !HasSqlite() || !fs::is_regular_file(PathOf(target), error))
        return false;
    SqliteDatabase database;
    return database.Open(target) && SqliteTable(database, options).HasColumn(column);
}

std::vector<Column> WithDistinctNames(std::vector<Column> columns)
{
    std::vector<std::string> taken;
    for (Column& column : columns) {
        const std::string name = column.sName;
        for (int i = 2; std::ranges::find(taken, LowerCase(column.sName)) != taken.end(); ++i)
            column.sName = fmt::format("{} {}", name, i);
        taken.push_back(LowerCase(column.sName));
    }
    return columns;
}

} // namespace tabulex
