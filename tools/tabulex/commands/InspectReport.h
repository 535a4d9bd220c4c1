// The report of `inspect` for people.
#pragma once

#include <string>

#include "tools/tabulex/commands/Commands.h"
#include "tools/tabulex/host/FileLayout.h"
#include "tools/tabulex/output/Results.h"

namespace tabulex {

// Counting the records of a large file takes longer than everything else, so their number
// comes last, after the rest has been written.
void WriteReport(const Host& host, const std::string& file, const FileLayout& layout,
                 const Context& context, Results& results);

} // namespace tabulex
