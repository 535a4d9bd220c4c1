// FileLines: the bytes of a file as lines with content, whatever their numbers.
//
// Lines end with CR or LF. The search for the next line steps over lines that are empty or
// hold nothing but ": ,;", and works on spans of a page, not byte by byte.
//
// A file that was given its size before its lines were written ends in zeros, perhaps in
// gigabytes of them. The scan of the lines and the search for the last record both have to get
// past them, so each leaves out the zeros that the other one has read.
//
// Not synchronised. Operations that read throw std::invalid_argument when the file can't be
// read. Positions are bytes from the beginning of the file.
#pragma once

#include <algorithm>

#include "src/files/DataArray.h"

namespace Hesperon::specifics {

template <class Data>
class FileLinesOf
{
public:
    // At most once. False for an empty file, which then has no bytes.
    bool Attach(const std::shared_ptr<SharedFile>& pFile) { return m_data.Attach(pFile); }
    // As it was when last asked for. May be called from any thread.
    ULONGLONG Size() const { return m_data.GetSize(); }
    void RefreshSize();
    // Reading starts over at the beginning of the file.
    void Rewind() { m_data.Rewind(); }

    // Takes the file as one of two bytes a character if it has more than four bytes and
    // one of the first four is zero. Decided once; a failed read leaves it open.
    void DetectCharSize();
    // Bytes a character: 1 or 2.
    ULONGLONG CharSize() const { return is_unicode ? 2 : 1; }

    char At(ULONGLONG nPos) { return m_data[nPos]; }
    // The bytes from nPos to the end of its page, at least one. Good until the next access.
    std::span<const char> Span(ULONGLONG nPos) { return m_data.Span(nPos); }

    // Moves nPos to the end of the next line with content, or with bStopAtLineEnd clear to
    // the line after it; true if more data lies there. pnLength receives the distance
    // moved, or the file's size where no line end is found.
    bool SeekNextLine(ULONGLONG& nPos, bool bStopAtLineEnd, ULONGLONG* pnLength = nullptr);
    // Whether the end of the line with content from nPos on was the last one looked for.
    bool KnowsLineFrom(ULONGLONG nPos) const { return nPos == m_nKnownStart; }

    // Whether [nFrom, nTo) begins, apart from separators, with anything but a line end.
    bool IsValidRecord(ULONGLONG nFrom, ULONGLONG nTo);

    // The first position from nPos on whose byte isn't of the class, or nLimit.
    ULONGLONG SkipClass(ULONGLONG nPos, ULONGLONG nLimit, std::uint8_t what);
    // The same for CR, LF, tab and blank, by characters and to the end of the file.
    ULONGLONG SkipLead(ULONGLONG nPos);

    // The position of the last byte of [nFrom, nTo) that isn't zero, plus one; nFrom if
    // there is none. Reads backwards.
    ULONGLONG EndWithoutZeros(ULONGLONG nFrom, ULONGLONG nTo);
    // Appends the first nMost bytes of [nFrom, nTo) that aren't zero.
    void AppendBytes(ULONGLONG nFrom, ULONGLONG nTo, std::size_t nMost, std::string& bytes);

private:
    static constexpr ULONGLONG kNowhere = ~0ull;

    bool FindContentLineEnd(ULONGLONG& nPos);
    ULONGLONG FindLineEnd(ULONGLONG nPos);

    // The end of the known zeros for a position among them, or nLimit if that comes first;
    // else the position itself.
    ULONGLONG PastZeros(ULONGLONG nPos, ULONGLONG nLimit) const
    {
        const ULONGLONG nEnd = std::min(m_nZerosTo, nLimit);
        return m_nZerosFrom <= nPos && nPos < nEnd ? nEnd : nPos;
    }
    // The same backwards: their beginning for a position after one of them.
    ULONGLONG BeforeZeros(ULONGLONG nPos) const
    {
        return m_nZerosFrom < nPos && nPos <= m_nZerosTo ? m_nZerosFrom : nPos;
    }
    void NoteZeros(ULONGLONG nFrom, ULONGLONG nTo);

    Data m_data;
    bool m_bCharSizeKnown = false;
    bool is_unicode = false;

    // The line with content last looked for: a record is delimited when it is read, and
    // once more when a cursor moves past it. Its end is the file's where none was found.
    ULONGLONG m_nKnownStart = kNowhere;
    ULONGLONG m_nKnownEnd = 0;

    // The bytes of [from, to) were zeros when they were read.
    ULONGLONG m_nZerosFrom = 0;
    ULONGLONG m_nZerosTo = 0;
};

} // namespace Hesperon::specifics
