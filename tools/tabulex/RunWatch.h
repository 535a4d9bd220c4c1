// RunWatch: how far a running conversion is, and whether it still runs.
//
// A run may end without a word where the component takes the sink to know already.
// It counts as dead when for some seconds neither the sink was touched nor the file
// became better known. Reads through a parser of its own; used by one thread.
#pragma once

#include <chrono>

#include "tools/tabulex/ConversionSink.h"

namespace tabulex {

class RunWatch
{
public:
    // The sink must outlive the watch. After `patience` without a sign the run is dead.
    RunWatch(com_ptr<IDataParser> lines, const ConversionSink& sink,
             std::chrono::milliseconds patience = std::chrono::seconds(5));

    bool IsDead();
    // Lines of the file, an estimate while it isn't read to its end; 0 for unknown.
    ULONGLONG TotalLines() const;

private:
    using Clock = std::chrono::steady_clock;

    com_ptr<IDataParser> m_lines;
    const ConversionSink& m_sink;
    std::chrono::milliseconds m_patience;
    ULONGLONG m_nPulse = 0;
    ULONGLONG m_nKnownLines = 0;
    Clock::time_point m_tLastSign = Clock::now();
};

} // namespace tabulex
