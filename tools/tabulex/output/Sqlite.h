// SQLite's C API as objects: a database, and a statement on it.
//
// To be used only if HasSqlite is true. Nothing throws: calls give false, and the database
// keeps the reason. One thread at a time.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include <sqlite3.h>

#include "tools/tabulex/system/ExitStatus.h"

namespace tabulex {

class SqliteStatement;

class SqliteDatabase
{
public:
    // An existing file, possibly an empty one; read only if the system doesn't allow writing.
    // That a file is no database may show only with the first statement.
    bool Open(const std::string& path);
    // Refused while a statement on it lives.
    bool Close();

    // Runs statements that give no rows.
    bool Execute(const std::string& sql);
    // Bound to nothing yet. Null where the text isn't understood.
    SqliteStatement Prepare(const std::string& sql);
    // The first column of a query with one parameter. Empty after a fault, too.
    std::vector<std::string> Texts(const std::string& sql, std::string_view parameter);

    // Keeps what the last call failed with, unless a fault is kept already; false.
    bool Fail();
    // The first fault; empty if there is none.
    const std::string& FaultText() const { return m_sFault; }
    // The status that it gives the work; valid if there is a fault.
    ExitStatus FaultStatus() const { return m_faultStatus; }

private:
    struct Closer
    {
        void operator()(sqlite3* database) const { sqlite3_close(database); }
    };

    std::unique_ptr<sqlite3, Closer> m_database;
    std::string m_sFault;
    ExitStatus m_faultStatus = ExitStatus::FileFault;
};

class SqliteStatement
{
public:
    SqliteStatement() = default;
    explicit SqliteStatement(sqlite3_stmt* statement) : m_statement(statement) {}

    explicit operator bool() const { return m_statement != nullptr; }

    // Parameters count from 1. The text isn't copied and must live until the statement ran.
    void Bind(int nParameter, std::string_view text);
    void Bind(int nParameter, double value);
    void Bind(int nParameter, sqlite3_int64 value);
    void BindNull(int nParameter);

    // Runs the statement to its end; it can then be run again. False: see the database.
    bool Run();

private:
    friend class SqliteDatabase;
    struct Finalizer
    {
        void operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }
    };

    std::unique_ptr<sqlite3_stmt, Finalizer> m_statement;
};

// A name for use in a statement, whatever its characters.
std::string QuotedName(std::string_view name);

} // namespace tabulex
