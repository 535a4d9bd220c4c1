// LastRecordOf: where the last record of a file lies, found backwards from the end.
//
// The method: from the end of the file step back over line ends and blanks to the last
// character of a line, from there back to the line end before it, and forward again to the
// line's first character. If the line is no record, go on from the line end before it. Steps
// are characters of one or two bytes. The place is kept until the file's size is read again,
// since detection asks for the record once for each template that it tries.
//
// Zeros at the end of a line are text of no length, and a file may end in any number of
// them; they are stepped over once and left out of the place.
//
// Not synchronised. Throws as FileLines does.
#pragma once

#include <optional>

#include "src/files/FileLines.h"

namespace Hesperon::specifics {

template <class Data>
class LastRecordOf
{
public:
    struct LinePlace
    {
        ULONGLONG nStart;
        ULONGLONG nEnd; // after the last byte that isn't zero
    };

    // The last line that is a record. Reports a file that has none, and gives its first line
    // then. The file has more than one character.
    LinePlace Find(FileLinesOf<Data>& lines);
    void Forget() { m_found.reset(); }

private:
    struct FoundLine
    {
        LinePlace place;
        ULONGLONG nLineEnd; // the end of the line before, or 0
        bool bRecord;
    };

    static FoundLine LineBefore(FileLinesOf<Data>& lines, ULONGLONG nPos);
    static ULONGLONG StepBack(const FileLinesOf<Data>& lines, ULONGLONG nPos);
    static ULONGLONG StepBefore(const FileLinesOf<Data>& lines, ULONGLONG nPos, ULONGLONG nEnd);

    std::optional<FoundLine> m_found;
};

} // namespace Hesperon::specifics
