#include "tools/tabulex/account/LineMap.h"

#include <algorithm>
#include <utility>

namespace tabulex {

// Every other place goes when there are too many, so that memory stays bounded.
void LineMap::KeepPlace()
{
    if (m_front.Tally().nContent % m_nSpacing != 0)
        return;
    if (m_places.size() == kMostPlaces) {
        for (std::size_t i = 0; i < kMostPlaces / 2; ++i)
            m_places[i] = m_places[2 * i];
        m_places.resize(kMostPlaces / 2);
        m_nSpacing *= 2;
        if (m_front.Tally().nContent % m_nSpacing != 0)
            return;
    }
    m_places.push_back(m_front.Here());
}

void LineMap::WalkTo(ULONGLONG nContent)
{
    if (!std::exchange(m_bBegun, true))
        m_front.Show(&m_suspects);
    ContentLine line;
    while (!m_bEnded && m_front.Tally().nContent <= nContent) {
        KeepPlace();
        const ULONGLONG nPassed = m_front.Tally().nContent;
        const ULONGLONG nMost = std::min(nContent - nPassed + 1, m_nSpacing - nPassed % m_nSpacing);
        if (!m_front.PassPlainLines(nMost))
            m_bEnded = !m_front.Next(line);
    }
}

const ContentLine* LineMap::Find(ULONGLONG nContent)
{
    if (nContent == m_nLine)
        return &m_line;
    WalkTo(nContent);
    if (nContent >= m_front.Tally().nContent)
        return nullptr;
    const ULONGLONG nAt = m_reader.Tally().nContent;
    if (nContent < nAt || nContent - nAt > m_nSpacing)
        m_reader.GoTo(m_places[static_cast<std::size_t>(nContent / m_nSpacing)]);
    while (m_reader.Tally().nContent <= nContent)
        if (!m_reader.Next(m_line))
            return nullptr;
    m_line.nNumber = UserNumber(m_line.nNumber);
    m_nLine = nContent;
    return &m_line;
}

ULONGLONG LineMap::UserNumber(ULONGLONG nNumber) const
{
    return m_pSource && nNumber != 0 ? m_pSource->NumberOf(nNumber) : nNumber;
}

ULONGLONG LineMap::NumberOf(ULONGLONG nContent)
{
    const ContentLine* pLine = Find(nContent);
    return pLine ? pLine->nNumber : 0;
}

std::string LineMap::BytesOf(ULONGLONG nContent, ULONGLONG nMost)
{
    const ContentLine* pLine = Find(nContent);
    return pLine ? m_reader.BytesOf(*pLine, nMost) : std::string();
}

std::string LineMap::UserBytesOf(ULONGLONG nContent)
{
    return m_pSource ? m_pSource->BytesOf(NumberOf(nContent), kMostBytes) : BytesOf(nContent);
}

void LineMap::VisitSuspects(ULONGLONG nFirst, const Visitor& visit)
{
    Tally();
    for (const auto& part : m_suspects.Parts())
        VisitPart(part, nFirst, visit);
    m_nLine = ~0ULL; // the reader stands somewhere else now
}

// A line may begin before the part, so the place before it is where the walk begins.
void LineMap::VisitPart(const SuspectBytes::Part& part, ULONGLONG nFirst, const Visitor& visit)
{
    const auto after =
        std::ranges::upper_bound(m_places, part.nFrom, {}, &LineWalker::Place::nOffset);
    if (after == m_places.begin())
        return;
    m_reader.GoTo(*std::prev(after));
    while (m_reader.Next(m_line) && m_line.nOffset < part.nTo) {
        if (m_reader.Tally().nContent <= nFirst || m_line.nOffset + m_line.nLength < part.nFrom)
            continue;
        m_line.nNumber = UserNumber(m_line.nNumber);
        if (m_line.pBytes)
            visit(m_line, {m_line.pBytes, static_cast<std::size_t>(m_line.nLength)});
        else
            visit(m_line, m_reader.BytesOf(m_line, kMostBytes));
    }
}

LineTally LineMap::Tally()
{
    WalkTo(~0ULL - 1);
    LineTally tally = m_front.Tally();
    for (ULONGLONG* pNumber :
         {&tally.nFirstJoined, &tally.nFirstLost, &tally.nFirstLong, &tally.nFirstZero})
        *pNumber = UserNumber(*pNumber);
    return tally;
}

ULONGLONG LineMap::Lines()
{
    Tally();
    return m_front.Lines();
}

} // namespace tabulex
