// The parts of a tick count. All divisions truncate toward zero.
#pragma once

#include <cstdint>

#include "datetime/qrlDateTime.h"

namespace qrlDateTime::details {

// Counts far below zero wrap around instead of overflowing; what they give is out
// of range in any case.
constexpr std::int32_t DayNumberOfTicks(std::int64_t nTicks)
{
    const auto nFromOleZero = static_cast<std::int64_t>(
        static_cast<std::uint64_t>(nTicks) - static_cast<std::uint64_t>(kTicksOfOleZero));
    return static_cast<std::int32_t>(nFromOleZero / kTicksPerDay);
}

// Seconds since midnight.
constexpr std::int32_t SecondsOfTicks(std::int64_t nTicks)
{
    return static_cast<std::int32_t>(nTicks % kTicksPerDay / kTicksPerSecond);
}

// Ticks since the last whole second.
constexpr std::int32_t FractionOfTicks(std::int64_t nTicks)
{
    return static_cast<std::int32_t>(nTicks % kTicksPerSecond);
}

} // namespace qrlDateTime::details
