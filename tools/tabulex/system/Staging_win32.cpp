// The system's own lock tells who is alive: a file that a run has open isn't removed, so what can
// be removed is left over from a run that is gone. Contents are brought to the disk before the name
// changes, for otherwise a power cut could leave the name with nothing behind it.

#include "tools/tabulex/system/Staging.h"

#include <cerrno>

#include <fcntl.h>
#include <io.h>
#include <share.h>
#include <sys/stat.h>

#include "tools/tabulex/system/Paths.h"

namespace tabulex {

namespace fs = std::filesystem;

// The system doesn't remove a file that a run has open.
int CreateStaged(const std::string& name)
{
    const fs::path path = PathOf(name);
    std::error_code ignored;
    if (fs::is_regular_file(path, ignored))
        fs::remove(path, ignored);
    int nFile = -1;
    errno =
        _wsopen_s(&nFile, path.c_str(), _O_WRONLY | _O_CREAT | _O_EXCL | _O_BINARY | _O_NOINHERIT,
                  _SH_DENYNO, _S_IREAD | _S_IWRITE);
    return nFile;
}

// A file has the permissions of its folder, and can't be renamed while it is open.
std::error_code PublishStaged(int& nFile, const std::string& name, const std::string& target,
                              bool bReplace)
{
    const bool bSynchronised = _commit(nFile) == 0;
    const std::error_code failure(errno, std::generic_category());
    _close(nFile);
    nFile = -1;
    if (!bSynchronised)
        return failure;
    std::error_code error;
    if (!bReplace && fs::exists(PathOf(target), error))
        return std::make_error_code(std::errc::file_exists);
    fs::rename(PathOf(name), PathOf(target), error);
    return error;
}

void RemoveStaged(int& nFile, const std::string& name)
{
    if (nFile >= 0)
        _close(nFile);
    nFile = -1;
    std::error_code ignored;
    fs::remove(PathOf(name), ignored);
}

} // namespace tabulex
