// CsvWriter: a header row of type names, then one row for each record; quoted as in RFC 4180.
#pragma once

#include <string_view>

#include "tools/tabulex/output/RowWriter.h"
#include "tools/tabulex/text/Formats.h"

namespace tabulex {

class CsvWriter : public RowWriter
{
public:
    explicit CsvWriter(std::vector<Column> columns) : m_columns(std::move(columns)) {}

    void Begin(std::string& out) override;
    void Row(const VARIANT* cells, std::string& out) override;

private:
    // The kind shows which of two dates is a day and which a time.
    void Cell(ColumnKind kind, const VARIANT& cell, std::string& out);

    std::vector<Column> m_columns;
    DateText m_dates;
    std::string m_text; // kept for its storage
};

// Appends one field, in quotes where its text needs them.
void AppendCsvField(std::string& out, std::string_view text);

} // namespace tabulex
