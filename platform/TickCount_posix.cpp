#include "platform/TickCount.h"

#include <ctime>

// The coarse clock is read without entering the system, and its steps of a few milliseconds are
// fine enough.
std::uint32_t TickCount()
{
    timespec time{};
    clock_gettime(CLOCK_MONOTONIC_COARSE, &time);
    return static_cast<std::uint32_t>(time.tv_sec) * 1000 +
           static_cast<std::uint32_t>(time.tv_nsec / 1000000);
}
