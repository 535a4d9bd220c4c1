#include "tools/tabulex/input/Unpack.h"

#include "tools/tabulex/system/Fault.h"

namespace tabulex {

// There is no library for it here, but the system can do it.
Unpacked Unpack(const std::string&, ContentKind, const std::string&, SpillFile&)
{
    throw Fault{ExitStatus::Refused, "is packed, and this program can't unpack it; do so by the "
                                     "Explorer or 'tar -xf', and give the file that comes out"};
}

} // namespace tabulex
