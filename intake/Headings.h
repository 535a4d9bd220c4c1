// The engine's own words for columns, and what is to stand under them.
#pragma once

#include <algorithm>
#include <string_view>

namespace tabulex::intake {

inline constexpr const char* kSymbolHeading = "Symbol";
inline constexpr const char* kDateHeading = "Date";
inline constexpr const char* kTimeHeading = "Time";

// Columns of numbers.
inline constexpr std::string_view kNumberHeadings[] = {"Open",
                                                       "High",
                                                       "Low",
                                                       "Close",
                                                       "Price",
                                                       "Volume",
                                                       "Up Volume",
                                                       "Down Volume",
                                                       "Unchanged Volume",
                                                       "Total Volume",
                                                       "Up Ticks",
                                                       "Down Ticks",
                                                       "Unchanged Ticks",
                                                       "Total Ticks",
                                                       "Open Interest"};

inline bool IsNumberHeading(std::string_view heading)
{
    return std::ranges::find(kNumberHeadings, heading) != std::end(kNumberHeadings);
}

// Columns whose text stays as it is.
inline bool IsTextHeading(std::string_view heading)
{
    return heading == kSymbolHeading || heading == kDateHeading || heading == kTimeHeading;
}

} // namespace tabulex::intake
