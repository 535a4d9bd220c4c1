// The user's locale: names and formats that depend on it.
//
// On Windows the user's default locale; elsewhere that of the environment
// (LC_ALL, LC_TIME, LANG), with the published English forms in "C" and "POSIX".
// Safe from any thread.
#pragma once

#include "platform/component.h"

// Lower-cases as the user's locale does; one unit maps to one unit.
void LowerCase(string_t& text);

// What GetLocaleInfo gives for the user's locale and these types: 42 to 48 long
// day names from Monday, 49 to 55 short ones, 56 to 67 long month names, 68 to
// 79 short ones. Empty for any other type.
string_t LocaleInfo(int nType);

// The day in the user's short date format. Only the date fields are read.
string_t ShortDate(const SYSTEMTIME& time);

// The time of day in the invariant 24-hour format, HH:mm:ss.
string_t InvariantTime(const SYSTEMTIME& time);

// True where the environment asks for Chinese texts (a zh locale).
bool PrefersChinese();
