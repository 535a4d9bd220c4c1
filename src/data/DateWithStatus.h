// DateWithStatus: an OLE date that may be invalid.
#pragma once

#include <cstdint>

#include "platform/component.h"

namespace Hesperon::specifics {

struct DateWithStatus
{
    static constexpr LONG kValid = 0;
    static constexpr LONG kInvalid = 1;

    DATE date = 0; // days since 1899-12-30
    LONG status = kValid;

    // Earlier; false where either date is invalid.
    friend bool operator<(const DateWithStatus& a, const DateWithStatus& b)
    {
        return a.status == kValid && b.status == kValid && a.date < b.date;
    }
    // Two dates with different statuses are different.
    friend bool operator==(const DateWithStatus&, const DateWithStatus&) = default;
};

// The value as a date; invalid, with the date 0, where it can't be converted.
DateWithStatus DateOf(const VARIANT& value);

// The whole days of a date, cut to 16 bits. 0 stands for "no date" and 0xFFFF for
// "no earlier record" where a date is kept; these bits alone tell the two from a date.
std::uint16_t LowDayBits(DATE date);

} // namespace Hesperon::specifics
