// File: a read-only file, read by position.
//
// No mapping: a file that shrinks under its reader gives a short or failed read,
// never a fault. Reads of one File from several threads are allowed. Paths are
// UTF-16; on a system with byte paths they are taken as UTF-8, with bytes that
// aren't UTF-8 carried as lone low surrogates U+DC80 to U+DCFF, so that every
// name can be opened.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

#include "platform/component.h"

class File
{
public:
    File() = default;
    File(File&& other) noexcept;
    File& operator=(File&& other) noexcept;
    ~File();

    // Opens an existing file for reading; others may go on reading, writing, renaming and
    // deleting it. On failure the result is not open and nError is the system's error
    // number. A folder can't be opened.
    static File Open(string_view_t path, int& nError);

    bool IsOpen() const { return m_handle != kNone; }
    void Close();

    // Current size in bytes; empty if the system can't say.
    std::optional<std::uint64_t> Size() const;

    // Reads up to `count` bytes at `offset`; gives the bytes read, which are fewer
    // only at the end of the file, or empty on a read error.
    std::optional<std::size_t> ReadAt(std::uint64_t offset, void* buffer, std::size_t count) const;

private:
    static constexpr std::intptr_t kNone = -1;
    std::intptr_t m_handle = kNone;
};

// Path text to and from the system's bytes, by the rule above.
string_t PathFromBytes(std::string_view bytes);
std::string PathToBytes(string_view_t path);
