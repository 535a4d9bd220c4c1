// Which divider cuts lines into cells that make sense.
#pragma once

#include <optional>
#include <span>

#include "advice/forms/FileSample.h"
#include "advice/forms/Rows.h"

namespace tabulex::advice {

struct FoundDialect
{
    Dialect dialect;
    std::size_t nCells = 0; // of most lines
};

// Empty where no divider makes two cells of most lines.
std::optional<FoundDialect> FindDialect(std::span<const SampledLine> lines);

// Whether the cell is a number of any style, a moment, or stands for no value.
bool IsDataCell(std::string_view cell);

} // namespace tabulex::advice
