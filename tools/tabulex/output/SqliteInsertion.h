// SqliteInsertion: rows on their way into a table, by prepared statements.
//
// Dates, times and texts become text in the form that they have in CSV, numbers REAL and INTEGER;
// an empty cell, and a price that is no number, is NULL. One thread at a time.
#pragma once

#include <string>
#include <vector>

#include "tools/tabulex/output/Column.h"
#include "tools/tabulex/output/Sqlite.h"
#include "tools/tabulex/text/Formats.h"

namespace tabulex {

class SqliteInsertion
{
public:
    // Into a table that has these columns, at least one. A fault is kept by the database.
    void Prepare(SqliteDatabase& database, const std::string& table,
                 const std::vector<Column>& columns);
    // Row after row, each with its cells side by side. False where a statement has failed: the
    // database then knows why, and some of the rows may be in the table.
    bool Insert(const VARIANT* cells, ULONGLONG nRows);
    // Before the database is closed.
    void Release();

private:
    bool Run(SqliteStatement& statement, const VARIANT* cells, std::size_t nCells);
    void Bind(SqliteStatement& statement, std::size_t nCell, const VARIANT& cell);

    std::vector<ColumnKind> m_kinds;
    std::size_t m_nGroup = 1;         // rows
    SqliteStatement m_single;         // of one row: a parameter a column
    SqliteStatement m_group;          // of m_nGroup rows; their parameters follow on each other
    std::vector<std::string> m_texts; // of the cells at hand; the statements refer to them
    DateText m_dates;
};

} // namespace tabulex
