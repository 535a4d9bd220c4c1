// A column as writers and tables need it.
#pragma once

#include <string>

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

} // namespace tabulex
