// The reason is kept at the first failure, because each further call of the library replaces it.
// Results that come of the data or the statement count as refusals, all others as faults of the
// file.

#include "tools/tabulex/output/Sqlite.h"

#include "tools/tabulex/system/Files.h"
#include "tools/tabulex/system/Paths.h"

namespace tabulex {

namespace {

// How long to wait for another program that has locked the database.
constexpr int kPatienceMilliseconds = 2000;

// Some results come from the data or the settings, the others from the file.
ExitStatus StatusOf(int nResult)
{
    switch (nResult) {
    case SQLITE_ERROR:
    case SQLITE_CONSTRAINT:
    case SQLITE_MISMATCH:
    case SQLITE_TOOBIG:
        return ExitStatus::Refused;
    }
    return ExitStatus::FileFault;
}

} // namespace

// As an absolute path, since some names, such as ":memory:", aren't files to SQLite.
bool SqliteDatabase::Open(const std::string& path)
{
    std::error_code error;
    const std::string absolute = Utf8Of(std::filesystem::absolute(PathOf(path), error));
    sqlite3* database = nullptr;
    const int nResult = sqlite3_open_v2(absolute.c_str(), &database,
                                        SQLITE_OPEN_READWRITE | SQLITE_OPEN_NOMUTEX, nullptr);
    m_database.reset(database);
    if (nResult != SQLITE_OK)
        return Fail();
    sqlite3_busy_timeout(database, kPatienceMilliseconds);
    return true;
}

// SQLite refuses to close a database while a statement on it lives: let go of those before.
bool SqliteDatabase::Close()
{
    if (m_database && sqlite3_close(m_database.get()) != SQLITE_OK)
        return Fail();
    static_cast<void>(m_database.release());
    return true;
}

bool SqliteDatabase::Execute(const std::string& sql)
{
    return sqlite3_exec(m_database.get(), sql.c_str(), nullptr, nullptr, nullptr) == SQLITE_OK ||
           Fail();
}

SqliteStatement SqliteDatabase::Prepare(const std::string& sql)
{
    sqlite3_stmt* statement = nullptr;
    if (sqlite3_prepare_v2(m_database.get(), sql.data(), static_cast<int>(sql.size()), &statement,
                           nullptr) != SQLITE_OK)
        Fail();
    return SqliteStatement(statement);
}

std::vector<std::string> SqliteDatabase::Texts(const std::string& sql, std::string_view parameter)
{
    std::vector<std::string> texts;
    SqliteStatement statement = Prepare(sql);
    if (!statement)
        return texts;
    statement.Bind(1, parameter);
    int nResult = SQLITE_ROW;
    while ((nResult = sqlite3_step(statement.m_statement.get())) == SQLITE_ROW) {
        const auto* text = sqlite3_column_text(statement.m_statement.get(), 0);
        texts.emplace_back(text ? reinterpret_cast<const char*>(text) : "");
    }
    if (nResult != SQLITE_DONE)
        Fail();
    return texts;
}

// SQLite's text for a failing system call is general; the system's is better. The low byte of a
// result is its kind, the others are details.
bool SqliteDatabase::Fail()
{
    if (!m_sFault.empty())
        return false;
    const int nResult = sqlite3_errcode(m_database.get()) & 0xFF;
    m_sFault = sqlite3_errmsg(m_database.get());
    m_faultStatus = StatusOf(nResult);
    const int nSystem = sqlite3_system_errno(m_database.get());
    if (nSystem != 0 && (nResult == SQLITE_IOERR || nResult == SQLITE_CANTOPEN))
        m_sFault.append(": ").append(SystemErrorText(nSystem));
    return false;
}

// The text isn't copied: it has to stay where it is until the statement has run.
void SqliteStatement::Bind(int nParameter, std::string_view text)
{
    sqlite3_bind_text(m_statement.get(), nParameter, text.data(), static_cast<int>(text.size()),
                      SQLITE_STATIC);
}

void SqliteStatement::Bind(int nParameter, double value)
{
    sqlite3_bind_double(m_statement.get(), nParameter, value);
}

void SqliteStatement::Bind(int nParameter, sqlite3_int64 value)
{
    sqlite3_bind_int64(m_statement.get(), nParameter, value);
}

void SqliteStatement::BindNull(int nParameter)
{
    sqlite3_bind_null(m_statement.get(), nParameter);
}

bool SqliteStatement::Run()
{
    while (sqlite3_step(m_statement.get()) == SQLITE_ROW) {
    }
    return sqlite3_reset(m_statement.get()) == SQLITE_OK;
}

std::string QuotedName(std::string_view name)
{
    std::string quoted = "\"";
    for (const char c : name) {
        if (c == '"')
            quoted += '"';
        quoted += c;
    }
    return quoted + '"';
}

} // namespace tabulex
