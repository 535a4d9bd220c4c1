#include "tools/tabulex/system/FileBytes.h"

#include <cerrno>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace tabulex {

FileBytes::FileBytes(const std::string& path) : m_handle(open(path.c_str(), O_RDONLY | O_CLOEXEC))
{}

FileBytes::~FileBytes()
{
    if (m_handle != -1)
        close(static_cast<int>(m_handle));
}

std::uint64_t FileBytes::Size() const
{
    struct stat about;
    return fstat(static_cast<int>(m_handle), &about) == 0
               ? static_cast<std::uint64_t>(about.st_size)
               : 0;
}

std::size_t FileBytes::ReadAt(std::uint64_t nOffset, std::span<char> buffer)
{
    std::size_t nRead = 0;
    while (m_handle != -1 && nRead < buffer.size()) {
        const ssize_t nGot = pread(static_cast<int>(m_handle), buffer.data() + nRead,
                                   buffer.size() - nRead, static_cast<off_t>(nOffset + nRead));
        if (nGot < 0 && errno == EINTR)
            continue;
        m_bFailed = m_bFailed || nGot < 0;
        if (nGot <= 0)
            break;
        nRead += static_cast<std::size_t>(nGot);
    }
    return nRead;
}

} // namespace tabulex
