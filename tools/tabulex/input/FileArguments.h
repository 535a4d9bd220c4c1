// From the names on the command line to files: folders and patterns stand for the files in them.
#pragma once

#include <string>
#include <vector>

namespace tabulex {

// A folder becomes the regular files in it, neither hidden ones nor those of folders below; a
// name that doesn't exist and is a pattern, the files that fit it; each in natural order. What
// gives no file stays as it is, and is found out when it is opened.
std::vector<std::string> ExpandFiles(const std::vector<std::string>& names);

} // namespace tabulex
