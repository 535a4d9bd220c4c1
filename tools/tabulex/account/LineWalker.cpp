// The rule. Zero bytes, blanks, tabs and line ends are passed first. From there the line goes to
// the next CR or LF behind a piece that holds something: a piece of one byte, or of ": ,;" alone,
// holds nothing and the next piece joins it. The whole is a line if its first byte that is no
// divider isn't a line end. So a piece of one letter is read as one with the next line, and a
// line of dividers takes the next line away with it.
//
// Nearly all lines begin with a byte that is no divider, have two bytes or more, and lie whole in
// the buffer: those are found by two searches for bytes and judged by nothing else. Who doesn't
// want to see each line passes most of them many at a time.

#include "tools/tabulex/account/LineWalker.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include "tools/tabulex/account/PlainLines.h"
#include "tools/tabulex/host/ReadCheck.h"

namespace tabulex {

namespace {

constexpr std::size_t kBufferBytes = std::size_t{256} * 1024;

constexpr bool IsPassed(char c)
{
    return c == 0 || c == '\t' || c == '\n' || c == '\r' || c == ' ';
}

constexpr bool IsLineEnd(char c)
{
    return c == '\r' || c == '\n';
}

constexpr bool HoldsNothing(char c)
{
    return c == ':' || c == ' ' || c == ',' || c == ';';
}

constexpr bool IsDivider(char c)
{
    return HoldsNothing(c) || c == '|' || c == '\t' || c == 0;
}

} // namespace

// Bytes up to a CR or LF, or to the end of the file.
struct LineWalker::Segment
{
    ULONGLONG nLength = 0;
    bool bHolds = false;       // something that makes it a line
    bool bOnlyDividers = true; // no more than dividers
};

LineWalker::LineWalker(const std::string& path, ULONGLONG nSize)
    : m_file(path), m_nSize(nSize), m_buffer(kBufferBytes)
{
    Fill();
    FindLineEnds();
}

void LineWalker::FindLineEnds()
{
    const auto has = [this](char c) { return std::memchr(m_buffer.data(), c, m_nEnd) != nullptr; };
    if (m_nEnd > 0 && has('\r') && !has('\n'))
        m_cLineEnd = '\r';
}

// Only when all of the buffer has been passed.
bool LineWalker::Fill()
{
    m_nBase += m_nEnd;
    m_nAt = m_nEnd = 0;
    const ULONGLONG nLeft = m_nSize - std::min(m_nSize, m_nBase);
    const auto nWanted = static_cast<std::size_t>(std::min<ULONGLONG>(nLeft, m_buffer.size()));
    m_nEnd = m_file.ReadAt(m_nBase, {m_buffer.data(), nWanted});
    if (m_nEnd < nWanted && m_sFault.empty())
        m_sFault = !m_file.IsOpen() ? "it was renamed or removed meanwhile"
                   : m_file.HasFailed()
                       ? ReadFailedAt(m_nBase + m_nEnd, m_nSize)
                       : CutAt(std::min<ULONGLONG>(m_nBase + m_nEnd, m_file.Size()), m_nSize);
    if (m_pSuspects)
        m_pSuspects->Take(m_buffer.data(), m_nEnd);
    return m_nEnd > 0;
}

// What the buffer holds from the beginning was read before anybody could see it.
void LineWalker::Show(SuspectBytes* pSuspects)
{
    m_pSuspects = pSuspects;
    if (m_pSuspects)
        m_pSuspects->Take(m_buffer.data(), m_nEnd);
}

void LineWalker::GoTo(const Place& place)
{
    m_nBase = place.nOffset;
    m_nAt = m_nEnd = 0;
    m_nLineEnds = place.nLineEnds;
    m_bLineOpen = m_bCounted = m_bZero = false;
    m_tally.nContent = place.nContent;
}

bool LineWalker::Next(ContentLine& line)
{
    for (;;) {
        SkipBlanks();
        if (AtEnd())
            return false;
        if (TakePlainLine(line) || TakeLine(line))
            return Count(line);
    }
}

// The first of them begins behind a line feed that is next.
bool LineWalker::PassPlainLines(ULONGLONG nMost)
{
    const std::string_view ahead(m_buffer.data() + m_nAt, m_nEnd - m_nAt);
    const std::size_t nFeed = ahead.starts_with('\r') ? 1 : 0;
    if (m_cLineEnd != '\n' || nFeed >= ahead.size() || ahead[nFeed] != '\n')
        return false;
    const PlainLines lines =
        FindPlainLines(ahead.substr(nFeed + 1), static_cast<std::size_t>(nMost));
    if (lines.nLines == 0)
        return false;
    m_nAt += nFeed + 1 + lines.nEnd;
    m_nLineEnds += lines.nLines;
    m_tally.nContent += lines.nLines;
    m_bLineOpen = m_bCounted = true;
    m_bZero = false;
    return true;
}

bool LineWalker::Count(const ContentLine& line)
{
    ++m_tally.nContent;
    m_tally.nZeroContent += m_bZero ? 1 : 0;
    m_tally.nJoined += line.nJoined;
    if (line.nJoined && !m_tally.nFirstJoined)
        m_tally.nFirstJoined = line.nNumber;
    if (line.nLength > kMostLineBytes && ++m_tally.nLong == 1)
        m_tally.nFirstLong = line.nNumber;
    return true;
}

// Something was found on the present line that the tally counts.
void LineWalker::CountPiece()
{
    m_tally.nSplit += m_bCounted ? 1 : 0;
    m_bCounted = true;
}

// At a line end.
void LineWalker::PassLineEnd()
{
    if (m_buffer[m_nAt++] == m_cLineEnd) {
        ++m_nLineEnds;
        m_bLineOpen = m_bCounted = m_bZero = false;
    }
}

void LineWalker::SkipBlanks()
{
    while (!AtEnd() && IsPassed(m_buffer[m_nAt]))
        if (IsLineEnd(m_buffer[m_nAt]))
            PassLineEnd();
        else if (m_buffer[m_nAt++] == 0)
            CountZero();
        else
            m_bLineOpen = true;
}

// False where the line needs a closer look; nothing has been passed then.
bool LineWalker::TakePlainLine(ContentLine& line)
{
    const char* pFirst = m_buffer.data() + m_nAt;
    if (IsDivider(*pFirst))
        return false;
    const auto find = [&](char c, const char* pBehind) {
        const auto n = static_cast<std::size_t>(pBehind - pFirst);
        return static_cast<const char*>(std::memchr(pFirst, c, n));
    };
    const char* pEnd = find(m_cLineEnd, m_buffer.data() + m_nEnd);
    if (!pEnd)
        return false;
    if (const char* pOther = find(m_cLineEnd == '\n' ? '\r' : '\n', pEnd))
        pEnd = pOther;
    const auto nLength = static_cast<std::size_t>(pEnd - pFirst);
    if (nLength < 2)
        return false;
    line = {m_nLineEnds + 1, m_nBase + m_nAt, nLength, 0, pFirst};
    m_nAt += nLength;
    m_bLineOpen = true;
    CountPiece();
    if (std::memchr(pFirst, 0, nLength))
        CountZero();
    return true;
}

LineWalker::Segment LineWalker::ReadSegment()
{
    Segment segment;
    while (!AtEnd() && !IsLineEnd(m_buffer[m_nAt])) {
        const char c = m_buffer[m_nAt++];
        ++segment.nLength;
        segment.bHolds = segment.bHolds || !HoldsNothing(c);
        segment.bOnlyDividers = segment.bOnlyDividers && IsDivider(c);
        if (c == 0)
            CountZero();
        else
            m_bLineOpen = true;
    }
    return segment;
}

// False where the component sees no line in what was passed.
bool LineWalker::TakeLine(ContentLine& line)
{
    line = {m_nLineEnds + 1, m_nBase + m_nAt, 0, 0, nullptr};
    Segment segment = ReadSegment();
    const bool bLine = !segment.bOnlyDividers;
    if (bLine)
        CountPiece();
    line.nLength = segment.nLength;
    while (!AtEnd() && (segment.nLength == 1 || !segment.bHolds)) {
        PassLineEnd();
        segment = ReadSegment();
        if (segment.nLength == 0)
            continue;
        if (bLine) {
            CountPiece();
            ++line.nJoined;
        }
        line.nLength = m_nBase + m_nAt - line.nOffset;
    }
    if (!bLine && segment.bHolds && !segment.bOnlyDividers)
        CountLost();
    return bLine;
}

void LineWalker::CountLost()
{
    CountPiece();
    if (++m_tally.nLost == 1)
        m_tally.nFirstLost = m_nLineEnds + 1;
}

void LineWalker::CountZero()
{
    if (std::exchange(m_bZero, true))
        return;
    if (++m_tally.nZero == 1)
        m_tally.nFirstZero = m_nLineEnds + 1;
}

std::string LineWalker::BytesOf(const ContentLine& line, ULONGLONG nMost)
{
    std::string bytes(static_cast<std::size_t>(std::min(line.nLength, nMost)), '\0');
    bytes.resize(m_file.ReadAt(line.nOffset, bytes));
    return bytes;
}

} // namespace tabulex
