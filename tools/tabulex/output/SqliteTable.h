// SqliteTable: the columns of a table, and how those of rows fit in.
#pragma once

#include <string>
#include <vector>

#include "tools/tabulex/output/RowOutput.h"
#include "tools/tabulex/output/Sqlite.h"

namespace tabulex {

class SqliteTable
{
public:
    // Reads the columns of an existing table. A fault is kept by the database.
    SqliteTable(SqliteDatabase& database, const OutputOptions& options);

    bool HasColumn(std::string_view name) const;
    // Throws Fault where the table has a column of the same name for values of another kind.
    void RequireKinds(const std::vector<Column>& columns) const;
    // Those that the table lacks.
    std::vector<Column> Lacking(const std::vector<Column>& columns) const;
    // How the columns differ from the table's; empty for not at all.
    std::string Remark(const std::vector<Column>& columns) const;

private:
    std::size_t Find(std::string_view name) const;

    const OutputOptions& m_options;
    std::vector<std::string> m_names;
    std::vector<std::string> m_types; // as they were declared
};

// The declared type of a column, "TEXT" and so on.
const char* SqlTypeOf(ColumnKind kind);

} // namespace tabulex
