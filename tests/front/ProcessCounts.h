// The system's objects that this process holds at the moment, to be compared before and after.
#pragma once

#include <chrono>
#include <ostream>
#include <thread>

struct ProcessCounts
{
    std::size_t nThreads = 0;
    std::size_t nWindows = 0; // message windows; off Windows 1 for any number
    std::size_t nHandles = 0; // of all kinds; off Windows file descriptors

    bool operator==(const ProcessCounts&) const = default;
};

ProcessCounts CountProcess();

// The counts once they stay the same: a joined thread may still be listed for a moment.
inline ProcessCounts CountProcessAtRest()
{
    ProcessCounts last, counts = CountProcess();
    do {
        last = counts;
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
        counts = CountProcess();
    } while (!(counts == last));
    return counts;
}

inline std::ostream& operator<<(std::ostream& out, const ProcessCounts& counts)
{
    return out << counts.nThreads << " threads, " << counts.nWindows << " windows, "
               << counts.nHandles << " handles";
}
