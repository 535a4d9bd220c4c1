// ProgressBar: decides when a conversion's progress is drawn, and what it says.
//
// Drawn on a terminal that isn't "dumb", about a second after the start, a few
// times a second; Always and Never override the terminal. Used by one thread.
#pragma once

#include <chrono>
#include <string>

#include "platform/component.h"
#include "tools/tabulex/Console.h"

namespace tabulex {

struct Progress
{
    ULONGLONG nLines = 0; // lines behind us
    ULONGLONG nTotal = 0; // lines of the file, possibly an estimate; 0 where unknown
};

class ProgressBar
{
public:
    // The clock of speed and rest starts here. The console must outlive the bar.
    ProgressBar(Console& console, When when);
    // Takes the line away.
    ~ProgressBar();

    // True when it is time for another picture; ask before the figures are gathered.
    bool IsDue() const;
    // Draws, cut to the terminal's width, and sets the time of the next picture.
    void Draw(const Progress& progress);

    // "  42%  1,234,567 of about 2,900,000 lines  650,000/s  0:02 left"
    static std::string TextOf(const Progress& progress, double seconds);

private:
    using Clock = std::chrono::steady_clock;

    Console& m_console;
    bool m_bEnabled;
    Clock::time_point m_tStart = Clock::now();
    Clock::time_point m_tNext;
};

} // namespace tabulex
