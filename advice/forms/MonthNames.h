// Names of months and of days, in the languages of those who publish quotes.
#pragma once

#include <string_view>

namespace tabulex::advice {

// 1 to 12 by a name or its abbreviation, in any case of letters; 0 for another word.
int MonthOf(std::string_view word);

bool IsWeekday(std::string_view word);

} // namespace tabulex::advice
