// Columns are the same if their names are, whatever the case. Whether one takes a value is decided
// as SQLite decides how it keeps values, by parts of the word that declares its type; a type that
// it makes nothing of takes all values.

#include "tools/tabulex/output/SqliteTable.h"

#include <algorithm>

#include <fmt/format.h>
#include <fmt/ranges.h>

#include "tools/tabulex/system/Fault.h"
#include "tools/tabulex/text/Text.h"

namespace tabulex {

namespace {

constexpr const char* kColumnNames = "SELECT name FROM pragma_table_info(?1)";
constexpr const char* kColumnTypes = "SELECT type FROM pragma_table_info(?1)";

bool HasAny(const std::string& text, std::initializer_list<const char*> parts)
{
    return std::ranges::any_of(parts, [&](const char* p) { return text.find(p) != text.npos; });
}

bool TakesText(const std::string& type)
{
    return HasAny(type, {"char", "clob", "text"}) || type.empty() || HasAny(type, {"blob"});
}

// Whole numbers beyond 2^53 would lose digits in a column of reals.
bool Takes(const std::string& declared, ColumnKind kind)
{
    const std::string type = LowerCase(declared);
    const bool bWhole = HasAny(type, {"int"});
    const bool bText = !bWhole && HasAny(type, {"char", "clob", "text"});
    const bool bReal = !bWhole && HasAny(type, {"real", "floa", "doub"});
    if (!IsNumber(kind))
        return bText || (!bWhole && !bReal && TakesText(type));
    return !bText && !(bReal && kind == ColumnKind::Whole);
}

std::vector<std::string> NamesOf(const std::vector<Column>& columns)
{
    std::vector<std::string> names;
    for (const Column& column : columns)
        names.push_back(column.sName);
    return names;
}

} // namespace

SqliteTable::SqliteTable(SqliteDatabase& database, const OutputOptions& options)
    : m_options(options), m_names(database.Texts(kColumnNames, options.sTable)),
      m_types(database.Texts(kColumnTypes, options.sTable))
{
    m_types.resize(m_names.size());
}

std::size_t SqliteTable::Find(std::string_view name) const
{
    const auto at = std::ranges::find_if(
        m_names, [&](const std::string& own) { return EqualIgnoringCase(own, name); });
    return static_cast<std::size_t>(at - m_names.begin());
}

bool SqliteTable::HasColumn(std::string_view name) const
{
    return Find(name) < m_names.size();
}

void SqliteTable::RequireKinds(const std::vector<Column>& columns) const
{
    for (const Column& column : columns) {
        const std::size_t n = Find(column.sName);
        if (n < m_names.size() && !Takes(m_types[n], column.kind))
            throw Fault{ExitStatus::Refused,
                        fmt::format("the column '{}' of the table '{}' of '{}' is {}, and the rows "
                                    "have {} there; give another --table, or --replace",
                                    m_names[n], m_options.sTable, m_options.sPath, m_types[n],
                                    SqlTypeOf(column.kind))};
    }
}

std::vector<Column> SqliteTable::Lacking(const std::vector<Column>& columns) const
{
    auto lacking = columns;
    std::erase_if(lacking, [this](const Column& column) { return HasColumn(column.sName); });
    return lacking;
}

std::string SqliteTable::Remark(const std::vector<Column>& columns) const
{
    const auto has = [&](const std::string& name) {
        return std::ranges::any_of(
            columns, [&](const Column& column) { return EqualIgnoringCase(column.sName, name); });
    };
    auto unfilled = m_names;
    std::erase_if(unfilled, has);
    const auto added = NamesOf(Lacking(columns));
    std::string remark;
    if (!added.empty())
        remark = fmt::format("the table '{}' had no {}, which is added; its older rows have NULL "
                             "there",
                             m_options.sTable, fmt::join(added, ", "));
    if (!unfilled.empty())
        remark += fmt::format("{}the table '{}' has {}, which the rows lack; they have NULL there",
                              remark.empty() ? "" : ". And ", m_options.sTable,
                              fmt::join(unfilled, ", "));
    return remark;
}

const char* SqlTypeOf(ColumnKind kind)
{
    if (kind == ColumnKind::Price)
        return "REAL";
    return kind == ColumnKind::Whole ? "INTEGER" : "TEXT";
}

} // namespace tabulex
