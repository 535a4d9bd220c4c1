// The operations of LineIndexOf, for the sources that instantiate it.
//
// Nearly all lines of a quote file are plainly records, and WalkInPage passes over those
// without leaving the page. Any other line (one that begins with a separator, has one byte
// or crosses into the next page) takes a step of the general walk, which knows all rules.
// Both count a record that is new, so the count and the entries of the index don't depend
// on which of them met it.
#pragma once

#include <algorithm>
#include <climits>
#include <new>

#include "platform/text/CodePage.h"
#include "src/files/LastRecordImpl.h"
#include "src/files/LineIndex.h"

namespace Hesperon::specifics {

// ---- seeking

// After an erase the place of a cursor means nothing, so it starts at the shared one, as a new
// one does.
template <class Data>
void LineIndexOf<Data>::BringUpToDate(LineCursor& cursor) const
{
    if (cursor.Age() == m_age)
        return;
    const bool bErased = cursor.Age().nErased != m_age.nErased;
    cursor.Renew(m_age, bErased ? m_cursor.Place() : cursor.Place());
}

// The nearest known place before a record: the cursor if it stands before
// nCursorLimit, else the file's beginning, or an index entry that is nearer.
template <class Data>
auto LineIndexOf<Data>::ChooseStart(ULONGLONG nIndex, const LinePlace& cursor,
                                    ULONGLONG nCursorLimit) -> LinePlace
{
    LinePlace start;
    if (cursor.nRecord < nCursorLimit)
        start = cursor;
    const ULONGLONG nEntries = std::min(nIndex / kStep, RecordCount() / kStep);
    if (start.nRecord + 1 < nIndex / kStep * kStep && nEntries != 0)
        start = {nEntries * kStep - 1, m_index[nEntries - 1]};
    return start;
}

template <class Data>
bool LineIndexOf<Data>::SeekRecord(ULONGLONG nIndex, LineCursor& cursor)
{
    if (IsComplete() && nIndex >= RecordCount())
        return false;
    BringUpToDate(cursor);
    const LinePlace from = cursor.Place();
    if (nIndex == from.nRecord)
        return true;
    LinePlace place = ChooseStart(nIndex, from, nIndex);
    const bool bFound = nIndex < from.nRecord ? WalkBack(nIndex, place, cursor)
                                              : place.nRecord == nIndex || WalkTo(nIndex, place);
    if (bFound)
        cursor.MoveTo(place);
    return bFound;
}

// From the start of a stride to a record of it that lies before the cursor. The next one
// asked for is likely to lie before this one, so the places on the way are noted.
template <class Data>
bool LineIndexOf<Data>::WalkBack(ULONGLONG nIndex, LinePlace& place, LineCursor& cursor)
{
    cursor.BeginNotes(place);
    while (cursor.LastNoted() < nIndex) {
        place = cursor.NotedPlace(cursor.LastNoted());
        if (!WalkTo(place.nRecord + 1, place))
            return false;
        cursor.Note(place.nPos);
    }
    place = cursor.NotedPlace(nIndex);
    return true;
}

// Walks line by line from a place before nIndex until it is reached; false at the
// end of the file, where the count becomes final.
template <class Data>
bool LineIndexOf<Data>::WalkTo(ULONGLONG nIndex, LinePlace& place)
{
    place.nPos = m_lines.SkipClass(place.nPos, m_lines.Size(), LineBytes::kGap);
    for (;;) {
        WalkInPage(nIndex, place);
        if (place.nRecord == nIndex)
            return true;
        const ULONGLONG nLineStart = place.nPos;
        if (!m_lines.SeekNextLine(place.nPos, false)) {
            TakeRemainder({place.nRecord, nLineStart});
            return false;
        }
        if (m_lines.IsValidRecord(nLineStart, place.nPos))
            PassRecord(place, nLineStart);
    }
}

// Whether a line of more than one byte begins with content.
template <class Data>
bool LineIndexOf<Data>::IsPlainStart(const char* p, const char* pEnd)
{
    constexpr auto kNotPlain = LineBytes::kLineEnd | LineBytes::kBlankLine | LineBytes::kSeparator;
    return pEnd - p > 1 && !LineBytes::Is(p[0], kNotPlain) &&
           !LineBytes::Is(p[1], LineBytes::kLineEnd);
}

// The short way over lines that are plainly records, and that lie in the current page
// together with the first byte after them. Stops before any other line.
template <class Data>
void LineIndexOf<Data>::WalkInPage(ULONGLONG nIndex, LinePlace& place)
{
    if (place.nPos == m_lines.Size() || m_lines.KnowsLineFrom(place.nPos))
        return;
    const auto span = m_lines.Span(place.nPos);
    const ULONGLONG nPageStart = place.nPos;
    const char* pLine = span.data();
    const char* const pEnd = pLine + span.size();
    while (place.nRecord != nIndex && IsPlainStart(pLine, pEnd)) {
        const char* pLineEnd = LineBytes::FindLineEnd(pLine, pEnd);
        const char* pNext = LineBytes::SkipClass(pLineEnd, pEnd, LineBytes::kGap);
        if (pNext == pEnd)
            return;
        PassRecord(place, nPageStart + (pLine - span.data()));
        pLine = pNext;
        place.nPos = nPageStart + (pLine - span.data());
    }
}

// As WalkInPage, and adds the lines on the way. The cursor stays at the last one that was added,
// which is passed, and so counted, with the next one.
template <class Data>
template <PlainLine::Width width>
ULONGLONG LineIndexOf<Data>::AppendInPage(ULONGLONG nMost, LineCursor& cursor, LineBuffer& lines)
{
    LinePlace place = cursor.Place();
    const auto span = m_lines.Span(place.nPos);
    const ULONGLONG nPageStart = place.nPos;
    const char* pLine = span.data();
    const char* const pEnd = pLine + span.size();
    ULONGLONG nAdded = 0;
    while (nAdded != nMost && IsPlainStart(pLine, pEnd)) {
        const std::size_t nSize = lines.template AddPlainLine<width>(pLine, pEnd);
        if (nSize == PlainLine::kNone)
            break;
        cursor.MoveTo(place);
        ++nAdded;
        const char* const pNext = LineBytes::SkipClass(pLine + nSize, pEnd, LineBytes::kGap);
        if (pNext == pEnd)
            break;
        if (nAdded != nMost)
            PassRecord(place, place.nPos);
        pLine = pNext;
        place.nPos = nPageStart + static_cast<ULONGLONG>(pLine - span.data());
    }
    return nAdded;
}

template <class Data>
void LineIndexOf<Data>::PassRecord(LinePlace& place, ULONGLONG nLineStart)
{
    if (place.nRecord == RecordCount())
        CountRecord(nLineStart);
    ++place.nRecord;
}

// What remains at the end of the file is a last line, ended or not.
template <class Data>
void LineIndexOf<Data>::TakeRemainder(const LinePlace& place)
{
    m_nRecordCount.store(place.nRecord, std::memory_order_relaxed);
    if (place.nPos != m_lines.Size() && m_lines.IsValidRecord(place.nPos, m_lines.Size()))
        CountRecord(place.nPos);
    m_bComplete.store(true, std::memory_order_relaxed);
}

// The entry is written first: if memory runs out, the count must not be ahead of it.
template <class Data>
void LineIndexOf<Data>::CountRecord(ULONGLONG nLineStart)
{
    const ULONGLONG nCount = RecordCount() + 1;
    if (nCount % kStep == 0) {
        const ULONGLONG nEntry = nCount / kStep - 1;
        if (nEntry < m_index.GetSize())
            m_index[nEntry] = nLineStart;
        else
            m_index.Append(nLineStart);
    }
    m_nRecordCount.store(nCount, std::memory_order_relaxed);
}

template <class Data>
HRESULT LineIndexOf<Data>::GetRelativePos(ULONGLONG nIndex, FLOAT* fRelative)
{
    const ULONGLONG nAligned = nIndex / kStep * kStep;
    const ULONGLONG nSize = m_lines.Size();
    if (nAligned >= RecordCount() || nSize == 0)
        return E_UNEXPECTED;
    const LinePlace place = ChooseStart(nIndex, m_cursor.Place(), nAligned);
    *fRelative = static_cast<FLOAT>(static_cast<double>(place.nPos) / static_cast<double>(nSize));
    return S_OK;
}

// ---- the file's size

template <class Data>
bool LineIndexOf<Data>::Attach(std::shared_ptr<SharedFile> pFile)
{
    if (!m_lines.Attach(pFile))
        return false;
    m_pFile = std::move(pFile);
    return true;
}

template <class Data>
void LineIndexOf<Data>::DetectUnicode()
{
    m_lines.DetectCharSize();
}

template <class Data>
void LineIndexOf<Data>::RefreshFileSize()
{
    m_lastRecord.Forget();
    ++m_age.nRefreshed;
    m_lines.RefreshSize();
}

template <class Data>
void LineIndexOf<Data>::Invalidate(bool bErase)
{
    RefreshFileSize();
    if (bErase) {
        m_nRecordCount.store(0, std::memory_order_relaxed);
        m_index.Clear();
        RefreshFileSize();
        ++m_age.nErased;
        m_cursor.Renew(m_age, {});
        m_lines.Rewind();
    }
    m_bComplete.store(false, std::memory_order_relaxed);
}

template <class Data>
ULONGLONG LineIndexOf<Data>::GetApproxCount()
{
    if (!m_bApproxCount.load(std::memory_order_acquire)) {
        m_nApproxCount.store(EstimateCount(), std::memory_order_relaxed);
        m_bApproxCount.store(true, std::memory_order_release);
    }
    return m_nApproxCount.load(std::memory_order_relaxed);
}

// Has its own view of the file, since it may run during a walk on another thread.
template <class Data>
ULONGLONG LineIndexOf<Data>::EstimateCount() const
{
    const ULONGLONG nSize = m_lines.Size();
    if (nSize == 0)
        return 0;
    FileLinesOf<CDataArray<char, 1, 65536>> lines;
    if (!lines.Attach(m_pFile))
        throw std::invalid_argument("file can't be read");
    ULONGLONG nPos = 0;
    ULONGLONG nLength = 0;
    lines.SeekNextLine(nPos, false, &nLength);
    if (nLength == 0)
        return 0;
    return static_cast<ULONGLONG>(static_cast<double>(nSize) / static_cast<double>(nLength));
}

// ---- text

template <class Data>
bool LineIndexOf<Data>::GetRecord(std::string_view& bytes, ULONGLONG nIndex, LineCursor& cursor)
{
    m_lines.DetectCharSize();
    if (!SeekRecord(nIndex, cursor))
        return false;
    ULONGLONG nStart = 0;
    ULONGLONG nEnd = 0;
    bool bMore = true;
    for (ULONGLONG nPos = cursor.Place().nPos; bMore; nPos = nEnd) {
        nStart = nEnd = m_lines.SkipLead(nPos);
        bMore = m_lines.SeekNextLine(nEnd, true);
        if (bMore && m_lines.IsValidRecord(nStart, std::min(nEnd, nStart + kMaxRecord)))
            break;
    }
    m_sBytes.clear();
    m_lines.AppendBytes(nStart, std::min(nEnd, nStart + kMaxRecord), kMaxRecord, m_sBytes);
    bytes = m_sBytes;
    return true;
}

template <class Data>
ULONGLONG LineIndexOf<Data>::AppendUpwards(ULONGLONG nMost, LineCursor& cursor, LineBuffer& lines)
{
    if (cursor.Place().nPos == m_lines.Size())
        return 0;
    return m_lines.CharSize() == 2 ? AppendInPage<PlainLine::Width::Two>(nMost, cursor, lines)
                                   : AppendInPage<PlainLine::Width::One>(nMost, cursor, lines);
}

// Downwards each line is looked up: the cursor has noted where it begins.
template <class Data>
ULONGLONG LineIndexOf<Data>::AppendPlain(const LineRange& range, LineCursor& cursor,
                                         LineBuffer& lines)
{
    m_lines.DetectCharSize();
    if (!range.bDownwards)
        return SeekRecord(range.nFirst, cursor) ? AppendUpwards(range.nCount, cursor, lines) : 0;
    ULONGLONG n = 0;
    while (n != range.nCount && SeekRecord(range.At(n), cursor) &&
           AppendUpwards(1, cursor, lines) == 1)
        ++n;
    return n;
}

template <class Data>
bool LineIndexOf<Data>::GetLastRecord(string_t& sText)
{
    return ReadLastRecord(sText, m_lines.Size());
}

// A character that is cut off at the end lies after those that are kept.
template <class Data>
bool LineIndexOf<Data>::GetLastRecordHead(string_t& sText)
{
    if (!ReadLastRecord(sText, kMaxRecord * kMaxCharBytes))
        return false;
    sText.resize(std::min(sText.size(), kMaxRecord));
    return true;
}

template <class Data>
bool LineIndexOf<Data>::ReadLastRecord(string_t& sText, ULONGLONG nMostBytes)
{
    sText.clear();
    m_lines.DetectCharSize();
    if (m_lines.Size() == 0)
        return false;
    if (m_lines.Size() <= m_lines.CharSize())
        return true;
    const auto place = m_lastRecord.Find(m_lines);
    const ULONGLONG nMost = std::min(place.nEnd - place.nStart, nMostBytes);
    if (nMost > INT_MAX)
        throw std::bad_alloc();
    std::string bytes; // may be long, so nothing of it is kept
    bytes.reserve(nMost);
    m_lines.AppendBytes(place.nStart, place.nEnd, nMost, bytes);
    DecodeBytes(kAnsiCodePage, bytes, sText);
    sText.resize(std::min(sText.find(OLECHAR(0)), sText.size()));
    return true;
}

} // namespace Hesperon::specifics
