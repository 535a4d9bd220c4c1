// BadLineText: the text of a line that a run has reported as bad.
//
// When a file is read backwards, the component's numbers of the lines in the last, partly
// filled batch are one too high. They are reported as they come; the text is fetched from
// where the line really is. Reads through a parser of its own, so that it may be called
// while the run's parser is locked.
#pragma once

#include <string>

#include "tools/tabulex/host/Host.h"

namespace tabulex {

class BadLineText
{
public:
    explicit BadLineText(const Host& host);

    // `nLine` counts from 1 as reported; `nBatchStart` is the position of the first
    // record of the batch that holds the line. Empty if the line can't be read.
    std::string Of(ULONGLONG nLine, ULONGLONG nBatchStart);

private:
    bool IsInPartlyFilledBatch(ULONGLONG nBatchStart);

    com_ptr<IDataParser> m_lines;
    bool m_bInverted;
    ULONGLONG m_nLinesBefore; // header and what stands before it
};

} // namespace tabulex
