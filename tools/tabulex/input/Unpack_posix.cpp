#include "tools/tabulex/input/Unpack.h"

#include "tools/tabulex/input/Archive_posix.h"
#include "tools/tabulex/input/Gunzip_posix.h"
#include "tools/tabulex/system/Fault.h"

namespace tabulex {

// The library for archives doesn't check the sums of gzip.
Unpacked Unpack(const std::string& path, ContentKind kind, const std::string& member, SpillFile& to)
{
    const bool bHasNames = kind == ContentKind::Zip || kind == ContentKind::Tar;
    if (bHasNames) {
        UnpackMember(path, kind, member, to);
        return {};
    }
    return kind == ContentKind::Gzip ? Gunzip(path, to) : UnpackPlain(path, to);
}

} // namespace tabulex
