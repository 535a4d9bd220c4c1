// LineRule: which line of a file is the record at a position.
//
// Positions count data records from 0, lines count from 0 with the header's among them. A file
// that runs backwards is read from its last line on; its last positions are then those of
// the lines before the data.
#pragma once

#include "src/files/ILineReader.h"

namespace Hesperon::specifics {

struct LineRule
{
    LONG bHasHeader = 0;     // 0 or 1
    ULONG nHeaderOffset = 0; // lines before the data, or before the header
    bool bInvertedDirection = false;
    ULONGLONG nTotalRecords = 0; // lines of the file, read when the direction is inverted

    // The first line of data in the file. It is the last to be read of an inverted one.
    ULONGLONG FirstDataLine() const { return nHeaderOffset + ULONGLONG(bHasHeader); }

    ULONGLONG LineOf(ULONGLONG nPosition) const
    {
        return bInvertedDirection ? nTotalRecords - nPosition - 1 : FirstDataLine() + nPosition;
    }
    LineRange LinesOf(ULONGLONG nPosition, ULONGLONG nCount) const
    {
        return {LineOf(nPosition), nCount, bInvertedDirection};
    }
    // Of the first line of data in an inverted file. Wraps where the file has none.
    ULONGLONG LastInvertedPosition() const { return nTotalRecords - FirstDataLine() - 1; }
};

} // namespace Hesperon::specifics
