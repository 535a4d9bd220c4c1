// Where the rows of each file go: all to one output, or each to a file in a folder.
#pragma once

#include <string>
#include <vector>

#include "tools/tabulex/options/Options.h"

namespace tabulex {

// Why options contradict each other, or two of them name one file; empty if they don't.
std::string ContradictionIn(const Options& options);

// The outputs of the files, in their order. The options must not contradict each other.
std::vector<OutputOptions> OutputsOf(const ConvertOptions& convert,
                                     const std::vector<std::string>& files);

// Whether the name is that of an existing folder, or has a slash at its end.
bool IsFolder(const std::string& output);

} // namespace tabulex
