// Columns of an opened file.
#pragma once

#include <vector>

#include "tools/tabulex/host/Host.h"
#include "tools/tabulex/output/Column.h"

namespace tabulex {

// Each column of the file, in file order.
std::vector<Column> AllColumns(const Host& host);

// Columns that a conversion delivers: the assigned ones, in file order.
std::vector<Column> DeliveredColumns(const Host& host);

// Where a column of a type stands among these; kNoPlace where there is none.
constexpr std::size_t kNoPlace = ~std::size_t(0);
std::size_t PlaceOf(const Host& host, const std::vector<Column>& columns, unsigned uiType);

} // namespace tabulex
