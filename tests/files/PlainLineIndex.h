// PlainLineIndex: the rules of LineIndex written down byte by byte over a string,
// without pages, spans or memory of what was found before. It is slow, and it is
// what the fast one is judged by.
#pragma once

#include <cstring>
#include <string>
#include <vector>

#include "platform/component.h"

namespace files_test {

class PlainLineIndex
{
public:
    explicit PlainLineIndex(std::string bytes) : m_bytes(std::move(bytes))
    {
        if (Size() > 4)
            for (int i = 0; i < 4; ++i)
                m_bUnicode = m_bUnicode || m_bytes[i] == 0;
    }

    ULONGLONG Size() const { return m_bytes.size(); }

    bool SeekNextLine(ULONGLONG& pos, bool bStopAtLineEnd, ULONGLONG* length = nullptr) const
    {
        const ULONGLONG start = pos;
        ULONGLONG lineStart = pos;
        for (;;) {
            while (pos != Size() && !IsLineEnd(pos))
                ++pos;
            if (pos == Size()) {
                if (length)
                    *length = pos;
                return false;
            }
            if (pos == lineStart + 1) {
                lineStart = pos;
                continue;
            }
            ULONGLONG walk = lineStart;
            while (walk != pos && m_bytes[walk] != 0 && strchr(": ,;", m_bytes[walk]))
                ++walk;
            if (walk != pos)
                break;
            ++pos;
            lineStart = pos;
        }
        if (!bStopAtLineEnd)
            while (pos != Size() && IsGap(pos))
                ++pos;
        if (length)
            *length = pos - start;
        return bStopAtLineEnd || pos != Size();
    }

    bool IsValidRecord(ULONGLONG from, ULONGLONG to) const
    {
        while (from != to && !IsLineEnd(from) && strchr(": ,;|\t", m_bytes[from]))
            ++from;
        return from != to && !IsLineEnd(from);
    }

    bool SeekRecord(ULONGLONG nIndex)
    {
        if (complete && nIndex >= count)
            return false;
        if (nIndex == curRecord)
            return true;
        ULONGLONG r = curRecord < nIndex ? curRecord : 0;
        ULONGLONG p = curRecord < nIndex ? curPos : 0;
        Jump(nIndex, r, p);
        if (r == nIndex) {
            curRecord = r;
            curPos = p;
            return true;
        }
        for (;;) {
            while (p != Size() && IsGap(p))
                ++p;
            const ULONGLONG lineStart = p;
            if (!SeekNextLine(p, false)) {
                count = r;
                if (lineStart != Size() && IsValidRecord(lineStart, Size()))
                    NewRecord(lineStart);
                complete = true;
                return false;
            }
            if (lineStart != p && IsValidRecord(lineStart, p)) {
                if (r == count)
                    NewRecord(lineStart);
                ++r;
            }
            if (r == nIndex) {
                curRecord = nIndex;
                curPos = p;
                return true;
            }
        }
    }

    bool GetRecord(std::string& text, ULONGLONG nIndex)
    {
        text.clear();
        if (!SeekRecord(nIndex))
            return false;
        ULONGLONG start = curPos;
        ULONGLONG length = 0;
        for (;;) {
            while (start < Size() && IsLead(start))
                start += m_bUnicode ? 2 : 1;
            start = start > Size() ? Size() : start;
            ULONGLONG end = start;
            const bool bMore = SeekNextLine(end, true);
            length = end - start > 512 ? 512 : end - start;
            if (!bMore || IsValidRecord(start, start + length))
                break;
            start = end;
        }
        text = WithoutZeros(start, start + length);
        return true;
    }

    bool GetLastRecord(std::string& text) const
    {
        text.clear();
        const long long s = m_bUnicode ? 2 : 1;
        if (Size() == 0)
            return false;
        long long pos = static_cast<long long>(Size()) - s;
        if (pos <= 0)
            return true;
        for (;;) {
            while (pos > 0 && IsLead(pos))
                pos -= s;
            const long long prev = pos = pos < 0 ? 0 : pos;
            while (pos > 0 && !IsLineEnd(pos))
                pos -= s;
            const long long next = pos = pos < 0 ? 0 : pos;
            while (pos < prev && IsLead(pos))
                pos += s;
            const long long start = pos > prev ? prev : pos;
            if (IsValidRecord(start, prev + s) || next == 0) {
                text = WithoutZeros(start, prev + s);
                return true;
            }
            pos = next;
        }
    }

    // The position that GetRelativePos divides by the size; -1 for an unknown record.
    double RelativePos(ULONGLONG nIndex) const
    {
        const ULONGLONG aligned = nIndex & ~1023ull;
        if (aligned >= count)
            return -1;
        ULONGLONG r = curRecord < aligned ? curRecord : 0;
        ULONGLONG p = curRecord < aligned ? curPos : 0;
        Jump(nIndex, r, p);
        return static_cast<double>(p);
    }

    ULONGLONG count = 0;
    ULONGLONG curPos = 0;
    ULONGLONG curRecord = 0;
    bool complete = false;
    std::vector<ULONGLONG> index;

private:
    bool IsLineEnd(ULONGLONG pos) const { return m_bytes[pos] == '\r' || m_bytes[pos] == '\n'; }
    bool IsLead(ULONGLONG pos) const
    {
        return IsLineEnd(pos) || m_bytes[pos] == '\t' || m_bytes[pos] == ' ';
    }
    bool IsGap(ULONGLONG pos) const { return IsLead(pos) || m_bytes[pos] == 0; }

    void NewRecord(ULONGLONG lineStart)
    {
        if (++count / 1024 > index.size())
            index.push_back(lineStart);
    }

    void Jump(ULONGLONG nIndex, ULONGLONG& r, ULONGLONG& p) const
    {
        const ULONGLONG aligned = nIndex & ~1023ull;
        if (r + 1 >= aligned || index.empty())
            return;
        if (nIndex / 1024 >= count / 1024) {
            r = (count & ~1023ull) - 1;
            p = index[count / 1024 - 1];
        } else {
            r = aligned - 1;
            p = index[nIndex / 1024 - 1];
        }
    }

    std::string WithoutZeros(ULONGLONG from, ULONGLONG to) const
    {
        std::string text = m_bytes.substr(from, to - from);
        std::erase(text, '\0');
        return text;
    }

    const std::string m_bytes;
    bool m_bUnicode = false;
};

} // namespace files_test
