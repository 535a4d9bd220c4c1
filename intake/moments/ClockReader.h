// ClockReader: a time of day in any writing, with an offset if it has one.
//
// 9:30, 09.30.15, 093015, 9:30:15.250, "9:30 PM", "09-PM", T09:30Z, 09:30-05:00, and nothing for
// midnight.
#pragma once

#include <cstdint>
#include <optional>

#include "intake/Recipe.h"
#include "intake/moments/Cursor.h"
#include "intake/moments/Words.h"

namespace tabulex::intake {

struct Clock
{
    std::int64_t nMilliseconds = 0; // of the day; up to 24 hours
    bool bFiner = false;            // a part of a millisecond was cut off
    bool bOffset = false;           // the text has one
    bool bOffsetKnown = false;      // and it isn't a zone's name
    std::int64_t nOffset = 0;       // milliseconds ahead of UTC
};

class ClockReader
{
public:
    // The words must outlive the reader.
    ClockReader(ClockForm form, const Words& words) : m_form(form), m_words(words) {}

    // The rest of the text; empty where it is no time of day. Blanks and a T ahead of it are
    // skipped.
    std::optional<Clock> Read(Cursor& cursor) const;
    // A time that a date follows: stops behind it.
    std::optional<Clock> ReadAhead(Cursor& cursor) const;

private:
    enum class Half : std::uint8_t
    {
        None,
        Morning,
        Afternoon
    };
    struct Fields;

    std::optional<Clock> ReadAny(Cursor& cursor, bool bWhole) const;
    std::optional<Clock> ReadDigits(Cursor& cursor) const;
    bool ReadNumbers(Cursor& cursor, Fields& fields) const;
    bool ReadParted(Cursor& cursor, Fields& fields) const;
    bool ReadRest(Cursor& cursor, Fields& fields, Clock& clock) const;
    bool ReadWord(Cursor& cursor, Fields& fields, Clock& clock) const;
    bool ReadOffset(Cursor& cursor, Clock& clock) const;
    void ReadHalf(Cursor& cursor, Fields& fields) const;

    ClockForm m_form;
    const Words& m_words;
};

} // namespace tabulex::intake
