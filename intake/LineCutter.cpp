// Lines within a block are handed on as they lie there. One that goes on in the next block is
// copied, and so are the last ones of a block, as their bytes must be readable beyond the end.

#include "intake/LineCutter.h"

#include <algorithm>
#include <cstring>

namespace tabulex::intake {

LineCutter::LineCutter(LineTaker& taker, std::size_t nMostBytes)
    : m_taker(taker), m_nMostBytes(nMostBytes)
{}

// Keeps the text until its line end is known.
bool LineCutter::Decide(std::string_view text)
{
    m_start += text;
    const bool bLf = m_start.find('\n') != std::string::npos;
    if (!bLf && m_start.size() < kDecidingBytes)
        return false;
    m_cEnd = bLf || m_start.find('\r') == std::string::npos ? '\n' : '\r';
    return true;
}

void LineCutter::Give(std::string_view line, bool bCut)
{
    if (m_cEnd == '\n' && line.ends_with('\r'))
        line.remove_suffix(1);
    if (line.size() > m_nMostBytes) {
        line = line.substr(0, m_nMostBytes);
        bCut = true;
    }
    m_taker.Take(line, bCut);
}

void LineCutter::Keep(std::string_view text)
{
    const std::size_t nRoom = m_nMostBytes + 1 - std::min(m_kept.size(), m_nMostBytes + 1);
    m_bCut = m_bCut || text.size() > nRoom;
    m_kept.append(text.substr(0, nRoom));
    m_bKept = true;
}

void LineCutter::GiveKept()
{
    const std::size_t nSize = m_kept.size();
    m_kept.append(kLinePadding, '\0');
    Give(std::string_view(m_kept).substr(0, nSize), m_bCut);
    m_kept.clear();
    m_bKept = m_bCut = false;
}

void LineCutter::FeedLines(std::string_view text)
{
    while (!text.empty()) {
        const void* pEnd = std::memchr(text.data(), m_cEnd, text.size());
        if (!pEnd) {
            Keep(text);
            return;
        }
        const auto nLine = static_cast<std::size_t>(static_cast<const char*>(pEnd) - text.data());
        const std::string_view line = text.substr(0, nLine);
        if (m_bKept || text.size() - nLine < kLinePadding) {
            Keep(line);
            GiveKept();
        } else
            Give(line, false);
        text.remove_prefix(nLine + 1);
    }
}

void LineCutter::Feed(std::string_view text)
{
    if (m_cEnd != 0) {
        FeedLines(text);
        return;
    }
    if (Decide(text)) {
        const std::string start = std::move(m_start);
        FeedLines(start);
    }
}

void LineCutter::Finish()
{
    if (m_cEnd == 0) {
        m_cEnd = m_start.find('\r') == std::string::npos ? '\n' : '\r';
        FeedLines(m_start);
    }
    if (m_bKept)
        GiveKept();
}

} // namespace tabulex::intake
