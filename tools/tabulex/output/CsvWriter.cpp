// Room for a whole row is made at its beginning, so that its cells are put side by side without a
// look at the buffer. Only a text, which may have any length, asks for room of its own. Numbers,
// dates and times hold nothing that has to be quoted.

#include "tools/tabulex/output/CsvWriter.h"

#include "tools/tabulex/text/Digits.h"

namespace tabulex {

CsvWriter::CsvWriter(std::vector<Column> columns)
    : m_columns(std::move(columns)), m_nRowRoom((m_columns.size() + 1) * (kDigitsRoom + 1)),
      m_texts(m_columns.size(), CellTexts(AppendCsvField))
{}

void CsvWriter::Begin(TextBuffer& out)
{
    std::string header;
    for (std::size_t i = 0; i < m_columns.size(); ++i) {
        if (i > 0)
            header += ',';
        AppendCsvField(header, m_columns[i].sName);
    }
    out.Append(header + '\n');
}

void CsvWriter::Rows(const VARIANT* cells, ULONGLONG nRows, TextBuffer& out)
{
    for (ULONGLONG n = 0; n < nRows; ++n) {
        char* at = out.Room(m_nRowRoom);
        for (std::size_t i = 0; i < m_columns.size(); ++i, ++cells) {
            char* const end = PutCell(at, m_columns[i].kind, *cells, m_dates);
            at = end ? end : PutField(i, *cells, at, out);
            *at++ = ',';
        }
        at[-1] = '\n';
        out.EndAt(at);
    }
}

char* CsvWriter::PutField(std::size_t nColumn, const VARIANT& cell, char* at, TextBuffer& out)
{
    out.EndAt(at);
    out.Append(m_texts[nColumn].Of(cell));
    return out.Room(m_nRowRoom);
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
