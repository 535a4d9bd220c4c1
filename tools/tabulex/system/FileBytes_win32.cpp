#include "tools/tabulex/system/FileBytes.h"

#include "platform/component.h"
#include "tools/tabulex/system/Paths.h"

namespace tabulex {

namespace {

// A file that goes when it is closed is opened only by those who share its deletion.
constexpr DWORD kShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;

} // namespace

FileBytes::FileBytes(const std::string& path)
    : m_handle(reinterpret_cast<std::intptr_t>(CreateFileW(PathOf(path).c_str(), GENERIC_READ,
                                                           kShareAll, nullptr, OPEN_EXISTING,
                                                           FILE_ATTRIBUTE_NORMAL, nullptr)))
{}

FileBytes::~FileBytes()
{
    if (m_handle != -1)
        CloseHandle(reinterpret_cast<HANDLE>(m_handle));
}

std::uint64_t FileBytes::Size() const
{
    LARGE_INTEGER size{};
    return GetFileSizeEx(reinterpret_cast<HANDLE>(m_handle), &size)
               ? static_cast<std::uint64_t>(size.QuadPart)
               : 0;
}

std::size_t FileBytes::ReadAt(std::uint64_t nOffset, std::span<char> buffer)
{
    std::size_t nRead = 0;
    while (m_handle != -1 && nRead < buffer.size()) {
        const std::uint64_t nFrom = nOffset + nRead;
        OVERLAPPED place{};
        place.Offset = static_cast<DWORD>(nFrom);
        place.OffsetHigh = static_cast<DWORD>(nFrom >> 32);
        DWORD nGot = 0;
        const bool bRead = ReadFile(reinterpret_cast<HANDLE>(m_handle), buffer.data() + nRead,
                                    static_cast<DWORD>(buffer.size() - nRead), &nGot, &place);
        m_bFailed = m_bFailed || (!bRead && GetLastError() != ERROR_HANDLE_EOF);
        if (!bRead || nGot == 0)
            break;
        nRead += nGot;
    }
    return nRead;
}

} // namespace tabulex
