// Archives by way of libarchive, which nothing else of the tool sees.
#pragma once

#include <string>

#include "tools/tabulex/input/Unpack.h"

namespace tabulex {

// One file, packed by zstd, xz or bzip2. Throws Fault.
Unpacked UnpackPlain(const std::string& path, SpillFile& to);

// A file of a zip or tar archive: that of a name, or the only one. Folders, hidden files and
// what a Mac adds don't count. Throws Fault, also where a name is needed.
void UnpackMember(const std::string& path, ContentKind kind, const std::string& member,
                  SpillFile& to);

} // namespace tabulex
