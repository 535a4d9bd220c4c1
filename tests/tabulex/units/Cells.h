// Cells as the component delivers them.
#pragma once

#include "platform/values.h"
#include "tools/tabulex/host/Columns.h"

inline Variant Number(double value)
{
    Variant v;
    v.vt = VT_R8;
    v.dblVal = value;
    return v;
}

inline Variant Whole(LONGLONG value)
{
    Variant v;
    v.vt = VT_I8;
    v.llVal = value;
    return v;
}

// A column of each kind.
inline const std::vector<tabulex::Column> kColumns = {
    {"Symbol", tabulex::ColumnKind::Symbol},   {"Date", tabulex::ColumnKind::Date},
    {"Time", tabulex::ColumnKind::Time},       {"Price", tabulex::ColumnKind::Price},
    {"Up Volume", tabulex::ColumnKind::Whole},
};

// A value for each of them; the moment is 2003-12-25, 12:00.
inline std::vector<Variant> RowFor(string_view_t symbol)
{
    std::vector<Variant> cells;
    cells.push_back(Variant::FromText(symbol));
    cells.push_back(Variant::FromDate(37980));
    cells.push_back(Variant::FromDate(0.5));
    cells.push_back(Number(1.25));
    cells.push_back(Whole(-3));
    return cells;
}
