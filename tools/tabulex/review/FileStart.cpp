#include "tools/tabulex/review/FileStart.h"

#include <algorithm>

#include "tools/tabulex/host/ReadCheck.h"
#include "tools/tabulex/review/Decoding.h"

namespace tabulex {

namespace {

// The headings and some hundred rows, by one read.
constexpr std::size_t kStartBytes = 64 << 10;
constexpr std::string_view kUtf8Mark = "\xEF\xBB\xBF";

// Lines with content and their numbers, from 0, until one is refused.
template <class Take>
void ForEachLine(std::string_view rest, Take take)
{
    for (ULONGLONG n = 0; !rest.empty();) {
        const std::size_t nEnd = std::min(rest.find_first_of("\r\n"), rest.size());
        const std::string_view line = rest.substr(0, nEnd);
        if (line.find_first_not_of(" \t") != std::string_view::npos && !take(n++, line))
            return;
        rest.remove_prefix(std::min(nEnd + 1, rest.size()));
    }
}

std::string BytesOf(const std::string& path)
{
    FileBytes file(path);
    return BytesAt(file, 0, kStartBytes);
}

} // namespace

FileStart::FileStart(const std::string& path) : m_sBytes(BytesOf(path))
{
    if (m_sBytes.starts_with(kUtf8Mark))
        m_sBytes.erase(0, kUtf8Mark.size());
}

std::optional<std::string_view> FileStart::Line(ULONGLONG nLine) const
{
    std::optional<std::string_view> found;
    ForEachLine(m_sBytes, [&](ULONGLONG n, std::string_view line) {
        if (n == nLine)
            found = line;
        return !found;
    });
    return found;
}

std::optional<ULONGLONG> FileStart::FirstLineBeyondAscii() const
{
    std::optional<ULONGLONG> nFound;
    ForEachLine(m_sBytes, [&](ULONGLONG n, std::string_view line) {
        const bool bMayBeCut = line.data() + line.size() == m_sBytes.data() + kStartBytes;
        if (!bMayBeCut && !IsAscii(line))
            nFound = n;
        return !nFound;
    });
    return nFound;
}

} // namespace tabulex
