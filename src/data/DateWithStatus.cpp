#include "src/data/DateWithStatus.h"

#include <cmath>

#include "platform/values.h"

namespace Hesperon::specifics {

DateWithStatus DateOf(const VARIANT& value)
{
    if (value.vt == VT_DATE)
        return {value.date, DateWithStatus::kValid};
    Variant converted;
    if (FAILED(VariantChangeType(&converted, const_cast<VARIANT*>(&value), 0, VT_DATE)))
        return {0, DateWithStatus::kInvalid};
    return {converted.date, DateWithStatus::kValid};
}

std::uint16_t LowDayBits(DATE date)
{
    // Outside the range of 64-bit integers a conversion is undefined; NaN fails too.
    constexpr double kLimit = 9.2e18;
    if (!(std::abs(date) < kLimit))
        return 0;
    return static_cast<std::uint16_t>(static_cast<std::int64_t>(date));
}

} // namespace Hesperon::specifics
