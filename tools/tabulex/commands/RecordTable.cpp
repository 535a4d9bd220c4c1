#include "tools/tabulex/commands/RecordTable.h"

#include <algorithm>

#include "tools/tabulex/host/Columns.h"
#include "tools/tabulex/host/Properties.h"
#include "tools/tabulex/output/CellText.h"

namespace tabulex {

namespace {

constexpr const char* kInRange = "*";

std::vector<TextTable::Heading> HeadingsOf(const std::vector<Column>& columns)
{
    std::vector<TextTable::Heading> headings = {{"", false}, {"#", true}};
    for (const Column& column : columns)
        headings.push_back({column.sName.empty() ? "-" : column.sName, IsNumber(column.kind)});
    return headings;
}

// The fields of one record; empty where there is no such record.
std::vector<Variant> ReadFields(const Host& host, ULONGLONG nPosition, std::size_t nColumns)
{
    std::vector<Variant> cells;
    Variant block;
    // The component counts the records of a block in 32 bits.
    if (nPosition > 0xFFFFFFFF ||
        FAILED(host.Data().ParseRecords(block.put(), static_cast<ULONG>(nPosition), 1)))
        return cells;
    for (std::size_t i = 0; i < nColumns; ++i) {
        // The first index of the block is the record's position.
        LONG indices[] = {static_cast<LONG>(nPosition), static_cast<LONG>(i)};
        cells.emplace_back();
        SafeArrayGetElement(block.parray, indices, cells.back().put());
    }
    return cells;
}

// In a file that is read backwards the lines before the data come after the last record: they
// can be read, but are no records. Such a file has been counted by then.
ULONGLONG KnownEnd(const Host& host)
{
    ULONGLONG nCount = 0;
    VARIANT_BOOL bComplete = VARIANT_FALSE;
    const bool bKnown = SUCCEEDED(host.Data().GetCount(&nCount, &bComplete)) && bComplete;
    return bKnown ? nCount : ~0ULL;
}

// The first value of a kind; 0 if it is missing or doesn't parse.
DATE FindDate(const std::vector<Column>& columns, const std::vector<Variant>& cells,
              ColumnKind kind)
{
    const auto column = std::ranges::find(columns, kind, &Column::kind);
    if (column == columns.end())
        return 0;
    const VARIANT& cell = cells[static_cast<std::size_t>(column - columns.begin())];
    return cell.vt == VT_DATE ? cell.date : 0;
}

} // namespace

RecordTable::RecordTable(const Host& host, bool bColour)
    : m_host(host), m_columns(AllColumns(host)), m_nKnownEnd(KnownEnd(host)),
      m_dtStart(GetDate(host.Data(), &IDataParser::get_StartDateTime)),
      m_dtEnd(GetDate(host.Data(), &IDataParser::get_EndDateTime)),
      m_sSymbol(ToUtf8(GetText(host.Data(), &IDataParser::get_SymbolName))),
      m_table(HeadingsOf(m_columns), bColour)
{}

bool RecordTable::Add(ULONGLONG nPosition)
{
    if (nPosition >= m_nKnownEnd)
        return false;
    const auto cells = ReadFields(m_host, nPosition, m_columns.size());
    if (cells.empty())
        return false;
    std::vector<std::string> row = {IsInRange(cells) ? kInRange : "", std::to_string(nPosition)};
    for (std::size_t i = 0; i < cells.size(); ++i)
        AppendCell(row.emplace_back(), m_columns[i].kind, cells[i], m_dates);
    m_table.Add(std::move(row));
    return true;
}

bool RecordTable::IsInRange(const std::vector<Variant>& cells) const
{
    // A record without a readable date belongs to no range.
    const DATE day = FindDate(m_columns, cells, ColumnKind::Date);
    const DATE date = day + FindDate(m_columns, cells, ColumnKind::Time);
    return day != 0 && date >= m_dtStart && date <= m_dtEnd && IsOfSymbol(cells);
}

bool RecordTable::IsOfSymbol(const std::vector<Variant>& cells) const
{
    ULONG nField = 0;
    if (m_sSymbol.empty() || m_host.Records().GetFieldIndex(TypeSymbol, &nField) != S_OK)
        return true;
    return cells[nField].vt == VT_BSTR && ToUtf8(TextOf(cells[nField].bstrVal)) == m_sSymbol;
}

} // namespace tabulex
