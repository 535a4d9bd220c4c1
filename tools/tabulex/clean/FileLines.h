// FileLines: the bytes of a file's lines by their numbers, blank ones included.
//
// The file is walked through only as far as it is asked for; a place is kept every few hundred
// lines. A line ends as for an editor: with LF, or with CR in a file that has no LF near its
// beginning. Used by one thread.
#pragma once

#include <string>
#include <vector>

#include "platform/component.h"
#include "tools/tabulex/system/FileBytes.h"

namespace tabulex {

class FileLines
{
public:
    // A path that stays good as long as this object.
    explicit FileLines(const std::string& path);

    // Line nNumber, from 1, without its end; at most nMost bytes. Empty behind the last one.
    std::string BytesOf(ULONGLONG nNumber, ULONGLONG nMost);

private:
    static constexpr ULONGLONG kSpacing = 512;

    bool PassLines(ULONGLONG& nOffset, ULONGLONG nLines);
    std::size_t ReadBlock(ULONGLONG nOffset);

    FileBytes m_file;
    std::vector<char> m_block;
    char m_cLineEnd = '\n';
    std::vector<ULONGLONG> m_places{0}; // offsets of the lines kSpacing * n + 1
    bool m_bEnded = false;              // no further places
};

} // namespace tabulex
