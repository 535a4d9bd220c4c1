// DateOrder: the other orders in which dates of the same form can be read.
//
// "01/02/03" may be year, month and day, or day first, or month first; with the year in four
// digits behind only day and month change places. A template that begins with a four-digit year
// or names the month has no other order. Used by one thread.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/component.h"

namespace tabulex {

class DateOrder
{
public:
    // The template as the component has it; whether the file writes years in two digits.
    DateOrder(std::string_view sTemplate, bool bShortYear);

    // The templates that read the same texts in another order; none where there is no doubt.
    const std::vector<std::string>& Others() const { return m_templates; }

    // What a day that was read by the template is by other n. Days as in a DATE. Empty where it
    // is no day.
    std::optional<LONG> Reread(std::size_t n, LONG nDay) const;

private:
    std::string m_sOrder; // "dmy", the parts as they follow on each other
    bool m_bShortYear;
    std::vector<std::string> m_orders;    // the others
    std::vector<std::string> m_templates; // of the others
};

// Whether the text of a date that the template reads has its year in two digits.
bool HasShortYear(std::string_view sTemplate, std::string_view sText);

} // namespace tabulex
