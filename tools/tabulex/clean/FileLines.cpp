#include "tools/tabulex/clean/FileLines.h"

#include <algorithm>
#include <cstring>

namespace tabulex {

namespace {

constexpr std::size_t kBlockBytes = 1 << 16;

} // namespace

FileLines::FileLines(const std::string& path) : m_file(path), m_block(kBlockBytes)
{
    const std::string_view head(m_block.data(), ReadBlock(0));
    if (head.find('\n') == head.npos && head.find('\r') != head.npos)
        m_cLineEnd = '\r';
}

std::size_t FileLines::ReadBlock(ULONGLONG nOffset)
{
    return m_file.ReadAt(nOffset, m_block);
}

// Moves the offset behind so many line ends; false where the file has fewer.
bool FileLines::PassLines(ULONGLONG& nOffset, ULONGLONG nLines)
{
    while (nLines > 0) {
        const std::size_t nHave = ReadBlock(nOffset);
        std::size_t nAt = 0;
        while (nLines > 0 && nAt < nHave) {
            const void* pEnd = std::memchr(m_block.data() + nAt, m_cLineEnd, nHave - nAt);
            nAt =
                pEnd ? static_cast<std::size_t>(static_cast<const char*>(pEnd) - m_block.data()) + 1
                     : nHave;
            nLines -= pEnd ? 1 : 0;
        }
        nOffset += nAt;
        if (nHave == 0)
            return false;
    }
    return true;
}

std::string FileLines::BytesOf(ULONGLONG nNumber, ULONGLONG nMost)
{
    if (nNumber == 0)
        return {};
    const std::size_t nPlace = static_cast<std::size_t>((nNumber - 1) / kSpacing);
    while (m_places.size() <= nPlace && !m_bEnded) {
        ULONGLONG nOffset = m_places.back();
        m_bEnded = !PassLines(nOffset, kSpacing);
        if (!m_bEnded)
            m_places.push_back(nOffset);
    }
    std::string text;
    if (m_places.size() <= nPlace)
        return text;
    ULONGLONG nOffset = m_places[nPlace];
    if (!PassLines(nOffset, (nNumber - 1) % kSpacing))
        return text;
    while (text.size() < nMost) {
        const std::size_t nHave = ReadBlock(nOffset);
        const auto end = std::find(
            m_block.begin(), m_block.begin() + static_cast<std::ptrdiff_t>(nHave), m_cLineEnd);
        text.append(m_block.begin(), end);
        nOffset += nHave;
        if (nHave == 0 || end != m_block.begin() + static_cast<std::ptrdiff_t>(nHave))
            break;
    }
    text.resize(std::min<std::size_t>(text.size(), static_cast<std::size_t>(nMost)));
    if (m_cLineEnd == '\n' && text.ends_with('\r'))
        text.pop_back();
    return text;
}

} // namespace tabulex
