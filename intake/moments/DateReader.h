// DateReader: a date in digits or with the name of a month, in a given order.
//
// Anything that parts numbers may stand between them, or nothing: 2006-01-02, 2.1.06, 2Jan06,
// 20060102, "Mon, 2nd of January 2006", 2006年1月2日. A month's name tells itself, wherever it
// stands. Years of two digits are those from 1950 to 2049.
#pragma once

#include <cstdint>
#include <optional>

#include "intake/Recipe.h"
#include "intake/moments/Cursor.h"
#include "intake/moments/Words.h"

namespace tabulex::intake {

class DateReader
{
public:
    // One of the forms in parts, not an epoch or a serial day. The words must outlive the reader.
    DateReader(DateForm form, const Words& words);

    // The day since 1970-01-01, with the cursor behind the date; empty for no date of the calendar
    // from 1900 to 2099.
    std::optional<std::int32_t> Read(Cursor& cursor) const;

private:
    enum class Part : std::uint8_t
    {
        Year,
        Month,
        Day
    };
    struct Parts;

    bool ReadParts(Cursor& cursor, Parts& parts) const;
    bool ReadWord(Cursor& cursor, Parts& parts) const;
    bool ReadRun(Cursor& cursor, std::size_t nDigits, Parts& parts) const;
    std::optional<std::int32_t> DayOf(const Parts& parts) const;

    Part m_order[3];
    int m_nParts = 3;
    const Words& m_words;
};

} // namespace tabulex::intake
