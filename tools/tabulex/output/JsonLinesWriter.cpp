// As in CSV, room for a row is made at its beginning. The keys are escaped once, for all records,
// and each has ahead of it what parts it from the value before.

#include "tools/tabulex/output/JsonLinesWriter.h"

#include <cmath>

#include <fmt/format.h>

#include "tools/tabulex/text/Digits.h"

namespace tabulex {

namespace {

constexpr std::string_view kNull = "null";
constexpr std::size_t kQuotes = 2;
constexpr std::string_view kRowEnd = "}\n";

} // namespace

JsonLinesWriter::JsonLinesWriter(std::vector<Column> columns)
    : m_columns(std::move(columns)), m_nRowRoom(kRowEnd.size()),
      m_texts(m_columns.size(), CellTexts(AppendJsonString))
{
    for (const Column& column : m_columns) {
        std::string& key = m_keys.emplace_back(m_keys.empty() ? "{" : ",");
        AppendJsonString(key, column.sName);
        key += ':';
        m_nRowRoom += key.size() + kDigitsRoom + kQuotes;
    }
}

void JsonLinesWriter::Rows(const VARIANT* cells, ULONGLONG nRows, TextBuffer& out)
{
    for (ULONGLONG n = 0; n < nRows; ++n) {
        char* at = out.Room(m_nRowRoom);
        for (std::size_t i = 0; i < m_columns.size(); ++i, ++cells)
            at = PutValue(i, *cells, PutText(at, m_keys[i]), out);
        out.EndAt(PutText(at, kRowEnd));
    }
}

// Numbers stand as they are, and what JSON has no number for is null.
char* JsonLinesWriter::PutValue(std::size_t nColumn, const VARIANT& cell, char* at, TextBuffer& out)
{
    const ColumnKind kind = m_columns[nColumn].kind;
    const bool bEmpty = cell.vt == VT_EMPTY || (cell.vt == VT_R8 && !std::isfinite(cell.dblVal));
    if (bEmpty)
        return PutText(at, kNull);
    if (cell.vt == VT_R8 || cell.vt == VT_I8)
        return PutCell(at, kind, cell, m_dates);
    *at = '"';
    if (char* end = PutCell(at + 1, kind, cell, m_dates)) {
        *end = '"';
        return end + 1;
    }
    out.EndAt(at);
    out.Append(m_texts[nColumn].Of(cell));
    return out.Room(m_nRowRoom);
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
