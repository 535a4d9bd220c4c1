#include "tools/tabulex/system/Descriptors.h"

#include <algorithm>
#include <cerrno>

#include <fcntl.h>
#include <io.h>
#include <share.h>
#include <sys/stat.h>

#include "platform/component.h"
#include "tools/tabulex/system/Paths.h"

namespace tabulex {

namespace {

constexpr std::size_t kMostAtOnce = std::size_t{1} << 20; // a console takes no more

// The system reports in several ways that a pipe's reader has gone. The runtime knows one of
// them; for the others it gives an errno that a write to a working pipe never gives.
int WriteErrorOf(int nFile)
{
    const int nError = errno;
    const bool bPipe =
        GetFileType(reinterpret_cast<HANDLE>(_get_osfhandle(nFile))) == FILE_TYPE_PIPE;
    return bPipe && (nError == EINVAL || nError == EBADF) ? EPIPE : nError;
}

} // namespace

// The reason for a folder is that it is one, and not a lack of permission.
int OpenDevice(const std::string& path)
{
    const std::filesystem::path name = PathOf(path);
    int nFile = -1;
    errno = _wsopen_s(&nFile, name.c_str(), _O_WRONLY | _O_BINARY | _O_NOINHERIT, _SH_DENYNO,
                      _S_IREAD | _S_IWRITE);
    std::error_code ignored;
    if (nFile < 0 && errno == EACCES && std::filesystem::is_directory(name, ignored))
        errno = EISDIR;
    return nFile;
}

int CopyOf(int nFile)
{
    return _dup(nFile);
}

bool WriteAll(int nFile, std::string_view text)
{
    while (!text.empty()) {
        const auto nPiece = static_cast<unsigned>(std::min(text.size(), kMostAtOnce));
        const int nWritten = _write(nFile, text.data(), nPiece);
        if (nWritten <= 0) {
            errno = nWritten == 0 ? EIO : WriteErrorOf(nFile);
            return false;
        }
        text.remove_prefix(static_cast<std::size_t>(nWritten));
    }
    return true;
}

bool CloseFile(int nFile)
{
    return _close(nFile) == 0;
}

bool IsTerminal(int nFile)
{
    DWORD nMode = 0;
    return GetConsoleMode(reinterpret_cast<HANDLE>(_get_osfhandle(nFile)), &nMode) != FALSE;
}

} // namespace tabulex
