// What a process holds of the system at this moment. To be compared before and after.
#pragma once

#include <chrono>
#include <ostream>
#include <thread>

struct ProcessCounts
{
    std::size_t nThreads = 0;
    std::size_t nWindows = 0; // message windows; elsewhere than on Windows 1 for any
    std::size_t nHandles = 0; // of all kinds; elsewhere than on Windows file descriptors

    bool operator==(const ProcessCounts&) const = default;
};

ProcessCounts CountProcess();

// When nothing changes any more: a thread that has been joined may be listed for a moment.
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
