// Line feeds, and what may make a line odd, are found for some windows ahead. Between two line
// feeds only the first and the last byte are looked at, as far as nothing odd stands there.

#include "tools/tabulex/account/PlainLines.h"

#include <algorithm>
#include <array>
#include <bit>

#include "tools/tabulex/account/ByteSets.h"

namespace tabulex {

namespace {

using namespace std::string_view_literals;

constexpr std::size_t kWindowsAhead = 16; // that are looked at ahead

enum FeedMark
{
    LineFeeds,
    ReturnsAndZeros,
    kFeedMarks
};

using FeedMarks = ByteSets<kFeedMarks>;

// Dividers, and what stands ahead of a line.
constexpr auto kNotFirst = [] {
    std::array<bool, 256> notFirst{};
    for (const char c : "\0\t\n\r :,;|"sv)
        notFirst[static_cast<unsigned char>(c)] = true;
    return notFirst;
}();

class Finder
{
public:
    Finder(std::string_view bytes, std::size_t nMost) : m_bytes(bytes), m_nMost(nMost) {}

    PlainLines Find();

private:
    bool TakeWindow(std::size_t nAt, const FeedMarks::Masks& window);
    bool TakeLine(std::size_t nFeed);

    std::string_view m_bytes;
    std::size_t m_nMost;
    std::size_t m_nFirst = 0; // byte of the next line
    PlainLines m_found;
};

// A byte behind the windows is looked at as well.
PlainLines Finder::Find()
{
    static const FeedMarks marks({"\n", "\r\0"sv});
    std::array<FeedMarks::Masks, kWindowsAhead> windows;
    for (std::size_t nAt = 0; m_nMost > 0; nAt += kWindowsAhead * kWindowBytes) {
        const std::size_t nLeft = (m_bytes.size() - nAt - 1) / kWindowBytes;
        const std::size_t nWindows = std::min(kWindowsAhead, nLeft);
        marks.Find(m_bytes.data() + nAt, kWindowBytes, {windows.data(), nWindows});
        for (std::size_t i = 0; i < nWindows; ++i)
            if (!TakeWindow(nAt + i * kWindowBytes, windows[i]))
                return m_found;
        if (nWindows < kWindowsAhead)
            break;
    }
    return m_found;
}

// False where the lines that are asked for end.
bool Finder::TakeWindow(std::size_t nAt, const FeedMarks::Masks& window)
{
    constexpr unsigned kLast = kWindowBytes - 1;
    std::uint64_t feeds = window[LineFeeds];
    const auto next = std::uint64_t{m_bytes[nAt + kWindowBytes] == '\n'} << kLast;
    const std::uint64_t odd = window[ReturnsAndZeros] & ~(feeds >> 1 | next);
    feeds &= odd ? (odd & -odd) - 1 : ~std::uint64_t{0};
    for (; feeds; feeds &= feeds - 1)
        if (!TakeLine(nAt + static_cast<std::size_t>(std::countr_zero(feeds))))
            return false;
    return odd == 0;
}

bool Finder::TakeLine(std::size_t nFeed)
{
    const std::size_t nEnd = nFeed - (nFeed > m_nFirst && m_bytes[nFeed - 1] == '\r' ? 1 : 0);
    const std::size_t nLength = nEnd - m_nFirst;
    if (nLength < 2 || nLength > kMostPlainBytes || m_bytes[nEnd - 1] == 0 ||
        kNotFirst[static_cast<unsigned char>(m_bytes[m_nFirst])])
        return false;
    m_nFirst = nFeed + 1;
    m_found.nEnd = nEnd;
    return ++m_found.nLines < m_nMost;
}

} // namespace

PlainLines FindPlainLines(std::string_view bytes, std::size_t nMost)
{
    return bytes.empty() ? PlainLines() : Finder(bytes, nMost).Find();
}

} // namespace tabulex
