// Names and formats of one locale, fetched once.
#pragma once

#include <array>
#include <string>

#include "platform/component.h"

// Immutable, and so safe from any thread.
class LocaleNames
{
public:
    // A name as "en_US"; an unknown one gives the nearest that the system knows.
    explicit LocaleNames(const std::string& name);

    // As LocaleInfo(), ShortDate() and TimeText() of platform/text/Locale.h, for this locale.
    string_t Info(int nType) const;
    string_t ShortDate(const SYSTEMTIME& time) const;
    string_t Time(const SYSTEMTIME& time) const;

    const string_t& DatePicture() const { return m_datePicture; }
    const string_t& TimePicture() const { return m_timePicture; }

private:
    static constexpr int kFirstType = 42;

    std::array<string_t, 38> m_names;      // types 42 to 79
    std::array<string_t, 2> m_marks;       // of the halves of the day
    string_t m_datePicture, m_timePicture; // DateTimePicture_posix.h
};

// Those of the environment's locale when first asked for.
const LocaleNames& UserLocaleNames();
