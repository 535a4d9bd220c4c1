// The report of `inspect` for people.
#pragma once

#include <string>

#include "tools/tabulex/commands/Commands.h"
#include "tools/tabulex/host/FileLayout.h"
#include "tools/tabulex/output/Results.h"

namespace tabulex {

// Counting the records of a large file takes longer than all else, so their number
// stands last and the rest is written before.
void WriteReport(const Host& host, const std::string& file, const FileLayout& layout,
                 const Context& context, Results& results);

} // namespace tabulex
