#include "platform/File.h"

#include <cerrno>
#include <limits>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "platform/text/Utf8.h"

namespace {

constexpr char32_t kEscape = 0xDC00; // plus the byte

int Descriptor(std::intptr_t handle)
{
    return static_cast<int>(handle);
}

// Without O_NONBLOCK a pipe's name would hang the caller until somebody writes.
int OpenDescriptor(const char* path)
{
    int fd = -1;
    do
        fd = open(path, O_RDONLY | O_CLOEXEC | O_NOCTTY | O_NONBLOCK);
    while (fd < 0 && errno == EINTR);
    return fd;
}

// 0 for a descriptor that can be read as a file.
int CheckDescriptor(int fd)
{
    struct stat info;
    if (fstat(fd, &info) != 0)
        return errno;
    return S_ISDIR(info.st_mode) ? EISDIR : 0;
}

} // namespace

File::File(File&& other) noexcept : m_handle(std::exchange(other.m_handle, kNone)) {}

File& File::operator=(File&& other) noexcept
{
    std::swap(m_handle, other.m_handle);
    return *this;
}

File::~File()
{
    Close();
}

void File::Close()
{
    if (IsOpen())
        close(Descriptor(std::exchange(m_handle, kNone)));
}

File File::Open(string_view_t path, int& nError)
{
    File file;
    // The system would cut the name at a zero unit and open another file.
    if (path.find(u'\0') != string_view_t::npos) {
        nError = EINVAL;
        return file;
    }
    file.m_handle = OpenDescriptor(PathToBytes(path).c_str());
    nError = file.IsOpen() ? CheckDescriptor(Descriptor(file.m_handle)) : errno;
    if (nError != 0)
        file.Close();
    return file;
}

std::optional<std::uint64_t> File::Size() const
{
    struct stat info;
    if (!IsOpen() || fstat(Descriptor(m_handle), &info) != 0)
        return {};
    return static_cast<std::uint64_t>(info.st_size);
}

std::optional<std::size_t> File::ReadAt(std::uint64_t offset, void* buffer, std::size_t count) const
{
    std::size_t nRead = 0;
    while (nRead < count) {
        const std::uint64_t nPosition = offset + nRead;
        if (!IsOpen() || nPosition > std::numeric_limits<off_t>::max())
            return {};
        const ssize_t n = pread(Descriptor(m_handle), static_cast<char*>(buffer) + nRead,
                                count - nRead, static_cast<off_t>(nPosition));
        if (n == 0)
            break;
        if (n > 0)
            nRead += static_cast<std::size_t>(n);
        else if (errno != EINTR)
            return {};
    }
    return nRead;
}

string_t PathFromBytes(std::string_view bytes)
{
    return Utf8::Decode(bytes, [](unsigned char n) { return kEscape + n; });
}

// A surrogate that is neither of a pair nor an escape can't be part of a name.
std::string PathToBytes(string_view_t path)
{
    std::string bytes;
    bytes.reserve(path.size());
    while (!path.empty()) {
        const char32_t c = Utf8::TakeFront(path);
        if (c >= kEscape + 0x80 && c <= kEscape + 0xFF)
            bytes.push_back(static_cast<char>(c - kEscape));
        else
            Utf8::Append(bytes, Utf8::IsSurrogate(c) ? Utf8::kReplacement : c);
    }
    return bytes;
}
