// SqliteOutput: rows in a table of an SQLite database.
//
// A new database is staged: it is made beside its place under another name, without a
// journal, and renamed by Commit. In an existing one everything is one transaction, begun
// by the constructor, which keeps other writers out; without a Commit the database is as
// before.
//
// Dates, times and symbols are TEXT in the form that they have in CSV, prices REAL,
// whole numbers INTEGER; an empty cell is NULL.
#pragma once

#include "tools/tabulex/output/RowOutput.h"
#include "tools/tabulex/output/Sqlite.h"
#include "tools/tabulex/output/StagedFile.h"
#include "tools/tabulex/text/Formats.h"

namespace tabulex {

class SqliteOutput : public RowOutput
{
public:
    // Throws Fault: Refused if the table exists and is to be kept, or has other columns, and
    // FileFault if the file can't be written or is no database.
    SqliteOutput(const OutputOptions& options, std::vector<Column> columns);
    ~SqliteOutput() override;

    bool Write(const VARIANT* cells, ULONGLONG nRows) override;
    bool Commit() override;
    void Discard() final;
    std::string FaultText() const override;
    ExitStatus FaultStatus() const override { return m_database.FaultStatus(); }

private:
    void OpenDatabase(const OutputOptions& options);
    void MakeTable(const OutputOptions& options);
    void BindCell(std::size_t nColumn, const VARIANT& cell);
    bool Publish();

    std::string m_sTarget;
    std::vector<Column> m_columns;    // by the names of the table's columns
    StagedFile m_staged;              // of a new database; none for an existing one
    SqliteDatabase m_database;        // closed before its file is removed
    SqliteStatement m_insert;         // a parameter a column
    std::vector<std::string> m_texts; // of the row at hand; m_insert refers to them
    DateText m_dates;
    std::string m_sPublishFault;
};

// Throws what the constructor would, as far as that can be known without writing.
void CheckSqliteOutput(const OutputOptions& options, const std::vector<Column>& columns);

// Column names that differ, whatever their case: the second "Date" becomes "Date 2".
std::vector<Column> WithDistinctNames(std::vector<Column> columns);

} // namespace tabulex
