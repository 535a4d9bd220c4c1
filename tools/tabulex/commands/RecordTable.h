// RecordTable: decoded records as rows of a table, for people.
//
// Rows inside the import range, and of the import's symbol, are marked with "*". A field
// that can't be read is shown as its text. Reading a record moves the parser's position and
// current record; used by one thread.
#pragma once

#include <string>
#include <vector>

#include "platform/values.h"
#include "tools/tabulex/host/Host.h"
#include "tools/tabulex/output/Column.h"
#include "tools/tabulex/text/Formats.h"
#include "tools/tabulex/text/TextTable.h"

namespace tabulex {

class RecordTable
{
public:
    // Takes the layout of the host's file as it is now.
    RecordTable(const Host& host, bool bColour);

    // Adds the record at a position. False after the last one.
    bool Add(ULONGLONG nPosition);
    // See TextTable::Take.
    std::string Take(std::string_view indent = "") { return m_table.Take(indent); }

private:
    bool IsInRange(const std::vector<Variant>& cells) const;
    bool IsOfSymbol(const std::vector<Variant>& cells) const;

    const Host& m_host;
    std::vector<Column> m_columns;
    ULONGLONG m_nKnownEnd; // there is no record here or after
    DATE m_dtStart;        // of the import range; both ends belong to it
    DATE m_dtEnd;
    std::string m_sSymbol; // of the import; empty for all
    DateText m_dates;
    TextTable m_table;
};

} // namespace tabulex
