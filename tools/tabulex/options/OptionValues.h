// Readers of option values that have a form of their own. Each throws std::invalid_argument
// with one sentence for the user.
#pragma once

#include <string>
#include <vector>

#include "tools/tabulex/host/Settings.h"

namespace tabulex {

// A date, or a date and a time of day: see ParseDateTime.
DATE ReadDateTime(const std::string& text);
// A mask from characters of ":", blank, ",", ";", "|" and tab, also written "\t".
LONG ReadDividers(const std::string& text);
// "N=TYPE" or "N=TYPE:TEMPLATE", N from 1; TYPE is the name of a field type "none" or "unknown".
ColumnSetting ReadColumn(const std::string& text);
// One of MultiplierNames().
std::string ReadMultiplier(const std::string& text);
// One of CodePageNumbers().
ULONG ReadCodePage(const std::string& text);
// "START:COUNT", both from 0.
Portion ReadPortion(const std::string& text);
// "id=name,id=name,..."; an empty text gives no offers.
std::vector<ResolutionOffer> ReadOffers(const std::string& text);

} // namespace tabulex
