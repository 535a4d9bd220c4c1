// The open of a pipe would wait for a reader where no interrupt is seen, so it is tried without
// waiting, ten times a second, and the pipe is made one that waits only then. A stream of the
// caller may be one that doesn't wait; its writer waits for room, as a full pipe is no fault.

#include "tools/tabulex/system/Descriptors.h"

#include <cerrno>

#include <fcntl.h>
#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

#include "tools/tabulex/system/Interrupt.h"

namespace tabulex {

namespace {

constexpr int kPipePollMilliseconds = 100; // how soon an interrupt is noticed

// A reader may have made the stream one that doesn't wait.
bool MayTryAgain(int nFile)
{
    if (errno == EINTR)
        return true;
    if (errno != EAGAIN && errno != EWOULDBLOCK)
        return false;
    pollfd stream{nFile, POLLOUT, 0};
    ::poll(&stream, 1, kPipePollMilliseconds);
    return true;
}

bool IsPipe(const std::string& path)
{
    struct stat info;
    return ::stat(path.c_str(), &info) == 0 && S_ISFIFO(info.st_mode);
}

} // namespace

// A pipe is opened without waiting, which fails as long as it has no reader.
int OpenDevice(const std::string& path)
{
    constexpr int kFlags = O_WRONLY | O_CLOEXEC | O_NOCTTY;
    for (;;) {
        const int nFile = ::open(path.c_str(), kFlags | O_NONBLOCK);
        if (nFile >= 0) {
            ::fcntl(nFile, F_SETFL, ::fcntl(nFile, F_GETFL) & ~O_NONBLOCK);
            return nFile;
        }
        if (errno == EINTR)
            continue;
        if (errno != ENXIO || Interrupted() || !IsPipe(path))
            return -1;
        ::poll(nullptr, 0, kPipePollMilliseconds);
    }
}

int CopyOf(int nFile)
{
    return ::fcntl(nFile, F_DUPFD_CLOEXEC, STDERR_FILENO + 1);
}

bool WriteAll(int nFile, std::string_view text)
{
    while (!text.empty()) {
        const ssize_t nWritten = ::write(nFile, text.data(), text.size());
        if (nWritten >= 0)
            text.remove_prefix(static_cast<std::size_t>(nWritten));
        else if (!MayTryAgain(nFile))
            return false;
    }
    return true;
}

// The descriptor is gone also where the call was interrupted.
bool CloseFile(int nFile)
{
    return ::close(nFile) == 0 || errno == EINTR;
}

bool IsTerminal(int nFile)
{
    return ::isatty(nFile) != 0;
}

} // namespace tabulex
