// SuspectBytes: parts of a file in which a cell may have been read as other than it says.
//
// It looks at the bytes in passing, knows no columns, and is meant to be fast: what it finds has
// to be looked at line by line (see review/CellReview.h). A part that it leaves out has no line
// with
//
//   - a number of dividers other than that of the file's layout, if a blank is none;
//   - two of the same divider side by side, or with a blank between, if a blank is none;
//   - a quotation mark, an apostrophe or a bracket;
//   - a sign that isn't followed by a digit, a point or, behind a dash, a letter;
//   - more or fewer signs between digits, or numbers with two marks, than a usual line has;
//   - a mark with no digit or letter beside it, or a comma that divides nothing ahead of 000;
//   - a digit behind two seconds, as in :59.8 or :59,8, unless three follow a point.
#pragma once

#include <string>
#include <vector>

#include "platform/component.h"
#include "tools/tabulex/account/LineSums.h"

namespace tabulex {

class SuspectBytes
{
public:
    struct Part
    {
        ULONGLONG nFrom;
        ULONGLONG nTo;
    };

    SuspectBytes();

    // What a usual line looks like. Ahead of the first bytes.
    void Expect(const UsualLine& line);

    // The next bytes of the file, from its beginning; none at its end.
    void Take(const char* bytes, std::size_t n);
    // Ascending, and apart from each other.
    const std::vector<Part>& Parts() const { return m_parts; }

private:
    bool IsSuspectAt(const char* p) const;
    bool HasSuspect(const char* p, std::uint64_t candidates) const;
    bool AnySuspect(const char* p, std::size_t nWindows, std::uint64_t places);
    bool IsSuspect(const char* bytes, std::size_t n);

    UsualLine m_line;
    LineMarks m_marks = MarksOf(m_line);
    LineSums m_sums;
    ULONGLONG m_nTaken = 0;
    std::string m_sTail; // last bytes so far; those at its end haven't been looked at
    std::vector<Part> m_parts;
};

} // namespace tabulex
