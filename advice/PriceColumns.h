// Columns told by their values: the four prices of a bar, a single price, a bid and an ask, and
// which of two volumes is a turnover.
#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <span>
#include <vector>

namespace tabulex::advice {

using Numbers = std::vector<double>; // one a row; not a number where there is none

// Places of open, high, low and close among four columns that stand side by side; empty where none
// is the highest and none the lowest.
std::optional<std::array<std::size_t, 4>> BarOf(std::span<const Numbers> four);

// The share of rows, 0 to 1, in which no price is above the high or below the low. Rows that lack
// one don't count.
double ShareOfBars(const Numbers& open, const Numbers& high, const Numbers& low,
                   const Numbers& close);

// Whether b is a times a price of the row, between low and high.
bool IsTurnover(const Numbers& a, const Numbers& b, const Numbers& low, const Numbers& high);

// The middle of the steps from row to row, as shares of the value: small for a price.
double StepShare(const Numbers& numbers);

// Whether one column is the bid and the next the ask of one price.
bool IsBidAndAsk(const Numbers& bid, const Numbers& ask);

} // namespace tabulex::advice
