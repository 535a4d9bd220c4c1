// SqliteOutput: rows in a table of an SQLite database.
//
// A new database is staged: it is made beside its place under another name, without a
// journal, and renamed by Commit. In an existing one everything is one transaction, begun
// by the constructor, which keeps other writers out; without a Commit the database is as
// before.
//
// Rows that are added to a table need not have its columns: where they lack one they hold NULL, and
// one that the table lacks is added to it, with NULL in older rows.
#pragma once

#include "tools/tabulex/output/RowOutput.h"
#include "tools/tabulex/output/Sqlite.h"
#include "tools/tabulex/output/SqliteInsertion.h"
#include "tools/tabulex/output/StagedFile.h"

namespace tabulex {

class SqliteOutput : public RowOutput
{
public:
    // Throws Fault: Refused if the table exists and is to be kept, or has a column of the same
    // name for other values, and FileFault if the file can't be written or is no database.
    SqliteOutput(const OutputOptions& options, std::vector<Column> columns);
    ~SqliteOutput() override;

    bool Write(const VARIANT* cells, ULONGLONG nRows) override;
    bool Commit() override;
    void Discard() final;
    std::string Remark() const override { return m_sRemark; }
    std::string FaultText() const override;
    ExitStatus FaultStatus() const override { return m_database.FaultStatus(); }

private:
    void OpenDatabase(const OutputOptions& options);
    void MakeTable(const OutputOptions& options);
    bool Publish();

    std::string m_sTarget;
    std::string m_sRemark;
    std::vector<Column> m_columns; // by the names of the table's columns
    StagedFile m_staged;           // of a new database; none for an existing one
    SqliteDatabase m_database;     // closed before its file is removed
    SqliteInsertion m_insertion;
    std::string m_sPublishFault;
};

// Throws what the constructor would, as far as that can be known without writing, and gives the
// remark.
std::string CheckSqliteOutput(const OutputOptions& options, const std::vector<Column>& columns);

// Whether rows will be added to a table that has this column. False where that can't be known; the
// constructor then finds out why.
bool AppendsToColumn(const OutputOptions& options, std::string_view column);

// Column names that differ, whatever their case: the second "Date" becomes "Date 2".
std::vector<Column> WithDistinctNames(std::vector<Column> columns);

} // namespace tabulex
