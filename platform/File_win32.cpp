#include "platform/File.h"

#include <algorithm>
#include <utility>

#include "platform/text/CodePage.h"

namespace {

// Others may also rename and delete the file meanwhile.
constexpr DWORD kShared = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;

HANDLE AsHandle(std::intptr_t handle)
{
    return reinterpret_cast<HANDLE>(handle);
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

File File::Open(string_view_t path, int& nError)
{
    File file;
    // The system would cut the name at a zero unit and open another file.
    if (path.find(L'\0') != string_view_t::npos) {
        nError = ERROR_INVALID_NAME;
        return file;
    }
    const HANDLE handle = CreateFileW(string_t(path).c_str(), GENERIC_READ, kShared, nullptr,
                                      OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    nError = handle == INVALID_HANDLE_VALUE ? static_cast<int>(GetLastError()) : 0;
    file.m_handle = reinterpret_cast<std::intptr_t>(handle);
    // A read of a pipe or a console would wait until somebody writes.
    if (file.IsOpen() && GetFileType(handle) != FILE_TYPE_DISK) {
        nError = ERROR_NOT_SUPPORTED;
        file.Close();
    }
    return file;
}

void File::Close()
{
    if (IsOpen())
        CloseHandle(AsHandle(std::exchange(m_handle, kNone)));
}

std::optional<std::uint64_t> File::Size() const
{
    LARGE_INTEGER size;
    if (!GetFileSizeEx(AsHandle(m_handle), &size))
        return {};
    return static_cast<std::uint64_t>(size.QuadPart);
}

// The place stands in the request, so that threads don't move each other's.
std::optional<std::size_t> File::ReadAt(std::uint64_t offset, void* buffer, std::size_t count) const
{
    constexpr std::size_t kMost = 1u << 30;
    std::size_t nRead = 0;
    while (nRead < count) {
        OVERLAPPED place{};
        place.Offset = static_cast<DWORD>(offset + nRead);
        place.OffsetHigh = static_cast<DWORD>((offset + nRead) >> 32);
        const auto nWanted = static_cast<DWORD>(std::min(count - nRead, kMost));
        DWORD nGot = 0;
        if (!ReadFile(AsHandle(m_handle), static_cast<char*>(buffer) + nRead, nWanted, &nGot,
                      &place) &&
            GetLastError() != ERROR_HANDLE_EOF)
            return {};
        if (nGot == 0)
            break;
        nRead += nGot;
    }
    return nRead;
}

string_t PathFromBytes(std::string_view bytes)
{
    string_t path;
    DecodeBytes(CP_UTF8, bytes, path);
    return path;
}

std::string PathToBytes(string_view_t path)
{
    return EncodeText(CP_UTF8, path);
}
