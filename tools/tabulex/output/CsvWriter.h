// CsvWriter: a header row of type names, then one row for each record; quoted as in RFC 4180.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "tools/tabulex/output/CellText.h"
#include "tools/tabulex/output/RowWriter.h"

namespace tabulex {

class CsvWriter : public RowWriter
{
public:
    explicit CsvWriter(std::vector<Column> columns);

    void Begin(TextBuffer& out) override;
    void Rows(const VARIANT* cells, ULONGLONG nRows, TextBuffer& out) override;

private:
    char* PutField(std::size_t nColumn, const VARIANT& cell, char* at, TextBuffer& out);

    std::vector<Column> m_columns;
    std::size_t m_nRowRoom; // for a row without its texts
    DateText m_dates;
    std::vector<CellTexts> m_texts; // one a column
};

// Appends one field, in quotes where its text needs them.
void AppendCsvField(std::string& out, std::string_view text);

} // namespace tabulex
