// Quote files of any size in many layouts, the same in every run: a price that moves at random, in
// sessions of a day, one symbol after the other where a layout has symbols.
//
// The tool reads each of them without options but `pages-932`, which needs --code-page 932.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace bench {

// The names of the layouts, those with a hand-written reader first.
std::vector<std::string> QuoteFileLayouts();

// Writes a file of nRows records. Throws std::runtime_error for a layout that isn't there and a
// file that can't be written.
void WriteQuoteFile(const std::string& sLayout, std::uint64_t nRows, const std::string& sPath);

} // namespace bench
