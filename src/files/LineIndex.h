// LineIndex: the records of a file by number.
//
// A record is a line with something in it besides separators; records count from
// 0, other lines have no number. Lines are found by scanning bytes; the index
// keeps the place of each 1024th record only, so a jump to any record costs a
// walk over at most 1023 lines, and nothing of the file is decoded but the record
// asked for.
//
// The method: to reach a record, start at the nearest known place before it, which
// is the reader's cursor, an index entry or the beginning of the file, and walk line
// by line. A walk that passes the last record known so far counts on from there and
// writes the index; one that meets the end of the file makes the count final.
//
// Invariants:
//   1. Entry k of m_index, for each k below m_nRecordCount / 1024, is the position
//      of the line of record 1024 (k + 1) - 1. Entries from there on are left from
//      a file that has shrunk and mean nothing.
//   2. Record n of a cursor's place is the first record at or after its position.
//   3. The count is final only after the file was read to its end: a walk that fails
//      leaves it open, and a later walk goes on from what was counted.
//
// Not synchronised: the file handler's lock guards all of it, but for
// GetApproxCount, IsComplete and RecordCount, which any thread may call. Operations
// that read the file throw std::invalid_argument when that fails and std::bad_alloc
// when memory runs out; what was counted up to there stays counted.
#pragma once

#include "src/files/HeapArray.h"
#include "src/files/ILineReader.h"
#include "src/files/LastRecord.h"
#include "src/files/LineCursor.h"

namespace Hesperon::specifics {

template <class Data>
class LineIndexOf
{
public:
    // At most once. False for an empty file, which then has no records.
    bool Attach(std::shared_ptr<SharedFile> pFile);
    // Takes the file as one of two bytes a character if one of its first four bytes is
    // zero. Where this fails, the first operation that has to know tries again.
    void DetectUnicode();

    ULONGLONG RecordCount() const { return m_nRecordCount.load(std::memory_order_relaxed); }
    // Bytes of the file as last asked for; 0 for an empty one. From any thread.
    ULONGLONG FileSize() const { return m_lines.Size(); }
    // The count is final.
    bool IsComplete() const { return m_bComplete.load(std::memory_order_relaxed); }

    // Puts a cursor on a record, scanning the file up to it; false, with the cursor
    // unmoved, where there is none. The count grows when this passes its end. Callers
    // without a cursor share that of the index.
    bool SeekRecord(ULONGLONG nIndex) { return SeekRecord(nIndex, m_cursor); }
    bool SeekRecord(ULONGLONG nIndex, LineCursor& cursor);

    // At most kMaxRecord bytes of a record, without its zero bytes; false where there is none.
    // Good until the next record is read.
    bool GetRecord(std::string_view& bytes, ULONGLONG nIndex)
    {
        return GetRecord(bytes, nIndex, m_cursor);
    }
    bool GetRecord(std::string_view& bytes, ULONGLONG nIndex, LineCursor& cursor);

    // Adds records of the range to the lines, from its first one on, until one isn't a plain line
    // within a page; gives their number, which may be 0.
    ULONGLONG AppendPlain(const LineRange& range, LineCursor& cursor, LineBuffer& lines);

    // The last record, read backwards from the end of the file: the whole of it, or its
    // first kMaxRecord characters. False for an empty file. Memory for the whole of it is
    // five times its length, and is the caller's alone afterwards.
    bool GetLastRecord(string_t& sText);
    bool GetLastRecordHead(string_t& sText);

    // Where in the file a record lies, 0 to 1, as exactly as the index knows without
    // scanning. E_UNEXPECTED for a record not yet known.
    HRESULT GetRelativePos(ULONGLONG nIndex, FLOAT* fRelative);

    // Size of the file by the length of its first line. Asked for once, then kept.
    // Reads the file apart from the cached pages.
    ULONGLONG GetApproxCount();

    void RefreshFileSize();
    // Has a grown file scanned further, or with bErase a file scanned afresh.
    void Invalidate(bool bErase);

    // The place of record 1024 (k + 1) - 1; k below RecordCount() / 1024.
    ULONGLONG IndexEntry(ULONGLONG k) { return m_index[k]; }
    FileLinesOf<Data>& Lines() { return m_lines; }

private:
    friend struct LineIndexTestAccess; // lets tests begin in the middle of a huge file

    static constexpr ULONGLONG kStep = 1024; // records an entry of the index
    static constexpr std::size_t kMaxRecord = 512;
    static constexpr std::size_t kMaxCharBytes = 4; // in any code page

    using LinePlace = LineCursor::LinePlace;

    void BringUpToDate(LineCursor& cursor) const;
    LinePlace ChooseStart(ULONGLONG nIndex, const LinePlace& cursor, ULONGLONG nCursorLimit);
    bool WalkBack(ULONGLONG nIndex, LinePlace& place, LineCursor& cursor);
    bool WalkTo(ULONGLONG nIndex, LinePlace& place);
    static bool IsPlainStart(const char* p, const char* pEnd);
    void WalkInPage(ULONGLONG nIndex, LinePlace& place);
    ULONGLONG AppendUpwards(ULONGLONG nMost, LineCursor& cursor, LineBuffer& lines);
    template <PlainLine::Width width>
    ULONGLONG AppendInPage(ULONGLONG nMost, LineCursor& cursor, LineBuffer& lines);
    void PassRecord(LinePlace& place, ULONGLONG nLineStart);
    void TakeRemainder(const LinePlace& place);
    void CountRecord(ULONGLONG nLineStart);

    bool ReadLastRecord(string_t& sText, ULONGLONG nMostBytes);
    ULONGLONG EstimateCount() const;

    FileLinesOf<Data> m_lines;
    CHeapArray<ULONGLONG, 1048576> m_index;
    LastRecordOf<Data> m_lastRecord;
    std::atomic<ULONGLONG> m_nRecordCount = 0; // records found so far
    LineCursor m_cursor;                       // of all who have none of their own
    LineCursor::FileAge m_age{1, 0};           // of the file; a new cursor knows nothing yet
    std::atomic<bool> m_bComplete = false;
    std::atomic<bool> m_bApproxCount = false; // the estimate is there
    std::atomic<ULONGLONG> m_nApproxCount = 0;

    std::shared_ptr<SharedFile> m_pFile; // null for an empty file
    std::string m_sBytes;                // of the record being read; kept for its memory
};

using LineIndex = LineIndexOf<FileBytes>;

extern template class LineIndexOf<FileBytes>;

} // namespace Hesperon::specifics
