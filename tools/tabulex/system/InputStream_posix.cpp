// Names of what is open already, such as /dev/fd/3, are taken by their number. A regular file at
// its start is opened anew, and anything else is read where it stands: a pipe has one reader, and a
// caller may have taken the first lines already. Only what is at its start counts as a file, that
// is, as something that can be opened once more.

#include "tools/tabulex/system/InputStream.h"

#include <cerrno>
#include <charconv>
#include <cstring>
#include <optional>
#include <string_view>

#include <fcntl.h>
#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

#include "tools/tabulex/system/Fault.h"
#include "tools/tabulex/system/Interrupt.h"

namespace tabulex {

namespace {

constexpr int kInterruptPause = 100; // milliseconds between two looks for an interrupt

constexpr const char* kClosed = "standard input is closed";

[[noreturn]] void ThrowSystemFault(int nError)
{
    throw Fault{ExitStatus::FileFault, std::strerror(nError)};
}

// The number in names of what the process has open already. Such a name can't always be opened
// again, and a pipe of the caller has to be read where it stands.
std::optional<int> OpenNumberOf(std::string_view name)
{
    if (name == "-" || name == "/dev/stdin")
        return STDIN_FILENO;
    for (const std::string_view folder : {"/dev/fd/", "/proc/self/fd/"}) {
        if (!name.starts_with(folder))
            continue;
        name.remove_prefix(folder.size());
        int nNumber = -1;
        const auto result = std::from_chars(name.data(), name.data() + name.size(), nNumber);
        if (result.ec == std::errc() && result.ptr == name.data() + name.size())
            return nNumber;
        return std::nullopt;
    }
    return std::nullopt;
}

std::string PathOfNumber(int nNumber)
{
    return "/proc/self/fd/" + std::to_string(nNumber);
}

// Without O_NONBLOCK the open of a pipe would wait where no interrupt is seen.
int OpenToRead(const std::string& name)
{
    int nFile = -1;
    do
        nFile = open(name.c_str(), O_RDONLY | O_CLOEXEC | O_NOCTTY | O_NONBLOCK);
    while (nFile < 0 && errno == EINTR);
    return nFile;
}

InputPlace PlaceOf(int nFile)
{
    struct stat info;
    if (fstat(nFile, &info) != 0)
        ThrowSystemFault(errno);
    if (S_ISDIR(info.st_mode))
        return InputPlace::Folder;
    return S_ISREG(info.st_mode) && lseek(nFile, 0, SEEK_CUR) == 0 ? InputPlace::File
                                                                   : InputPlace::Stream;
}

// A file whose start is still to be read is opened anew: reading from it then takes nothing away
// from whoever opens it next.
int OpenNumber(int nNumber)
{
    struct stat info;
    const bool bWhole = fstat(nNumber, &info) == 0 && PlaceOf(nNumber) == InputPlace::File;
    const int nFile = bWhole ? OpenToRead(PathOfNumber(nNumber)) : -1;
    return nFile >= 0 ? nFile : fcntl(nNumber, F_DUPFD_CLOEXEC, 0);
}

// A wait with an end sees an interrupt that came just before it.
void WaitForBytes(int nFile)
{
    pollfd wait{nFile, POLLIN, 0};
    for (int nReady = 0; nReady == 0;) {
        if (Interrupted())
            throw Fault{InterruptStatus(), "interrupted"};
        nReady = poll(&wait, 1, kInterruptPause);
        if (nReady < 0 && errno == EINTR)
            nReady = 0;
    }
}

} // namespace

InputStream::InputStream(const std::string& name) : m_sPath(name)
{
    const auto nNumber = OpenNumberOf(name);
    if (nNumber && fcntl(*nNumber, F_GETFD) < 0)
        throw Fault{ExitStatus::FileFault,
                    *nNumber == STDIN_FILENO ? kClosed : std::strerror(errno)};
    const int nFile = nNumber ? OpenNumber(*nNumber) : OpenToRead(name);
    if (nFile < 0)
        ThrowSystemFault(errno);
    m_handle = nFile;
    try {
        m_place = PlaceOf(nFile);
    } catch (const Fault&) {
        close(nFile);
        throw;
    }
    if (nNumber)
        m_sPath = PathOfNumber(*nNumber);
}

InputStream::~InputStream()
{
    close(static_cast<int>(m_handle));
}

std::size_t InputStream::Read(std::span<char> buffer)
{
    const int nFile = static_cast<int>(m_handle);
    std::size_t nRead = 0;
    while (nRead < buffer.size()) {
        WaitForBytes(nFile);
        const ssize_t n = read(nFile, buffer.data() + nRead, buffer.size() - nRead);
        if (n == 0)
            break;
        if (n > 0)
            nRead += static_cast<std::size_t>(n);
        else if (errno == EBADF && m_sPath == PathOfNumber(STDIN_FILENO))
            throw Fault{ExitStatus::FileFault, kClosed};
        else if (errno != EINTR && errno != EAGAIN)
            ThrowSystemFault(errno);
    }
    return nRead;
}

} // namespace tabulex
