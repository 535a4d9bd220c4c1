// The operations of FileLinesOf, for the sources that instantiate it.
//
// The method: every search runs over the bytes of one page at a time, as a span, and goes
// on in the next page. What a byte means is looked up in a table of classes (LineBytes.h).
// The line that was looked for last is remembered, since each is asked for twice.
#pragma once

#include <string>
#include <utility>

#include "src/files/DataArrayImpl.h"
#include "src/files/FileLines.h"
#include "src/files/LineBytes.h"

namespace Hesperon::specifics {

template <class Data>
void FileLinesOf<Data>::RefreshSize()
{
    m_nKnownStart = kNowhere;
    m_nZerosFrom = m_nZerosTo = 0;
    m_data.RefreshFileSize();
}

template <class Data>
void FileLinesOf<Data>::DetectCharSize()
{
    if (m_bCharSizeKnown)
        return;
    bool bZero = false;
    for (ULONGLONG i = 0; i < 4 && Size() > 4; ++i)
        bZero |= m_data[i] == 0;
    is_unicode = bZero;
    m_bCharSizeKnown = true;
}

// ---- line ends

template <class Data>
ULONGLONG FileLinesOf<Data>::FindLineEnd(ULONGLONG nPos)
{
    const ULONGLONG nSize = Size();
    while ((nPos = PastZeros(nPos, nSize)) != nSize) {
        const auto span = Span(nPos);
        const char* pEnd = span.data() + span.size();
        const char* p = LineBytes::FindLineEnd(span.data(), pEnd);
        const ULONGLONG nStart = std::exchange(nPos, nPos + (p - span.data()));
        if (p != pEnd)
            break;
        if (LineBytes::AreZeros(span.data(), pEnd))
            NoteZeros(nStart, nPos);
    }
    return nPos;
}

// Moves nPos to the end of the next line with content; false at the end of the file,
// even if content lies before it. A line of one byte is taken for a blank one: that
// carries the search over the zero byte between the CR and LF of two-byte characters.
template <class Data>
bool FileLinesOf<Data>::FindContentLineEnd(ULONGLONG& nPos)
{
    const ULONGLONG nSize = Size();
    if (!KnowsLineFrom(nPos)) {
        const ULONGLONG nStart = nPos;
        for (ULONGLONG nLine = nPos;; nLine = ++nPos) {
            nPos = FindLineEnd(nLine);
            if (nPos == nSize ||
                (nPos != nLine + 1 && SkipClass(nLine, nPos, LineBytes::kBlankLine) != nPos))
                break;
            FaultmereUtil::Assert(nPos != nSize, "nIndex != m_data.GetSize()");
        }
        m_nKnownStart = nStart;
        m_nKnownEnd = nPos;
    }
    nPos = m_nKnownEnd;
    return nPos != nSize;
}

template <class Data>
bool FileLinesOf<Data>::SeekNextLine(ULONGLONG& nPos, bool bStopAtLineEnd, ULONGLONG* pnLength)
{
    const ULONGLONG nStart = nPos;
    if (!FindContentLineEnd(nPos)) {
        if (pnLength)
            *pnLength = nPos;
        return false;
    }
    const ULONGLONG nSize = Size();
    if (!bStopAtLineEnd)
        nPos = SkipClass(nPos, nSize, LineBytes::kGap);
    if (pnLength)
        *pnLength = nPos - nStart;
    return nPos != nSize;
}

// ---- what bytes mean

template <class Data>
bool FileLinesOf<Data>::IsValidRecord(ULONGLONG nFrom, ULONGLONG nTo)
{
    const ULONGLONG nContent = SkipClass(nFrom, nTo, LineBytes::kSeparator);
    return nContent != nTo && !LineBytes::Is(m_data[nContent], LineBytes::kLineEnd);
}

template <class Data>
ULONGLONG FileLinesOf<Data>::SkipClass(ULONGLONG nPos, ULONGLONG nLimit, std::uint8_t what)
{
    const bool bZeros = LineBytes::Is('\0', what);
    while ((nPos = bZeros ? PastZeros(nPos, nLimit) : nPos) != nLimit) {
        const auto span = Span(nPos);
        const char* pEnd = span.data() + std::min<ULONGLONG>(span.size(), nLimit - nPos);
        const char* p = LineBytes::SkipClass(span.data(), pEnd, what);
        const ULONGLONG nStart = std::exchange(nPos, nPos + (p - span.data()));
        if (p != pEnd)
            break;
        if (LineBytes::AreZeros(span.data(), pEnd))
            NoteZeros(nStart, nPos);
    }
    return nPos;
}

// Characters, not bytes: a file of two-byte characters has a zero after each.
template <class Data>
ULONGLONG FileLinesOf<Data>::SkipLead(ULONGLONG nPos)
{
    const ULONGLONG nSize = Size();
    while (nPos != nSize && LineBytes::Is(m_data[nPos], LineBytes::kLead))
        nPos = std::min(nPos + CharSize(), nSize);
    return nPos;
}

// ---- text

template <class Data>
ULONGLONG FileLinesOf<Data>::EndWithoutZeros(ULONGLONG nFrom, ULONGLONG nTo)
{
    while ((nTo = std::max(BeforeZeros(nTo), nFrom)) != nFrom) {
        const auto page = m_data.SpanUpTo(nTo - 1);
        const auto span = page.last(std::min<ULONGLONG>(page.size(), nTo - nFrom));
        const std::size_t nLast = std::string_view(span.data(), span.size()).find_last_not_of('\0');
        if (nLast != std::string_view::npos)
            return nTo - span.size() + nLast + 1;
        const ULONGLONG nEnd = std::exchange(nTo, nTo - span.size());
        NoteZeros(nTo, nEnd);
    }
    return nFrom;
}

// Keeps one run of zeros, and makes it longer where the new ones border on it.
template <class Data>
void FileLinesOf<Data>::NoteZeros(ULONGLONG nFrom, ULONGLONG nTo)
{
    if (nFrom == m_nZerosTo) {
        m_nZerosTo = nTo;
    } else if (nTo == m_nZerosFrom) {
        m_nZerosFrom = nFrom;
    } else {
        m_nZerosFrom = nFrom;
        m_nZerosTo = nTo;
    }
}

template <class Data>
void FileLinesOf<Data>::AppendBytes(ULONGLONG nFrom, ULONGLONG nTo, std::size_t nMost,
                                    std::string& bytes)
{
    const std::size_t nFull = bytes.size() + nMost;
    while (nFrom != nTo && bytes.size() != nFull) {
        auto span = Span(nFrom);
        span = span.first(std::min<ULONGLONG>(span.size(), nTo - nFrom));
        nFrom += span.size();
        std::string_view rest(span.data(), span.size());
        while (!rest.empty() && bytes.size() != nFull) {
            const std::size_t nZero = std::min(rest.find('\0'), rest.size());
            bytes.append(rest.substr(0, std::min(nZero, nFull - bytes.size())));
            rest.remove_prefix(std::min(nZero + 1, rest.size()));
        }
    }
}

} // namespace Hesperon::specifics
