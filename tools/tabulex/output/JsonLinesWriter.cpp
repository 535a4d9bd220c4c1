#include "tools/tabulex/output/JsonLinesWriter.h"

#include <cmath>

#include <fmt/format.h>

#include "platform/values.h"
#include "tools/tabulex/output/CellText.h"
#include "tools/tabulex/text/Text.h"

namespace tabulex {

// The keys are escaped once, for all records.
JsonLinesWriter::JsonLinesWriter(std::vector<Column> columns) : m_columns(std::move(columns))
{
    for (const Column& column : m_columns) {
        std::string key;
        AppendJsonString(key, column.sName);
        m_keys.push_back(key + ':');
    }
}

void JsonLinesWriter::Row(const VARIANT* cells, std::string& out)
{
    for (std::size_t i = 0; i < m_columns.size(); ++i) {
        out += i == 0 ? '{' : ',';
        out += m_keys[i];
        Cell(m_columns[i].kind, cells[i], out);
    }
    out += "}\n";
}

void JsonLinesWriter::Cell(ColumnKind kind, const VARIANT& cell, std::string& out)
{
    const bool bNumber = cell.vt == VT_I8 || (cell.vt == VT_R8 && std::isfinite(cell.dblVal));
    if (bNumber) {
        AppendCell(out, kind, cell, m_dates);
        return;
    }
    if (cell.vt == VT_R8 || cell.vt == VT_EMPTY) {
        out += "null"; // what JSON has no number for
        return;
    }
    m_text.clear();
    AppendCell(m_text, kind, cell, m_dates);
    AppendJsonString(out, m_text);
}

void AppendJsonString(std::string& out, std::string_view text)
{
    out += '"';
    for (const char c : text) {
        if (c == '"' || c == '\\')
            out += '\\';
        if (static_cast<unsigned char>(c) < 0x20)
            fmt::format_to(std::back_inserter(out), "\\u{:04x}", static_cast<unsigned>(c));
        else
            out += c;
    }
    out += '"';
}

} // namespace tabulex
