// The rows of a file, page by page: what the hand-written readers have in common.
//
// Each walk calls OnRow(begin, end) for every row without its line end; the first line of the file
// is its header and left out. The last row must end with a line end too. Throws std::runtime_error
// for a file that can't be read.
#pragma once

#include <algorithm>
#include <cstring>
#include <stdexcept>
#include <string>
#include <vector>

#include <fcntl.h>
#include <unistd.h>

namespace bench {

// Closed with the object.
class ReadFile
{
public:
    explicit ReadFile(const std::string& sPath) : m_nFile(::open(sPath.c_str(), O_RDONLY))
    {
        if (m_nFile < 0)
            throw std::runtime_error("can't open " + sPath);
    }
    ~ReadFile() { ::close(m_nFile); }
    ReadFile(const ReadFile&) = delete;
    ReadFile& operator=(const ReadFile&) = delete;

    std::size_t Size() const { return static_cast<std::size_t>(::lseek(m_nFile, 0, SEEK_END)); }

    // Bytes read, less than n at the end of the file only.
    std::size_t ReadAt(std::size_t nOffset, char* p, std::size_t n) const
    {
        const ssize_t nRead = ::pread(m_nFile, p, n, static_cast<off_t>(nOffset));
        if (nRead < 0)
            throw std::runtime_error("can't read");
        return static_cast<std::size_t>(nRead);
    }

private:
    int m_nFile;
};

inline constexpr std::size_t kWalkPage = 1 << 18; // bytes
inline constexpr std::size_t kWalkRow = 1 << 12;  // bytes, the longest row

// Read(buffer, nOffset, n) gives the characters that the file has at nOffset, n at most.
template <class Read, class OnRow>
void WalkRows(Read read, OnRow onRow)
{
    std::vector<char> buffer(kWalkRow + kWalkPage);
    std::size_t nKept = 0; // characters of a row whose end isn't read yet
    std::size_t nOffset = 0;
    bool bHeader = true;
    while (const std::size_t nRead = read(buffer.data() + nKept, nOffset, kWalkPage)) {
        nOffset += nRead;
        const char* p = buffer.data();
        const char* const end = p + nKept + nRead;
        while (const void* found = std::memchr(p, '\n', static_cast<std::size_t>(end - p))) {
            const char* const eol = static_cast<const char*>(found);
            if (!bHeader)
                onRow(p, eol);
            bHeader = false;
            p = eol + 1;
        }
        nKept = static_cast<std::size_t>(end - p);
        std::memmove(buffer.data(), p, nKept);
    }
}

template <class OnRow>
void WalkBytes(const std::string& sPath, OnRow onRow)
{
    const ReadFile file(sPath);
    WalkRows(
        [&](char* p, std::size_t nOffset, std::size_t n) { return file.ReadAt(nOffset, p, n); },
        onRow);
}

// Characters of two bytes, low byte first, after a mark. OnRow is given the low bytes.
template <class OnRow>
void WalkTwoByte(const std::string& sPath, OnRow onRow)
{
    const ReadFile file(sPath);
    std::vector<char> wide(2 * kWalkPage);
    WalkRows(
        [&](char* p, std::size_t nOffset, std::size_t n) {
            n = file.ReadAt(2 + 2 * nOffset, wide.data(), 2 * n) / 2;
            for (std::size_t i = 0; i < n; ++i)
                p[i] = wide[2 * i];
            return n;
        },
        onRow);
}

// From the last row to the first.
template <class OnRow>
void WalkBackwards(const std::string& sPath, OnRow onRow)
{
    const ReadFile file(sPath);
    std::vector<char> buffer(kWalkPage + kWalkRow);
    std::size_t nKept = 0; // characters after the page, of a row whose beginning isn't read yet
    for (std::size_t nOffset = file.Size(); nOffset != 0;) {
        const std::size_t n = std::min(nOffset, kWalkPage);
        nOffset -= n;
        std::memmove(buffer.data() + n, buffer.data(), nKept);
        if (file.ReadAt(nOffset, buffer.data(), n) != n)
            throw std::runtime_error("the file was cut");
        const char* const p = buffer.data();
        const char* end = p + n + nKept; // after the line end of the next row
        while (end != p) {
            const void* found = ::memrchr(p, '\n', static_cast<std::size_t>(end - 1 - p));
            if (!found)
                break;
            const char* const before = static_cast<const char*>(found);
            onRow(before + 1, end - 1);
            end = before + 1;
        }
        nKept = static_cast<std::size_t>(end - p);
    }
}

} // namespace bench
