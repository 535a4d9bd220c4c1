// Unpack: from an archive to the one file that is read of it.
//
// Checks what the archive has for that, such as the sums of its content: what is damaged or cut is
// never taken for whole. Memory doesn't grow with the files; the disk is the only bound of what
// comes out.
#pragma once

#include <string>

#include "tools/tabulex/input/ContentKind.h"
#include "tools/tabulex/system/SpillFile.h"

namespace tabulex {

struct Unpacked
{
    std::size_t nBehind = 0; // bytes behind the packed ones that belong to nothing; not read
};

// `path` is that of a regular file, `member` the name of a file in it, or empty for the only one
// that it has. Throws Fault for an archive that is damaged or encrypted, or has several files.
Unpacked Unpack(const std::string& path, ContentKind kind, const std::string& member,
                SpillFile& to);

} // namespace tabulex
