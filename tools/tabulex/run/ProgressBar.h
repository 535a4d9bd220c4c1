// ProgressBar: decides when a conversion's progress is drawn, and how it looks.
//
// Drawn on a terminal that isn't "dumb", about a second after the start, a few
// times a second; Always and Never override the terminal. Used by one thread.
#pragma once

#include <chrono>
#include <string>

#include "platform/component.h"
#include "tools/tabulex/system/Console.h"

namespace tabulex {

// The figures of a progress box.
struct Progress
{
    ULONG nPercent = 0;
    ULONGLONG nRecords = 0; // processed so far
    std::string sElapsed;   // as the box writes them, "0 min 12 sec"; may be empty
    std::string sRemaining;
};

class ProgressBar
{
public:
    // The time from which the rate is counted begins here. The console must outlive the bar.
    ProgressBar(Console& console, When when);
    // Removes the line.
    ~ProgressBar();
    ProgressBar(const ProgressBar&) = delete;
    ProgressBar& operator=(const ProgressBar&) = delete;

    // Takes figures, and draws them if the last drawing is old enough.
    void Show(const Progress& progress);
    // Draws the final figures if drawing was asked for and nothing has been drawn, since the
    // run was over at once.
    void ShowEnd(ULONGLONG nRecords);

    // "[###.....]  42%  1,234,567 records  650,000/s  0 min 2 sec, 0 min 3 sec left"; the bar takes
    // what the figures leave of a line of nWidth columns, and what is still too long is cut.
    static std::string TextOf(const Progress& progress, double seconds, unsigned nWidth);

private:
    using Clock = std::chrono::steady_clock;

    void Draw(const Progress& progress);

    Console& m_console;
    bool m_bAlways;
    bool m_bEnabled;
    bool m_bDrawn = false;
    Clock::time_point m_tStart = Clock::now();
    Clock::time_point m_tNext;
};

} // namespace tabulex
