#include <unicode/basictz.h>
#include <unicode/timezone.h>
#include <unicode/tztrans.h>
#include <unicode/unistr.h>

#include <limits>
#include <memory>

#include "intake/moments/ZoneClock.h"

namespace tabulex::intake {

namespace {

constexpr UDate kFirst = -2208988800000.0; // 1900-01-01
constexpr UDate kLast = 4102444800000.0;   // 2100-01-01

std::int64_t AheadAt(const icu::TimeZone& zone, UDate moment)
{
    int32_t nRaw = 0, nSummer = 0;
    UErrorCode status = U_ZERO_ERROR;
    zone.getOffset(moment, false, nRaw, nSummer, status);
    return nRaw + nSummer;
}

} // namespace

std::vector<ZoneStep> StepsOf(const std::string& zone)
{
    std::vector<ZoneStep> steps;
    const std::unique_ptr<icu::TimeZone> known(
        icu::TimeZone::createTimeZone(icu::UnicodeString::fromUTF8(zone)));
    if (!known || *known == icu::TimeZone::getUnknown())
        return steps;
    steps.push_back({std::numeric_limits<std::int64_t>::min(), AheadAt(*known, kFirst)});
    const auto* basic = dynamic_cast<const icu::BasicTimeZone*>(known.get());
    icu::TimeZoneTransition next;
    UDate moment = kFirst;
    while (basic && basic->getNextTransition(moment, false, next) && next.getTime() < kLast) {
        moment = next.getTime();
        const std::int64_t nAhead = AheadAt(*known, moment);
        if (nAhead != steps.back().nAhead)
            steps.push_back({static_cast<std::int64_t>(moment), nAhead});
    }
    return steps;
}

} // namespace tabulex::intake
