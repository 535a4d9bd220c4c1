// Which things a folder view shows: those of the file system but for the recycle bin, and the
// folders on the way to the one that is open.
#pragma once

#include <span>

#include "platform/component.h"

namespace Hesperon::specifics {

// sPath is the thing's parsing name, empty for one without; chain holds the folders from the
// root to the one that is open, the same way. Names are compared without case.
bool ShowsInFolder(string_view_t sPath, std::span<const string_t> chain);

} // namespace Hesperon::specifics
