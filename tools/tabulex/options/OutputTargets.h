// Which output each file of a call gets: one for all, or one each in a folder.
#pragma once

#include <string>
#include <vector>

#include "tools/tabulex/options/Options.h"

namespace tabulex {

// Why the options of a conversion make no sense together; empty if they do.
std::string ContradictionIn(const ConvertOptions& convert, const std::vector<std::string>& files);

// The outputs of the files, in their order; of options without a contradiction.
std::vector<OutputOptions> OutputsOf(const ConvertOptions& convert,
                                     const std::vector<std::string>& files);

// A folder is meant by an existing one, and by a slash at the end.
bool IsFolder(const std::string& output);

} // namespace tabulex
