// First the numbers, one after the other with the same mark between, or all in one run of digits;
// then whatever else stands behind them: a half of the day, an offset, a zone.

#include "intake/moments/ClockReader.h"

#include <array>

namespace tabulex::intake {

struct ClockReader::Fields
{
    std::int64_t nHour = 0;
    std::int64_t nMinute = 0;
    std::int64_t nSecond = 0;
    std::int64_t nMillisecond = 0;
    bool bFiner = false;
    bool bParted = false; // with marks between
    Half half = Half::None;

    std::optional<std::int64_t> Milliseconds() const;
};

namespace {

constexpr std::int64_t kSecond = 1000, kMinute = 60 * kSecond, kHour = 60 * kMinute;
constexpr std::int64_t kDay = 24 * kHour;
constexpr std::size_t kMostDigits = 18;

// The first three of n digits.
std::int64_t TakeFraction(Cursor& cursor, std::size_t nDigits, bool& bFiner)
{
    std::int64_t nValue = 0;
    for (std::size_t n = 0; n < 3; ++n)
        nValue = nValue * 10 + (n < nDigits ? cursor.Take(1) : 0);
    for (std::size_t n = 3; n < nDigits; ++n)
        bFiner = cursor.Take(1) != 0 || bFiner;
    return nValue;
}

} // namespace

// 12 is the first hour of either half, and 24:00 the end of the day.
std::optional<std::int64_t> ClockReader::Fields::Milliseconds() const
{
    std::int64_t nHours = nHour;
    if (half != Half::None && nHours == 12)
        nHours = 0;
    if (half == Half::Afternoon && nHours < 12)
        nHours += 12;
    if (nHours > 24 || nMinute > 59 || nSecond > 59)
        return std::nullopt;
    const std::int64_t n = nHours * kHour + nMinute * kMinute + nSecond * kSecond + nMillisecond;
    return n <= kDay ? std::optional(n) : std::nullopt;
}

// "a.m." is one word with points in it.
void ClockReader::ReadHalf(Cursor& cursor, Fields& fields) const
{
    const std::size_t nPlace = cursor.Place();
    std::size_t nSize = 0;
    const Word* pWord = m_words.Find(cursor.Rest(), nSize);
    if (!pWord || (pWord->kind != WordKind::Morning && pWord->kind != WordKind::Afternoon))
        return;
    fields.half = pWord->kind == WordKind::Morning ? Half::Morning : Half::Afternoon;
    cursor.GoTo(nPlace + nSize);
    if (nSize == 1 && cursor.Here() == '.') {
        cursor.SkipAny(". ");
        if (cursor.Here() == 'm' || cursor.Here() == 'M')
            cursor.Skip(1);
        cursor.SkipAny(".");
    }
}

bool ClockReader::ReadParted(Cursor& cursor, Fields& fields) const
{
    const char cMark = cursor.Here();
    std::int64_t* const targets[] = {&fields.nMinute, &fields.nSecond};
    for (std::int64_t* pTarget : targets) {
        if (cursor.Here() != cMark || !IsDigitByte(cursor.Ahead(1)))
            return true;
        cursor.Skip(1);
        const std::size_t nDigits = cursor.DigitsHere();
        if (nDigits > 2)
            return false;
        *pTarget = cursor.Take(nDigits);
        fields.bParted = true;
    }
    const char cFraction = cursor.Here();
    const std::size_t nDigits = cFraction == '.' || cFraction == ',' || cFraction == ':'
                                    ? Cursor(cursor.Rest().substr(1)).DigitsHere()
                                    : 0;
    if (nDigits == 0)
        return true;
    cursor.Skip(1);
    // Behind a colon they are a number of milliseconds, not digits of a fraction.
    if (cFraction == ':' && nDigits < 3)
        fields.nMillisecond = cursor.Take(nDigits);
    else
        fields.nMillisecond = TakeFraction(cursor, nDigits, fields.bFiner);
    return true;
}

// A run of digits has minutes from three digits on, seconds from five, and then a fraction.
bool ClockReader::ReadNumbers(Cursor& cursor, Fields& fields) const
{
    const std::size_t nDigits = cursor.DigitsHere();
    if (nDigits == 0 || nDigits == 7 || nDigits > kMostDigits)
        return false;
    if (nDigits <= 2) {
        fields.nHour = cursor.Take(nDigits);
        const char cMark = cursor.Here();
        const bool bMark = cMark == ':' || cMark == '.' || cMark == 'h' || cMark == 'H' ||
                           cMark == '-' || cMark == '_';
        return !bMark || ReadParted(cursor, fields);
    }
    const std::size_t nHour = nDigits < 9 && nDigits != 4 && nDigits != 6 ? 1 : 2;
    fields.nHour = cursor.Take(nHour);
    fields.nMinute = cursor.Take(2);
    fields.bParted = true;
    if (nDigits < 5)
        return true;
    fields.nSecond = cursor.Take(2);
    if (nDigits > 6)
        fields.nMillisecond = TakeFraction(cursor, nDigits - nHour - 4, fields.bFiner);
    else if ((cursor.Here() == '.' || cursor.Here() == ',') && IsDigitByte(cursor.Ahead(1))) {
        cursor.Skip(1);
        fields.nMillisecond = TakeFraction(cursor, cursor.DigitsHere(), fields.bFiner);
    }
    return true;
}

// "+05:30", "-0500", "+1"
bool ClockReader::ReadOffset(Cursor& cursor, Clock& clock) const
{
    const std::int64_t nSign = cursor.Here() == '-' ? -1 : 1;
    cursor.Skip(1);
    const std::size_t nDigits = cursor.DigitsHere();
    if (nDigits == 0 || nDigits == 3 || nDigits > 4)
        return false;
    const std::int64_t nHours = cursor.Take(nDigits > 2 ? 2 : nDigits);
    std::int64_t nMinutes = nDigits == 4 ? cursor.Take(2) : 0;
    if (nDigits <= 2 && cursor.Here() == ':' && IsDigitByte(cursor.Ahead(1)) &&
        IsDigitByte(cursor.Ahead(2))) {
        cursor.Skip(1);
        nMinutes = cursor.Take(2);
    }
    clock.bOffset = clock.bOffsetKnown = true;
    clock.nOffset = nSign * (nHours * kHour + nMinutes * kMinute);
    return nHours <= 18 && nMinutes < 60;
}

bool ClockReader::ReadWord(Cursor& cursor, Fields& fields, Clock& clock) const
{
    if (fields.half == Half::None) {
        const std::size_t nPlace = cursor.Place();
        ReadHalf(cursor, fields);
        if (cursor.Place() != nPlace)
            return true;
    }
    std::size_t nSize = 0;
    const Word* pWord = m_words.Find(cursor.Rest(), nSize);
    if (!pWord || pWord->kind == WordKind::Month)
        return false;
    clock.bOffset = clock.bOffset || pWord->kind == WordKind::Utc || pWord->kind == WordKind::Zone;
    clock.bOffsetKnown = clock.bOffsetKnown || pWord->kind == WordKind::Utc;
    cursor.Skip(nSize);
    return true;
}

// A zone's name in brackets repeats what the offset says.
bool ClockReader::ReadRest(Cursor& cursor, Fields& fields, Clock& clock) const
{
    while (true) {
        cursor.SkipAny(fields.bParted ? " \t" : " \t-");
        const char c = cursor.Here();
        if (cursor.AtEnd() || c == '[' || c == '(')
            return true;
        const bool bGood = (c == '+' || c == '-') && fields.bParted
                               ? ReadOffset(cursor, clock)
                               : !IsDigitByte(c) && ReadWord(cursor, fields, clock);
        if (!bGood)
            return false;
    }
}

std::optional<Clock> ClockReader::ReadAny(Cursor& cursor, bool bWhole) const
{
    Fields fields;
    Clock clock;
    if (!cursor.AtEnd() && !IsDigitByte(cursor.Here()))
        ReadHalf(cursor, fields);
    cursor.SkipAny(" \t");
    const bool bNothing = cursor.AtEnd() && fields.half == Half::None;
    if (!bNothing && !ReadNumbers(cursor, fields))
        return std::nullopt;
    if (bWhole) {
        if (!ReadRest(cursor, fields, clock))
            return std::nullopt;
    } else {
        cursor.SkipAny(" \t");
        if (!IsDigitByte(cursor.Here()))
            ReadHalf(cursor, fields);
    }
    const auto nMilliseconds = fields.Milliseconds();
    const bool bHourAlone = !bNothing && !fields.bParted && fields.half == Half::None;
    if (!nMilliseconds || (bHourAlone && fields.nHour != 0))
        return std::nullopt;
    clock.nMilliseconds = *nMilliseconds;
    clock.bFiner = fields.bFiner;
    return clock;
}

// Zeros ahead may lack, so that the digits are those of a whole number.
std::optional<Clock> ClockReader::ReadDigits(Cursor& cursor) const
{
    const std::size_t nDigits = cursor.DigitsHere();
    if (nDigits == 0 || nDigits > 9)
        return std::nullopt;
    std::int64_t n = cursor.Take(nDigits);
    Clock clock;
    if (cursor.Here() == '.' || cursor.Here() == ',') {
        cursor.Skip(1);
        const std::int64_t nFraction = TakeFraction(cursor, cursor.DigitsHere(), clock.bFiner);
        clock.nMilliseconds = m_form == ClockForm::MillisecondsOfDay ? 0 : nFraction;
        clock.bFiner = clock.bFiner || (m_form == ClockForm::MillisecondsOfDay && nFraction != 0);
    }
    if (!cursor.AtEnd())
        return std::nullopt;
    if (m_form == ClockForm::MillisecondsOfDay || m_form == ClockForm::SecondsOfDay) {
        clock.nMilliseconds += m_form == ClockForm::SecondsOfDay ? n * kSecond : n;
        return clock.nMilliseconds <= kDay ? std::optional(clock) : std::nullopt;
    }
    Fields fields;
    fields.nMillisecond = clock.nMilliseconds;
    if (m_form == ClockForm::HoursMinutesMilliseconds) {
        fields.nMillisecond = n % 1000;
        n /= 1000;
    }
    if (m_form != ClockForm::HoursMinutes) {
        fields.nSecond = n % 100;
        n /= 100;
    }
    fields.nMinute = n % 100;
    fields.nHour = n / 100;
    const auto nMilliseconds = fields.Milliseconds();
    if (!nMilliseconds)
        return std::nullopt;
    clock.nMilliseconds = *nMilliseconds;
    return clock;
}

std::optional<Clock> ClockReader::Read(Cursor& cursor) const
{
    cursor.SkipAny(" \t,;-_:");
    if ((cursor.Here() == 'T' || cursor.Here() == 't') && IsDigitByte(cursor.Ahead(1)))
        cursor.Skip(1);
    if (m_form != ClockForm::Any)
        return ReadDigits(cursor);
    // Words such as a day's name or "at".
    std::size_t nSize = 0;
    for (const Word* pWord = nullptr; !cursor.AtEnd() && !IsDigitByte(cursor.Here());) {
        pWord = m_words.Find(cursor.Rest(), nSize);
        if (!pWord || (pWord->kind != WordKind::Weekday && pWord->kind != WordKind::Filler))
            break;
        cursor.Skip(nSize);
        cursor.SkipAny(" \t,.");
    }
    return ReadAny(cursor, true);
}

std::optional<Clock> ClockReader::ReadAhead(Cursor& cursor) const
{
    return ReadAny(cursor, false);
}

} // namespace tabulex::intake
