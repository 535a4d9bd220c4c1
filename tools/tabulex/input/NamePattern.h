// Patterns of file names, as shells have them.
//
// '*' stands for any characters, '?' for one, "[a-z]" and "[!a-z]" for one of a set or outside of
// it; none of them for a slash, nor for the dot that a hidden name begins with.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tabulex {

bool IsPattern(std::string_view name);

// Whether one name without a slash fits.
bool FitsPattern(std::string_view name, std::string_view pattern);

// The regular files that fit a pattern, in natural order. Folders that can't be read have none.
std::vector<std::string> FilesOfPattern(const std::string& pattern);

} // namespace tabulex
