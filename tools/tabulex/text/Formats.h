// Dates, times and numbers as text, the same in every output of the tool.
//
// A DATE counts days since 1899-12-30; its fraction is the time of day. Times are rounded to
// milliseconds, which are written only where they aren't 0.
#pragma once

#include <array>
#include <limits>
#include <optional>
#include <string>
#include <string_view>

#include "platform/component.h"
#include "tools/tabulex/text/Digits.h"

namespace tabulex {

// The time of day in milliseconds since midnight.
unsigned TimeOfDay(DATE date);

// YYYY-MM-DDTHH:MM:SS, with .mmm as above; `separator` takes the place of the T.
std::string DateTimeText(DATE date, char separator = 'T');

// YYYY-MM-DD for whole days. Neighbouring rows mostly have the same day, so the last text is
// kept. Not synchronised; the view is valid until the next call.
class DateText
{
public:
    std::string_view Of(DATE date);
    // Of a day as a DATE counts it.
    std::string_view OfDay(LONGLONG nDay)
    {
        if (nDay != m_nDay)
            Make(nDay);
        return {m_text.data(), m_nLength};
    }

private:
    void Make(LONGLONG nDay);

    LONGLONG m_nDay = std::numeric_limits<LONGLONG>::min();
    std::array<char, kDigitsRoom> m_text{};
    std::size_t m_nLength = 0;
};

// Reads YYYY-MM-DD, alone or with HH:MM[:SS[.fff]] after a 'T' or a blank. A date alone means
// its first moment. Empty for anything else.
std::optional<DATE> ParseDateTime(std::string_view text);

// The whole of `text` as a number; empty if it isn't one, or too large.
std::optional<ULONGLONG> ParseWhole(std::string_view text);

// 1234567 as "1,234,567".
std::string WithThousands(ULONGLONG value);
// "1 row", "1,234 rows".
std::string Counted(ULONGLONG nCount, std::string_view noun);

} // namespace tabulex
