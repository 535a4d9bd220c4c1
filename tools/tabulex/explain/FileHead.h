// FileHead: the first bytes of a file and the lines that stand in them, as they are.
//
// What the component tells of a file comes through its own reading; where that failed, the
// bytes show why. At most a mebibyte is read, whatever the size of the file.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "tools/tabulex/account/LineWalker.h"

namespace tabulex {

struct FileHead
{
    std::string sBytes;
    ULONGLONG nSize = 0; // of the file
    std::vector<ContentLine> lines;

    bool IsWhole() const { return sBytes.size() == nSize; }
    std::string_view TextOf(const ContentLine& line) const
    {
        return std::string_view(sBytes).substr(line.nOffset, line.nLength);
    }
};

// The path is UTF-8. Empty where the file can't be read.
FileHead ReadHead(const std::string& path);

} // namespace tabulex
