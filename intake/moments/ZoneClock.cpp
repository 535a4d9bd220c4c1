// A zone is a list of steps. A clock belongs to a step if the moment that it makes with the step's
// offset lies in the step: to one most often, to none in an hour that is leapt over, to two in an
// hour that comes twice.

#include "intake/moments/ZoneClock.h"

#include <algorithm>
#include <limits>

namespace tabulex::intake {

namespace {

std::int64_t EndOf(const std::vector<ZoneStep>& steps, std::size_t n)
{
    return n + 1 < steps.size() ? steps[n + 1].nFrom : std::numeric_limits<std::int64_t>::max();
}

bool Holds(const std::vector<ZoneStep>& steps, std::size_t n, std::int64_t nUtc)
{
    return nUtc >= steps[n].nFrom && nUtc < EndOf(steps, n);
}

std::size_t StepAt(const std::vector<ZoneStep>& steps, std::size_t nHint, std::int64_t nUtc)
{
    if (Holds(steps, nHint, nUtc))
        return nHint;
    const auto behind = std::ranges::upper_bound(steps, nUtc, {}, &ZoneStep::nFrom);
    return behind == steps.begin() ? 0 : static_cast<std::size_t>(behind - steps.begin()) - 1;
}

} // namespace

std::string ZoneFault(const Zones& zones)
{
    const bool bOwn = zones.sFrom == kOwnOffset;
    for (const std::string& name : {bOwn ? zones.sTo : zones.sFrom, zones.sTo})
        if (StepsOf(name).empty())
            return "--time-zone: the zone '" + name +
                   "' isn't known; give one such as Europe/Berlin or UTC";
    return {};
}

ZoneClock::ZoneClock(const Zones& zones) : m_to(StepsOf(zones.sTo))
{
    if (zones.sFrom != kOwnOffset)
        m_from = StepsOf(zones.sFrom);
}

// The step at the clock taken for UTC, or one of its neighbours: offsets are less than a day, and
// steps longer than two.
ZoneClock::Fit ZoneClock::ToUtc(std::int64_t& nClock) const
{
    m_nFrom = StepAt(m_from, m_nFrom, nClock);
    const std::size_t nFirst = m_nFrom == 0 ? 0 : m_nFrom - 1;
    const std::size_t nEnd = std::min(m_nFrom + 2, m_from.size());
    std::size_t nFound = m_from.size();
    std::size_t nBefore = nFirst; // the last step that the clock is behind the end of
    bool bTwice = false;
    for (std::size_t n = nFirst; n < nEnd; ++n) {
        const std::int64_t nUtc = nClock - m_from[n].nAhead;
        nBefore = nUtc >= m_from[n].nFrom ? n : nBefore;
        if (!Holds(m_from, n, nUtc))
            continue;
        bTwice = nFound != m_from.size();
        nFound = bTwice ? nFound : n;
    }
    nClock -= m_from[nFound == m_from.size() ? nBefore : nFound].nAhead;
    return nFound == m_from.size() ? Fit::Never : bTwice ? Fit::Twice : Fit::Once;
}

void ZoneClock::FromUtc(std::int64_t& nClock) const
{
    m_nTo = StepAt(m_to, m_nTo, nClock);
    nClock += m_to[m_nTo].nAhead;
}

} // namespace tabulex::intake
