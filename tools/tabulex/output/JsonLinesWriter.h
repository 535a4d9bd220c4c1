// JsonLinesWriter: one object for each record; the keys are the type names.
#pragma once

#include <string_view>

#include "tools/tabulex/output/RowWriter.h"
#include "tools/tabulex/text/Formats.h"

namespace tabulex {

class JsonLinesWriter : public RowWriter
{
public:
    explicit JsonLinesWriter(std::vector<Column> columns);

    void Begin(std::string&) override {}
    void Row(const VARIANT* cells, std::string& out) override;

private:
    void Cell(ColumnKind kind, const VARIANT& cell, std::string& out);

    std::vector<Column> m_columns;
    std::vector<std::string> m_keys; // "\"Date\":"
    DateText m_dates;
    std::string m_text; // kept for its storage
};

// Appends a JSON string with its quotes; `text` is UTF-8.
void AppendJsonString(std::string& out, std::string_view text);

} // namespace tabulex
