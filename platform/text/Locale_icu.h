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

    // As LocaleInfo() and ShortDate() of platform/Locale.h, for this locale.
    string_t Info(int nType) const;
    string_t ShortDate(const SYSTEMTIME& time) const;

private:
    static constexpr int kFirstType = 42;

    std::array<string_t, 38> m_names; // types 42 to 79
    string_t m_shortDate;             // runs of d, M and y; the rest stands for itself
};

// Those of the environment's locale when first asked for.
const LocaleNames& UserLocaleNames();
