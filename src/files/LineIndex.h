// CLineIndex: the records of a file by number.
//
// A record is a line with something in it besides separators; records count from
// 0, other lines have no number. Lines are found by scanning bytes; the index
// keeps the place of each 1024th record only, so a jump to any record costs a
// walk over at most 1023 lines, and nothing of the file is decoded but the record
// asked for.
//
// Invariants:
//   1. Entry k of m_index, for each k below m_nRecordCount / 1024, is the position
//      of the line of record 1024 (k + 1) - 1. Entries from there on are left from
//      a file that has shrunk and mean nothing.
//   2. Record n of a cursor's place is the first record at or after its position.
//
// Not synchronised: the file handler's lock guards all of it, but for
// GetApproxCount, IsComplete and RecordCount, which any thread may call. Operations
// that read the file throw std::invalid_argument when that fails and std::bad_alloc
// when memory runs out; what was counted up to there stays counted.
#pragma once

#include "src/files/DataArray.h"
#include "src/files/HeapArray.h"
#include "src/files/LineCursor.h"

namespace Hesperon::specifics {

template <class Data>
class CLineIndexOf
{
public:
    // At most once. False for an empty file, which then has no records.
    bool Attach(std::shared_ptr<CSharedFile> pFile);
    // Takes the file as one of two bytes a character if one of its first four bytes is
    // zero.
    void DetectUnicode();

    ULONGLONG RecordCount() const { return m_nRecordCount.load(std::memory_order_relaxed); }
    // Bytes of the file as last asked for; 0 for an empty one. From any thread.
    ULONGLONG FileSize() const { return m_data.GetSize(); }
    // The count is final.
    bool IsComplete() const { return m_bComplete.load(std::memory_order_relaxed); }

    // Puts the cursor on a record, scanning the file up to it; false, with the cursor
    // unmoved, where there is none. The count grows when this passes its end.
    bool SeekRecord(ULONGLONG nIndex) { return SeekRecord(nIndex, m_cursor); }
    bool SeekRecord(ULONGLONG nIndex, CLineCursor& cursor);

    // At most 512 bytes of a record, without its zero bytes, as text in the ANSI code
    // page; false and an empty text where there is none.
    bool GetRecord(string_t& sText, ULONGLONG nIndex) { return GetRecord(sText, nIndex, m_cursor); }
    bool GetRecord(string_t& sText, ULONGLONG nIndex, CLineCursor& cursor);

    // The whole last record, read backwards from the end of the file; false for an
    // empty file.
    bool GetLastRecord(string_t& sText);

    // Where in the file a record lies, 0 to 1, as exactly as the index knows without
    // scanning. E_UNEXPECTED for a record not yet known.
    HRESULT GetRelativePos(ULONGLONG nIndex, FLOAT* fRelative);

    // Size of the file by the length of its first line. Asked for once, then kept.
    // Reads the file apart from the cached pages.
    ULONGLONG GetApproxCount();

    void RefreshFileSize();
    // Has a grown file scanned further, or with bErase a file scanned afresh.
    void Invalidate(bool bErase);

    // ---- lines, whatever the index says

    // Moves nPos to the end of the next line with content, or with bStopAtLineEnd
    // clear to the line behind that; true if more data lies there. pnLength receives
    // the distance moved, or the file's size where no line end is found.
    bool SeekNextLine(ULONGLONG& nPos, bool bStopAtLineEnd, ULONGLONG* pnLength = nullptr);

    // Whether [nFrom, nTo) begins, apart from separators, with anything but a line end.
    bool IsValidRecord(ULONGLONG nFrom, ULONGLONG nTo);

    // The place of record 1024 (k + 1) - 1; k below RecordCount() / 1024.
    ULONGLONG IndexEntry(ULONGLONG k) { return m_index[k]; }

private:
    static constexpr ULONGLONG kStep = 1024; // records an entry of the index
    static constexpr ULONGLONG kMaxRecord = 512;
    static constexpr ULONGLONG kNowhere = ~0ull;

    using SPlace = CLineCursor::SPlace;

    void BringUpToDate(CLineCursor& cursor) const;
    SPlace ChooseStart(ULONGLONG nIndex, const SPlace& cursor, ULONGLONG nCursorLimit);
    bool WalkBack(ULONGLONG nIndex, SPlace& place, CLineCursor& cursor);
    bool WalkTo(ULONGLONG nIndex, SPlace& place);
    void WalkInPage(ULONGLONG nIndex, SPlace& place);
    void PassRecord(SPlace& place, ULONGLONG nLineStart);
    void TakeRemainder(const SPlace& place);
    void CountRecord(ULONGLONG nLineStart);

    bool FindContentLineEnd(ULONGLONG& nPos);
    ULONGLONG FindLineEnd(ULONGLONG nPos);
    ULONGLONG SkipClass(ULONGLONG nPos, ULONGLONG nLimit, std::uint8_t what);
    ULONGLONG SkipLead(ULONGLONG nPos);

    // A line in the walk from the end of the file.
    struct SLastLine
    {
        ULONGLONG nLineEnd; // the end of the line before, or 0
        ULONGLONG nStart;
        ULONGLONG nLast; // the line's last character
    };
    SLastLine LineBefore(ULONGLONG nPos);
    SLastLine FindLastLine(ULONGLONG nPos);
    ULONGLONG StepBack(ULONGLONG nPos) const;
    ULONGLONG CharSize() const { return is_unicode ? 2 : 1; }

    void GatherBytes(ULONGLONG nFrom, ULONGLONG nTo, std::string& bytes);
    ULONGLONG EstimateCount();
    void ForgetLine() { m_nKnownStart = kNowhere; }

    Data m_data;
    CHeapArray<ULONGLONG, 1048576> m_index;
    std::atomic<ULONGLONG> m_nRecordCount = 0; // records found so far
    CLineCursor m_cursor;                      // of all who have none of their own
    CLineCursor::SAge m_age;                   // of the file
    std::atomic<bool> m_bComplete = false;
    bool is_unicode = false;
    std::atomic<bool> m_bApproxCount = false; // the estimate is there
    std::atomic<ULONGLONG> m_nApproxCount = 0;

    // The line with content last found: a record is delimited when it is read and
    // once more when the cursor moves behind it.
    ULONGLONG m_nKnownStart = kNowhere;
    ULONGLONG m_nKnownEnd = 0;

    std::shared_ptr<CSharedFile> m_pFile; // null for an empty file
    std::string m_sBytes;                 // of the record being read; kept for its memory
};

using CLineIndex = CLineIndexOf<FileBytes>;

extern template class CLineIndexOf<FileBytes>;

} // namespace Hesperon::specifics
