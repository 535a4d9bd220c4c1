// Gunzip: what gzip and its relatives packed, checked by its sums and lengths.
#pragma once

#include <string>

#include "tools/tabulex/input/Unpack.h"

namespace tabulex {

// Also of several pieces, one behind the other. Throws Fault.
Unpacked Gunzip(const std::string& path, SpillFile& to);

} // namespace tabulex
