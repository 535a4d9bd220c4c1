// Names that values of options may be, as the component knows them: what a command line is held
// against before anything runs, and what completions offer.
#pragma once

#include <string>
#include <vector>

#include "platform/component.h"

namespace tabulex {

// Field types, by their ids.
const std::vector<std::string>& FieldTypeNames();

// What the multipliers of prices and volumes scale by, from "1000000" to "1/1000000".
const std::vector<std::string>& MultiplierNames();

// Encodings that are in use for quote files; the component knows many more.
const std::vector<std::string>& UsualEncodings();

// The published code pages, in rising order.
const std::vector<ULONG>& CodePageNumbers();

} // namespace tabulex
