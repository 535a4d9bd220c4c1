#include "tools/tabulex/output/CsvWriter.h"

#include "platform/values.h"
#include "tools/tabulex/output/CellText.h"
#include "tools/tabulex/text/Text.h"

namespace tabulex {

void CsvWriter::Begin(std::string& out)
{
    for (std::size_t i = 0; i < m_columns.size(); ++i) {
        if (i > 0)
            out += ',';
        AppendCsvField(out, m_columns[i].sName);
    }
    out += '\n';
}

void CsvWriter::Row(const VARIANT* cells, std::string& out)
{
    for (std::size_t i = 0; i < m_columns.size(); ++i) {
        if (i > 0)
            out += ',';
        Cell(m_columns[i].kind, cells[i], out);
    }
    out += '\n';
}

// Numbers, dates and times hold nothing that has to be quoted.
void CsvWriter::Cell(ColumnKind kind, const VARIANT& cell, std::string& out)
{
    if (cell.vt != VT_BSTR) {
        AppendCell(out, kind, cell, m_dates);
        return;
    }
    m_text.clear();
    AppendUtf8(m_text, TextOf(cell.bstrVal));
    AppendCsvField(out, m_text);
}

void AppendCsvField(std::string& out, std::string_view text)
{
    if (text.find_first_of(",\"\r\n") == text.npos) {
        out += text;
        return;
    }
    out += '"';
    for (const char c : text) {
        if (c == '"')
            out += '"';
        out += c;
    }
    out += '"';
}

} // namespace tabulex
