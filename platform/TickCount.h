// Milliseconds of a clock that only runs forward, modulo 2^32: only differences count.
#pragma once

#include <chrono>
#include <cstdint>

inline std::uint32_t TickCount()
{
    using std::chrono::milliseconds;
    const auto time = std::chrono::steady_clock::now().time_since_epoch();
    return static_cast<std::uint32_t>(std::chrono::duration_cast<milliseconds>(time).count());
}
