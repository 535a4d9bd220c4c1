// MomentReader: the moment of a row, from its text to the two clean cells.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "intake/Intake.h"
#include "intake/Recipe.h"
#include "intake/moments/ClockReader.h"
#include "intake/moments/DateReader.h"
#include "intake/moments/Words.h"
#include "intake/moments/ZoneClock.h"

namespace tabulex::intake {

class MomentReader
{
public:
    // Bytes that Write needs at most.
    static constexpr std::size_t kMostBytes = 32;

    // REQUIRES: a recipe without a fault, and with a moment. The account takes what was lost on
    // the way from a text to a moment.
    MomentReader(const Recipe& recipe, IntakeAccount& account);

    // Milliseconds since 1970-01-01 of the clock that leaves; empty for a text that can't be read,
    // or lies outside of 1900 to 2099.
    std::optional<std::int64_t> Read(std::string_view text);

    // "2006-01-02", and with a clock ";09:30:15.250" behind it. Moves pOut behind.
    void Write(std::int64_t nMoment, char*& pOut);

private:
    std::optional<std::int64_t> ReadEpoch(std::string_view text);
    std::optional<std::int64_t> ReadSerial(std::string_view text);
    std::optional<std::int64_t> ReadCalendar(std::string_view text);
    std::optional<std::int64_t> ReadTimeFirst(std::string_view text);
    std::optional<std::int32_t> ReadDate(Cursor& cursor);
    std::optional<std::int64_t> Join(std::int32_t nDay, const Clock& clock);
    bool Shift(std::int64_t& nMoment, const Clock& clock);
    void CountOffset(const Clock& clock);

    const Moment m_moment;
    IntakeAccount& m_account;
    std::optional<std::int32_t> m_nGivenDay;
    Words m_words;
    DateReader m_dates;
    ClockReader m_clocks;
    std::optional<ZoneClock> m_zones;
    std::optional<std::int64_t> m_nFirstOffset; // of those that weren't looked at

    // Dates come again and again: the text of the last one with its day, and the last one written.
    char m_lastText[24] = {};
    std::size_t m_nLastText = 0;
    std::int32_t m_nLastDay = 0;
    char m_written[10] = {};
    std::int64_t m_nWrittenDay = 0;
    bool m_bWritten = false;
};

} // namespace tabulex::intake
