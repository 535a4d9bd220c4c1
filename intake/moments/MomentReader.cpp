// A date that begins like the last one, up to the same place, is the last one. Everything else is
// read by the readers of dates and clocks, or counted from an epoch in whole numbers.

#include "intake/moments/MomentReader.h"

#include <chrono>
#include <cstdlib>
#include <cstring>

namespace tabulex::intake {

namespace {

constexpr std::int64_t kDayMilliseconds = 24LL * 60 * 60 * 1000;
constexpr std::int64_t kFirstMoment = -25567 * kDayMilliseconds; // 1900-01-01
constexpr std::int64_t kEndMoment = 47482 * kDayMilliseconds;    // 2100-01-01
constexpr std::int32_t kSerialZero = -25569;                     // 1899-12-30
constexpr std::size_t kMostWhole = 19; // digits, of which the first is at most 8

std::int32_t DayOf(const CalendarDate& date)
{
    using namespace std::chrono;
    const year_month_day day{year(date.nYear), month(date.nMonth), std::chrono::day(date.nDay)};
    return static_cast<std::int32_t>(sys_days(day).time_since_epoch().count());
}

std::int64_t DaysIn(std::int64_t nMoment)
{
    const std::int64_t nDays = nMoment / kDayMilliseconds;
    return nMoment % kDayMilliseconds < 0 ? nDays - 1 : nDays;
}

// A decimal in whole numbers: its whole part, and its fraction as digits of a power of ten.
struct Fixed
{
    bool bNegative = false;
    std::int64_t nWhole = 0;
    std::int64_t nFraction = 0;
    std::int64_t nOne = 1; // what the fraction counts in
    int nDigits = 0;
    bool bFiner = false; // digits beyond these
};

std::optional<Fixed> ReadFixed(std::string_view text)
{
    Fixed fixed;
    Cursor cursor(text);
    fixed.bNegative = cursor.Here() == '-';
    cursor.Skip(fixed.bNegative ? 1 : 0);
    const std::size_t nWhole = cursor.DigitsHere();
    if (nWhole == 0 || nWhole > kMostWhole || (nWhole == kMostWhole && cursor.Here() == '9'))
        return std::nullopt;
    fixed.nWhole = cursor.Take(nWhole);
    if (cursor.Here() == '.' || cursor.Here() == ',')
        for (cursor.Skip(1); IsDigitByte(cursor.Here());) {
            const std::int64_t nDigit = cursor.Take(1);
            if (fixed.nDigits == 12) {
                fixed.bFiner = fixed.bFiner || nDigit != 0;
                continue;
            }
            fixed.nFraction = fixed.nFraction * 10 + nDigit;
            fixed.nOne *= 10;
            ++fixed.nDigits;
        }
    return cursor.AtEnd() ? std::optional(fixed) : std::nullopt;
}

void PutTwo(char* p, std::int64_t n)
{
    p[0] = static_cast<char>('0' + n / 10);
    p[1] = static_cast<char>('0' + n % 10);
}

void WriteDay(std::int64_t nDay, char* p)
{
    using namespace std::chrono;
    const year_month_day date{sys_days(days(nDay))};
    const int nYear = static_cast<int>(date.year());
    PutTwo(p, nYear / 100);
    PutTwo(p + 2, nYear % 100);
    p[4] = p[7] = '-';
    PutTwo(p + 5, static_cast<unsigned>(date.month()));
    PutTwo(p + 8, static_cast<unsigned>(date.day()));
}

void WriteClock(std::int64_t n, char* p)
{
    const std::int64_t nSeconds = n / 1000, nMilliseconds = n % 1000;
    PutTwo(p, nSeconds / 3600);
    PutTwo(p + 3, nSeconds / 60 % 60);
    PutTwo(p + 6, nSeconds % 60);
    p[2] = p[5] = ':';
    p[8] = '.';
    p[9] = static_cast<char>('0' + nMilliseconds / 100);
    PutTwo(p + 10, nMilliseconds % 100);
}

} // namespace

MomentReader::MomentReader(const Recipe& recipe, IntakeAccount& account)
    : m_moment(*recipe.moment), m_account(account), m_words(recipe.sLanguage),
      m_dates(m_moment.date, m_words), m_clocks(m_moment.clock, m_words)
{
    if (recipe.date)
        m_nGivenDay = DayOf(*recipe.date);
    if (recipe.zones)
        m_zones.emplace(*recipe.zones);
}

// From units of an epoch, of which 10 to the power of nTens make a millisecond or are one.
std::optional<std::int64_t> MomentReader::ReadEpoch(std::string_view text)
{
    const auto fixed = ReadFixed(text);
    if (!fixed)
        return std::nullopt;
    std::int64_t nMoment = fixed->nWhole;
    std::int64_t nUnit = 1; // units in a millisecond
    bool bFiner = fixed->bFiner;
    if (m_moment.date == DateForm::EpochSeconds) {
        if (nMoment > kEndMoment / 1000)
            return std::nullopt;
        const std::int64_t nFine = fixed->nFraction * 1000;
        nMoment = nMoment * 1000 + nFine / fixed->nOne;
        bFiner = bFiner || nFine % fixed->nOne != 0;
    } else {
        bFiner = bFiner || fixed->nFraction != 0;
        nUnit = m_moment.date == DateForm::EpochNanoseconds    ? 1000000
                : m_moment.date == DateForm::EpochMicroseconds ? 1000
                                                               : 1;
    }
    bFiner = bFiner || nMoment % nUnit != 0;
    nMoment /= nUnit;
    m_account.nFiner += bFiner ? 1 : 0;
    nMoment = fixed->bNegative ? -nMoment : nMoment;
    Clock utc;
    utc.bOffset = utc.bOffsetKnown = true;
    return !m_zones || Shift(nMoment, utc) ? std::optional(nMoment) : std::nullopt;
}

// A fraction of a day has too few digits for most clocks: the whole second is meant where the
// digits leave it open.
std::optional<std::int64_t> MomentReader::ReadSerial(std::string_view text)
{
    const auto fixed = ReadFixed(text);
    if (!fixed || fixed->bNegative || fixed->nWhole > 100000)
        return std::nullopt;
    const double dMilliseconds = static_cast<double>(fixed->nFraction) /
                                 static_cast<double>(fixed->nOne) *
                                 static_cast<double>(kDayMilliseconds);
    const double dOpen =
        .5 / static_cast<double>(fixed->nOne) * static_cast<double>(kDayMilliseconds) + 1e-3;
    std::int64_t n = static_cast<std::int64_t>(dMilliseconds + .5);
    const std::int64_t nSecond = (n + 500) / 1000 * 1000;
    if (static_cast<double>(std::abs(nSecond - n)) <= dOpen + .5)
        n = nSecond;
    std::int64_t nMoment = (fixed->nWhole + kSerialZero) * kDayMilliseconds + n;
    return !m_zones || Shift(nMoment, {}) ? std::optional(nMoment) : std::nullopt;
}

// The last date's text is compared as far as it was read, and no digit may follow.
std::optional<std::int32_t> MomentReader::ReadDate(Cursor& cursor)
{
    const std::string_view rest = cursor.Rest();
    if (m_nLastText != 0 && rest.size() >= m_nLastText &&
        std::memcmp(rest.data(), m_lastText, m_nLastText) == 0 &&
        !IsDigitByte(cursor.Ahead(m_nLastText))) {
        cursor.Skip(m_nLastText);
        return m_nLastDay;
    }
    const std::size_t nStart = cursor.Place();
    const auto nDay = m_dates.Read(cursor);
    const std::size_t nSize = cursor.Place() - nStart;
    m_nLastText = nDay && nSize <= sizeof m_lastText ? nSize : 0;
    rest.copy(m_lastText, m_nLastText);
    m_nLastDay = nDay.value_or(0);
    return nDay;
}

std::optional<std::int64_t> MomentReader::ReadCalendar(std::string_view text)
{
    Cursor cursor(text);
    std::int32_t nDay = 0;
    if (m_nGivenDay)
        nDay = *m_nGivenDay;
    else if (const auto nRead = ReadDate(cursor))
        nDay = *nRead;
    else
        return m_moment.clock == ClockForm::Any ? ReadTimeFirst(text) : std::nullopt;
    if (m_moment.clock == ClockForm::None)
        return nDay * kDayMilliseconds;
    const auto clock = m_clocks.Read(cursor);
    return clock ? Join(nDay, *clock) : std::nullopt;
}

std::optional<std::int64_t> MomentReader::ReadTimeFirst(std::string_view text)
{
    Cursor cursor(text);
    const auto clock = m_clocks.ReadAhead(cursor);
    if (!clock || cursor.AtEnd())
        return std::nullopt;
    const auto nDay = m_dates.Read(cursor);
    return nDay && cursor.AtEnd() ? Join(*nDay, *clock) : std::nullopt;
}

std::optional<std::int64_t> MomentReader::Join(std::int32_t nDay, const Clock& clock)
{
    std::int64_t nMoment = nDay * kDayMilliseconds + clock.nMilliseconds;
    m_account.nFiner += clock.bFiner ? 1 : 0;
    if (m_zones && !Shift(nMoment, clock))
        return std::nullopt;
    if (!m_zones && clock.bOffset)
        CountOffset(clock);
    return nMoment;
}

void MomentReader::CountOffset(const Clock& clock)
{
    ++m_account.nOffsets;
    if (!m_nFirstOffset)
        m_nFirstOffset = clock.nOffset;
    m_account.bOffsetsDiffer = m_account.bOffsetsDiffer || *m_nFirstOffset != clock.nOffset;
}

bool MomentReader::Shift(std::int64_t& nMoment, const Clock& clock)
{
    if (clock.bOffsetKnown)
        nMoment -= clock.nOffset;
    else if (m_zones->NeedsOffset())
        return false;
    else {
        const ZoneClock::Fit fit = m_zones->ToUtc(nMoment);
        m_account.nNoSuchClock += fit == ZoneClock::Fit::Never ? 1 : 0;
        m_account.nTwiceClock += fit == ZoneClock::Fit::Twice ? 1 : 0;
    }
    m_zones->FromUtc(nMoment);
    return true;
}

std::optional<std::int64_t> MomentReader::Read(std::string_view text)
{
    std::optional<std::int64_t> nMoment;
    if (m_moment.date == DateForm::SerialDays)
        nMoment = ReadSerial(text);
    else if (m_moment.date >= DateForm::EpochSeconds)
        nMoment = ReadEpoch(text);
    else
        nMoment = ReadCalendar(text);
    if (nMoment && (*nMoment < kFirstMoment || *nMoment >= kEndMoment))
        nMoment.reset();
    return nMoment;
}

void MomentReader::Write(std::int64_t nMoment, char*& pOut)
{
    const std::int64_t nDay = DaysIn(nMoment);
    if (!m_bWritten || nDay != m_nWrittenDay) {
        WriteDay(nDay, m_written);
        m_nWrittenDay = nDay;
        m_bWritten = true;
    }
    std::memcpy(pOut, m_written, sizeof m_written);
    pOut += sizeof m_written;
    if (m_moment.clock == ClockForm::None)
        return;
    *pOut++ = ';';
    WriteClock(nMoment - nDay * kDayMilliseconds, pOut);
    pOut += 12;
}

} // namespace tabulex::intake
