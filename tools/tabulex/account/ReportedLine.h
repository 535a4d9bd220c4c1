// ReportedLine: which line of the file a run means by the number that it reports.
//
// When a file is read backwards, the component's numbers of the lines in the last, partly filled
// batch are one too high; in every other case they are the place among the lines with content,
// from 1.
#pragma once

#include "tools/tabulex/account/LineMap.h"
#include "tools/tabulex/host/Host.h"

namespace tabulex {

// Lines in a batch; only the last batch of a run has fewer.
inline constexpr ULONGLONG kBatchLines = 1000;

class ReportedLine
{
public:
    ReportedLine(const Host& host, LineMap& lines);

    // The line's place among those with content, from 0. `nReported` counts from 1; `nBatchStart`
    // is the position of the first record of the batch that holds the line.
    ULONGLONG PlaceOf(ULONGLONG nReported, ULONGLONG nBatchStart);

private:
    LineMap& m_lines;
    bool m_bInverted;
    ULONGLONG m_nLinesBefore; // header and what stands before it
};

} // namespace tabulex
