// The operations of CLineIndexOf, for the sources that instantiate it.
#pragma once

#include <algorithm>
#include <climits>
#include <new>

#include "platform/CodePage.h"
#include "src/files/DataArrayImpl.h"
#include "src/files/LineBytes.h"
#include "src/files/LineIndex.h"

namespace Hesperon::specifics {

template <class Data>
bool CLineIndexOf<Data>::Attach(std::shared_ptr<CSharedFile> pFile)
{
    if (!m_data.Attach(pFile))
        return false;
    m_pFile = std::move(pFile);
    return true;
}

template <class Data>
void CLineIndexOf<Data>::DetectUnicode()
{
    if (m_data.GetSize() <= 4)
        return;
    for (ULONGLONG i = 0; i < 4; ++i)
        is_unicode |= m_data[i] == 0;
}

// ---- bytes ------------------------------------------------------------------

template <class Data>
ULONGLONG CLineIndexOf<Data>::FindLineEnd(ULONGLONG nPos)
{
    const ULONGLONG nSize = m_data.GetSize();
    while (nPos != nSize) {
        const auto span = m_data.Span(nPos);
        const char* pEnd = span.data() + span.size();
        const char* p = LineBytes::FindLineEnd(span.data(), pEnd);
        nPos += p - span.data();
        if (p != pEnd)
            break;
    }
    return nPos;
}

// The first position from nPos on whose byte isn't of the class, or nLimit.
template <class Data>
ULONGLONG CLineIndexOf<Data>::SkipClass(ULONGLONG nPos, ULONGLONG nLimit, std::uint8_t what)
{
    while (nPos != nLimit) {
        const auto span = m_data.Span(nPos);
        const char* pEnd = span.data() + std::min<ULONGLONG>(span.size(), nLimit - nPos);
        const char* p = LineBytes::SkipClass(span.data(), pEnd, what);
        nPos += p - span.data();
        if (p != pEnd)
            break;
    }
    return nPos;
}

// Characters, not bytes: a file of two-byte characters has a zero behind each.
template <class Data>
ULONGLONG CLineIndexOf<Data>::SkipLead(ULONGLONG nPos)
{
    const ULONGLONG nSize = m_data.GetSize();
    while (nPos != nSize && LineBytes::Is(m_data[nPos], LineBytes::kLead))
        nPos = std::min(nPos + CharSize(), nSize);
    return nPos;
}

// ---- lines ------------------------------------------------------------------

// Moves nPos to the end of the next line with content; false at the end of the file,
// even if content lies before it. A line of one byte is taken for a blank one: that
// carries the search over the zero byte between the CR and LF of two-byte characters.
template <class Data>
bool CLineIndexOf<Data>::FindContentLineEnd(ULONGLONG& nPos)
{
    if (nPos == m_nKnownStart) {
        nPos = m_nKnownEnd;
        return true;
    }
    const ULONGLONG nStart = nPos;
    const ULONGLONG nSize = m_data.GetSize();
    for (ULONGLONG nLine = nPos;; nLine = ++nPos) {
        nPos = FindLineEnd(nLine);
        if (nPos == nSize)
            return false;
        if (nPos != nLine + 1 && SkipClass(nLine, nPos, LineBytes::kBlankLine) != nPos)
            break;
        FaultmereUtil::Assert(nPos != nSize, "nIndex != m_data.GetSize()");
    }
    m_nKnownStart = nStart;
    m_nKnownEnd = nPos;
    return true;
}

template <class Data>
bool CLineIndexOf<Data>::SeekNextLine(ULONGLONG& nPos, bool bStopAtLineEnd, ULONGLONG* pnLength)
{
    const ULONGLONG nStart = nPos;
    if (!FindContentLineEnd(nPos)) {
        if (pnLength)
            *pnLength = nPos;
        return false;
    }
    const ULONGLONG nSize = m_data.GetSize();
    if (!bStopAtLineEnd)
        nPos = SkipClass(nPos, nSize, LineBytes::kGap);
    if (pnLength)
        *pnLength = nPos - nStart;
    return nPos != nSize;
}

template <class Data>
bool CLineIndexOf<Data>::IsValidRecord(ULONGLONG nFrom, ULONGLONG nTo)
{
    const ULONGLONG nContent = SkipClass(nFrom, nTo, LineBytes::kSeparator);
    return nContent != nTo && !LineBytes::Is(m_data[nContent], LineBytes::kLineEnd);
}

// ---- the index --------------------------------------------------------------

// A cursor of an erased file knows no more than one that is new.
template <class Data>
void CLineIndexOf<Data>::BringUpToDate(CLineCursor& cursor) const
{
    if (cursor.Age() == m_age)
        return;
    const bool bErased = cursor.Age().nErased != m_age.nErased;
    cursor.Renew(m_age, bErased ? m_cursor.Place() : cursor.Place());
}

// The nearest known place before a record: the cursor if it stands before
// nCursorLimit, else the file's beginning, or an index entry that is nearer.
template <class Data>
auto CLineIndexOf<Data>::ChooseStart(ULONGLONG nIndex, const SPlace& cursor, ULONGLONG nCursorLimit)
    -> SPlace
{
    SPlace start;
    if (cursor.nRecord < nCursorLimit)
        start = cursor;
    const ULONGLONG nEntries = std::min(nIndex / kStep, RecordCount() / kStep);
    if (start.nRecord + 1 < nIndex / kStep * kStep && nEntries != 0)
        start = {nEntries * kStep - 1, m_index[nEntries - 1]};
    return start;
}

template <class Data>
bool CLineIndexOf<Data>::SeekRecord(ULONGLONG nIndex, CLineCursor& cursor)
{
    if (IsComplete() && nIndex >= RecordCount())
        return false;
    BringUpToDate(cursor);
    const SPlace from = cursor.Place();
    if (nIndex == from.nRecord)
        return true;
    SPlace place = ChooseStart(nIndex, from, nIndex);
    const bool bFound = nIndex < from.nRecord ? WalkBack(nIndex, place, cursor)
                                              : place.nRecord == nIndex || WalkTo(nIndex, place);
    if (bFound)
        cursor.MoveTo(place);
    return bFound;
}

// From the start of a stride to a record of it that lies before the cursor. The next one
// asked for is likely to lie before this one, so the places on the way are noted.
template <class Data>
bool CLineIndexOf<Data>::WalkBack(ULONGLONG nIndex, SPlace& place, CLineCursor& cursor)
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
bool CLineIndexOf<Data>::WalkTo(ULONGLONG nIndex, SPlace& place)
{
    place.nPos = SkipClass(place.nPos, m_data.GetSize(), LineBytes::kGap);
    for (;;) {
        WalkInPage(nIndex, place);
        if (place.nRecord == nIndex)
            return true;
        const ULONGLONG nLineStart = place.nPos;
        if (!SeekNextLine(place.nPos, false)) {
            TakeRemainder({place.nRecord, nLineStart});
            return false;
        }
        if (IsValidRecord(nLineStart, place.nPos))
            PassRecord(place, nLineStart);
    }
}

// The short way over lines that are plainly records and lie, with the first byte
// behind them, in the page at hand. Stops before any other line.
template <class Data>
void CLineIndexOf<Data>::WalkInPage(ULONGLONG nIndex, SPlace& place)
{
    constexpr auto kNotPlain = LineBytes::kLineEnd | LineBytes::kBlankLine | LineBytes::kSeparator;
    if (place.nPos == m_data.GetSize() || place.nPos == m_nKnownStart)
        return;
    const auto span = m_data.Span(place.nPos);
    const ULONGLONG nPageStart = place.nPos;
    const char* pLine = span.data();
    const char* const pEnd = pLine + span.size();
    while (place.nRecord != nIndex && !LineBytes::Is(*pLine, kNotPlain)) {
        const char* pLineEnd = LineBytes::FindLineEnd(pLine, pEnd);
        const char* pNext = LineBytes::SkipClass(pLineEnd, pEnd, LineBytes::kGap);
        if (pNext == pEnd || pLineEnd == pLine + 1)
            return;
        PassRecord(place, nPageStart + (pLine - span.data()));
        pLine = pNext;
        place.nPos = nPageStart + (pLine - span.data());
    }
}

template <class Data>
void CLineIndexOf<Data>::PassRecord(SPlace& place, ULONGLONG nLineStart)
{
    if (place.nRecord == RecordCount())
        CountRecord(nLineStart);
    ++place.nRecord;
}

// What remains at the end of the file is a last line, ended or not.
template <class Data>
void CLineIndexOf<Data>::TakeRemainder(const SPlace& place)
{
    m_nRecordCount.store(place.nRecord, std::memory_order_relaxed);
    if (place.nPos != m_data.GetSize() && IsValidRecord(place.nPos, m_data.GetSize()))
        CountRecord(place.nPos);
    m_bComplete.store(true, std::memory_order_relaxed);
}

// The entry goes first: running out of memory must not leave a count without it.
template <class Data>
void CLineIndexOf<Data>::CountRecord(ULONGLONG nLineStart)
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
HRESULT CLineIndexOf<Data>::GetRelativePos(ULONGLONG nIndex, FLOAT* fRelative)
{
    const ULONGLONG nAligned = nIndex / kStep * kStep;
    const ULONGLONG nSize = m_data.GetSize();
    if (nAligned >= RecordCount() || nSize == 0)
        return E_UNEXPECTED;
    const SPlace place = ChooseStart(nIndex, m_cursor.Place(), nAligned);
    *fRelative = static_cast<FLOAT>(static_cast<double>(place.nPos) / static_cast<double>(nSize));
    return S_OK;
}

template <class Data>
ULONGLONG CLineIndexOf<Data>::GetApproxCount()
{
    if (!m_bApproxCount.load(std::memory_order_acquire)) {
        m_nApproxCount.store(EstimateCount(), std::memory_order_relaxed);
        m_bApproxCount.store(true, std::memory_order_release);
    }
    return m_nApproxCount.load(std::memory_order_relaxed);
}

// Has its own view of the file, since it may run during a walk on another thread.
template <class Data>
ULONGLONG CLineIndexOf<Data>::EstimateCount()
{
    const ULONGLONG nSize = m_data.GetSize();
    if (nSize == 0)
        return 0;
    CLineIndexOf<CDataArray<char, 1, 65536>> scan;
    if (!scan.Attach(m_pFile))
        throw std::invalid_argument("file can't be read");
    ULONGLONG nPos = 0;
    ULONGLONG nLength = 0;
    scan.SeekNextLine(nPos, false, &nLength);
    if (nLength == 0)
        return 0;
    return static_cast<ULONGLONG>(static_cast<double>(nSize) / static_cast<double>(nLength));
}

template <class Data>
void CLineIndexOf<Data>::RefreshFileSize()
{
    ForgetLine();
    ++m_age.nRefreshed;
    m_data.RefreshFileSize();
}

template <class Data>
void CLineIndexOf<Data>::Invalidate(bool bErase)
{
    RefreshFileSize();
    if (bErase) {
        m_nRecordCount.store(0, std::memory_order_relaxed);
        m_index.Clear();
        RefreshFileSize();
        ++m_age.nErased;
        m_cursor.Renew(m_age, {});
        m_data.Rewind();
    }
    m_bComplete.store(false, std::memory_order_relaxed);
}

// ---- text -------------------------------------------------------------------

// The bytes of a range but for zeros, appended.
template <class Data>
void CLineIndexOf<Data>::GatherBytes(ULONGLONG nFrom, ULONGLONG nTo, std::string& bytes)
{
    while (nFrom != nTo) {
        auto span = m_data.Span(nFrom);
        span = span.first(std::min<ULONGLONG>(span.size(), nTo - nFrom));
        nFrom += span.size();
        for (std::string_view rest(span.data(), span.size()); !rest.empty();) {
            const std::size_t nZero = std::min(rest.find('\0'), rest.size());
            bytes.append(rest.substr(0, nZero));
            rest.remove_prefix(std::min(nZero + 1, rest.size()));
        }
    }
}

template <class Data>
bool CLineIndexOf<Data>::GetRecord(string_t& sText, ULONGLONG nIndex, CLineCursor& cursor)
{
    sText.clear();
    if (!SeekRecord(nIndex, cursor))
        return false;
    ULONGLONG nStart = 0;
    ULONGLONG nEnd = 0;
    bool bMore = true;
    for (ULONGLONG nPos = cursor.Place().nPos; bMore; nPos = nEnd) {
        nStart = nEnd = SkipLead(nPos);
        bMore = SeekNextLine(nEnd, true);
        if (bMore && IsValidRecord(nStart, std::min(nEnd, nStart + kMaxRecord)))
            break;
    }
    m_sBytes.clear();
    GatherBytes(nStart, std::min(nEnd, nStart + kMaxRecord), m_sBytes);
    DecodeBytes(kAnsiCodePage, m_sBytes, sText);
    return true;
}

template <class Data>
ULONGLONG CLineIndexOf<Data>::StepBack(ULONGLONG nPos) const
{
    return nPos < CharSize() ? 0 : nPos - CharSize();
}

template <class Data>
auto CLineIndexOf<Data>::LineBefore(ULONGLONG nPos) -> SLastLine
{
    using LineBytes::Is;
    SLastLine line{};
    while (nPos != 0 && Is(m_data[nPos], LineBytes::kLead))
        nPos = StepBack(nPos);
    line.nLast = nPos;
    while (nPos != 0 && !Is(m_data[nPos], LineBytes::kLineEnd))
        nPos = StepBack(nPos);
    line.nLineEnd = nPos;
    while (nPos != line.nLast && Is(m_data[nPos], LineBytes::kLead))
        nPos = std::min(nPos + CharSize(), line.nLast);
    line.nStart = nPos;
    return line;
}

// The last line that is a record; the first line of the file where none is.
template <class Data>
auto CLineIndexOf<Data>::FindLastLine(ULONGLONG nPos) -> SLastLine
{
    for (;;) {
        const SLastLine line = LineBefore(nPos);
        const bool bValid = IsValidRecord(line.nStart, line.nLast + CharSize());
        if (bValid || line.nLineEnd == 0) {
            FaultmereUtil::Assert(bValid,
                                  "IsValidRecord(_nNextPos, nPrevPos + (is_unicode ? 2 : 1))");
            return line;
        }
        nPos = line.nLineEnd;
    }
}

template <class Data>
bool CLineIndexOf<Data>::GetLastRecord(string_t& sText)
{
    sText.clear();
    const ULONGLONG nSize = m_data.GetSize();
    if (nSize == 0)
        return false;
    const ULONGLONG nLastChar = StepBack(nSize);
    if (nLastChar == 0)
        return true;

    const SLastLine line = FindLastLine(nLastChar);
    FaultmereUtil::Assert(line.nLast >= line.nLineEnd, "nPrevPos >= nNextPos");
    std::string bytes;
    GatherBytes(line.nStart, line.nLast + CharSize(), bytes);
    if (bytes.size() > INT_MAX)
        throw std::bad_alloc();
    DecodeBytes(kAnsiCodePage, bytes, sText);
    sText.resize(std::min(sText.find(OLECHAR(0)), sText.size()));
    return true;
}

} // namespace Hesperon::specifics
