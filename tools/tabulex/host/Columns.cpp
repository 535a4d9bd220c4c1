#include "tools/tabulex/host/Columns.h"

#include <algorithm>

#include "tools/tabulex/host/Properties.h"

namespace tabulex {

namespace {

ColumnKind KindOf(unsigned uiType)
{
    switch (uiType) {
    case kNoType:
        return ColumnKind::None;
    case TypeSymbol:
        return ColumnKind::Symbol;
    case TypeDate:
        return ColumnKind::Date;
    case TypeTime:
        return ColumnKind::Time;
    }
    return IQRL_TabulexConverter::IsPriceType(uiType) ? ColumnKind::Price : ColumnKind::Whole;
}

} // namespace

std::vector<Column> AllColumns(const Host& host)
{
    std::vector<Column> columns;
    const ULONG nCount = Get(host.Records(), &IRecordParser::get_FieldCount);
    for (ULONG i = 0; i < nCount; ++i)
        columns.push_back({host.ColumnName(i), KindOf(host.ColumnType(i))});
    return columns;
}

std::vector<Column> DeliveredColumns(const Host& host)
{
    auto columns = AllColumns(host);
    std::erase_if(columns, [](const Column& column) { return column.kind == ColumnKind::None; });
    return columns;
}

std::size_t PlaceOf(const Host& host, const std::vector<Column>& columns, unsigned uiType)
{
    const auto at = std::ranges::find(columns, host.TypeNames().at(uiType), &Column::sName);
    return at == columns.end() ? kNoPlace : static_cast<std::size_t>(at - columns.begin());
}

} // namespace tabulex
