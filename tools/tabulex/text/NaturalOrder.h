// Names in the order in which people count: "file2" before "file10".
#pragma once

#include <string_view>

namespace tabulex {

// Digits that follow each other are one number, of any length; everything else goes by its
// bytes. Names that differ only in the zeros in front of numbers go by their bytes too.
bool NaturalLess(std::string_view a, std::string_view b);

} // namespace tabulex
