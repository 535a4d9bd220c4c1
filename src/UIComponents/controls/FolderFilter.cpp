// The first rule that applies decides:
//  1. a folder of the chain is shown;
//  2. a path that is one word after its first backslash, and that word is the old recycle bin's,
//     is hidden; what lies in that bin isn't a single word, and is shown;
//  3. a path with a drive, or one from the root of a system without drives, is shown;
//  4. a path on another machine is shown;
//  5. all else is hidden. A thing of the shell without a path has the name "::{...}", whose
//     second character is that of a drive, but which names none.

#include "src/UIComponents/controls/FolderFilter.h"

#include <algorithm>

#include "src/values/CaseFold.h"

namespace Hesperon::specifics {

namespace {

bool IsRecycleBin(string_view_t sPath)
{
    const std::size_t nBackslash = sPath.find(OLECHAR('\\'));
    return nBackslash != sPath.npos &&
           EqualIgnoringCase(sPath.substr(nBackslash + 1), OLESTR("RECYCLED"));
}

bool HasDrive(string_view_t sPath)
{
    return sPath.size() > 1 && sPath[1] == OLECHAR(':') && sPath[0] != OLECHAR(':');
}

bool IsOnOtherMachine(string_view_t sPath)
{
    return sPath.size() > 2 && sPath.starts_with(OLESTR("\\\\"));
}

} // namespace

bool ShowsInFolder(string_view_t sPath, std::span<const string_t> chain)
{
    const auto same = [&](const string_t& sFolder) { return EqualIgnoringCase(sFolder, sPath); };
    if (std::ranges::any_of(chain, same))
        return true;
    if (IsRecycleBin(sPath))
        return false;
    return HasDrive(sPath) || sPath.starts_with(OLECHAR('/')) || IsOnOtherMachine(sPath);
}

} // namespace Hesperon::specifics
