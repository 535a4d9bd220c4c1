// BadLineText: the text of a line that a run has reported as bad.
//
// The component numbers the lines of a run's last, partly filled batch from one
// position too early when the file is read backwards or the run is a portion. The
// number is told as it comes; the text is fetched from where the line really stands.
// Reads through a parser of its own, so that it may be called while the run's parser
// is locked. Used by the worker's thread only.
#pragma once

#include <optional>
#include <string>

#include "tools/tabulex/Host.h"
#include "tools/tabulex/Settings.h"

namespace tabulex {

class BadLineText
{
public:
    BadLineText(const Host& host, const std::optional<Portion>& portion);

    // `nLine` counts from 1 as reported; `nBatchStart` is the position of the first
    // record of the batch that holds the line. Empty if the line can't be read.
    std::string Of(ULONGLONG nLine, ULONGLONG nBatchStart);

private:
    bool IsShifted(ULONGLONG nBatchStart);
    std::optional<ULONGLONG> LastPosition();
    std::optional<ULONGLONG> FindLastPosition();

    com_ptr<IDataParser> m_lines;
    std::optional<Portion> m_portion;
    bool m_bInverted;
    ULONGLONG m_nLinesBefore; // header and what stands before it
    bool m_bLastKnown = false;
    std::optional<ULONGLONG> m_nLast; // of the run; empty where only the file's end tells
};

} // namespace tabulex
