// Columns of an opened file, as writers and tables need them.
#pragma once

#include <string>
#include <vector>

#include "tools/tabulex/host/Host.h"

namespace tabulex {

// How the values of a column are written.
enum class ColumnKind
{
    Date,
    Time,
    Symbol,
    Price,
    Whole, // volumes, ticks, open interest
    None,  // unassigned
};

constexpr bool IsNumber(ColumnKind kind)
{
    return kind == ColumnKind::Price || kind == ColumnKind::Whole;
}

struct Column
{
    std::string sName; // internal type name; empty for an unassigned column
    ColumnKind kind = ColumnKind::None;
};

// Each column of the file, in file order.
std::vector<Column> AllColumns(const Host& host);

// Columns that a conversion delivers: the assigned ones, in file order.
std::vector<Column> DeliveredColumns(const Host& host);

} // namespace tabulex
