// LineWalker: goes through the lines of a file, once and in order, as the component finds them.
//
// The component numbers lines with content only, and its rule has corners where a line goes
// missing. This follows the same rule on the file's own bytes, and tells beside each line where
// it stands for an editor. A line of the editor ends with LF or CR LF; with CR in a file that has
// no LF near its beginning.
//
// Used by one thread. Memory is bounded whatever the length of a line.
#pragma once

#include <string>
#include <vector>

#include "platform/component.h"
#include "tools/tabulex/account/SuspectBytes.h"
#include "tools/tabulex/system/FileBytes.h"

namespace tabulex {

// A line with content.
struct ContentLine
{
    ULONGLONG nNumber = 0; // in the file, from 1
    ULONGLONG nOffset = 0; // of its first byte
    ULONGLONG nLength = 0; // bytes, without the line end
    ULONGLONG nJoined = 0; // further lines of the file that the component reads as one with it
    const char* pBytes = nullptr; // of the line, until the next one; null where they aren't kept
};

// What a walk has passed.
struct LineTally
{
    ULONGLONG nContent = 0;     // lines with content, as the component numbers them
    ULONGLONG nJoined = 0;      // lines read as one with the line before
    ULONGLONG nLost = 0;        // lines with content that the component doesn't see
    ULONGLONG nSplit = 0;       // of all these, those that a lone CR parts from the one before
    ULONGLONG nLong = 0;        // lines that are longer than the component reads
    ULONGLONG nFirstJoined = 0; // number in the file of the first of each; 0 for none
    ULONGLONG nFirstLost = 0;
    ULONGLONG nFirstLong = 0;
    ULONGLONG nZero = 0;        // lines of the file with zero bytes, which aren't read
    ULONGLONG nZeroContent = 0; // of these, lines with content
    ULONGLONG nFirstZero = 0;
};

// The component reads no more bytes of a line.
inline constexpr ULONGLONG kMostLineBytes = 512;

class LineWalker
{
public:
    // Stops at nSize bytes: a file may grow. Where it can't be read it counts as ended, and has a
    // fault.
    LineWalker(const std::string& path, ULONGLONG nSize);

    // The next line with content; false at the end of the file.
    bool Next(ContentLine& line);
    // Passes some lines, at most nMost, as Next would; false where there are none that can be
    // passed so, and Next has to go on.
    bool PassPlainLines(ULONGLONG nMost);
    // Why not all of the file could be read; empty where it could so far.
    const std::string& FaultText() const { return m_sFault; }
    // False where the file can't be opened by its name any more, which is a fault too.
    bool IsOpen() const { return m_file.IsOpen(); }
    const LineTally& Tally() const { return m_tally; }
    // Lines of the file with those that are blank, and all parts of a line that is split; whole
    // only after the end.
    ULONGLONG Lines() const { return m_nLineEnds + (m_bLineOpen ? 1 : 0) + m_tally.nSplit; }

    // Where Next goes on, to come back to with GoTo.
    struct Place
    {
        ULONGLONG nOffset = 0;
        ULONGLONG nLineEnds = 0;
        ULONGLONG nContent = 0;
    };
    Place Here() const { return {m_nBase + m_nAt, m_nLineEnds, m_tally.nContent}; }
    // The tally counts on from the place but for its number of lines, which is the place's.
    void GoTo(const Place& place);

    // Sees the bytes of the file as they come, in order, unless GoTo is used; null for nobody.
    // Outlives the walk.
    void Show(SuspectBytes* pSuspects);

    // At most nMost bytes of a line.
    std::string BytesOf(const ContentLine& line, ULONGLONG nMost);

private:
    struct Segment;

    bool Fill();
    bool AtEnd() { return m_nAt == m_nEnd && !Fill(); }
    void FindLineEnds();
    void SkipBlanks();
    bool TakePlainLine(ContentLine& line);
    bool TakeLine(ContentLine& line);
    Segment ReadSegment();
    void PassLineEnd();
    bool Count(const ContentLine& line);
    void CountPiece();
    void CountLost();
    void CountZero();

    FileBytes m_file;
    ULONGLONG m_nSize;
    std::vector<char> m_buffer;
    ULONGLONG m_nBase = 0;  // of the buffer in the file
    std::size_t m_nAt = 0;  // in the buffer
    std::size_t m_nEnd = 0; // bytes in the buffer
    char m_cLineEnd = '\n';
    ULONGLONG m_nLineEnds = 0; // passed
    bool m_bLineOpen = false;  // bytes were passed since the last line end
    bool m_bCounted = false;   // some of them as a line, or a part of one
    bool m_bZero = false;      // some of them are zero
    LineTally m_tally;
    std::string m_sFault;
    SuspectBytes* m_pSuspects = nullptr;
};

} // namespace tabulex
