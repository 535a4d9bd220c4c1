// Names and formats of one locale, fetched once.
#pragma once

#include <array>
#include <string>

#include "platform/component.h"

// Both take a locale's name as "en_US"; an unknown one gives the nearest that the system knows.
// Immutable, and so safe from any thread.

class LocaleNames
{
public:
    explicit LocaleNames(const std::string& name);

    // As LocaleInfo() of platform/text/Locale.h, for this locale.
    string_t Info(int nType) const;

private:
    static constexpr int kFirstType = 42;

    std::array<string_t, 38> m_names; // types 42 to 79
};

class LocalePictures
{
public:
    explicit LocalePictures(const std::string& name);

    // As ShortDate() and TimeText() of platform/text/Locale.h, for this locale.
    string_t ShortDate(const SYSTEMTIME& time) const;
    string_t Time(const SYSTEMTIME& time) const;

    const string_t& DatePicture() const { return m_datePicture; }
    const string_t& TimePicture() const { return m_timePicture; }

private:
    std::array<string_t, 2> m_marks;       // of the halves of the day
    string_t m_datePicture, m_timePicture; // DateTimePicture_posix.h
};

// Those of the environment's locale when first asked for. Reading files needs the names alone,
// and the pictures cost more.
const LocaleNames& UserLocaleNames();
const LocalePictures& UserLocalePictures();
