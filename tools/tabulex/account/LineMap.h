// LineMap: where the lines stand that the component numbers, and what the file has beside them.
//
// The component counts lines with content, from 0. The map walks through the file only as far as
// it is asked, keeps a place every few lines, and finds any line from there. Used by one thread.
#pragma once

#include <functional>

#include "tools/tabulex/account/LineWalker.h"
#include "tools/tabulex/host/LineSource.h"

namespace tabulex {

class LineMap
{
public:
    // A file that the component has open, with the size that the component knows. All numbers of
    // lines are those of the source, which must outlive this; null where the file is the user's.
    LineMap(const std::string& path, ULONGLONG nSize, LineSource* pSource)
        : m_front(path, nSize), m_reader(path, nSize), m_pSource(pSource)
    {}

    // Line nContent of those with content, from 0; empty behind the end. A line far from the
    // last one that was asked for costs a walk over a few hundred lines.
    const ContentLine* Find(ULONGLONG nContent);
    // The number that an editor shows, from 1; 0 behind the end.
    ULONGLONG NumberOf(ULONGLONG nContent);
    // The line's own bytes, at most nMost of them; empty behind the end.
    std::string BytesOf(ULONGLONG nContent, ULONGLONG nMost = kMostBytes);

    // The same of the line that the user sees.
    std::string UserBytesOf(ULONGLONG nContent);

    // Walks to the end.
    LineTally Tally();
    // What is odd in the bytes that were walked over. To be told what to expect before any walk.
    SuspectBytes& Suspects() { return m_suspects; }
    // Hands each line with content in such parts of the file to the visitor, with at most
    // kMostBytes of its bytes; those before line nFirst, from 0, are left out. Walks to the end.
    using Visitor = std::function<void(const ContentLine&, std::string_view bytes)>;
    void VisitSuspects(ULONGLONG nFirst, const Visitor& visit);

    // Why not all of the file could be walked over; empty where it could so far.
    const std::string& FaultText() const { return m_front.FaultText(); }
    // False where the file can't be opened by its name any more, which is a fault too.
    bool IsOpen() const { return m_front.IsOpen(); }
    // All lines of the file, blank ones too. Walks to the end.
    ULONGLONG Lines();

private:
    static constexpr ULONGLONG kMostBytes = 1 << 20;
    static constexpr std::size_t kMostPlaces = 1 << 16;

    void WalkTo(ULONGLONG nContent);
    void VisitPart(const SuspectBytes::Part& part, ULONGLONG nFirst, const Visitor& visit);
    void KeepPlace();
    ULONGLONG UserNumber(ULONGLONG nNumber) const;

    SuspectBytes m_suspects;
    LineWalker m_front;  // walks ahead once
    LineWalker m_reader; // goes back and forth
    bool m_bBegun = false;
    bool m_bEnded = false;
    ULONGLONG m_nSpacing = 256; // content lines from a place to the next
    std::vector<LineWalker::Place> m_places;
    ContentLine m_line; // the last one found
    ULONGLONG m_nLine = ~0ULL;
    LineSource* m_pSource;
};

} // namespace tabulex
