#include "platform/File.h"

#include <cerrno>
#include <limits>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

constexpr char32_t kEscape = 0xDC00; // plus the byte
constexpr char32_t kReplacement = 0xFFFD;

int Descriptor(std::intptr_t handle)
{
    return static_cast<int>(handle);
}

bool IsTrail(unsigned char byte)
{
    return (byte & 0xC0) == 0x80;
}

bool IsHigh(char32_t c)
{
    return c >= 0xD800 && c < 0xDC00;
}
bool IsLow(char32_t c)
{
    return c >= 0xDC00 && c < 0xE000;
}

// Length of the UTF-8 sequence that the lead byte begins and the least character
// that needs that many bytes; 0 for a byte that begins none.
struct LeadByte
{
    std::size_t nLength;
    char32_t least;
};

LeadByte ClassifyLead(unsigned char byte)
{
    if (byte < 0x80)
        return {1, 0};
    if (byte >= 0xC2 && byte < 0xE0)
        return {2, 0x80};
    if (byte >= 0xE0 && byte < 0xF0)
        return {3, 0x800};
    if (byte >= 0xF0 && byte < 0xF5)
        return {4, 0x10000};
    return {0, 0};
}

// Takes a character from the front; a byte that isn't part of one comes as its escape.
char32_t TakeCharacter(std::string_view& bytes)
{
    const auto first = static_cast<unsigned char>(bytes.front());
    const LeadByte lead = ClassifyLead(first);
    char32_t c = lead.nLength <= 1 ? first : first & (0x7Fu >> lead.nLength);
    bool bValid = lead.nLength != 0 && lead.nLength <= bytes.size();
    for (std::size_t n = 1; bValid && n < lead.nLength; ++n) {
        const auto byte = static_cast<unsigned char>(bytes[n]);
        bValid = IsTrail(byte);
        c = c << 6 | (byte & 0x3Fu);
    }
    bValid = bValid && c >= lead.least && c <= 0x10FFFF && !IsHigh(c) && !IsLow(c);
    bytes.remove_prefix(bValid ? lead.nLength : 1);
    return bValid ? c : kEscape + first;
}

void AppendUnits(char32_t c, string_t& out)
{
    if (c < 0x10000) {
        out.push_back(static_cast<OLECHAR>(c));
        return;
    }
    out.push_back(static_cast<OLECHAR>(0xD7C0 + (c >> 10)));
    out.push_back(static_cast<OLECHAR>(0xDC00 + (c & 0x3FF)));
}

void AppendBytes(char32_t c, std::string& out)
{
    const auto trail = [&](int nShift) {
        out.push_back(static_cast<char>(0x80 | (c >> nShift & 0x3F)));
    };
    if (c < 0x80)
        out.push_back(static_cast<char>(c));
    else if (c < 0x800) {
        out.push_back(static_cast<char>(0xC0 | c >> 6));
        trail(0);
    } else if (c < 0x10000) {
        out.push_back(static_cast<char>(0xE0 | c >> 12));
        trail(6);
        trail(0);
    } else {
        out.push_back(static_cast<char>(0xF0 | c >> 18));
        trail(12);
        trail(6);
        trail(0);
    }
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
    string_t path;
    path.reserve(bytes.size());
    while (!bytes.empty())
        AppendUnits(TakeCharacter(bytes), path);
    return path;
}

// A surrogate that is neither of a pair nor an escape can't be part of a name.
std::string PathToBytes(string_view_t path)
{
    std::string bytes;
    bytes.reserve(path.size());
    for (std::size_t n = 0; n < path.size(); ++n) {
        const char32_t c = path[n];
        const char32_t next = n + 1 < path.size() ? path[n + 1] : 0;
        if (IsHigh(c) && IsLow(next)) {
            AppendBytes(((c & 0x3FF) << 10) + (next & 0x3FF) + 0x10000, bytes);
            ++n;
        } else if (c >= kEscape + 0x80 && c <= kEscape + 0xFF)
            bytes.push_back(static_cast<char>(c - kEscape));
        else
            AppendBytes(IsHigh(c) || IsLow(c) ? kReplacement : c, bytes);
    }
    return bytes;
}
