// JsonLinesWriter: one object for each record; the keys are the type names.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "tools/tabulex/output/CellText.h"
#include "tools/tabulex/output/RowWriter.h"

namespace tabulex {

class JsonLinesWriter : public RowWriter
{
public:
    explicit JsonLinesWriter(std::vector<Column> columns);

    void Begin(TextBuffer&) override {}
    void Rows(const VARIANT* cells, ULONGLONG nRows, TextBuffer& out) override;

private:
    char* PutValue(std::size_t nColumn, const VARIANT& cell, char* at, TextBuffer& out);

    std::vector<Column> m_columns;
    std::vector<std::string> m_keys; // "{\"Date\":" or ",\"Open\":"
    std::size_t m_nRowRoom;          // for a row without its texts
    DateText m_dates;
    std::vector<CellTexts> m_texts; // one a column
};

// Appends a JSON string with its quotes; `text` is UTF-8.
void AppendJsonString(std::string& out, std::string_view text);

} // namespace tabulex
