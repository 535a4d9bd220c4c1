// FileBytes: the bytes of a file by their place.
//
// The file may be open elsewhere, temporary, and be renamed or removed meanwhile. Used by one
// thread.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>

namespace tabulex {

class FileBytes
{
public:
    // One that can't be opened has no bytes.
    explicit FileBytes(const std::string& path);
    ~FileBytes();
    FileBytes(const FileBytes&) = delete;
    FileBytes& operator=(const FileBytes&) = delete;

    bool IsOpen() const { return m_handle != -1; }
    std::uint64_t Size() const; // 0 where it isn't known
    // Fills the buffer; less than all of it where the file ends, or where reading fails.
    std::size_t ReadAt(std::uint64_t nOffset, std::span<char> buffer);
    // Whether a read has failed.
    bool HasFailed() const { return m_bFailed; }

private:
    std::intptr_t m_handle = -1;
    bool m_bFailed = false;
};

} // namespace tabulex
