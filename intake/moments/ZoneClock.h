// ZoneClock: moves clocks from one zone to another, by the system's zone database.
//
// Moments are milliseconds since 1970-01-01 of the clock that is meant. Used by one thread.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "intake/Recipe.h"

namespace tabulex::intake {

// From this moment of UTC on, until the next one, a zone is ahead of UTC by this.
struct ZoneStep
{
    std::int64_t nFrom;
    std::int64_t nAhead; // milliseconds
};

// All steps of a zone from 1900 to 2100, in order; the first one begins before any moment. Empty
// for a zone that isn't known. In a source of its own per system.
std::vector<ZoneStep> StepsOf(const std::string& zone);

// Why zones can't be used, in one sentence; empty if they can.
std::string ZoneFault(const Zones& zones);

class ZoneClock
{
public:
    // REQUIRES: the zones have no fault.
    explicit ZoneClock(const Zones& zones);

    enum class Fit : std::uint8_t
    {
        Once,
        Never, // clocks were put forward over it; read as if they hadn't been
        Twice  // clocks were put back over it; the first time is meant
    };
    // Moves a clock of the zone to UTC.
    Fit ToUtc(std::int64_t& nClock) const;
    // Moves a moment of UTC to the clock of the other zone.
    void FromUtc(std::int64_t& nClock) const;
    // Whether only cells with an offset of their own can be read.
    bool NeedsOffset() const { return m_from.empty(); }

private:
    std::vector<ZoneStep> m_from;
    std::vector<ZoneStep> m_to;
    mutable std::size_t m_nFrom = 0; // of the last moment, as the next one is most often near
    mutable std::size_t m_nTo = 0;
};

} // namespace tabulex::intake
